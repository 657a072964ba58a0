#include "iir/section_order.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <functional>
#include <numeric>
#include <random>
#include <system_error>
#include <thread>

#include "iir/edits.h"
#include "iir/noise_gain.h"
#include "shell/edited.h"

namespace kavrel {

namespace {

constexpr std::size_t round_count = 15;

using Row = std::vector<double>;               // a value at each node of the unit circle
using Permutation = std::vector<std::size_t>;  // [section] its factor, both from 0
using Stopped = std::function<bool()>;

// Where a search begins, and from the local step on the best that there is about it.
struct Start {
    Permutation numerator;
    Permutation denominator;
    double noise_before = 0;
    double noise = 0;
};

struct Problem {
    explicit Problem(const CascadeForm& cascade);

    SectionPowers powers;
    std::vector<Row> squares;  // [k] of denominator k, the inverse of powers.inverses[k]
    double level = 1;          // power of CK and of all the means
};

class LocalStep {
public:
    explicit LocalStep(const Problem& problem);

    // Replaces the denominators of a start by the first best of all exchanges of two of them. False when stopped.
    bool improve(Start& start, const Stopped& stopped);

private:
    void take(const Start& start);
    bool exchange_all(const Permutation& denominators, const Stopped& stopped);
    [[nodiscard]] double noise(const Permutation& denominators, std::size_t i, std::size_t j) const;
    [[nodiscard]] std::size_t at(std::size_t k, std::size_t i, std::size_t j) const { return (k * n_ + i) * n_ + j; }

