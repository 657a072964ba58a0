#include "workshop/norton.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "circuit/branch_kinds.h"
#include "workshop/interchange.h"
#include "workshop/scaling.h"
#include "workshop/section.h"

namespace kavrel {

namespace {

constexpr std::string_view inappropriate = "Branches are inappropriate";
constexpr double negligible = 2e-8;  // of the element that was there
constexpr double rounding = 1e-12;

constexpr std::size_t load_side = 0, source_side = 1;

// Two branches of a section: which of them is the centre.
struct Pair {
    int centre = 0, beside = 0;
    bool tee = false;
};

bool is_line(BranchId id) { return branch_kinds[id].structure == Structure::line; }
bool is_slot_element(const Circuit& circuit, int k) { return branch_kinds[unpackBranch(circuit, k).id].slot_element(); }
bool is_series(int k) { return k % 2 == 0; }
std::size_t kind_of(BranchId id) { return id == BranchId::inductor ? 0 : 1; }
constexpr BranchId id_of_kind[] = {BranchId::inductor, BranchId::capacitor};

std::optional<Pair> pair_of(const Circuit& circuit, int k1, int k2);
bool bring_together(Circuit& circuit, Pair& pair);
void find_centre(const Circuit& circuit, const Pair& pair, NortonSection& section);
void find_sides(const Circuit& circuit, const Pair& pair, NewElement element, NortonSection& section);
[[nodiscard]] bool insert_sides(Circuit& circuit, int centre, NortonSection& section);

// What the matrix holds: a zero stays zero.
double inverted(double value) { return value == 0 ? 0 : 1 / value; }
double get(const Circuit& circuit, const NortonElement& element) {
    if (element.cell == 0) return 0;
    return element.inverse ? inverted(circuit.VALUE(element.cell)) : circuit.VALUE(element.cell);
}
void set(Circuit& circuit, const NortonElement& element, double entry) {
    circuit.VALUE(element.cell) = element.inverse ? inverted(entry) : entry;
}

void keep_source(Circuit& circuit, int former_last);

// An entry of the matrix as a polynomial in t.
struct Entry {
    double constant = 0, linear = 0, square = 0;
    [[nodiscard]] double at(double t) const { return constant + t * (linear + t * square); }
};
Entry side_entry(double x, double y, std::size_t side);
double zero_of_side(double x, double y, std::size_t side);
double ratio_of(double t, bool tee) { return tee ? t * t : 1 / (t * t); }
double t_of(double ratio, bool tee) { return tee ? std::sqrt(ratio) : 1 / std::sqrt(ratio); }

// The same of any element of a branch, with its letter. A number may be that of a branch of the section, of one before,
// or else of one now: all their elements, in this order.
struct Matched {
    Entry entry;
    char letter = ' ';  // none of a quadruplet
};
std::vector<Matched> matched_values(const Circuit& before, const Circuit& circuit, const NortonSection& section,
                                    int number);
bool is_comparable(const Circuit& circuit, char a, char b);
std::optional<double> common_ratio(const Entry& a, const Entry& b, bool tee, double largest);

// The number of branch k of the circuit before.
int number_now(const Circuit& before, const Circuit& circuit, int k);

// The branch that has a cell, 0 where none has.
int branch_of(const Circuit& circuit, int cell);
int centre_of(const Circuit& circuit, const NortonSection& section);

}  // namespace

Refusal nortonSection(Circuit& circuit, int k1, int k2, NewElement element, NortonSection& section) {
    if (!branchExists(circuit, k1)) return {no_norton_branch, "branch1"};
    if (!branchExists(circuit, k2)) return {no_norton_branch, "branch2"};
    auto pair = pair_of(circuit, std::min(k1, k2), std::max(k1, k2));
    if (!pair) return {inappropriate, "branch2"};

    Circuit prepared = circuit;
    if (!bring_together(prepared, *pair)) return {inappropriate, "branch2"};
    NortonSection found{.tee = pair->tee, .near = pair->beside < pair->centre ? load_side : source_side};
    find_centre(prepared, *pair, found);
    find_sides(prepared, *pair, element, found);
    if (!insert_sides(prepared, pair->centre, found)) return {message_of(CircuitVerdict::storage_full)};
    circuit = prepared;
    section = found;
    return {};
}

double largestRatio(const Circuit& circuit, const NortonSection& section) {
    double nearest = 0;
    for (const LikeElements& like : section.kinds) {
        if (like.centre.cell == 0) continue;
        double t = zero_of_side(get(circuit, like.centre), get(circuit, like.side[section.near]), section.near);
        if (!(t > 0 && std::isfinite(t))) t = 1;
        if (nearest == 0 || std::fabs(std::log(t)) < std::fabs(std::log(nearest))) nearest = t;
    }
    return ratio_of(nearest, section.tee);
}

Refusal matchingRatio(const Circuit& before, const Circuit& circuit, const NortonSection& section, int match1,
                      int match2, std::optional<double>& ratio) {
    const auto first = matched_values(before, circuit, section, match1);
    if (first.empty()) return {no_norton_branch, "match1"};
    const auto second = matched_values(before, circuit, section, match2);
    if (second.empty()) return {no_norton_branch, "match2"};
    for (const Matched& a : first) {
        for (const Matched& b : second) {
            if (!is_comparable(circuit, a.letter, b.letter)) continue;
            ratio = common_ratio(a.entry, b.entry, section.tee, largestRatio(circuit, section));
            return {};
        }
    }
    return {inappropriate, "match2"};
}

double settledRatio(const Circuit& circuit, const NortonSection& section, double ratio) {
    const double t = t_of(ratio, section.tee);
    for (const LikeElements& like : section.kinds) {
        if (like.centre.cell == 0) continue;
        for (const std::size_t side : {section.near, 1 - section.near}) {
            const double x = get(circuit, like.centre), y = get(circuit, like.side[side]);
            if (y == 0 || std::fabs(side_entry(x, y, side).at(t)) >= negligible * std::fabs(y)) continue;
            if (const double zero = zero_of_side(x, y, side); zero > 0 && std::isfinite(zero))
                return ratio_of(zero, section.tee);
        }
    }
    return ratio;
}

void norton(Circuit& circuit, const NortonSection& section, double ratio) {
    const double t = t_of(settledRatio(circuit, section, ratio), section.tee);
    const int centre = centre_of(circuit, section);
    const Circuit before = circuit;
    if (const int behind = unpackBranch(circuit, centre).kn; behind != 0)
        scale(circuit, ratio_of(t, section.tee), 1, behind);
    for (const LikeElements& like : section.kinds) {
        if (like.centre.cell == 0) continue;
        const double x = get(before, like.centre);
        set(circuit, like.centre, x * t);
        for (const std::size_t side : {load_side, source_side}) {
            if (like.side[side].cell == 0) continue;
            const double y = get(before, like.side[side]);
            const double entry = side_entry(x, y, side).at(t);
            set(circuit, like.side[side], entry);
            if (std::fabs(entry) > rounding * (std::fabs(y) + std::fabs(x * t))) continue;
            int k = branch_of(circuit, like.side[side].cell);
            (void)deleteBranch(circuit, k);
        }
    }
    keep_source(circuit, before.klast);
}

int firstBranch(const Circuit& circuit, const NortonSection& section) {
    int first = centre_of(circuit, section);
    for (const LikeElements& like : section.kinds) {
        if (like.side[load_side].cell != 0) first = std::min(first, branch_of(circuit, like.side[load_side].cell));
    }
    return first;
}

namespace {

std::optional<Pair> pair_of(const Circuit& circuit, int k1, int k2) {
    const BranchId id1 = unpackBranch(circuit, k1).id, id2 = unpackBranch(circuit, k2).id;
    const bool apart = is_series(k1) != is_series(k2);
    if (is_plain(id1) && id1 == id2 && apart) {
        return is_series(k1) ? Pair{.centre = k1, .beside = k2} : Pair{.centre = k2, .beside = k1};
    }
    for (const auto& [centre, beside] : {std::pair{k1, k2}, std::pair{k2, k1}}) {
        const BranchId id = unpackBranch(circuit, centre).id, like = unpackBranch(circuit, beside).id;
        if (id == BranchId::lc && is_plain(like) && apart) return Pair{centre, beside, !is_series(centre)};
        const bool stub = like == (is_series(beside) ? BranchId::capacitor : BranchId::inductor);
        if (is_line(id) && stub) return Pair{centre, beside, is_series(beside)};
    }
    return std::nullopt;
}

// What lies between commutes with the one or with the other.
bool bring_together(Circuit& circuit, Pair& pair) {
    int& low = pair.centre < pair.beside ? pair.centre : pair.beside;
    int& high = pair.centre < pair.beside ? pair.beside : pair.centre;
    const auto alike = [&](int a, int b) {
        return is_slot_element(circuit, a) && is_slot_element(circuit, b) && is_series(a) == is_series(b);
    };
    int below = low, above = high;
    for (int k = unpackBranch(circuit, below).kn; k != high && alike(low, k); k = unpackBranch(circuit, k).kn)
        below = k;
    for (int k = unpackBranch(circuit, above).kp; k != below && alike(high, k); k = unpackBranch(circuit, k).kp)
        above = k;
    if (unpackBranch(circuit, below).kn != above) return false;
    if (below != low && !interchangeBranches(circuit, low, below).empty()) return false;
    if (above != high && !interchangeBranches(circuit, above, high).empty()) return false;
    low = below;
    high = above;
    return true;
}

bool is_inverse(char letter, bool tee) { return (letter == 'C') == tee; }

void find_centre(const Circuit& circuit, const Pair& pair, NortonSection& section) {
    const Branch branch = unpackBranch(circuit, pair.centre);
    const std::string_view letters = branch_kinds[branch.id].cells;
    for (std::size_t i = 0; i < letters.size(); ++i) {
        const bool capacitive = letters[i] == 'C' || (letters[i] == 'Z' && pair.tee);
        section.kinds[capacitive ? 1 : 0].centre = {branch.i1 + static_cast<int>(i), is_inverse(letters[i], pair.tee)};
    }
}

void find_sides(const Circuit& circuit, const Pair& pair, NewElement element, NortonSection& section) {
    const auto step = [&](int k, std::size_t side) {
        const Branch branch = unpackBranch(circuit, k);
        return side == load_side ? branch.kp : branch.kn;
    };
    const Branch named = unpackBranch(circuit, pair.beside);
    const bool resonant = unpackBranch(circuit, pair.centre).id == BranchId::lc;
    section.kinds[kind_of(named.id)].side[section.near].cell = named.i1;
    for (const std::size_t side : {load_side, source_side}) {
        for (std::size_t kind = 0; kind < section.kinds.size(); ++kind) {
            LikeElements& like = section.kinds[kind];
            like.side[side].inverse = is_inverse(kind == 0 ? 'L' : 'C', pair.tee);
            const bool joins = resonant && (kind != kind_of(named.id) || element == NewElement::joins);
            if (like.side[side].cell != 0 || like.centre.cell == 0 || !joins) continue;
            for (int k = step(pair.centre, side); k > 1; k = step(k, side)) {
                if (!is_slot_element(circuit, k) || is_series(k) != pair.tee) break;
                const Branch branch = unpackBranch(circuit, k);
                if (branch.id != id_of_kind[kind]) continue;
                like.side[side].cell = branch.i1;
                break;
            }
        }
    }
}

// Inserts an element of value 0 before or behind the centre, as near to it as parity and distances allow. Where its
// neighbours leave no such slot those above move up.
CircuitVerdict insert_beside(Circuit& circuit, int centre, std::size_t side, BranchId id, bool series) {
    const auto distance = [&](int k) { return is_slot_element(circuit, k) ? 1 : 2; };
    const int below = side == load_side ? unpackBranch(circuit, centre).kp : centre;
    const int above = unpackBranch(circuit, below).kn;
    int lowest = below + distance(below), highest = lowest;
    if (is_series(lowest) != series) ++lowest;
    if (above != 0) {
        highest = above - distance(above);
        if (is_series(highest) != series) --highest;
        const int shift = std::max(0, lowest - highest);
        if (const auto verdict = shiftBranches(circuit, above, shift); verdict != CircuitVerdict::done) return verdict;
        highest += shift;
    }
    int k = side == load_side ? highest : lowest;
    return insertBranch(circuit, k, 0, 0, id);
}

bool insert_sides(Circuit& circuit, int centre, NortonSection& section) {
    const int cell = unpackBranch(circuit, centre).i1;
    // What would lie across a voltage source, or in series with a current source, does nothing but to make the circuit
    // look as driven by the other one.
    const bool idle = circuit.klast == centre && is_series(centre) != section.tee;
    for (std::size_t kind = 0; kind < section.kinds.size(); ++kind) {
        LikeElements& like = section.kinds[kind];
        for (const std::size_t side : {load_side, source_side}) {
            if (like.centre.cell == 0 || like.side[side].cell != 0 || (side == source_side && idle)) continue;
            const int k = branch_of(circuit, cell);
            if (insert_beside(circuit, k, side, id_of_kind[kind], section.tee) != CircuitVerdict::done) return false;
            like.side[side].cell = circuit.ilast;
        }
    }
    return true;
}

// Where there is no second termination the number of the last branch says what drives it. If the element before an
// ideal source has gone the centre is the last one: in series with a current source, or across a voltage source, it
// does nothing, and goes, too; a line moves on by one.
void keep_source(Circuit& circuit, int former_last) {
    int k = circuit.klast;
    if (unpackBranch(circuit, k).id == BranchId::resistor || is_series(k) == is_series(former_last)) return;
    (void)(is_slot_element(circuit, k) ? deleteBranch(circuit, k) : shiftBranches(circuit, k, 1));
}

Entry side_entry(double x, double y, std::size_t side) {
    return side == load_side ? Entry{y + x, -x, 0} : Entry{0, -x, y + x};
}

// The t other than 0 where the side's entry is 0.
double zero_of_side(double x, double y, std::size_t side) { return side == load_side ? (y + x) / x : x / (y + x); }

bool is_comparable(const Circuit& circuit, char a, char b) {
    const bool impedances = circuit.kind != CircuitKind::lumped && a != 'C' && b != 'C';
    return a != ' ' && b != ' ' && (a == b || impedances);
}

int number_now(const Circuit& before, const Circuit& circuit, int k) {
    const Branch branch = unpackBranch(before, k);
    for (int now = circuit.klast; now != 0; now = unpackBranch(circuit, now).kp) {
        const Branch other = unpackBranch(circuit, now);
        if (other.id == branch.id && other.i1 == branch.i1) return now;
    }
    return 0;
}

std::vector<Matched> matched_values(const Circuit& before, const Circuit& circuit, const NortonSection& section,
                                    int number) {
    const auto entry_of = [&](int cell) -> std::optional<Entry> {
        for (const LikeElements& like : section.kinds) {
            if (like.centre.cell == 0) continue;
            const double x = get(circuit, like.centre);
            if (like.centre.cell == cell) return Entry{.linear = x};
            for (const std::size_t side : {load_side, source_side}) {
                if (like.side[side].cell == cell) return side_entry(x, get(circuit, like.side[side]), side);
            }
        }
        return std::nullopt;
    };
    std::vector<int> branches;
    const bool is_now = branchExists(circuit, number);
    if (is_now && entry_of(unpackBranch(circuit, number).i1)) branches.push_back(number);
    if (branchExists(before, number)) branches.push_back(number_now(before, circuit, number));
    if (is_now) branches.push_back(number);

    std::vector<Matched> values;
    for (const int k : branches) {
        const Branch branch = unpackBranch(circuit, k);
        const std::string_view letters = branch_kinds[branch.id].cells;
        for (std::size_t i = 0; i < letters.size(); ++i) {
            const NortonElement element{branch.i1 + static_cast<int>(i), is_inverse(letters[i], section.tee)};
            const double value = get(circuit, element);
            const Entry beside = k < centre_of(circuit, section) ? Entry{.constant = value} : Entry{.square = value};
            values.push_back({entry_of(element.cell).value_or(beside), letters[i]});
        }
        if (letters.empty()) values.push_back({});
    }
    return values;
}

// Roots of a t^2 + b t + c above 0, computed without cancellation.
std::vector<double> positive_roots(double a, double b, double c) {
    const double discriminant = b * b - 4 * a * c;
    if (!(discriminant >= 0)) return {};
    const double q = -(b + std::copysign(std::sqrt(discriminant), b)) / 2;
    std::vector<double> roots;
    for (const double root : {q / a, c / q}) {
        if (root > 0 && std::isfinite(root)) roots.push_back(root);
    }
    return roots;
}

std::optional<double> common_ratio(const Entry& a, const Entry& b, bool tee, double largest) {
    const double limit = std::log(largest);
    std::optional<double> best;
    double best_rank = 0;
    for (const double t : positive_roots(a.square - b.square, a.linear - b.linear, a.constant - b.constant)) {
        const double ratio = ratio_of(t, tee);
        const double height = std::log(ratio);
        const bool within = height * limit >= 0 && std::fabs(height) <= std::fabs(limit) * (1 + negligible);
        const double rank = std::fabs(height) + (within ? 0 : 1e6);
        if (!best || rank < best_rank) {
            best = ratio;
            best_rank = rank;
        }
    }
    return best;
}

int branch_of(const Circuit& circuit, int cell) {
    for (int k = 1; k != 0; k = unpackBranch(circuit, k).kn) {
        const Branch branch = unpackBranch(circuit, k);
        if (!branch_values(circuit, branch).empty() && branch.i1 <= cell && cell <= branch.i1 + branch.in) return k;
    }
    return 0;
}

int centre_of(const Circuit& circuit, const NortonSection& section) {
    return branch_of(circuit, std::max(section.kinds[0].centre.cell, section.kinds[1].centre.cell));
}

}  // namespace

}  // namespace kavrel
