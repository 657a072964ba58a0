// Numbers as they are typed into a form and shown in it.
#pragma once

#include <QString>
#include <string>

namespace kavrel {

// What was typed, as the logic reads numbers: without blanks at its ends, a single comma as decimal point.
[[nodiscard]] std::string typed_number(const QString& typed);

// A number in its shortest form: 600, 0.1, 4.7M, 10n. Read back it is the same number.
[[nodiscard]] QString short_number(double value);

}  // namespace kavrel