    const Problem& problem_;
    std::size_t n_;
    std::vector<Row> leading_, trailing_;  // [k] power density of w_k; of the output, with the noise at section k
    std::vector<double> F_, G_;            // [k] their sums: F(k)^2 and G(k)^2 over the means of their factors
    std::vector<double> F_exchanged_, G_exchanged_;  // [at(k, i, j)] after an exchange of i < j, where they change
    Row mixed_;
};

std::vector<Start> random_starts(std::size_t count, std::size_t sections, std::uint32_t seed);
Permutation random_permutation(std::size_t n, std::mt19937& engine);
Start natural_start(std::size_t sections);
bool improve_all(std::vector<Start>& starts, const Problem& problem, int threads, Watcher& watcher);
Assignment assignment_of(const Start& start);
int count_without_ones(const Table<double, iir_section_limit>& C1, const Table<double, iir_section_limit>& C2, int n);

}  // namespace

std::optional<OrderSearch> orderSections(const CascadeForm& cascade, std::uint32_t seed, int threads,
                                         Watcher& watcher) {
    const Problem problem(cascade);
    const auto sections = static_cast<std::size_t>(problem.powers.count);
    const std::size_t count = std::max<std::size_t>(sections / 2, 5);
    std::vector<Start> starts = random_starts(round_count * count, sections, seed);
    starts.push_back(natural_start(sections));
    if (!improve_all(starts, problem, threads, watcher)) return std::nullopt;
    const Start& natural = starts.back();
    OrderSearch search{.seed = seed, .starts = static_cast<int>(count), .natural = natural.noise_before};
    const auto less_noise = [](const auto& a, const auto& b) { return a.noise < b.noise; };
    for (auto first = starts.begin(); search.rounds.size() < round_count;) {
        const auto end = first + static_cast<std::ptrdiff_t>(count);
        const auto best = std::min_element(first, end, less_noise);
        search.rounds.push_back(assignment_of(natural.noise < best->noise ? natural : *best));
        first = end;
    }
    const auto best = std::min_element(search.rounds.begin(), search.rounds.end(), less_noise);
    search.best = static_cast<std::size_t>(best - search.rounds.begin());
    return search;
}

Lines order_lines(const OrderSearch& search) {
    const auto numbers = [](const std::vector<int>& list) {
        std::string text;
        for (const int number : list) text += edited<"(I3)">(number);
        return text;
    };
    Lines lines{edited<"(' Best assignment found in',I3,' random starts')">(search.starts)};
    int round = 0;
    for (const Assignment& best : search.rounds) {
        lines.push_back(edited<"(I3,3X,A)">(++round, numbers(best.numerator)));
        lines.push_back(edited<"(6X,A)">(numbers(best.denominator)));
        lines.push_back(edited<"(' Noise gain =',F12.1,4X,'db =',F8.2)">(best.noise, decibel_of(best.noise)));
        lines.push_back(' ' + std::string(79, '-'));
    }
    lines.push_back(edited<"(' Order as it was: db =',F8.2,', seed of the starts =',I11)">(
        decibel_of(search.natural), static_cast<long long>(search.seed)));
    return lines;
}

void apply_order(CascadeForm& cascade, const Assignment& assignment) {
    const int sections = section_count(cascade);
    for (int k = cascade.NNUM + 1; k <= sections; ++k) cascade.C1N(k) = cascade.C2N(k) = 0;
    for (int k = cascade.NDEN + 1; k <= sections; ++k) cascade.C1D(k) = cascade.C2D(k) = 0;
    for (auto* values : {&cascade.C1N, &cascade.C2N}) permute(*values, assignment.numerator);
    for (auto* values : {&cascade.C1D, &cascade.C2D}) permute(*values, assignment.denominator);
    cascade.NNUM = count_without_ones(cascade.C1N, cascade.C2N, sections);
    cascade.NDEN = count_without_ones(cascade.C1D, cascade.C2D, sections);
}

namespace {

Problem::Problem(const CascadeForm& cascade) : powers(cascade) {
    double amplitude = cascade.CK;
    for (std::size_t k = 0; k < powers.inverses.size(); ++k) {
        amplitude *= std::sqrt(powers.inverse_means[k] * powers.numerator_means[k]);
        Row& row = squares.emplace_back(powers.inverses[k]);
        for (double& value : row) value = 1 / value;
    }
    level = amplitude * amplitude;
}

LocalStep::LocalStep(const Problem& problem)
    : problem_(problem),
      n_(problem.squares.size()),
      leading_(n_, problem.powers.weights),
      trailing_(leading_),
      F_(n_),
      G_(n_),
      F_exchanged_(n_ * n_ * n_),
      G_exchanged_(n_ * n_ * n_),
      mixed_(problem.powers.weights) {}

bool LocalStep::improve(Start& start, const Stopped& stopped) {
    take(start);
    if (!exchange_all(start.denominator, stopped)) return false;
    start.noise = start.noise_before = noise(start.denominator, 0, 0);
    std::size_t first = 0, second = 0;
    for (std::size_t i = 0; i < n_; ++i) {
        for (std::size_t j = i + 1; j < n_; ++j) {
            const double exchanged = noise(start.denominator, i, j);
            if (exchanged < start.noise) start.noise = exchanged, first = i, second = j;
        }
    }
    std::swap(start.denominator[first], start.denominator[second]);
    return true;
}

// leading(k) = product of N_j, j < k, and of 1/D_j, j <= k; trailing(k) = product of N_j/D_j, j >= k.
void LocalStep::take(const Start& start) {
    const SectionPowers& powers = problem_.powers;
    const auto multiply = [&](const Row& row) {
        for (std::size_t x = 0; x < row.size(); ++x) mixed_[x] *= row[x];
    };
    const auto sum = [&] { return std::accumulate(mixed_.begin(), mixed_.end(), 0.0); };
    mixed_ = powers.weights;
    for (std::size_t k = 0; k < n_; ++k) {
        multiply(powers.inverses[start.denominator[k]]);
        leading_[k] = mixed_;
        F_[k] = sum();
        multiply(powers.numerators[start.numerator[k]]);
    }
    mixed_ = powers.weights;
    for (std::size_t k = n_; k-- > 0;) {
        multiply(powers.inverses[start.denominator[k]]);
        multiply(powers.numerators[start.numerator[k]]);
        trailing_[k] = mixed_;
        G_[k] = sum();
    }
}

// An exchange of i < j changes w_k for i <= k < j, where D_j takes the place of D_i, and the way from section k to the
// output for i < k <= j, where D_i takes that of D_j.
bool LocalStep::exchange_all(const Permutation& denominators, const Stopped& stopped) {
    const auto mix = [&](const Row& row, std::size_t without) {
        const Row& square = problem_.squares[denominators[without]];
        for (std::size_t x = 0; x < row.size(); ++x) mixed_[x] = row[x] * square[x];
    };
    const auto sum_with = [&](std::size_t section) {
        return sumSquares(mixed_, problem_.powers.inverses[denominators[section]]);
    };
    for (std::size_t k = 0; k < n_; ++k) {
        if (stopped()) return false;
        for (std::size_t i = 0; i <= k && k + 1 < n_; ++i) {
            mix(leading_[k], i);
            for (std::size_t j = k + 1; j < n_; ++j) F_exchanged_[at(k, i, j)] = sum_with(j);
        }
        for (std::size_t j = k; j < n_ && k > 0; ++j) {
            mix(trailing_[k], j);
            for (std::size_t i = 0; i < k; ++i) G_exchanged_[at(k, i, j)] = sum_with(i);
        }
    }
    return true;
}

// With the denominators of sections i <= j exchanged.
double LocalStep::noise(const Permutation& denominators, std::size_t i, std::size_t j) const {
    double first = 0, others = 0;
    for (std::size_t k = 0; k < n_; ++k) {
        const double F = i <= k && k < j ? F_exchanged_[at(k, i, j)] : F_[k];
        const double G = i < k && k <= j ? G_exchanged_[at(k, i, j)] : G_[k];
        const std::size_t denominator = denominators[k == i ? j : k == j ? i : k];
        (k == 0 ? first : others) += F * G * problem_.powers.inverse_means[denominator];
    }
    return noise_power(problem_.level * first, problem_.level * others);
}

// Ten permutations are drawn first, and not used.
std::vector<Start> random_starts(std::size_t count, std::size_t sections, std::uint32_t seed) {
    std::mt19937 engine(seed);
    for (int i = 1; i <= 10; ++i) random_permutation(sections, engine);
    std::vector<Start> starts(count);
    for (Start& start : starts) {
        start.numerator = random_permutation(sections, engine);
        start.denominator = random_permutation(sections, engine);
    }
    return starts;
}

// Each number in turn goes to a free place, any of them with the same chance.
Permutation random_permutation(std::size_t n, std::mt19937& engine) {
    Permutation free(n), permutation(n);
    std::iota(free.begin(), free.end(), std::size_t{0});
    for (std::size_t value = 0; value < n; ++value) {
        const auto u = static_cast<float>(engine() >> 8U) * 0x1p-24F;
        const auto t = std::min(static_cast<std::size_t>(static_cast<float>(free.size()) * u), free.size() - 1);
        permutation[free[t]] = value;
        free.erase(free.begin() + static_cast<std::ptrdiff_t>(t));
    }
    return permutation;
}

Start natural_start(std::size_t sections) {
    Permutation as_it_is(sections);
    std::iota(as_it_is.begin(), as_it_is.end(), std::size_t{0});
    return {as_it_is, as_it_is};
}

// The caller works, too, and asks the watcher for all.
bool improve_all(std::vector<Start>& starts, const Problem& problem, int threads, Watcher& watcher) {
    std::atomic<std::size_t> next = 0;
    std::atomic<bool> stop = false;
    const auto work = [&](LocalStep& step, const Stopped& stopped) {
        for (std::size_t s = next++; s < starts.size(); s = next++) {
            if (!step.improve(starts[s], stopped)) return;
        }
    };
    std::vector<LocalStep> steps(static_cast<std::size_t>(std::max(threads, 1)), LocalStep(problem));
    std::vector<std::jthread> helpers;
    helpers.reserve(steps.size());
    try {
        for (std::size_t i = 1; i < steps.size(); ++i) {
            helpers.emplace_back([&, i] { work(steps[i], [&] { return stop.load(); }); });
        }
    } catch (const std::system_error&) {
        // There are fewer threads: it takes longer.
    }
    work(steps[0], [&] { return stop = !watcher.go_on(); });
    helpers.clear();
    return !watcher.stopped();
}

Assignment assignment_of(const Start& start) {
    const auto numbers = [](const Permutation& permutation) {
        std::vector<int> list;
        for (const std::size_t factor : permutation) list.push_back(static_cast<int>(factor) + 1);
        return list;
    };
    return {numbers(start.numerator), numbers(start.denominator), start.noise};
}

// How many of the factors there are when those of 1 at the end are left out.
int count_without_ones(const Table<double, iir_section_limit>& C1, const Table<double, iir_section_limit>& C2, int n) {
    while (n > 0 && C1(n) == 0 && C2(n) == 0) --n;
    return n;
}

}  // namespace

}  // namespace kavrel
