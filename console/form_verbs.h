// The verbs that fill in an open form.
#pragma once

#include <string>

#include "console/script.h"
#include "console/transcript.h"
#include "shell/form.h"

namespace kavrel {

[[nodiscard]] bool is_form_verb(std::string_view verb);

// What a verb did to the form: `wrong` says what is wrong with the line, `closed` that the form is done.
struct FormStep {
    std::string wrong;
    bool closed = false;
    bool accepted = false;
};

// An open form under the script, with the list that `row` and `clear` go to.
class FormFiller {
public:
    explicit FormFiller(FormSheet& sheet);

    [[nodiscard]] FormStep perform(const ScriptLine& line, std::ostream& screen);

private:
    [[nodiscard]] std::string set(const ScriptLine& line);
    [[nodiscard]] std::string row(const ScriptLine& line);
    [[nodiscard]] std::string clear();
    [[nodiscard]] std::string turn_to_list(const ScriptLine& line);
    [[nodiscard]] std::string button(const ScriptLine& line);

    FormSheet& sheet_;
    int list_ = -1;  // field number of the current list, or -1
};

// The form as `fields` prints it: name, label, value, choices or range, and which fields are off.
[[nodiscard]] std::string form_text(const FormSheet& sheet);

// The choices of a field that can be chosen now, with commas.
[[nodiscard]] std::string choices_text(const FormSheet& sheet, std::size_t field);

}  // namespace kavrel
