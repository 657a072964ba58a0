// Between the logic's UTF-8 and Qt's strings.
#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace kavrel {

[[nodiscard]] inline QString qt_text(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

[[nodiscard]] inline std::string utf8_text(const QString& text) { return text.toStdString(); }

}  // namespace kavrel
