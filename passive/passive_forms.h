// The small forms that ask for what the commands of the passive Segment need.
#pragma once

#include "passive/passive_request.h"
#include "shell/form.h"

namespace kavrel {

extern const Form PASSIVE_FREQUENCY_DLG;
extern const Form PASSIVE_TIME_DLG;
extern const Form PASSIVE_PLOT_FREQUENCY_DLG;
extern const Form PASSIVE_PLOT_TIME_DLG;
extern const Form PASSIVE_INSERT_DLG;
extern const Form PASSIVE_DELETE_DLG;
extern const Form PASSIVE_CHANGE_DLG;
extern const Form PASSIVE_RESONANCE_DLG;
extern const Form PASSIVE_SUPPRESS_DLG;
extern const Form PASSIVE_TITLE_DLG;
extern const Form PASSIVE_TRANSFER_DLG;
extern const Form PASSIVE_PRINT_DLG;

// The name of a dialect choice, and that of the dialect which a file type has beside the classic one, blank where it
// has none.
[[nodiscard]] std::string_view dialect_name(DialectChoice dialect);
[[nodiscard]] std::string_view modern_dialect(int file_type);

}  // namespace kavrel
