// "Synthesis": what is asked before a ladder is extracted.
#pragma once

#include "shell/form.h"
#include "synthesis/synthesise.h"

namespace kavrel {

enum class FormChoice : int { lattice = 1, ladder = 2 };
enum class AutoChoice : int { automatic = 1, manual = 2 };
enum class DirectionChoice : int { unchosen = 0, forward = 1, reverse = 2 };  // without a choice: automatic
enum class NumeratorChoice : int { even_sum = 1, even_difference = 2 };
enum class DenominatorChoice : int { odd_sum = 1, odd_difference = 2 };
enum class ImmittanceChoice : int { z = 1, y = 2 };
enum class NumberFormat : int { decimal = 1, hexadecimal = 2 };

struct SynthesisForm {
    FormChoice form = FormChoice::ladder;
    AutoChoice configuration = AutoChoice::automatic;
    DirectionChoice direction = DirectionChoice::unchosen;
    AutoChoice impedance_selection = AutoChoice::automatic;
    NumeratorChoice numerator = NumeratorChoice::even_sum;
    DenominatorChoice denominator = DenominatorChoice::odd_sum;
    ImmittanceChoice this_is_an = ImmittanceChoice::z;
    bool print_polynomials = false;
    NumberFormat format = NumberFormat::decimal;  // of coefficients

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
