// The layout of a form. Fields follow each other in the table's order: a radio group or a list is a block
// of its own, the fields between two of them make one, and a heading begins one. Blocks flow down in columns of about
// equal height.
#pragma once

#include <QChar>
#include <vector>

#include "desktop/field_editor.h"

class QLabel;

namespace kavrel {

struct PlacedField {
    FieldEditor* editor;
    QLabel* label = nullptr;  // beside it, if it has one
    QChar key;                // of its access key
    QLabel* echo = nullptr;   // behind it, where the form is in units of the user's
};

class Mnemonics;

// Lays out the editors (null for headings) of a form in `parent`.
[[nodiscard]] std::vector<PlacedField> lay_out_form(const FormSheet& sheet, const std::vector<FieldEditor*>& editors,
                                                    Mnemonics& mnemonics, QWidget& parent);

// After which blocks a new column begins, for blocks of these heights in so many columns: the tallest column is as
// short as can be.
[[nodiscard]] std::vector<std::size_t> column_breaks(const std::vector<int>& heights, int columns);

}  // namespace kavrel
