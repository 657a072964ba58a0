#include "segment/least_word.h"

#include <cmath>

#include <nlohmann/json.hpp>

#include "shell/edited.h"

namespace kavrel {

std::string least_word_columns(const FoundWord& found) {
    std::string line = fmt::format("{:<16}", name_of(found.word.number_form));
    if (found.word.bits == 0) return line + "  none";
    line += edited<"(I6)">(found.word.bits);
    for (const double loss : {found.passband_loss, found.stopband_loss}) {
        line += std::isnan(loss) ? edited<"(16X)">() : edited<"(F13.4,' dB')">(loss);
    }
    return line;
}

void add_least_word(const FoundWord& found, nlohmann::ordered_json& part) {
    part["number_form"] = name_of(found.word.number_form);
    part["method"] = name_of(found.word.method);
    part["bits"] = found.word.bits;
    part["passband_loss"] = found.passband_loss;
    part["stopband_loss"] = found.stopband_loss;
}

}  // namespace kavrel
