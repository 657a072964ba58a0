// Boxes that stop for an answer; the caption sets the icon.
#pragma once

#include <QMessageBox>

#include "shell/window_layer.h"

namespace kavrel {

[[nodiscard]] QMessageBox::Icon icon_of(std::string_view caption);

[[nodiscard]] Answer show_message(std::string_view text, std::string_view caption, Buttons buttons, QWidget* parent);

// The number of the choice, from 1, or 0.
[[nodiscard]] int show_choices(const ChoiceBox& box, QWidget* parent);

}  // namespace kavrel
