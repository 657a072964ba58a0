// The user's units, and the text of a value with its unit.
#pragma once

#include <string>
#include <string_view>

namespace kavrel {

// A quantity in the user's unit is the SI quantity divided by the multiplier: 2.5 in "KHz" is 2500 Hz.
struct UnitSet {
    double frequency_multiplier = 1.0;  // 1000^(index - 1): Hz, KHz, MHz, GHz
    double inductor_multiplier = 1.0;   // 0.001^(index - 1): H, mH, uH, nH, pH
    double capacitor_multiplier = 1.0;  // 0.001^(index - 1): F, mF, uF, nF, pF
    double time_multiplier = 1.0;       // 0.001^(index - 1): sec, msec, usec, nsec, psec
    int frequency_index = 1;            // 1 to 4
    int inductor_index = 1;             // 1 to 5
    int capacitor_index = 1;            // 1 to 5
    int time_index = 1;                 // 1 to 5
    int fixed_units = 0;                // 3 when the inductor, capacitor and time units apply, otherwise 0
    int frequency_in_unit = 0;          // 1 when the frequency unit is above hertz

    friend bool operator==(const UnitSet&, const UnitSet&) = default;
};

// What a number is measured in: the first four in the user's unit, the others always in the same one.
enum class Unit { none, frequency, time, inductor, capacitor, resistance, decibel, radians, hertz };

// Codes of the quantities that `unit_value_text` knows.
enum class UnitCode : int { ohm = 0, henry = 1, farad = 2, hertz = 3, second = 4 };
using enum UnitCode;

// The index of a frequency multiplier (1, 1e3, 1e6, 1e9 give 1 to 4), and of an inductor, capacitor or time multiplier
// (1, 1e-3, ... 1e-12 give 1 to 5); a multiplier between two powers takes the index of the smaller exponent's
// magnitude.
[[nodiscard]] int frequency_unit_index(double multiplier);
[[nodiscard]] int element_unit_index(double multiplier);

// What follows once the four indices were chosen: the multipliers, and the restriction that inductor, capacitor and
// time units are had only together with a frequency unit above hertz (otherwise they fall back to H, F and sec).
void settle_units(UnitSet& units);

// " ( Hz)", " (KHz)", ... and " ( sec)", " (msec)", ... as they are appended to a label; blank for those without a
// choice.
[[nodiscard]] std::string unit_suffix(const UnitSet& units, Unit unit);

// The units by their names: "KHz, mH, nF, usec", or the frequency unit alone where the others are H, F and sec.
[[nodiscard]] std::string units_text(const UnitSet& units);

// "Units: KHz", for the head of a report; blank for Hz, H, F and sec.
[[nodiscard]] std::string units_note(const UnitSet& units);

// A value in SI units with its unit, as it may be typed: "1 MHz", "47 nF", "600 ohm", "0".
[[nodiscard]] std::string quantity_text(double value, Unit unit);

// The multiplier of a unit: SI value = value in the user's unit times this.
[[nodiscard]] double unit_multiplier(const UnitSet& units, Unit unit);

// Sixteen characters for a value in SI units: number in F11.6, prefix letter, unit; in the user's units where those
// apply and show it (0, or 0.001 and above, in F11.6), otherwise in engineering form. Above 1.0e25 a resistance or
// inductance is an open circuit; what the prefixes f to T cannot hold is written alone in scientific form.
[[nodiscard]] std::string unit_value_text(const UnitSet& units, double value, UnitCode unit);

}  // namespace kavrel
