// "Synthesis": what is asked before a ladder is extracted.
#pragma once

#include "shell/form.h"
#include "synthesis/synthesise.h"

namespace kavrel {

struct FormChoice {
    enum { lattice = 1, ladder = 2 };
};
struct AutoChoice {
    enum { automatic = 1, manual = 2 };
};

struct SynthesisForm {
    int form = FormChoice::ladder;
    int configuration = AutoChoice::automatic;
    int direction = 0;  // 1 forward, 2 reverse, 0 while nothing is chosen: automatic
    int impedance_selection = AutoChoice::automatic;
    int numerator = 1;    // 1 even sum, 2 even difference
    int denominator = 1;  // 1 odd sum, 2 odd difference
    int this_is_an = 1;   // 1 impedance, 2 admittance
    bool print_polynomials = false;
    int format = 1;  // of coefficients: 1 decimal, 2 hexadecimal

    // Of the design that the form is opened for.
    FixedText<40> existing;  // "Existing polynomials: es os ed od"
    bool has_es = false, has_os = false, has_ed = false, has_od = false;
    bool unit_elements = false;
};

extern const Form SYNTHESIS_DLG;

// What the form has to know of a design.
void describe_design(const XPlane& x_plane, const FilterSpec& worked, SynthesisForm& form);

[[nodiscard]] SynthesisRequest request_of(const SynthesisForm& form);

}  // namespace kavrel
