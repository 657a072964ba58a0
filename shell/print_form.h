// "Printing to": what is behind the item "&Print" of every Segment.
#pragma once

#include "shell/field_table.h"
#include "shell/reporter.h"

namespace kavrel {

enum class PrintTarget : int { printer = 1, file = 2, none = 3 };

inline constexpr Choice print_targets[] = {
    {"Printer", PrintTarget::printer}, {"File", PrintTarget::file}, {"None", PrintTarget::none}};

// The field of the form, over the member of a Segment's request that holds the target.
template <auto Member>
inline constexpr Field print_field = radio<Member>("printing_to", "Printing to", print_targets);

// Sets the print mode at once; for a file asks for its name first, and without a name, or when it cannot be written,
// leaves all as it is: false.
bool choose_print_mode(PrintTarget target, Reporter& reporter);

}  // namespace kavrel
