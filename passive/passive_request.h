// What the small forms of the passive Segment ask for. A form opens with what was entered last.
#pragma once

#include <algorithm>
#include <array>
#include <type_traits>

#include "circuit/branch_kinds.h"
#include "exchange/transfer_request.h"
#include "shell/fixed_text.h"
#include "shell/form_list.h"
#include "shell/frequency_request.h"
#include "shell/plot_form.h"
#include "shell/print_form.h"
#include "shell/time_request.h"
#include "workshop/coupled_sections.h"
#include "workshop/equal_values.h"
#include "workshop/preferred.h"

namespace kavrel {

// What "Insert" offers: the kinds of branches whose values are typed in, numbered from 1 in the order of their table,
// and behind them a copy of a branch.
inline constexpr auto insertable_kinds = [] {
    constexpr auto is_typed = [](const BranchKind& kind) { return !kind.typed.empty(); };
    std::array<BranchId, std::count_if(branch_kinds.begin(), branch_kinds.end(), is_typed)> ids{};
    auto place = ids.begin();
    for (const BranchKind& kind : branch_kinds) {
        if (is_typed(kind)) *place++ = kind.id;
    }
    return ids;
}();
inline constexpr int insert_copy = static_cast<int>(insertable_kinds.size()) + 1;

[[nodiscard]] constexpr int insert_choice(BranchId id) {
    const auto place = std::find(insertable_kinds.begin(), insertable_kinds.end(), id);
    return static_cast<int>(place - insertable_kinds.begin()) + 1;
}
[[nodiscard]] constexpr const BranchKind& insert_kind(int choice) {
    return branch_kinds[insertable_kinds[static_cast<std::size_t>(choice - 1)]];
}

// Values are in the user's units; those of stubs and lines are impedances in ohm.
struct InsertRequest {
    int element = insert_choice(BranchId::resistor);
    int branch = 0;     // number of the new branch
    double value1 = 0;  // R, L, C or Z; of several values the first
    double value2 = 0;
    double value3 = 0;
    int copy_of = 0;  // branch that is copied
};

// New values of a branch: `first` of a resistor, an inductor or a unit element, `second` of a capacitor. Those that it
// has where none are entered.
struct ChangeRequest {
    int branch = 0;
    double first = 0;
    double second = 0;
};

struct TwoBranches {
    int branch1 = 0;
    int branch2 = 0;
};

// Of an inductor or a capacitor: into a part of this value, or of that of branch `match` (of -`match` the magnitude
// with a minus), or into halves.
struct SplitRequest {
    int branch = 0;
    double value = 0;  // in the user's units; of a stub its impedance
    int match = 0;
    bool half = false;
};

enum class TeePiSide : int { up = 1, down = 2 };

struct TeePiRequest {
    int branch = 0;
    TeePiSide side = TeePiSide::up;
};

// The items of the menu that send "tr  ", and those that send "mtr ": a form that opens is that of one of them.
enum class NortonKind { simple, computed, matching };
enum class MultipleKind { equal_inductors, equal_capacitors, specified };

struct TripletRequest {
    int branch = 0;  // the resonant one in the middle, or a triplet
    OtherCoupling coupling = OtherCoupling::none;
};

struct NortonRequest {
    NortonKind kind = NortonKind::simple;
    TwoBranches branches;
    double ratio = 0;  // of impedances, n^2; 0: the largest one, or the smallest
    int index = 0;     // of a computed ratio
    int match1 = 0;    // branch, old or new, that is to have the value
    int match2 = 0;    // of this one
};

enum class SideBranches : int { inductive = 1, capacitive = 2 };

// Of a coupled section: what lies from its nodes to ground.
struct MultipleRequest {
    MultipleKind kind = MultipleKind::equal_inductors;
    int branch = 0;
    SideBranches couplings = SideBranches::inductive;
    double value1 = 0;  // at node 2, in the user's units; of stubs impedances
    double value2 = 0;  // at node 3
    double value3 = 0;  // at node 4 of a quadruplet
};

struct BandEdges {
    double lower = 0;  // in the user's unit of frequency
    double upper = 0;
};

enum class DisplayChoice : int { off = 1, on = 2 };

struct PassiveRequest {
    FrequencyRequest frequency;
    double inductor_q = 0;  // 0 lossless; below 0 at the normalisation frequency
    double capacitor_q = 0;
    TimeRequest time;
    PlotChoice frequency_plot;
    PlotChoice time_plot;
    InsertRequest insert;
    ChangeRequest change;
    int deleted_branch = 0;
    int resonant_branch = 0;
    int resonant_branch2 = 0;  // 0: the resonance of a single branch
    TwoBranches combined;
    SplitRequest split;
    TwoBranches interchanged;
    TeePiRequest tee_pi;
    TwoBranches exchanged;  // resonances
    TwoBranches converted;  // the resonant one and the element
    TwoBranches latticed;   // the ends of the section
    int included_in = 0;    // lattice
    TripletRequest triplet;
    int coupled_four = 0;  // the branch in the middle
    NortonRequest norton;
    FormList<equalised_limit, 1> equalised;
    MultipleRequest multiple;
    double impedance_factor = 0;  // below 0: the level of branch 1
    double frequency_factor = 0;
    PercentClass percent_class = PercentClass::half_percent;
    BandEdges rejected;
    DisplayChoice display = DisplayChoice::off;
    FixedText<80> title;
    TransferFileType file_type = TransferFileType::scompact;
    TransferDialect dialect = TransferDialect::classic;
    bool variable_block = false;
    PrintTarget printing_to = PrintTarget::none;
    const Circuit* circuit = nullptr;  // that the forms are about
};

// What a cell of a branch is typed as, in the user's units: that of a stub or line as an impedance.
[[nodiscard]] double typed_value(const Circuit& circuit, char letter, double value, const UnitSet& units);

// The other way: what a cell holds of it, infinite for a capacitive stub of no impedance.
[[nodiscard]] double stored_value(const Circuit& circuit, char letter, double typed, const UnitSet& units);

static_assert(std::is_trivially_copyable_v<PassiveRequest>);

}  // namespace kavrel
