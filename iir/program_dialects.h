// The texts that a digital filter is written as, one row each.
#pragma once

#include "segment/program_dialect.h"
#include "shell/field_table.h"

namespace kavrel {

inline constexpr Choice program_dialects[] = {{"Classic", ProgramDialect::classic},
                                              {"Standard", ProgramDialect::standard},
                                              {"C", ProgramDialect::c},
                                              {"C integer", ProgramDialect::c_integer},
                                              {"C table", ProgramDialect::c_table},
                                              {"SOS text", ProgramDialect::sos_text}};

}  // namespace kavrel
