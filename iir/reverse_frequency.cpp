#include "iir/reverse_frequency.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "iir/command_tools.h"
#include "shell/edited.h"

namespace kavrel {

namespace {

void turn_roots(IirFilter& filter);
void turn_chains(IirFilter& filter, DigitalKind before);
DigitalKind turned(DigitalKind kind);
std::string_view turned_text(DigitalKind kind);
void turn_edges(IirFilter& filter);
void turn_request(double fs, IirAsked& asked);
void add_transmission_zeros(const IirFilter& filter, const UnitSet& units, Lines& lines);

}  // namespace

void reverse_frequency(IirDesk& desk) {
    if (const auto why = needs_filter(desk); !why.empty()) return refuse(desk, why);
    IirFilter filter = desk.filter;
    Lines lines;
    const bool again = turn_frequency(filter, desk.session.units, lines);
    const bool taken = take_edited(desk, filter, lines);
    if (again && (taken || fingerprint(filter) == fingerprint(desk.filter))) {
        desk.reporter.message("Conversion done already", "Warning");
    }
}

bool turn_frequency(IirFilter& filter, const UnitSet& units, Lines& lines) {
    const bool again = std::exchange(filter.converted, true);
    const DigitalKind before = filter.kind;
    if (!again) filter.kind = turned(before);
    turn_chains(filter, before);
    turn_roots(filter);
    filter.LastBits = 0;
    filter.direct = {};
    filter.lattice = {};
    filter.parallel = {};
    if (again) {
        filter.asked = {};
        return true;
    }
    add_transmission_zeros(filter, units, lines);
    if (filter.kind != before) filter.FilterTypeText = turned_text(filter.kind);
    turn_edges(filter);
    turn_request(filter.fs, filter.asked);
    return false;
}

namespace {

// Adding 0 takes the sign of a -0.
template <int N>
void turn(Table<double, N>& values) {
    for (double& value : values) value = 0.0 - value;
}

void turn_roots(IirFilter& filter) {
    turn(filter.cascade.C1N);
    turn(filter.cascade.C1D);
    turn(filter.roots.ZR);
    turn(filter.roots.QR);
    turn(filter.UNEQUALIZED_RE);
}

// A chain as it is built is +1 at z = 1. At -z one of odd degree is the negative of what is built of the turned poles:
//
//     (A1(-z) + A2(-z))/2 = (s1 B1(z) + s2 B2(z))/2,  s = -1 for an odd degree, 1 for an even one
//
// and likewise the difference (A2 - A1)/2. So where the degrees differ by an odd number sum and difference change
// places, and of a difference that comes out negative the chains do.
void turn_chains(IirFilter& filter, DigitalKind before) {
    AllpassForm& form = filter.allpass;
    form.NTA = form.NTB = 0;
    for (Table<double, 13>* table : {&form.TA1, &form.TA2, &form.TB1, &form.TB2}) table->fill(0);
    if (!form.ALLPASS_OK) return;
    bool odd_first = false, odd_second = false;
    for (int i = 1; i <= filter.roots.NP; ++i) {
        bool& odd = form.LARR(i) == 1 ? odd_first : odd_second;
        odd = odd != (filter.roots.PI(i) == 0);
    }
    const auto is_difference = [](DigitalKind kind) {
        return output_that_is_the_filter(kind) == AllpassOutput::difference;
    };
    const bool difference = is_difference(before) != (odd_first != odd_second);
    if (difference != is_difference(filter.kind) || (odd_second && !difference)) {
        form = {};
    } else if (odd_second) {
        for (int i = 1; i <= filter.roots.NP; ++i) form.LARR(i) = form.LARR(i) == 1 ? 2 : 1;
    }
}

DigitalKind turned(DigitalKind kind) {
    switch (kind) {
        case DigitalKind::low_pass: return DigitalKind::high_pass;
        case DigitalKind::high_pass: return DigitalKind::low_pass;
        default: return kind;
    }
}

std::string_view turned_text(DigitalKind kind) { return kind == DigitalKind::high_pass ? "highpass" : "lowpass"; }

// The one test behind the other: a lower edge comes back, the upper one is lost.
void turn_edges(IirFilter& filter) {
    const double top = filter.fs / 2;
    if (filter.FLO > 0) filter.FHI = top - std::exchange(filter.FLO, 0);
    if (filter.FHI > 0) filter.FLO = top - std::exchange(filter.FHI, 0);
}

void turn_request(double fs, IirAsked& asked) {
    for (int i = 1; i <= asked.count; ++i) {
        IirRequestRow& row = asked.rows(i);
        row.from = std::max(0.0, fs / 2 - std::exchange(row.to, std::max(0.0, fs / 2 - row.from)));
    }
}

void add_transmission_zeros(const IirFilter& filter, const UnitSet& units, Lines& lines) {
    constexpr double least = 1e-8;
    lines.push_back(edited<"(17X,'Transmission zeros')">());
    lines.push_back(edited<"(17X,'real part',4X,'imaginary part')">());
    const double sign = turned(filter.kind) == DigitalKind::high_pass ? -1 : 1;
    const DigitalRoots& roots = filter.roots;
    for (int i = 2; i <= roots.NZ; i += 2) {
        if (!(roots.ZR(i) >= least)) continue;
        const double theta = sign * std::atan(std::fabs(roots.ZI(i) / roots.ZR(i)));
        lines.push_back(edited<"(10X,1P,E16.6,2X,E16.6)">(roots.ZR(i), roots.ZI(i)));
        lines.push_back(
            edited<"(10X,'frequency =',A)">(unit_value_text(units, theta / (2 * std::numbers::pi) * filter.fs, hertz)));
    }
}

}  // namespace

}  // namespace kavrel
