// A request taken through approximation and synthesis, with all that it leaves; and an analysis of its own.
#pragma once

#include <cmath>
#include <complex>
#include <cstdio>
#include <memory>
#include <numbers>
#include <string>

#include <gtest/gtest.h>

#include "approximation/hurwitz_factors.h"
#include "approximation/hurwitz_parts.h"
#include "approximation/immittance.h"
#include "synthesis/synthesise.h"
#include "tests/approximation/transfer_cases.h"

namespace kavrel::test {

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

// A R2 + B + C R1 R2 + D R1 of the chain matrix of branches 0 to 3 and 10 from the source on, at a complex s in rad/s
// (lumped) or of the variable j tan theta (microwave): the source voltage for 1 V across the load, times R2. Its zeros
// are the natural modes.
[[nodiscard]] inline std::complex<double> chain_characteristic(const Circuit& circuit, std::complex<double> s) {
    using C = std::complex<double>;
    C A = 1, B = 0, Cc = 0, D = 1;
    const auto times = [&](C a, C b, C c, C d) {
        const C A2 = A * a + B * c, B2 = A * b + B * d, C2 = Cc * a + D * c, D2 = Cc * b + D * d;
        A = A2, B = B2, Cc = C2, D = D2;
    };
    const double r1 = circuit.VALUE(unpackBranch(circuit, 1).i1);
    const double r2 = circuit.VALUE(unpackBranch(circuit, circuit.klast).i1);
    for (int k = unpackBranch(circuit, 1).kn; k != circuit.klast; k = unpackBranch(circuit, k).kn) {
        const Branch branch = unpackBranch(circuit, k);
        const double v = circuit.VALUE(branch.i1);
        if (branch.id == BranchId::unit_element) {
            // cosh and sinh of a line, tanh = s.
            const C scale = 1.0 / std::sqrt(1.0 - s * s);
            times(scale, v * s * scale, s * scale / v, scale);
            continue;
        }
        const double w = branch.id == BranchId::lc ? circuit.VALUE(branch.i1 + 1) : 0;
        const bool series = k % 2 == 0;
        if (series) {
            const C y = branch.id == BranchId::inductor    ? 1.0 / (s * v)
                        : branch.id == BranchId::capacitor ? s * v
                                                           : 1.0 / (s * v) + s * w;
            times(1, 1.0 / y, 0, 1);
        } else {
            const C z = branch.id == BranchId::inductor    ? s * v
                        : branch.id == BranchId::capacitor ? 1.0 / (s * v)
                                                           : s * v + 1.0 / (s * w);
            times(1, 0, 1.0 / z, 1);
        }
    }
    return A * r2 + B + Cc * r1 * r2 + D * r1;
}

// Transducer loss in dB.
[[nodiscard]] inline double chain_loss(const Circuit& circuit, double hz) {
    const bool lines = circuit.kind == CircuitKind::microwave;
    const double s = lines ? std::tan(std::numbers::pi * hz / circuit.fs) : 2 * std::numbers::pi * hz;
    const double r1 = circuit.VALUE(unpackBranch(circuit, 1).i1);
    const double r2 = circuit.VALUE(unpackBranch(circuit, circuit.klast).i1);
    return 10 * std::log10(std::norm(chain_characteristic(circuit, {0, s})) / (4 * r1 * r2));
}

// What a number of requests came to: each circuit has the loss of its transfer function.
struct Tally {
    int requests = 0;
    int with_negative_elements = 0;
    double passband = 0;
    double stopband_relative = 0;

    void take(const FilterSpec& spec, const char* what) {
        auto run = std::make_unique<LadderRun>();
        run->run(spec);
        take(spec, what, *run);
    }
    void take(const FilterSpec& spec, const char* what, const LadderRun& done) {
        const LadderRun* run = &done;
        if (!run->approximated) return;
        SCOPED_TRACE(testing::Message() << what << " type " << spec.filterType << " pass band " << spec.passbandType
                                        << " degree " << run->design.xp.ES.count << " nz " << spec.zerosAtZero << " ni "
                                        << spec.zerosAtInfinity << " ue " << spec.unitElements << " zeros "
                                        << run->design.xp.zeroCount << " R2 " << spec.loadResistance << ": "
                                        << run->words());
        ++requests;
        EXPECT_TRUE(run->verdict.good()) << static_cast<int>(run->verdict.fault) << " script fault "
                                         << static_cast<int>(run->state.script_verdict.fault);
        if (!run->verdict.good()) return;
        EXPECT_LT(run->state.loss.passband, 1e-6);
        EXPECT_LT(run->state.loss.stopband_relative, 1e-4);
        EXPECT_GT(run->state.loss.points, 100);
        passband = std::fmax(passband, run->state.loss.passband);
        stopband_relative = std::fmax(stopband_relative, run->state.loss.stopband_relative);
        with_negative_elements += run->state.negative_elements > 0 ? 1 : 0;
    }
    void tell() const {
        std::printf("%d requests, pass band %.2g dB, stop band %.2g relative, %d with negative elements\n", requests,
                    passband, stopband_relative, with_negative_elements);
    }
};

}  // namespace kavrel::test
