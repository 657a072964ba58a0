// Frequency analysis of a circuit by its chain: starting at the load with V = 1 and I = 1/R1, each shunt branch adds to
// the current and each series branch to the voltage, up to the source; a two-port enters as its pi of three arms, a
// line by its cosh and sinh. With E the source's voltage and H = E/2 sqrt(R1/R2) (doubly terminated), V (driven by a
// voltage) or I R1 (by a current), the loss is 20 log10 |H|. Values and derivatives by the frequency are carried along,
// so the delay, d arg H/dw, is exact; all in the wide type.
//
// Frequencies are in Hz, or in rad/sec where a request says so; fnorm and fs of the circuit are in Hz in either case.
#pragma once

#include <array>
#include <span>
#include <string_view>

#include "circuit/circuit.h"
#include "circuit/element_formulas.h"
#include "shell/analysis_result.h"
#include "shell/table.h"
#include "shell/watcher.h"

namespace kavrel {

enum class LossClass { voltage = 1, transducer = 2, current = 3 };

enum class ChainVerdict { done, no_circuit, not_a_resistor, wave_digital, bad_frequencies, stopped };

struct ChainMessage {
    ChainVerdict verdict;
    std::string_view text;
};

inline constexpr std::array<ChainMessage, 6> chain_messages = {{
    {ChainVerdict::done, ""},
    {ChainVerdict::no_circuit, "No circuit to analyze"},
    {ChainVerdict::not_a_resistor, "First branch must be a resistor"},
    {ChainVerdict::wave_digital, "Wave digital filters cannot be analyzed"},
    {ChainVerdict::bad_frequencies, "Frequency specification incorrect"},
    {ChainVerdict::stopped, stopped_line},
}};

[[nodiscard]] std::string_view message_of(ChainVerdict verdict);

// One branch between the terminations, ready to be walked over. Without losses what ladders are mostly made of is real
// arithmetic: with u = w, or the tangent of a microwave circuit, an inductor, a capacitor or a pair of both is
//     j x,  x = factor u (direct), factor/u (inverse) or factor u/(1 - product u^2) (pair).
struct ChainLink {
    enum class Reactance { none, direct, inverse, pair };

    const BranchKind* kind = nullptr;
    std::span<const double> values;
    const Quadruplet* quadruplet = nullptr;
    bool series = false;  // of a slot element
    Reactance reactance = Reactance::none;
    Wide factor = 0;
    Wide product = 0;
};

// A circuit unpacked for many frequencies. It refers to the circuit, which must outlive it unchanged.
struct Chain {
    const Circuit* circuit = nullptr;
    ElementLoss loss{};
    LossClass loss_class = LossClass::transducer;
    bool admittance = false;  // the output quantity is I/V instead of V/I
    double R1 = 0;
    double R2 = 0;   // 0: singly terminated
    Wide level = 0;  // sqrt(R1/R2)/2
    int link_count = 0;
    bool plain = true;  // made of simple branches alone
    Table<ChainLink, max_branches> links;
};

// The termination class follows from the last branch: a resistor makes the circuit doubly terminated; else it is driven
// by a voltage when the last branch is in series (an even number), by a current when it is a shunt.
[[nodiscard]] ChainVerdict prepare_chain(const Circuit& circuit, const ElementLoss& loss, Chain& chain);

// What the chain gives at one frequency.
struct ChainPoint {
    Jet V, I;  // at the source's end, for 1 V at the load
    Jet H;
    WideComplex immittance;  // V/I, or I/V, in ohm or siemens
    Wide loss = 0;           // dB
    Wide phase = 0;          // degrees, -180 to 180: of the output against the source, -arg H
    Wide delay = 0;          // sec
    Wide return_loss = 0;    // dB, at most 100; doubly terminated only
};

// At omega rad/sec, 0 or above. On a pole where a branch or stub has one, or where |H| is beyond 1e25.
[[nodiscard]] PointVerdict analyze_point(const Chain& chain, Wide omega, ChainPoint& point);

// The chain matrix of what lies between the terminations, from the source to the load:
//     Vs = A Vl + B Il,  Is = C Vl + D Il.
struct ChainMatrix {
    WideComplex A, B, C, D;
};
[[nodiscard]] PointVerdict chain_matrix(const Chain& chain, Wide omega, ChainMatrix& matrix);

struct AnalysisRequest {
    std::span<const double> frequencies{};  // 1 to 501, ascending, 0 or above
    bool radians = false;                   // they are in rad/sec
    ElementLoss loss{};
    // What the design left in its counters, for the row at f = 0.
    int filter_class = 0;       // 1 low-pass, 2 high-pass, 3 band-pass, 0 unknown
    int zeros_at_zero = 0;      // nz
    int zeros_at_infinity = 0;  // ni
};

struct PerformanceRow {
    double frequency = 0;  // as requested
    double loss = 0;       // dB, as computed
    double phase = 0;      // degrees
    double delay = 0;      // sec
    double real = 0;       // of the output immittance
    double imaginary = 0;
    double return_loss = 0;  // dB
};

// A frequency analysis. Points on poles have no row, so there may be fewer rows than frequencies.
struct Performance {
    LossClass loss_class = LossClass::transducer;
    bool doubly_terminated = false;
    bool admittance = false;
    bool radians = false;
    double step = 0;  // mean distance of the requested frequencies, relative to the last one
    int count = 0;
    Table<PerformanceRow, analysis_points> rows;
};

// At f = 0 there is a row only where the design lets direct current through and the circuit is made of simple
// branches; its delay is that of a frequency 1e-7 times the next one. Asks the watcher at each frequency.
[[nodiscard]] ChainVerdict analyzeCircuit(const Circuit& circuit, const AnalysisRequest& request, Watcher& watcher,
                                          Performance& performance);

// The rows as columns of results, in single precision, losses above 200 dB as 200 dB.
void store_performance(const Performance& performance, AnalysisResult& result);

}  // namespace kavrel
