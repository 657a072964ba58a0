#include "synthesis/order_search.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "shell/whole_part.h"

namespace kavrel {

namespace {

// Sentences that remove one zero of transmission, or two, and how they rank: the smaller, the earlier.
struct Move {
    std::string words;
    long double rank = 0;
};

// What is left, known by the zeros, the counts and the remainder at one point of the pass band.
struct Visited {
    unsigned zeros = 0;
    int nz = 0;
    int ni = 0;
    int negative = 0;  // elements on the way there
    long double value = 0;
};

constexpr long double probe = -0.77L;
constexpr long double same_value = 1e-9L;
constexpr long double made_pole_rank = 1.99L;  // behind all partial removals, in front of the complete ones
constexpr long double least_share = 1e-9L;     // of a pole that a partial removal leaves

class Search {
public:
    Search(const LadderProblem& problem, const SearchBounds& bounds, Watcher& watcher)
        : problem_(problem), bounds_(bounds), watcher_(watcher) {}

    // `negative`: elements so far.
    [[nodiscard]] bool go_on_from(const LadderState& state, int negative);
    [[nodiscard]] SearchVerdict verdict() const {
        if (watcher_.stopped()) return SearchVerdict::stopped;
        return work_ >= bounds_.work ? SearchVerdict::given_up : SearchVerdict::none_exists;
    }
    [[nodiscard]] Script& script() { return script_; }
    [[nodiscard]] const LadderState& end() const { return end_; }

private:
    [[nodiscard]] bool already_there(const LadderState& state, int negative);
    // `room`: for how many negative elements.
    [[nodiscard]] std::vector<Move> moves_from(const LadderState& state, int room) const;
    void add_quadruplets(const LadderState& state, const WorkingFunction& f, int form, int room,
                         std::vector<Move>& moves) const;
    void add_shifts(const LadderState& state, const WorkingFunction& f, int form, int room,
                    std::vector<Move>& moves) const;
    void add_double_shifts(const LadderState& state, const WorkingFunction& f, int form, int room,
                           std::vector<Move>& moves) const;
    void add_made_poles(const LadderState& state, const WorkingFunction& f, int form, std::vector<Move>& moves) const;
    void add_extremes(const LadderState& state, const WorkingFunction& f, int form, std::vector<Move>& moves) const;
    [[nodiscard]] bool last_words(LadderState state);

