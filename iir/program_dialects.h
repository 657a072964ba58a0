// The texts that a digital filter is written as, one row each: a new one is a writer, and a row here.
#pragma once

#include <algorithm>
#include <array>
#include <span>

#include "iir/c_program.h"
#include "iir/coefficient_files.h"
#include "iir/fortran_program.h"
#include "iir/integer_program.h"
#include "segment/program_dialect.h"

namespace kavrel {

struct ProgramDialectRow {
    // Why there is no such text; blank where there is one. The work of a bound may be stopped.
    using Hindrance = Refusal (*)(const ProgramInput& input, Watcher& watcher);

    ProgramDialect dialect;
    std::string_view label;      // in the form
    std::string_view extension;  // of its file
    std::span<const Implementation> forms;
    ProgramLines (*write)(const ProgramInput& input);
    Hindrance refusal = [](const ProgramInput&, Watcher&) { return Refusal(); };

    [[nodiscard]] constexpr bool knows(Implementation form) const {
        return std::ranges::find(forms, form) != forms.end();
    }
    [[nodiscard]] constexpr bool is_of_cascade() const { return forms.size() == 1; }
};

// The lattice last: whole numbers do without it.
inline constexpr Implementation programmed_forms[] = {Implementation::cascade, Implementation::parallel,
                                                      Implementation::direct, Implementation::allpass,
                                                      Implementation::lattice};
inline constexpr std::span all_forms = std::span(programmed_forms);
inline constexpr std::span all_but_lattice = all_forms.first<4>();
inline constexpr std::span cascade_alone = all_forms.first<1>();

inline constexpr ProgramDialectRow program_dialects[] = {
    {ProgramDialect::classic, "Classic", ".f90", all_forms, classic_program},
    {ProgramDialect::standard, "Standard", ".f90", all_forms, standard_program},
    {ProgramDialect::c, "C", ".c", all_forms, c_program},
    {ProgramDialect::c_integer, "C integer", ".c", all_but_lattice, integer_program, integer_program_refusal},
    {ProgramDialect::c_table, "C table", ".h", cascade_alone, c_table, c_table_refusal},
    {ProgramDialect::sos_text, "SOS text", ".sos", cascade_alone, sos_text},
};

// The row of a dialect; of a number that is none the first one.
[[nodiscard]] constexpr const ProgramDialectRow& row_of(ProgramDialect dialect) {
    for (const ProgramDialectRow& row : program_dialects) {
        if (row.dialect == dialect) return row;
    }
    return program_dialects[0];
}

}  // namespace kavrel
