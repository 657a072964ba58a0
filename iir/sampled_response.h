// Impulse and step response of a digital filter, sample by sample, by the equations of one of its forms.
#pragma once

#include <string_view>

#include "iir/iir_filter.h"
#include "iir/iir_request.h"
#include "shell/analysis_result.h"
#include "shell/refusal.h"
#include "shell/time_request.h"
#include "shell/units.h"
#include "shell/watcher.h"
#include "shell/word_length.h"

namespace kavrel {

// Samples from `first` to `last` in steps of `every`; sample n is the time (n - 1) T.
struct SampleGrid {
    long long first = 1;
    long long last = 0;
    long long every = 1;

    [[nodiscard]] long long count() const { return last < first ? 0 : (last - first) / every + 1; }
};

// What is wrong with a request: `start` is to be 0 or more, `stop` above it, the step, of which 0 is one sample, 0 or
// more.
[[nodiscard]] Refusal sampled_time_refusal(const TimeRequest& request);

// The samples of a request: to each end belongs the last sample that is not later, to within 1e-5 of a sample, to the
// step the nearest whole number of samples, at least 1. Refused where `sampled_time_refusal` does, and where the
// samples are too many to be counted.
[[nodiscard]] Refusal sample_grid(const TimeRequest& request, const UnitSet& units, double T, SampleGrid& grid);

// The form's name as the head of a table has it, of 8 characters: "cascade ", "lattice ".
[[nodiscard]] std::string_view structure_name(Implementation form);

struct SampledResponse {
    TimeRows rows;
    double largest_state = 0;  // magnitude, of a run in quantised arithmetic up to the last row
};

// The responses of a form that is there at the samples of a grid, of which the first 501 are taken. Of a differential
// allpass `output` says which function; other forms have one. `word` is that of the arithmetic. Asks the watcher each
// 4096 samples; stopped, the rows are of no use.
[[nodiscard]] SampledResponse sampled_response(const IirFilter& filter, Implementation form, AllpassOutput output,
                                               const WordLength& word, const SampleGrid& grid, Watcher& watcher);

}  // namespace kavrel
