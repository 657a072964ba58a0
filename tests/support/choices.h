// Choices by their numbers, in messages and in files of cases.
#pragma once

#include <istream>
#include <ostream>
#include <string>
#include <type_traits>

namespace kavrel {

template <class Choice>
requires std::is_enum_v<Choice> std::string number(Choice choice) { return std::to_string(static_cast<int>(choice)); }

template <class Choice>
requires std::is_enum_v<Choice> std::ostream& operator<<(std::ostream& out, Choice choice) {
    return out << static_cast<int>(choice);
}

template <class Choice>
requires std::is_enum_v<Choice> std::istream& operator>>(std::istream& in, Choice& choice) {
    int number = 0;
    in >> number;
    choice = static_cast<Choice>(number);
    return in;
}

}  // namespace kavrel
