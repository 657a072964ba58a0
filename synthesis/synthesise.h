// Ladder synthesis of a finished approximation.
#pragma once

#include <string_view>

#include "circuit/circuit.h"
#include "synthesis/automatic_script.h"
#include "synthesis/denormalise.h"
#include "synthesis/loss_check.h"
#include "synthesis/order_search.h"
#include "synthesis/two_way.h"

namespace kavrel {

// The end that the extraction begins at: the input, the output, or both of them. Automatic: as the rule of choice has
// it (synthesise.cpp), both from two_way_degree on. Two-way alone is what nobody but a test asks for.
enum class Direction { automatic, forward, reverse, two_way };

// As the form asks. Automatic configuration; the immittance may be chosen by hand.
struct SynthesisRequest {
    Direction direction = Direction::automatic;
    bool manual_selection = false;  // else the immittance is chosen by the program
    Part numerator = Part::es;
    Part denominator = Part::os;
    int form = admittance;
    bool dual = false;  // of the network that the program would choose; not with unequal terminations
};

enum class SynthesisFault {
    none,
    polynomials_missing,  // there are no immittance polynomials
    not_realizable,
    too_many_quadruplets,  // more than a ladder holds
    real_zero,  // a transmission zero on the real axis: no two-port with a common rail and without transformers has
                // one at a positive s (A. Fialkow and I. Gerst, 1952)
    immittance_missing,
    selection_missing,  // the immittance chosen by hand does not exist
    element_missing,    // the reactance is used up, and zeros of transmission are left
    script_refused,     // SynthesisState::script_verdict says by what
    storage_full,
    no_two_way,    // both ends were asked for, and the filter has no such scripts
    runs_differ,   // the forward and the reverse run do not fit
    loss_differs,  // the circuit does not have the loss of the transfer function
    stopped,       // by the watcher
};

inline constexpr std::string_view synthesis_failed_text = " **** Synthesis failed ****";
inline constexpr std::string_view selection_missing_text = " Specified function does not exist or is incorrect";
inline constexpr std::string_view real_zero_text =
    " **** A zero on the real axis has no ladder without transformers ****";
inline constexpr std::string_view too_many_quadruplets_text = " **** More than 10 quadruplets of zeros ****";
inline constexpr std::string_view polynomials_missing_text =
    " **** The immittance polynomials were not found to the accuracy of a ladder ****";
inline constexpr std::string_view no_order_text = " **** No order of removals leads to a ladder ****";
inline constexpr std::string_view loss_differs_text = " **** The ladder does not have the loss of the filter ****";
inline constexpr std::string_view negative_elements_text = " Negative elements: no order tried here avoids them";
inline constexpr std::string_view search_given_up_text =
    " Negative elements: no order of removals without them was found";
inline constexpr std::string_view element_missing_text = " **** Element(s) missing ****";
inline constexpr std::string_view extreme_termination_text = "*** termination is extreme ***";
inline constexpr double extreme_termination = 1000;  // how far a ratio may be from the one asked for without a word
inline constexpr double trusted_loss = 1e-9;         // dB, up to which a circuit is beyond doubt
inline constexpr double loss_note_limit = 0.001;     // dB, above which a line reports the difference
inline constexpr double loss_failure_limit = 0.1;

struct [[nodiscard]] SynthesisVerdict {
    SynthesisFault fault = SynthesisFault::none;

    [[nodiscard]] constexpr bool good() const { return fault == SynthesisFault::none; }
};

// What a run leaves: everything that its report and the next step by hand need.
struct SynthesisState {
    LadderProblem problem;
    Script script;
    ScriptVerdict script_verdict;
    LadderState ladder;  // of both runs where there are two
    bool two_way = false;
    Script JREV;  // of the reverse run that followed the forward one
    Join join;    // of both
    Terminations terminations;
    double requested_ratio = 1;  // R2/R1
    double available_ratio = 1;  // of the circuit
    int negative_elements = 0;
    // How the search for a ladder without negative elements ended: `none_exists` means that every order of single and
    // double shifts from the extreme points, with either place of a negative element beside a quadruplet, has one.
    bool searched = false;
    SearchVerdict search = SearchVerdict::found;
    LossDifference loss;
    double loss_error = 0;  // dB, the largest difference

    // The ends that the ladder was extracted from, and the arithmetic: all removals run in one type.
    [[nodiscard]] std::string_view direction() const {
        if (two_way) return "two-way";
        return ladder.selection.output_side ? "reverse" : "forward";
    }
    [[nodiscard]] std::string_view arithmetic() const { return two_way ? "512 bit, two-way" : "512 bit, one way"; }
    [[nodiscard]] bool loss_is_notable() const { return loss_error > loss_note_limit; }
    [[nodiscard]] bool termination_is_extreme() const {
        if (problem.single_termination) return false;
        const double times = available_ratio / requested_ratio;
        return !(times <= extreme_termination && times >= 1 / extreme_termination);
    }
};

// Synthesises the ladder of a request, `spec` being normalised as the approximation left it. The circuit is replaced
// only when its loss agrees with the transfer function; after a fault it is as before, and `state` says how far the
// run went. The watcher may stop the searches: the best ladder until then is taken.
[[nodiscard]] SynthesisVerdict synthesise(const XPlane& xp, const FilterSpec& spec, const SynthesisRequest& request,
                                          Watcher& watcher, SynthesisState& state, Circuit& circuit);
// The same, unwatched.
[[nodiscard]] SynthesisVerdict synthesise(const XPlane& xp, const FilterSpec& spec, const SynthesisRequest& request,
                                          SynthesisState& state, Circuit& circuit);

}  // namespace kavrel
