// What was found about a filter in finite words: noise, limit cycles, an order of the sections, least words.
#pragma once

#include <cstdint>
#include <vector>

#include "iir/iir_request.h"
#include "segment/least_word.h"
#include "shell/fingerprint.h"

namespace kavrel {

// A result, and the filter that it is of; 0 before there is one.
template <class Result>
struct Found {
    Result result = {};
    Fingerprint of = 0;
};

// Of the denominator of one section.
struct LimitCycle {
    int section = 0;
    double frequency = 0;        // Hz
    double amplitude_bound = 0;  // whole numbers, in units of the last bit; infinite: there is no bound
    double rms = 0;
    double output_rms = 0;
};

// An assignment: section i has numerator `numerator[i]` and denominator `denominator[i]`, counted from 1.
struct SectionOrder {
    std::uint32_t seed = 0;
    std::vector<int> numerator;
    std::vector<int> denominator;
    double noise_gain = 0;  // dB, scaled in the L-two sense
    double natural = 0;     // of the sections as they are
};

// The least bits from which on a form meets the request, and the losses that it has with them: the highest in the pass
// bands, the least in the stopbands.
struct LeastWord : FoundWord {
    Implementation form = Implementation::cascade;
};

struct WordResults {
    Found<double> noise_gain;  // dB
    Found<std::vector<LimitCycle>> limit_cycles;
    Found<SectionOrder> order;
    Found<std::vector<LeastWord>> word_lengths;
};

}  // namespace kavrel
