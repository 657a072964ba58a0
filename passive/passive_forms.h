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
extern const Form PASSIVE_COMBINE_DLG;
extern const Form PASSIVE_SPLIT_DLG;
extern const Form PASSIVE_INTERCHANGE_DLG;
extern const Form PASSIVE_TEE_PI_DLG;
extern const Form PASSIVE_EXCHANGE_DLG;
extern const Form PASSIVE_CONVERT_DLG;
extern const Form PASSIVE_LATTICE_DLG;
extern const Form PASSIVE_INCLUDE_DLG;
extern const Form PASSIVE_TRIPLET_DLG;
extern const Form PASSIVE_QUADRUPLET_DLG;
extern const Form PASSIVE_NORTON_SIMPLE_DLG;
extern const Form PASSIVE_NORTON_COMPUTED_DLG;
extern const Form PASSIVE_NORTON_MATCHING_DLG;
extern const Form PASSIVE_EQUAL_DLG;
extern const Form PASSIVE_INNER_EQUAL_DLG;
extern const Form PASSIVE_MULTIPLE_L_DLG;
extern const Form PASSIVE_MULTIPLE_C_DLG;
extern const Form PASSIVE_MULTIPLE_VALUES_DLG;
extern const Form PASSIVE_R_SCALING_DLG;
extern const Form PASSIVE_F_SCALING_DLG;
extern const Form PASSIVE_PREFERRED_DLG;
extern const Form PASSIVE_BAND_REJECT_DLG;
extern const Form PASSIVE_RESONANCE_DLG;
extern const Form PASSIVE_SUPPRESS_DLG;
extern const Form PASSIVE_TITLE_DLG;
extern const Form PASSIVE_TRANSFER_DLG;
extern const Form PASSIVE_PRINT_DLG;

}  // namespace kavrel
