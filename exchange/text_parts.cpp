#include "exchange/text_parts.h"

#include <array>
#include <charconv>

#include "shell/edited.h"

namespace kavrel {

std::string title_words(std::string_view title) {
    std::string words(FixedText<76>(title).padded());
    for (char& letter : words) {
        if (static_cast<unsigned char>(letter) < ' ') letter = ' ';
    }
    return words;
}

std::string not_implemented(int k) { return edited<"('  Branch',I3,' not implemented')">(k); }

std::string plain_number(double value) {
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::scientific);
    return {digits.data(), end.ptr};
}

}  // namespace kavrel
