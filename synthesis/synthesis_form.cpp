#include "synthesis/synthesis_form.h"

#include "shell/field_table.h"

namespace kavrel {

namespace {

using R = SynthesisForm;

constexpr Choice forms[] = {{"Lattice", FormChoice::lattice}, {"Ladder", FormChoice::ladder}};
constexpr Choice auto_or_manual[] = {{"Auto", AutoChoice::automatic}, {"Manual", AutoChoice::manual}};
constexpr Choice directions[] = {{"Forward", DirectionChoice::forward}, {"Reverse", DirectionChoice::reverse}};
constexpr Choice numerators[] = {{"Even sum", NumeratorChoice::even_sum},
                                 {"Even difference", NumeratorChoice::even_difference}};
constexpr Choice denominators[] = {{"Odd sum", DenominatorChoice::odd_sum},
                                   {"Odd difference", DenominatorChoice::odd_difference}};
constexpr Choice immittances[] = {{"Impedance", ImmittanceChoice::z}, {"Admittance", ImmittanceChoice::y}};
constexpr Choice formats[] = {{"Decimal", NumberFormat::decimal}, {"Hexadecimal", NumberFormat::hexadecimal}};

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
    states.choice_off("numerator", NumeratorChoice::even_sum, !form.has_es);
    states.choice_off("numerator", NumeratorChoice::even_difference, !form.has_ed);
    states.choice_off("denominator", DenominatorChoice::odd_sum, !form.has_os);
    states.choice_off("denominator", DenominatorChoice::odd_difference, !form.has_od);
    states.label("existing_polynomials", form.existing.trimmed());
}

Refusal refusal(const SynthesisForm& form) {
    if (form.form == FormChoice::lattice) {
        if (!form.unit_elements) return {};
        return {"Filter with unit elements has no lattice implementation", "form"};
    }
    if (form.impedance_selection == AutoChoice::automatic) return {};
    const bool numerator = form.numerator == NumeratorChoice::even_sum ? form.has_es : form.has_ed;
    const bool denominator = form.denominator == DenominatorChoice::odd_sum ? form.has_os : form.has_od;
    if (numerator && denominator) return {};
    return {selection_missing_text, numerator ? "denominator" : "numerator"};
}

}  // namespace

constexpr Form SYNTHESIS_DLG = form_of<R, rules, refusal>("SYNTHESIS_DLG", "Synthesis", fields);

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
    request.direction = form.direction == DirectionChoice::forward   ? Direction::forward
                        : form.direction == DirectionChoice::reverse ? Direction::reverse
                                                                     : Direction::automatic;
    request.manual_selection = form.impedance_selection == AutoChoice::manual;
    request.numerator = form.numerator == NumeratorChoice::even_sum ? Part::es : Part::ed;
    request.denominator = form.denominator == DenominatorChoice::odd_sum ? Part::os : Part::od;
    request.form = form.this_is_an == ImmittanceChoice::z ? impedance : admittance;
    return request;
}

}  // namespace kavrel
