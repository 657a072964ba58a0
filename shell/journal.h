// What the run has said so far: every report line and every box, for the state file and for scripts that ask.
#pragma once

#include <string>
#include <vector>

namespace kavrel {

struct JournalBox {
    std::string caption;
    std::string text;
    std::string answer;  // "ok", "yes", "no", "cancel", or the chosen label
};

struct Journal {
    std::vector<std::string> lines;
    std::vector<JournalBox> boxes;
};

}  // namespace kavrel
