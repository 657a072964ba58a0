// The kinds of text that a digital filter is written as for other programs.
#pragma once

namespace kavrel {

enum class ProgramDialect : int {
    classic = 1,
    standard = 2,
    c = 3,
    c_integer = 4,
    c_table = 5,
    sos_text = 6,
    text = 7
};

}  // namespace kavrel
