#include "iir/sampled_response.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "iir/steppers.h"

namespace kavrel {

namespace {

template <class Arithmetic>
SampledResponse run_form_of(const IirFilter& filter, Implementation form, AllpassOutput output,
                            const Arithmetic& arithmetic, const SampleGrid& grid, Watcher& watcher);
template <class Stepper>
TimeRows run(Stepper& stepper, const SampleGrid& grid, double T, Watcher& watcher);

using Pair = LanesOf<double>::Type;
double largest_state(const UnquantisedOf<Pair>&) { return 0; }
double largest_state(const PairedWords& arithmetic) { return arithmetic.largest_state(); }

}  // namespace

Refusal sampled_time_refusal(const TimeRequest& request) {
    if (!(request.start >= 0)) return {time_incorrect, "start"};
    if (!(request.stop > request.start)) return {time_incorrect, "stop"};
    return request.step >= 0 ? Refusal() : Refusal(time_incorrect, "step");
}

Refusal sample_grid(const TimeRequest& request, const UnitSet& units, double T, SampleGrid& grid) {
    if (Refusal wrong = sampled_time_refusal(request); !wrong.empty()) return wrong;
    constexpr double allowance = 1e-5, countable = 1e15;
    const auto samples = [&](double time) { return time * units.time_multiplier / T; };
    if (!(samples(request.stop) < countable)) return {time_incorrect, "stop"};
    if (!(samples(request.step) < countable)) return {time_incorrect, "step"};
    grid.first = static_cast<long long>(samples(request.start) + allowance) + 1;
    grid.last = static_cast<long long>(samples(request.stop) + allowance) + 1;
    grid.every = std::max(static_cast<long long>(samples(request.step) + 0.5), 1LL);
    return {};
}

std::string_view structure_name(Implementation form) {
    constexpr std::array<std::string_view, 5> names = {"cascade ", "parallel", "lattice ", "direct  ", "allpass "};
    const auto place = static_cast<std::size_t>(form) - 1;
    return place < names.size() ? names[place] : std::string_view();
}

SampledResponse sampled_response(const IirFilter& filter, Implementation form, AllpassOutput output,
                                 const WordLength& word, const SampleGrid& grid, Watcher& watcher) {
    return word.quantises() ? run_form_of(filter, form, output, PairedWords(word), grid, watcher)
                            : run_form_of(filter, form, output, UnquantisedOf<Pair>{}, grid, watcher);
}

namespace {

template <class Arithmetic>
SampledResponse run_form_of(const IirFilter& filter, Implementation form, AllpassOutput output,
                            const Arithmetic& arithmetic, const SampleGrid& grid, Watcher& watcher) {
    const auto response = [&](auto stepper) {
        SampledResponse sampled{.rows = run(stepper, grid, filter.T, watcher)};
        sampled.largest_state = largest_state(stepper.arithmetic());
        return sampled;
    };
    switch (form) {
        case Implementation::cascade: return response(CascadeStepper(filter.cascade, arithmetic));
        case Implementation::parallel: return response(ParallelStepper(filter.parallel, arithmetic));
        case Implementation::lattice: return response(LatticeStepper(filter.lattice, arithmetic));
        case Implementation::direct: return response(DirectStepper(filter.direct, arithmetic));
        case Implementation::allpass:
            if (output == AllpassOutput::filter) output = output_that_is_the_filter(filter.kind);
            return response(AllpassStepper(filter.allpass, output, arithmetic));
        case Implementation::natural_modes: break;
    }
    return {};
}

// Impulse and step response side by side.
template <class Stepper>
TimeRows run(Stepper& stepper, const SampleGrid& grid, double T, Watcher& watcher) {
    constexpr long long between_questions = 4096;
    TimeRows rows;
    const long long count = std::min<long long>(grid.count(), analysis_points);
    const long long last = grid.first + (count - 1) * grid.every;
    for (long long n = 1; n <= last; ++n) {
        if (n % between_questions == 0 && !watcher.go_on()) break;
        const Pair y = stepper.step(Pair{n == 1 ? 1.0 : 0.0, 1.0});
        if (n < grid.first || (n - grid.first) % grid.every != 0) continue;
        const int i = ++rows.count;
        rows.time(i) = static_cast<double>(n - 1) * T;
        rows.impulse(i) = y[0];
        rows.step(i) = y[1];
    }
    return rows;
}

}  // namespace

}  // namespace kavrel
