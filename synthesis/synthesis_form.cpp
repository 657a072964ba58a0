#include "synthesis/synthesis_form.h"

#include "shell/field_table.h"

namespace kavrel {

namespace {

using R = SynthesisForm;

constexpr Choice forms[] = {{"Lattice", FormChoice::lattice}, {"Ladder", FormChoice::ladder}};
constexpr Choice auto_or_manual[] = {{"Auto", AutoChoice::automatic}, {"Manual", AutoChoice::manual}};
constexpr Choice directions[] = {{"Forward", 1}, {"Reverse", 2}};
constexpr Choice numerators[] = {{"Even sum", 1}, {"Even difference", 2}};
constexpr Choice denominators[] = {{"Odd sum", 1}, {"Odd difference", 2}};
constexpr Choice immittances[] = {{"Impedance", 1}, {"Admittance", 2}};
constexpr Choice formats[] = {{"Decimal", 1}, {"Hexadecimal", 2}};

constexpr Field fields[] = {
    radio<&R::form>("form", "Form", forms),
    radio<&R::configuration>("configuration", "Configuration", auto_or_manual),
    radio<&R::direction>("direction", "Direction", directions),
    radio<&R::impedance_selection>("impedance_selection", "Impedance selection", auto_or_manual),
    radio<&R::numerator>("numerator", "Numerator", numerators),
    radio<&R::denominator>("denominator", "Denominator", denominators),
    radio<&R::this_is_an>("this_is_an", "This is an", immittances),
    heading("existing_polynomials", "Existing polynomials:"),
    flag<&R::print_polynomials>("print_polynomials", "Print polynomials"),
    radio<&R::format>("format", "Format", formats),
};

// A ladder chosen by hand needs its immittance; coefficients are those of wave digital forms.
void rules(const SynthesisForm& form, FieldStates& states) {
    const bool ladder = form.form == FormChoice::ladder;
    states.off({"configuration", "direction", "impedance_selection"}, !ladder);
    states.off({"numerator", "denominator", "this_is_an"},
               !ladder || form.impedance_selection == AutoChoice::automatic);
    states.off("format", ladder);
    states.choice_off("numerator", 1, !form.has_es);
    states.choice_off("numerator", 2, !form.has_ed);
    states.choice_off("denominator", 1, !form.has_os);
    states.choice_off("denominator", 2, !form.has_od);
    states.label("existing_polynomials", form.existing.trimmed());
}

std::string_view message(const SynthesisForm& form) {
    if (form.form == FormChoice::lattice) {
        return form.unit_elements ? "Filter with unit elements has no lattice implementation" : "";
    }
    if (form.impedance_selection == AutoChoice::automatic) return "";
    const bool numerator = form.numerator == 1 ? form.has_es : form.has_ed;
    const bool denominator = form.denominator == 1 ? form.has_os : form.has_od;
    return numerator && denominator ? "" : selection_missing_text;
}

}  // namespace

constexpr Form SYNTHESIS_DLG = form_of<R, rules, message>("SYNTHESIS_DLG", "Synthesis", fields);

void describe_design(const XPlane& x_plane, const FilterSpec& worked, SynthesisForm& form) {
    form.has_es = x_plane.es.multiplier != 0;
    form.has_os = x_plane.os.multiplier != 0;
    form.has_ed = x_plane.ed.multiplier != 0;
    form.has_od = x_plane.od.multiplier != 0;
    std::string text = "Existing polynomials:";
    if (form.has_es) text += " es";
    if (form.has_os) text += " os";
    if (form.has_ed) text += " ed";
    if (form.has_od) text += " od";
    form.existing.assign(text);
    form.unit_elements = worked.unitElements > 0;
}

SynthesisRequest request_of(const SynthesisForm& form) {
    SynthesisRequest request;
    request.direction = form.direction == 1   ? Direction::forward
                        : form.direction == 2 ? Direction::reverse
                                              : Direction::automatic;
    request.manual_selection = form.impedance_selection == AutoChoice::manual;
    request.numerator = form.numerator == 1 ? Part::es : Part::ed;
    request.denominator = form.denominator == 1 ? Part::os : Part::od;
    request.form = form.this_is_an == 1 ? impedance : admittance;
    return request;
}

}  // namespace kavrel
