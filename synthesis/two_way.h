// The ladder from both ends: a forward run from the input up to the mid-point, a reverse run from the output for the
// rest, and their joining.
//
// Each run removes from the immittance of its own port, normalised to its own resistor. What it removes is the same
// whether or not the other run has been there: at a zero of transmission a port does not see what is behind it.
// Complete removals alone (all zeros at 0 and infinity): the runs share them. Finite zeros: each end picks its next one
// by its own smallest residue among those that the other has not taken, by turns. Between the last zeros of both runs
// lies the middle branch: the forward partial removal that prepares the zero, or the two, that the reverse run took
// last. Where zeros are shifted from zero and from infinity by turns, in different forms, two branches are left to the
// forward run: the reverse run only prepares its last zero, and the forward run takes that one, too, before it prepares
// the last but one.
//
// What the forward run leaves is the reverse run's ladder seen from the join, with the output open or short:
//
//   R1 z_forward(s) = R2 z_reverse_branches(s)   and   R2 z_reverse(s) = R1 z_forward_branches(s)   at every s.
//
// So each point gives the ratio of levels R2/R1, and all of them have to give the same one. At real s > 0 all terms of
// a ladder have one sign, and nothing cancels.
#pragma once

#include "synthesis/automatic_script.h"

namespace kavrel {

inline constexpr int two_way_degree = 12;   // from which on both ends are begun at unasked
inline constexpr double same_level = 1e-9;  // relative difference of RATIO above which two runs do not fit
inline constexpr int ratio_limit = 30;

// The removals of a filter, shared among both runs.
struct TwoWayScripts {
    Script JCONF;  // forward: its steps, "prin", the words of the middle branch, and "end"
    Script JREV;   // reverse: the other steps, in groups backwards, and "end"
    int prin = 0;  // position of "prin" in JCONF
    int forward_steps = 0;
    int reverse_steps = 0;
    Table<int, script_limit> forward_end;  // [i] last word of forward step i
    Table<int, script_limit> reverse_end;
    int middle_count = 0;
    Table<StepKind, 2> middle;  // forward steps between the runs: of the last one the partial removal alone
};

// Where the runs meet.
struct Join {
    int forward_records = 0;  // of the joined ladder; the reverse run's follow, the last one first
    int ratio_count = 0;
    Table<WideReal, ratio_limit> RATIO;  // [i] R2/R1 by the remainders, forward and reverse by turns
    double difference = 0;               // largest relative one of them
};

// Scripts for the ends of one network, `input` and `output` being selections for both of them. False when a filter has
// none: with a single step, complex zeros or lines.
[[nodiscard]] bool two_way_scripts(const LadderProblem& problem, const Selection& input, const Selection& output,
                                   TwoWayScripts& scripts);

// Runs both. The words of the middle branch are put into JCONF. The verdict is that of the run that was refused, whose
// state is left as it was before.
ScriptVerdict run_two_way(const LadderProblem& problem, TwoWayScripts& scripts, Watcher& watcher, LadderState& forward,
                          LadderState& reverse);

// The ladder of both runs in the order from the input, normalised to R1, in `joined`; `join` says how well they fit.
// False when they are no two parts of one network, when a compound branch or a line was removed (neither is joined), or
// when there are too many records.
[[nodiscard]] bool join_runs(const LadderState& forward, const LadderState& reverse, LadderState& joined, Join& join);

}  // namespace kavrel