    const LadderProblem& problem_;
    const SearchBounds& bounds_;
    Watcher& watcher_;
    Script script_;
    LadderState end_;
    std::vector<Visited> visited_;
    int work_ = 0;
};

[[nodiscard]] std::string_view word_of_form(int form) { return form == impedance ? "imp" : "adm"; }
[[nodiscard]] std::string_view other_word(int form) { return form == impedance ? "adm" : "imp"; }

// The whole residue of an extreme pole, 0 where there is none.
[[nodiscard]] WideReal whole_residue(const WorkingFunction& f, ExtremeSide side);
// The residue to be removed so that `point` becomes a zero.
[[nodiscard]] WideReal shifting_residue(const WorkingFunction& f, ExtremeSide side, const WideReal& point);
[[nodiscard]] int negative_elements(const LadderState& state, int first_record);
// How partial removals rank that take these shares of their poles: positive ones by the larger, in front of those with
// a negative one. Nothing when there is no room for them, or one leaves nothing of its pole.
[[nodiscard]] std::optional<long double> rank_of(std::initializer_list<WideReal> shares, int room);

}  // namespace

SearchVerdict search_order(const LadderProblem& problem, const Selection& selection, const SearchBounds& bounds,
                           Watcher& watcher, Script& script, LadderState& state) {
    Search search(problem, bounds, watcher);
    search.script().append(selection.output_side ? "out" : "in");
    search.script().append(word_of(selection.numerator));
    search.script().append(word_of(selection.denominator));
    LadderState start = start_state(problem, selection);
    if (!runScript(problem, search.script(), watcher, start).good()) return SearchVerdict::none_exists;
    if (!search.go_on_from(start, 0)) return search.verdict();
    script = search.script();
    state = search.end();
    return SearchVerdict::found;
}

namespace {

bool Search::go_on_from(const LadderState& state, int negative) {
    if (already_there(state, negative)) return false;
    const std::vector<Move> moves = moves_from(state, bounds_.negative_elements - negative);
    if (moves.empty()) return last_words(state);
    const int words = script_.count;
    for (const Move& move : moves) {
        if (!watcher_.go_on() || verdict() != SearchVerdict::none_exists) return false;
        const int degree = reactance_degree(state.F);
        work_ += degree * degree;
        script_.append(move.words);
        LadderState next = state;
        if (runScript(problem_, script_, watcher_, next).good()) {
            const int then = negative + negative_elements(next, state.record_count + 1);
            if (then <= bounds_.negative_elements && go_on_from(next, then)) return true;
        }
        script_.count = words;
    }
    return false;
}

// Lines, when all else is removed.
bool Search::last_words(LadderState state) {
    const int words = script_.count;
    for (int i = 1; i <= state.ue; ++i) script_.append("ue");
    script_.append("fini");
    if (runScript(problem_, script_, watcher_, state).good() && state.finished) {
        end_ = state;
        return true;
    }
    script_.count = words;
    return false;
}

bool Search::already_there(const LadderState& state, int negative) {
    Visited here;
    for (int i = 1; i <= problem_.zero_count; ++i) here.zeros |= state.IC(i) == 1 ? 1U << i : 0U;
    here.nz = state.nz;
    here.ni = state.ni;
    here.negative = negative;
    WorkingFunction f = state.F;
    if (f.vanished()) return false;
    if (state.form == admittance) invert(f);
    here.value = rounded(quotient_at(f, probe));
    const auto same = [&](const Visited& there) {
        return there.zeros == here.zeros && there.nz == here.nz && there.ni == here.ni &&
               there.negative <= here.negative &&
               std::fabs(there.value - here.value) <= same_value * std::fabs(here.value);
    };
    if (std::any_of(visited_.begin(), visited_.end(), same)) return true;
    visited_.push_back(here);
    return false;
}

std::vector<Move> Search::moves_from(const LadderState& state, int room) const {
    std::vector<Move> moves;
    if (state.F.vanished()) return moves;
    for (const int form : {admittance, impedance}) {
        WorkingFunction f = state.F;
        if (form != state.form) invert(f);
        add_quadruplets(state, f, form, room, moves);
        add_shifts(state, f, form, room, moves);
        add_double_shifts(state, f, form, room, moves);
        add_extremes(state, f, form, moves);
        if (room > 0) add_made_poles(state, f, form, moves);
    }
    std::stable_sort(moves.begin(), moves.end(), [](const Move& p, const Move& q) { return p.rank < q.rank; });
    return moves;
}

// The near element is tested before the section is removed.
void Search::add_quadruplets(const LadderState& state, const WorkingFunction& f, int form, int room,
                             std::vector<Move>& moves) const {
    for (int n = 1; n <= problem_.zero_count; ++n) {
        if (state.IC(n) != 1 || !problem_.is_complex(n)) continue;
        for (const ExtremeSide side : {ExtremeSide::infinity, ExtremeSide::zero}) {
            const bool at_zero = side == ExtremeSide::zero;
            if ((at_zero ? state.nz : state.ni) < 1) continue;
            const WideReal whole = whole_residue(f, side);
            if (!(whole > 0)) continue;
            QuadrupletValues section;
            if (!quadruplet_values(f, {problem_.zero_x(n), problem_.zero_x_im(n)}, at_zero, section)) continue;
            const WideReal near = at_zero ? 1 / section.near_shunt : section.near_shunt;
            if (!(near < whole) || (near > 0 ? 0 : 1) > room) continue;
            moves.push_back({fmt::format("{} d c {} {}", word_of_form(form), at_zero ? "z" : "i", n),
                             near > 0 ? rounded(near / whole) - 1 : 2});
        }
    }
}

void Search::add_shifts(const LadderState& state, const WorkingFunction& f, int form, int room,
                        std::vector<Move>& moves) const {
    for (const ExtremeSide side : {ExtremeSide::infinity, ExtremeSide::zero}) {
        const bool at_zero = side == ExtremeSide::zero;
        if ((at_zero ? state.nz : state.ni) < 1) continue;
        const WideReal whole = whole_residue(f, side);
        if (!(whole > 0)) continue;
        for (int n = 1; n <= problem_.zero_count; ++n) {
            if (state.IC(n) != 1 || problem_.is_complex(n)) continue;
            const auto rank = rank_of({shifting_residue(f, side, problem_.zero_x(n)) / whole}, room);
            if (!rank) continue;
            const std::string_view word = at_zero ? "z" : "i";
            moves.push_back(
                {fmt::format("{} s p {} {} {} s c {}", word_of_form(form), word, n, other_word(form), n), *rank});
        }
    }
}

void Search::add_double_shifts(const LadderState& state, const WorkingFunction& f, int form, int room,
                               std::vector<Move>& moves) const {
    if (state.nz < 1 || state.ni < 1) return;
    const WideReal low = whole_residue(f, ExtremeSide::zero);
    const WideReal high = whole_residue(f, ExtremeSide::infinity);
    if (!(low > 0) || !(high > 0)) return;
    for (int m = 1; m <= problem_.zero_count; ++m) {
        if (state.IC(m) != 1 || problem_.is_complex(m)) continue;
        for (int n = 1; n <= problem_.zero_count; ++n) {
            if (n == m || state.IC(n) != 1 || problem_.is_complex(n)) continue;
            if (problem_.is_high(m) || !problem_.is_high(n)) continue;
            WorkingFunction g = f;
            WideReal at_zero, at_infinity;
            if (doubleSame(g, problem_.zero_x(m), problem_.zero_x(n), at_zero, at_infinity, true) !=
                RemovalFault::none) {
                continue;
            }
            const auto rank = rank_of({1 / at_zero / low, at_infinity / high}, room);
            if (!rank) continue;
            moves.push_back(
                {fmt::format("{} d p z i {} {} {} s c {} s c {}", word_of_form(form), m, n, other_word(form), m, n),
                 *rank});
        }
    }
}

// Where the signs are wrong on both forms, a line taken first turns them.
void Search::add_made_poles(const LadderState& state, const WorkingFunction& f, int form,
                            std::vector<Move>& moves) const {
    bool zeros_left = false;
    for (int n = 1; n <= problem_.zero_count; ++n) {
        if (state.IC(n) != 1 || problem_.is_complex(n)) continue;
        zeros_left = true;
        for (const ExtremeSide side : {ExtremeSide::infinity, ExtremeSide::zero}) {
            if ((side == ExtremeSide::zero ? state.nz : state.ni) > 0) continue;
            WorkingFunction g = f;
            WideReal value;
            if (extreme(g, RemovalMode::made, side, problem_.zero_x(n), value, true) != RemovalFault::none) continue;
            moves.push_back({fmt::format("{} s p {} {} {} s c {}", word_of_form(form),
                                         side == ExtremeSide::zero ? "z" : "i", n, other_word(form), n),
                             made_pole_rank});
        }
    }
    if (zeros_left && state.ue > 0 && state.nz + state.ni == 0 && form == state.form) moves.push_back({"ue", 2});
}

void Search::add_extremes(const LadderState& state, const WorkingFunction& f, int form,
                          std::vector<Move>& moves) const {
    const std::string_view word = word_of_form(form);
    if (state.ni > 0 && whole_residue(f, ExtremeSide::infinity) > 0)
        moves.push_back({fmt::format("{} s c i", word), 2});
    if (state.nz > 0 && whole_residue(f, ExtremeSide::zero) > 0) moves.push_back({fmt::format("{} s c z", word), 3});
}

WideReal whole_residue(const WorkingFunction& f, ExtremeSide side) {
    WorkingFunction g = f;
    WideReal value;
    if (extreme(g, RemovalMode::complete, side, 0, value, true) != RemovalFault::none) return 0;
    return side == ExtremeSide::zero ? 1 / value : value;
}

WideReal shifting_residue(const WorkingFunction& f, ExtremeSide side, const WideReal& point) {
    WorkingFunction g = f;
    WideReal value;
    if (extreme(g, RemovalMode::shifting, side, point, value, true) != RemovalFault::none) return 0;
    return side == ExtremeSide::zero ? 1 / value : value;
}

int negative_elements(const LadderState& state, int first_record) {
    int count = 0;
    for (int k = first_record; k <= state.record_count; ++k) {
        if (state.SVAL2(k) == WideReal{unit_element_mark}) {
            count += state.SVAL1(k) <= 0 ? 1 : 0;
        } else if (state.SVAL2(k) == WideReal{quadruplet_mark}) {
            const QuadrupletRecord& section = state.QUADS(whole_part(rounded(state.SVAL1(k))));
            for (int i = 1; i <= section.value_count; ++i) count += section.SVALUE(i) <= 0 ? 1 : 0;
        } else {
            count += (state.SVAL1(k) < 0 ? 1 : 0) + (state.SVAL2(k) < 0 ? 1 : 0);
        }
    }
    return count;
}

std::optional<long double> rank_of(std::initializer_list<WideReal> shares, int room) {
    long double largest = 0;
    long double negative = 0;
    for (const WideReal& share : shares) {
        if (!(share < 1 - WideReal{least_share}) || share.sign() == 0) return {};
        const long double size = rounded(share);
        if (size < 0) --room, negative -= size;
        largest = std::fmax(largest, size);
    }
    if (room < 0) return {};
    return negative == 0 ? largest : 1 + negative / (1 + negative);
}

}  // namespace

}  // namespace kavrel
