// A request taken through approximation and synthesis, with all that it leaves; and an analysis of its own.
#pragma once

#include <complex>
#include <memory>
#include <numbers>
#include <string>

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
    [[nodiscard]] std::string words() const {
        std::string text;
        for (int i = 1; i <= state.script.count; ++i) text += state.script.JCONF(i).text() + " ";
        return text;
    }
};

// Transducer loss in dB of branches 0 to 3 and 10, by chain matrices from the source on.
[[nodiscard]] inline double chain_loss(const Circuit& circuit, double hz) {
    using C = std::complex<double>;
    const bool lines = circuit.kind == CircuitKind::microwave;
    const double theta = std::numbers::pi * hz / (lines ? circuit.fs : 1);
    const C s = lines ? C{0, std::tan(theta)} : C{0, 2 * std::numbers::pi * hz};
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
        if (branch.id == 10) {
            const C j{0, 1};
            times(std::cos(theta), j * v * std::sin(theta), j * std::sin(theta) / v, std::cos(theta));
            continue;
        }
        const double w = branch.id == 3 ? circuit.VALUE(branch.i1 + 1) : 0;
        const bool series = k % 2 == 0;
        if (series) {
            const C y = branch.id == 1 ? 1.0 / (s * v) : branch.id == 2 ? s * v : 1.0 / (s * v) + s * w;
            times(1, 1.0 / y, 0, 1);
        } else {
            const C z = branch.id == 1 ? s * v : branch.id == 2 ? 1.0 / (s * v) : s * v + 1.0 / (s * w);
            times(1, 0, 1.0 / z, 1);
        }
    }
    return 10 * std::log10(std::norm(A * r2 + B + Cc * r1 * r2 + D * r1) / (4 * r1 * r2));
}

}  // namespace kavrel::test
