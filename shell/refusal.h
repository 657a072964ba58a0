// Why something is not done.
#pragma once

#include <concepts>
#include <string>
#include <string_view>

namespace kavrel {

// What is wrong, and the field of the form that is to be changed; blank where nothing is wrong or no field alone is.
struct Refusal {
    std::string text;
    std::string_view field;
    std::string_view caption = "Error";  // of its box

    Refusal() = default;
    template <class Text>
    requires std::constructible_from<std::string, Text> Refusal(const Text& why, std::string_view name = {})
        : text(why), field(name) {}  // NOLINT: reads as its text

    [[nodiscard]] bool empty() const { return text.empty(); }
};

}  // namespace kavrel
