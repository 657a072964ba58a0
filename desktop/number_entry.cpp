#include "desktop/number_entry.h"

#include <cmath>

#include <fmt/format.h>

#include "desktop/text.h"
#include "shell/number_text.h"

namespace kavrel {

namespace {

struct Suffix {
    double scale;
    char letter;
};

constexpr Suffix suffixes[] = {{1e9, 'G'},  {1e6, 'M'},  {1e3, 'k'},   {1e-3, 'm'},
                               {1e-6, 'u'}, {1e-9, 'n'}, {1e-12, 'p'}, {1e-15, 'f'}};

// Magnitudes that read best without a suffix.
constexpr double least_plain = 1e-3;
constexpr double first_not_plain = 1e6;

}  // namespace

std::string typed_number(const QString& typed) {
    QString text = typed.trimmed();
    if (text.count(',') == 1 && !text.contains('.')) text.replace(',', '.');
    return utf8_text(text);
}

QString short_number(double value) {
    const double magnitude = std::abs(value);
    std::string text = fmt::format("{}", value);
    if (value == 0.0) return "0";
    if (magnitude >= least_plain && magnitude < first_not_plain) return qt_text(text);
    for (const auto& [scale, letter] : suffixes) {
        if (magnitude < scale || magnitude >= 1e3 * scale) continue;
        std::string scaled = fmt::format("{:.15g}{}", value / scale, letter);
        if (parse_number(scaled) == value) return qt_text(scaled);
    }
    return qt_text(text);
}

}  // namespace kavrel
