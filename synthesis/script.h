// The script language of ladder synthesis and its interpreter.
//
// A script is a sequence of four-character words. After the side and the selection, "in es os", each sentence removes
// something from the remainder:
//
//   imp, adm            the next sentence works on an impedance (series branches) or an admittance (shunt branches)
//   s c z, s c i        complete removal of the pole at z = 0, at infinity
//   s c n               complete removal of the finite pole of zero n, which has been prepared
//   s p z n, s p i n    partial removal at z = 0, at infinity, that prepares zero n; where no zero of transmission is
//                       left there, and no pole, a negative element makes one, which is to be removed completely later
//   s p m n             partial removal at the prepared pole m that prepares zero n; a removal without n is one by
//                       value, for which there is no word
//   d p z i m n         partial removal at both extreme points that prepares the zeros m and n
//   d p k l m n         the same from two poles k and l, each z, i or the number of a prepared pole
//   d c z n, d c i n, d c e n   removal of complex quadruplet n as a compound branch: on an admittance with shunt
//                       inductors, capacitors, or the better of both beside it, on an impedance the dual network
//   ue                  one unit element
//   prin, end, fini     print; end of a stage; end of all
//
// A zero number 0 leaves the choice to the program; "s c 0" takes the zero so chosen.
//
// The state is one record: a step is taken back by restoring it.
#pragma once

#include <array>
#include <string_view>

#include "shell/fixed_text.h"
#include "synthesis/ladder_problem.h"
#include "synthesis/quadruplet.h"
#include "synthesis/removals.h"

namespace kavrel {

inline constexpr int script_limit = 300;
inline constexpr int script_warning = 290;  // words after which the storage is getting full
inline constexpr int record_limit = 75;
inline constexpr int quadruplet_limit = 10;
inline constexpr int stage_limit = 40;
inline constexpr int root_pool = 450;  // numerator roots of all kept stages; as many of denominators
inline constexpr int prepared_limit = 4;

using Word = FixedText<4>;

struct Script {
    Table<Word, script_limit> JCONF;
    int count = 0;

    // Words separated by blanks or commas; what does not fit is left out.
    void append(std::string_view words);
};

// A removed compound section (quadruplet.h), the near port first, and its zero.
struct QuadrupletRecord {
    Table<WideReal, 7> SVALUE;
    int value_count = 0;
    BranchId MSICON{};  // of the compound branch
    double SFZR = 0;    // Hz
    double SFZI = 0;
};

struct LadderState {
    WorkingFunction F;
    Selection selection;
    bool formed = false;               // there is a working function
    int form = admittance;             // of the working function
    int position = 1;                  // next word of JCONF
    bool finished = false;             // "fini" has been met
    int nz = 0;                        // zeros left: at s = 0
    int ni = 0;                        // at infinity
    int ue = 0;                        // unit elements
    Table<int, finite_zero_limit> IC;  // [i] 1 while zero i is still available

    int prepared_count = 0;
    Table<int, prepared_limit> prepared_zero;  // [i] its number
    Table<WideReal, prepared_limit> SGZI;      // [i] its x
    int chosen_zero = 0;                       // of the last number 0

