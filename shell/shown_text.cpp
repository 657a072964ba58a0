#include "shell/shown_text.h"

#include <algorithm>

#include "shell/utf8.h"

namespace kavrel {

std::string shown_text(std::string_view text, ShownAs as) {
    std::string shown;
    shown.reserve(text.size());
    while (!text.empty()) {
        const Utf8Character character = utf8_character(text);
        const bool keeps = as == ShownAs::lines && (text.front() == '\n' || text.front() == '\t');
        if (as == ShownAs::lines && text.starts_with("\r\n")) {
            // an end of line of another system
        } else if (character.bytes == 0) {
            shown += '?';
        } else if (is_obeyed(character.code) && !keeps) {
            shown += ' ';
        } else {
            shown += text.substr(0, character.bytes);
        }
        text.remove_prefix(std::max<std::size_t>(character.bytes, 1));
    }
    return shown;
}

}  // namespace kavrel
