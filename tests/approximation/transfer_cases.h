// Requests that the tests of the transfer function share, and the answers of a user who is not there.
#pragma once

#include <memory>
#include <stdexcept>

#include "approximation/approximate.h"
#include "approximation/filter_spec.h"
#include "approximation/immittance.h"
#include "approximation/x_plane.h"
#include "tests/approximation/request.h"
#include "tests/support/choices.h"
#include "tests/support/numbers.h"

namespace kavrel::test {

struct FixedAnswers final : ApproximationQuestions {
    PredistortionChoice answer = PredistortionChoice::cancel;
    int asked = 0;
    int steps = -1;  // after which to stop; below 0 never

    PredistortionChoice predistortion_choice(const PredistortionNotes&) override {
        ++asked;
        return answer;
    }
    bool go_on() override { return steps < 0 || steps-- > 0; }
};

// A run with everything it leaves.
struct Design {
    FilterSpec spec;
    XPlane xp;
    ApproximationNotes notes;
    FixedAnswers answers;
    ApproximationVerdict verdict;

    void run() {
        verdict = approximate(spec, xp, notes, answers);
        if (verdict.good() && spec.loadResistance == 0 && !immittanceOfDenominator(xp)) {
            verdict.fault = ApproximationFault::e_parts_missing;
        }
    }
};
inline std::unique_ptr<Design> run(const FilterSpec& spec) {
    auto d = std::make_unique<Design>();
    d->spec = spec;
    d->run();
    return d;
}
// The same of a request that has to succeed.
inline std::unique_ptr<Design> designed(const FilterSpec& spec) {
    auto d = run(spec);
    if (!d->verdict.good())
        throw std::runtime_error("fault " + number(d->verdict.fault) + number(d->verdict.front.fault));
    return d;
}

// All zeros at infinity (low-pass), at zero (high-pass) or half of them at either end, ripple 0.1 dB, 50 ohm to 100
// ohm.
inline FilterSpec all_pole(FilterType filter_type, PassbandType passband, int n) {
    FilterSpec s = request("specified_zeros bandEdgeLoss 0.1 sourceResistance 50 loadResistance 100");
    s.filterType = filter_type;
    s.passbandType = passband;
    s.degree = n;
    s.degreeParity = n % 2;
    s.lowerPassEdge = filter_type == low_pass ? 0 : 2000;
    s.upperPassEdge = filter_type == high_pass ? 0 : 3000;
    s.zerosAtInfinity = filter_type == low_pass ? n : filter_type == band_pass ? n / 2 : 0;
    s.zerosAtZero = n - s.zerosAtInfinity;
    return s;
}

// Equal minima from 1.5 times the edge on.
inline FilterSpec with_minima(FilterType filter_type, PassbandType passband, int n, int flag) {
    FilterSpec s = all_pole(filter_type, passband, n);
    s.zerosAtZero = s.zerosAtInfinity = 0;
    s.stopbandType = equal_minima;
    s.stopbandLoss = s.upperStopLoss = 40;
    s.symmetryFlag = flag;
    s.lowerStopEdge = filter_type == low_pass ? 0 : filter_type == high_pass ? 2000 / 1.5 : 1700;
    s.upperStopEdge = filter_type == high_pass ? 0 : filter_type == low_pass ? 4500 : 3500;
    return s;
}

inline void single_terminated(FilterSpec& s) { s.sourceResistance = 1, s.loadResistance = 0; }

}  // namespace kavrel::test
