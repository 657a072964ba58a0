#include "shell/edited.h"

#include "shell/edit.h"

namespace kavrel {

namespace {

std::string field(const FormatItem& item, const FormatValue& value);

}  // namespace

std::string edit_values(const Format& format, std::string_view text, const FormatValue* values) {
    std::string line;
    for (int i = 0; i < format.count; ++i) {
        const FormatItem& item = format.items[static_cast<std::size_t>(i)];
        if (item.kind == 'X')
            line.append(static_cast<std::size_t>(item.width), ' ');
        else if (item.kind == '\'')
            line += text.substr(static_cast<std::size_t>(item.width), static_cast<std::size_t>(item.decimals));
        else
            line += field(item, *values++);
    }
    return line;
}

namespace {

std::string field(const FormatItem& item, const FormatValue& value) {
    switch (item.kind) {
        case 'A': return item.width < 0 ? edit_a(value.text) : edit_a(value.text, item.width);
        case 'I': return edit_i(value.integer, item.width, item.decimals);
        case 'F': return edit_f(value.number, item.width, item.decimals, item.scale);
        case 'D': return edit_d(value.number, item.width, item.decimals, item.scale);
        case 'N': return edit_en(value.number, item.width, item.decimals);
        case 'G': return edit_g(value.number, item.width, item.decimals, item.scale);
        default: return edit_e(value.number, item.width, item.decimals, item.exp_digits, item.scale);
    }
}

}  // namespace

}  // namespace kavrel
