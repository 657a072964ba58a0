// A request as one literal: the words of its choices, and names of its fields with their numbers,
//
//     request("band_pass equal_ripple lowerPassEdge 800 upperPassEdge 1000 FZI 600 1300")
//
// A list brings its count. What is not named stays as it is in `spec`.
#pragma once

#include <cctype>
#include <sstream>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "approximation/filter_spec.h"

namespace kavrel {

struct RequestWord {
    std::string_view word;
    void (*choose)(FilterSpec& spec);
};
#define KAVREL_WORD(field, value)                             \
    {                                                         \
#value, [](FilterSpec & spec) { spec.field = value; } \
    }
inline constexpr RequestWord request_words[] = {
    KAVREL_WORD(filterType, low_pass),
    KAVREL_WORD(filterType, high_pass),
    KAVREL_WORD(filterType, linear_phase_low_pass),
    KAVREL_WORD(filterType, band_pass),
    KAVREL_WORD(passbandType, maximally_flat),
    KAVREL_WORD(passbandType, equal_ripple),
    KAVREL_WORD(passbandType, functional_passband),
    KAVREL_WORD(passbandType, sloping_passband),
    KAVREL_WORD(bandpassType, conventional),
    KAVREL_WORD(bandpassType, parametric),
    KAVREL_WORD(bandpassType, impedance_matching),
    KAVREL_WORD(stopbandType, monotonic_stopband),
    KAVREL_WORD(stopbandType, equal_minima),
    KAVREL_WORD(stopbandType, specified_zeros),
    KAVREL_WORD(stopbandType, functional_stopband),
    KAVREL_WORD(medium, lumped),
    KAVREL_WORD(medium, sampled_data),
    KAVREL_WORD(medium, microwave),
};
#undef KAVREL_WORD

inline FilterSpec request(const std::string& text, FilterSpec spec = {}) {
    std::string name;
    std::vector<double> numbers;
    const auto set = [&] {
        bool known = name.empty();
        for (const RequestWord& row : request_words) {
            if (row.word == name) row.choose(spec), known = true;
        }
        fields_of(spec, [&](std::string_view field, auto& member, auto&... count) {
            if (field != name) return;
            known = true;
            using Member = std::remove_cvref_t<decltype(member)>;
            if constexpr (sizeof...(count) == 1) {
                ((count = static_cast<int>(numbers.size())), ...);
                for (std::size_t i = 0; i < numbers.size(); ++i) member(static_cast<int>(i) + 1) = numbers[i];
            } else if constexpr (std::is_arithmetic_v<Member> || std::is_enum_v<Member>) {
                member = static_cast<Member>(numbers.at(0));
            }
        });
        if (!known) throw std::invalid_argument(name);
        numbers.clear();
    };
    std::istringstream in(text);
    for (std::string token; in >> token;) {
        if (std::isalpha(static_cast<unsigned char>(token[0])) == 0) {
            numbers.push_back(std::stod(token));
            continue;
        }
        set();
        name = token;
    }
    set();
    return spec;
}

}  // namespace kavrel