    int record_count = 0;
    Table<WideReal, record_limit> SVAL1;  // [k] series step: L, shunt step: C, normalised; unit element: Z
    Table<WideReal, record_limit> SVAL2;  // [k] the other element; -555 a unit element, -666 a quadruplet
    Table<double, record_limit> SFR;      // [k] Hz of the zero that the step realises, 0: none
    Table<int, record_limit> MIND;        // [k] odd: series branch, even: shunt branch
    Table<int, record_limit> SIMP;        // [k] 0 a simple step, -1 the inner part of a pair, or a part that merges
    int quadruplet_count = 0;
    Table<QuadrupletRecord, quadruplet_limit> QUADS;  // SVAL1 of its record says which
};

inline constexpr double unit_element_mark = -555.0;
inline constexpr double quadruplet_mark = -666.0;

enum class ScriptFault {
    none,
    incorrect_configuration,
    function_missing,
    zero_not_available,
    complex_zero,
    zero_not_prepared,
    incorrect_zero,
    no_acceptable_zero,
    no_unit_elements,
    extreme_impossible,
    extreme_zero_missing,
    pole_missing,
    pole_missing_double,
    value_missing,
    zero_missing,
    roots_missing,
    double_roots_missing,
    unit_element_error,
    quadruplet_error,
    incomplete_circuit,
    records_full,
    stopped,  // by the watcher
};

struct ScriptMessage {
    ScriptFault fault;
    std::string_view text;
};

inline constexpr std::array<ScriptMessage, 21> script_messages = {{
    {ScriptFault::incorrect_configuration, " **** Incorrect configuration specification ****"},
    {ScriptFault::function_missing, " Specified function does not exist or is incorrect"},
    {ScriptFault::zero_not_available, " **** Indicated zero is not available ****"},
    {ScriptFault::complex_zero, " **** Wrong (complex) zero was specified ****"},
    {ScriptFault::zero_not_prepared, " **** Zero has not been prepared ****"},
    {ScriptFault::incorrect_zero, " **** Incorrect zero specified ****"},
    {ScriptFault::no_acceptable_zero, " Acceptable transmission zero could not be found"},
    {ScriptFault::no_unit_elements, " **** No more unit elements ****"},
    {ScriptFault::extreme_impossible, " **** full removal of zero at extreme frequency was impossible ****"},
    {ScriptFault::extreme_zero_missing, " **** the zero created at extreme frequency was not found ****"},
    {ScriptFault::pole_missing, " **** Indicated pole is not present ****"},
    {ScriptFault::pole_missing_double, " **** Indicated pole was not present ****"},
    {ScriptFault::value_missing, " **** Value1 to be removed is not specified ****"},
    {ScriptFault::zero_missing, " **** Zero just created was not found ****"},
    {ScriptFault::roots_missing, " **** Roots of remainder were not found ****"},
    {ScriptFault::double_roots_missing, " **** New numerator roots were not found for double zero shifting ****"},
    {ScriptFault::unit_element_error, " **** Error in unit element extraction ****"},
    {ScriptFault::quadruplet_error, " **** Required zeros were not found in the case of quadruplets of zeros ****"},
    {ScriptFault::incomplete_circuit, " **** Incomplete circuit ****"},
    {ScriptFault::records_full, " storage is full, this stage is now nonrecoverable"},
    {ScriptFault::stopped, stopped_line},
}};
[[nodiscard]] std::string_view messageOf(ScriptFault fault);

inline constexpr std::string_view storage_warning =
    " *** Warning *** storage is getting full, this is the last branch you should try";

struct [[nodiscard]] ScriptVerdict {
    ScriptFault fault = ScriptFault::none;
    int position = 0;          // word at which the refused sentence begins
    bool storage_low = false;  // the script has passed its 290th word
    bool stage_lost = false;   // the history had no room for a state

    [[nodiscard]] constexpr bool good() const { return fault == ScriptFault::none; }
};

// The state before the first word: all zeros available, `form` that of the function to be selected.
[[nodiscard]] LadderState start_state(const LadderProblem& problem, const Selection& selection);

// States before the last sentences, for stepping back.
struct LadderHistory {
    Table<LadderState, stage_limit> stages;
    Table<int, stage_limit> STAGE;  // [i] number of the sentence that followed stages(i)
    int count = 0;
    int sentences = 0;  // so far

    // False when the stage is not kept: all are in use, or its roots would be too many for the pools.
    bool push(const LadderState& state);
    // Back to the state `back` sentences ago. False when there were not so many, or that state was not kept: the
    // history is backed up all the same then, and older states can be asked for.
    [[nodiscard]] bool restore(int back, LadderState& state);
};

// Runs the words from state.position on up to "end", "fini" or the end of the script. A refused sentence leaves the
// state as it was before it, with position at its first word, as does the watcher who stops the run. With a history
// each state is pushed before its sentence.
ScriptVerdict runScript(const LadderProblem& problem, const Script& script, Watcher& watcher, LadderState& state,
                        LadderHistory* history = nullptr);

}  // namespace kavrel
