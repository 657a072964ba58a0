#include "exchange/text_parts.h"

#include <array>
#include <charconv>

#include "shell/edited.h"
#include "shell/shown_text.h"

namespace kavrel {

std::string title_words(std::string_view title) {
    return std::string(FixedText<76>(shown_text(title)).padded());
}

std::string not_implemented(int k) { return edited<"('  Branch',I3,' not implemented')">(k); }

std::string plain_number(double value) {
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::scientific);
    return {digits.data(), end.ptr};
}

}  // namespace kavrel
