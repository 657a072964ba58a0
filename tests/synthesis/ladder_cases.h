// Requests written in a line, each taken through approximation and synthesis, with all that it leaves.
#pragma once

#include <cctype>
#include <cmath>
#include <complex>
#include <memory>
#include <numbers>
#include <sstream>
#include <string>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "approximation/frequency_variable.h"
#include "approximation/hurwitz_factors.h"
#include "approximation/hurwitz_parts.h"
#include "approximation/immittance.h"
#include "approximation/s_plane.h"
#include "circuit/chain_analysis.h"
#include "synthesis/synthesise.h"
#include "tests/approximation/transfer_cases.h"

namespace kavrel::test {

// "low ripple 7 minima 1 R 50 50": low, high, band or matching; flat or ripple; the degree, all zeros at the extreme
// points unless words say otherwise; then any of
//   minima FLAG   equal minima, with the symmetry flag; at once behind the degree
//   parametric    band-pass
//   ends NZ NI    zeros at zero and at infinity       zeros F ...     finite ones, Hz
//   lines N       unit elements                       complex RE IM   a quadruplet
//   quarter F     microwave, twice the quarter wave   stop F LOSS     upper stop edge
//   R R1 R2       edges LOWER UPPER                   loss DB
inline FilterSpec asked(const std::string& text) {
    std::istringstream words(text);
    std::string type, passband;
    int degree = 0;
    const auto digit_follows = [&] { return !words.eof() && std::isdigit((words >> std::ws).peek()) != 0; };
    words >> type >> passband;
    if (digit_follows()) words >> degree;
    const FilterType kind = type == "low" ? low_pass : type == "high" ? high_pass : band_pass;
    const PassbandType shape = passband == "flat" ? maximally_flat : equal_ripple;
    FilterSpec s = all_pole(kind, shape, degree);
    if (type == "matching") {
        s.bandpassType = impedance_matching;
        s.stopbandType = degree > 0 ? specified_zeros : monotonic_stopband;
        s.zerosAtInfinity = degree, s.zerosAtZero = 0;
    }
    int listed = 0;
    for (std::string word; words >> word;) {
        if (word == "minima") {
            words >> s.symmetryFlag;
            s = with_minima(kind, shape, degree, s.symmetryFlag);
        } else if (word == "parametric") {
            s.bandpassType = parametric;
        } else if (word == "ends") {
            words >> s.zerosAtZero >> s.zerosAtInfinity;
            s.stopbandType = specified_zeros;
            listed += s.zerosAtZero + s.zerosAtInfinity;
        } else if (word == "zeros") {
            while (digit_follows()) {
                words >> s.FZI(++s.zeroCount);
                listed += 2;
            }
        } else if (word == "complex") {
            ++s.zeroCount;
            words >> s.FZR(s.zeroCount) >> s.FZI(s.zeroCount);
            listed += 4;
        } else if (word == "lines") {
            words >> s.unitElements;
            listed += s.unitElements;
        } else if (word == "quarter") {
            words >> s.sampleFrequency;
            s.medium = microwave;
            s.implementation = 'M';
        } else if (word == "stop") {
            words >> s.upperStopEdge >> s.upperStopLoss;
        } else if (word == "edges") {
            words >> s.lowerPassEdge >> s.upperPassEdge;
        } else if (word == "R") {
            words >> s.sourceResistance >> s.loadResistance;
        } else if (word == "loss") {
            words >> s.bandEdgeLoss;
        } else {
            ADD_FAILURE() << word << " in " << text;
        }
    }
    EXPECT_TRUE(words.eof()) << text;
    if (listed > 0) s.degree = listed, s.degreeParity = listed % 2;
    return s;
}

struct LadderRun {
    Design design;
    SynthesisRequest request;
    SynthesisState state;
    Circuit circuit;
    SynthesisVerdict verdict;
    bool approximated = false;

