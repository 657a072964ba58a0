#include "workshop/equal_values.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <string_view>
#include <vector>

#include "workshop/node_scaling.h"

namespace kavrel {

namespace {

using Column = std::vector<double>;

Refusal list_refusal(const Circuit& circuit, std::span<const int> list);
Column chain_values(const Circuit& circuit, std::span<const int> list);
Column node_matrix(const Column& X);
Column end_weights(std::size_t count, bool halved, bool inductive);

}  // namespace

Refusal equalise(const Circuit& circuit, std::span<const int> list, EndValues ends, ComputedRatios& ratios) {
    if (const Refusal wrong = list_refusal(circuit, list); !wrong.empty()) return wrong;
    const bool inductive = unpackBranch(circuit, list.front()).id == BranchId::inductor;
    const Column K = node_matrix(chain_values(circuit, list));
    const Column w = end_weights(list.size(), ends == EndValues::halved, inductive);
    Column s(list.size());
    if (scale_nodes(K, w, s) != NodeScalingVerdict::done) return "No convergence";
    const bool ascends = list.front() < list.back();
    ratios = {};
    for (std::size_t i = 0; i + 1 < s.size(); ++i) {
        const double n = ascends ? s[i] / s[i + 1] : s[i + 1] / s[i];
        ratios.t(++ratios.count) = n * n;
    }
    return {};
}

namespace {

// The tests are made one after the other for the whole list, as it is read.
Refusal list_refusal(const Circuit& circuit, std::span<const int> list) {
    constexpr std::string_view field = "branches";
    if (list.size() < 2) return {"Too few branches", field};
    if (list.front() % 2 == 0) return {"Take dual first, then repeat", field};
    if (!std::ranges::all_of(list, [&](int k) { return branchExists(circuit, k); }))
        return {"Nonexistent branch", field};
    if (!std::ranges::is_sorted(list, std::less_equal{}) && !std::ranges::is_sorted(list, std::greater_equal{}))
        return {"Branches are not in sequence", field};

    const BranchId first = unpackBranch(circuit, list.front()).id;
    const auto fits = [&](int k) {
        const BranchId id = unpackBranch(circuit, k).id;
        return id == first || id == BranchId::lc || (id == BranchId::unit_element && first == BranchId::inductor);
    };
    const auto later = list.subspan(1);
    const bool plain = first == BranchId::inductor || first == BranchId::capacitor;
    if (!plain || !std::ranges::all_of(later, fits)) return {"Incorrect branch types", field};
    if (!std::ranges::all_of(chain_values(circuit, list), [](double X) { return X > 0 && std::isfinite(X); }))
        return {"Negative branch value not allowed", field};
    const auto lies_in_series = [&](int k) {
        return k % 2 == 0 || unpackBranch(circuit, k).id == BranchId::unit_element;
    };
    if (!std::ranges::all_of(later, lies_in_series)) return {"All branches, except first, must be series", field};
    return {};
}

// Inductances and impedances of lines, or inverse capacitances.
Column chain_values(const Circuit& circuit, std::span<const int> list) {
    const bool capacitive = unpackBranch(circuit, list.front()).id == BranchId::capacitor;
    Column X;
    for (const int k : list) {
        const auto values = branch_values(circuit, unpackBranch(circuit, k));
        X.push_back(capacitive ? 1 / values.back() : values.front());
    }
    return X;
}

// Row by row.
Column node_matrix(const Column& X) {
    const std::size_t n = X.size();
    Column K(n * n, 0);
    K[0] = 1 / X[0];
    for (std::size_t i = 1; i < n; ++i) {
        K[(i - 1) * n + i - 1] += 1 / X[i];
        K[i * n + i] += 1 / X[i];
        K[(i - 1) * n + i] = K[i * n + i - 1] = -1 / X[i];
    }
    return K;
}

// The end values are halved: inductances, whose inverse is twice as large, or capacitances.
Column end_weights(std::size_t count, bool halved, bool inductive) {
    Column w(count, 1);
    if (halved) w.front() = w.back() = inductive ? 2 : 0.5;
    return w;
}

}  // namespace

}  // namespace kavrel
