// Scripts that realise a whole request from one end.
#pragma once

#include "synthesis/immittance_choice.h"
#include "synthesis/script.h"

namespace kavrel {

// The twelve steps that an automatic script is made of.
enum class StepKind {
    impedance_zero = 1,             // imp s c z
    admittance_zero = 2,            // adm s c z
    impedance_infinity = 3,         // imp s c i
    admittance_infinity = 4,        // adm s c i
    impedance_shift_zero = 5,       // imp s p z m adm s c n
    impedance_shift_infinity = 6,   // imp s p i m adm s c n
    admittance_shift_zero = 7,      // adm s p z m imp s c n
    admittance_shift_infinity = 8,  // adm s p i m imp s c n
    impedance_double = 9,           // imp d p z i m n adm s c j adm s c k
    admittance_double = 10,         // adm d p z i m n imp s c j imp s c k
    impedance_quadruplet = 11,      // imp d c z n
    admittance_quadruplet = 12,     // adm d c i n
};

// Appends the words of a step. m, n: numbers of zeros, 0 for the program's own choice.
void append_step(Script& script, StepKind kind, int m = 0, int n = 0);

// The forms that have the poles of a selection's remainder at 0 and infinity; each complete removal turns one of them.
struct PoleForms {
    int zero = impedance;
    int infinity = impedance;
};
[[nodiscard]] PoleForms pole_forms(const LadderProblem& problem, const Selection& selection);

// Where complex quadruplets are removed: before all else, each behind a shunt branch of an extreme zero, which the
// negative element beside the compound branch can merge with, or behind all of these.
enum class QuadrupletPlace { first, behind_shunts, last };

// The script of a selection: complex quadruplets; then the finite zeros, by shifting from the extreme point of their
// own side, or by double shifting of a low and a high zero where both poles belong to the same form, what is left
// singly; then the zeros at 0 and infinity, each in both forms by turns; then the unit elements, and "fini".
// With unit elements a branch that the selection hides lies behind them: one zero at 0 or infinity, as `hidden` says,
// is left out.
[[nodiscard]] Script automatic_script(const LadderProblem& problem, const Selection& selection,
                                      QuadrupletPlace place = QuadrupletPlace::first,
                                      ExtremeSide hidden = ExtremeSide::infinity);

// Runs a script and, where no zero was acceptable, goes on with the zero of the smallest residue whatever its sign: the
// ladder then has a negative element. The script holds the words that were put in.
ScriptVerdict run_automatic(const LadderProblem& problem, Script& script, Watcher& watcher, LadderState& state);

}  // namespace kavrel