    void run(const FilterSpec& spec) {
        design.spec = spec;
        design.run();
        approximated = design.verdict.good();
        if (approximated) verdict = synthesise(design.xp, design.spec, request, state, circuit);
    }
    // The same filter with all zeros of f on one side of the imaginary axis: F is split anew.
    [[nodiscard]] bool take_hurwitz_f() {
        auto ws = std::make_unique<ExtractionWorkspace>();
        XPlane& xp = design.xp;
        if (!toFactors(xp.FS, xp.a, xp.fFactors).good() || !partsOfHurwitz(xp.fFactors, xp.a, xp.fEven, xp.fOdd) ||
            !immittancePolynomials(xp, *ws).good()) {
            return false;
        }
        verdict = synthesise(xp, design.spec, request, state, circuit);
        return true;
    }
    [[nodiscard]] std::string words() const {
        std::string text;
        for (int i = 1; i <= state.script.count; ++i) text += state.script.JCONF(i).text() + " ";
        return text;
    }
};

using Ladder = std::unique_ptr<LadderRun>;

inline Ladder run_of(const FilterSpec& spec, const SynthesisRequest& request = {}) {
    auto run = std::make_unique<LadderRun>();
    run->request = request;
    run->run(spec);
    EXPECT_TRUE(run->approximated);
    return run;
}
inline Ladder run_of(const std::string& text, const SynthesisRequest& request = {}) {
    SCOPED_TRACE(text);
    return run_of(asked(text), request);
}
inline Ladder run_of(const std::string& text, Direction direction) { return run_of(text, {.direction = direction}); }

// The circuit of a ladder that was extracted by hand, of a run's problem with 50 ohm.
[[nodiscard]] inline Circuit circuit_of(const LadderRun& run, const LadderState& ladder) {
    Terminations ends{50, 0};
    Circuit circuit;
    EXPECT_TRUE(far_termination(run.state.problem, ladder, ends.own, ends.far));
    EXPECT_EQ(storeResult(run.state.problem, ladder, ends, circuit), CircuitVerdict::done);
    circuit.fnorm = run.state.problem.norm_frequency;
    return circuit;
}

// Transducer loss in dB.
[[nodiscard]] inline double loss_at(const Circuit& circuit, double hz) {
    Chain chain;
    ChainPoint point;
    EXPECT_EQ(prepare_chain(circuit, {}, chain), ChainVerdict::done);
    EXPECT_EQ(analyze_point(chain, 2 * std::numbers::pi_v<long double> * hz, point), PointVerdict::computed);
    return static_cast<double>(point.loss);
}

// H = level prod(s - zero)/prod(s - pole) against the circuit's output over its source, sign and all, in the pass band.
// An odd unit element is a - s in H and sqrt(a^2 - s^2) in the circuit; one with negative elements may turn the sign.
inline void expect_output(const LadderRun& run) {
    using Number = std::complex<long double>;
    const FilterSpec& spec = run.design.spec;
    const XPlane& xp = run.design.xp;
    const TransferFunction t = xToFrequencyPlane(spec, xp);
    const long double edge = spec.medium == lumped ? t.normFrequency : 1;
    Chain chain;
    ASSERT_EQ(prepare_chain(run.circuit, {}, chain), ChainVerdict::done);
    for (const long double share : {0.93L, 0.99L}) {
        const long double hertz = xp.normFrequency * (spec.filterType == high_pass ? 1 / share : share);
        const long double w = normalised_frequency(spec, xp, hertz);
        const Number s{0, spec.filterType == high_pass ? 1 / w : w};
        Number H = t.level;
        long double real_zeros = 0;
        for (int i = 1; i <= t.zeroCount; ++i) {
            const Number zero = Number(t.ZEROS_RE(i), t.ZEROS_IM(i)) / edge;
            H *= s - zero;
            if (zero.imag() == 0) real_zeros += zero.real();
        }
        for (int i = 1; i <= t.poleCount; ++i) H /= s - Number(t.POLES_RE(i), t.POLES_IM(i)) / edge;
        if (spec.unitElements % 2 != 0) H *= std::sqrt((real_zeros + s) / (real_zeros - s));
        ChainPoint point;
        ASSERT_EQ(analyze_point(chain, 2 * std::numbers::pi_v<Wide> * hertz, point), PointVerdict::computed);
        Number ratio = H * Number(point.H.v.re, point.H.v.im);
        if (spec.loadResistance == 0) ratio /= std::abs(ratio);  // the function leaves its level open
        if (run.state.negative_elements > 0 && ratio.real() < 0) ratio = -ratio;
        EXPECT_LT(std::abs(ratio - Number(1)), 1e-5) << static_cast<double>(share);
    }
}

// What a number of requests came to: each circuit has the loss of its transfer function, and in the pass band its
// phase.
struct Tally {
    int requests = 0;
    int with_negative_elements = 0;

    void take(const LadderRun& run, const std::string& what) {
        if (!run.approximated) return;
        SCOPED_TRACE(what + ": " + run.words());
        ++requests;
        ASSERT_TRUE(run.verdict.good()) << static_cast<int>(run.verdict.fault) << " script fault "
                                        << static_cast<int>(run.state.script_verdict.fault);
        EXPECT_LT(run.state.loss.passband, 1e-6);
        EXPECT_LT(run.state.loss.stopband_relative, 1e-4);
        EXPECT_GT(run.state.loss.points, 100);
        EXPECT_EQ(run.circuit.termination_ratio, run.circuit.R2 / run.circuit.R1);
        expect_output(run);
        with_negative_elements += run.state.negative_elements > 0 ? 1 : 0;
    }
    void take(const std::string& text, const SynthesisRequest& request = {}) { take(*run_of(text, request), text); }
};

}  // namespace kavrel::test
