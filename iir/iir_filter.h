// A digital filter of the IIR Segment: one transfer function, held at once by its roots and in up to five forms.
//
// The cascade is the master form: it and the roots are always there. The other four are made by a command and given up
// when the cascade changes; a count of 0 means that a form is not there. All of them are ratios in z^-1.
#pragma once

#include <type_traits>

#include "approximation/design_background.h"
#include "approximation/digital_function.h"
#include "segment/request_check.h"
#include "shell/fields.h"
#include "shell/fingerprint.h"
#include "shell/fixed_text.h"
#include "shell/table.h"
#include "shell/word_length.h"

namespace kavrel {

inline constexpr int iir_root_limit = 50;
inline constexpr int iir_section_limit = 25;

template <int N>
[[nodiscard]] constexpr Table<double, N> ones() {
    Table<double, N> table;
    table.fill(1.0);
    return table;
}

// H = ZMULT prod(1 - zero z^-1)/(PMULT prod(1 - pole z^-1)). Conjugate pairs lie next to each other, the positive
// imaginary part first.
struct DigitalRoots {
    Table<double, 51> ZR;  // [i] 1 <= i <= NZ: zeros
    Table<double, 51> ZI;
    Table<double, 51> QR;  // [i] 1 <= i <= NP: poles
    Table<double, 51> PI;
    int NZ = 0;
    int NP = 0;
    double ZMULT = 1.0;
    double PMULT = 1.0;
};
template <ListedAs<DigitalRoots> Record, class Visit>
constexpr void fields_of(Record& roots, Visit&& visit) {
    visit("ZR", roots.ZR, roots.NZ);
    visit("ZI", roots.ZI, roots.NZ);
    visit("QR", roots.QR, roots.NP);
    visit("PI", roots.PI, roots.NP);
    visit("NZ", roots.NZ);
    visit("NP", roots.NP);
    visit("ZMULT", roots.ZMULT);
    visit("PMULT", roots.PMULT);
}
static_assert(lists_each_field<DigitalRoots>);

// H = CK prod(SC(k) + C1N(k) z^-1 + C2N(k) z^-2)/prod(1 + C1D(k) z^-1 + C2D(k) z^-2). A numerator and a denominator
// factor of one index make a section; the counts may differ: a missing factor counts as 1, and SC(k) is 1 beyond the
// numerators. A second coefficient of exactly 0 makes a factor of first order.
struct CascadeForm {
    Table<double, iir_section_limit> C1N;  // [k] 1 <= k <= NNUM; while SCALED, SC(k) times the section's own
    Table<double, iir_section_limit> C2N;
    Table<double, iir_section_limit> C1D;  // [k] 1 <= k <= NDEN
    Table<double, iir_section_limit> C2D;
    Table<double, iir_section_limit> SC = ones<iir_section_limit>();  // scale factors of the sections
    double CK = 1.0;                                                  // front-end multiplier
    int NNUM = 0;
    int NDEN = 0;
    bool SCALED = false;
};
template <ListedAs<CascadeForm> Record, class Visit>
constexpr void fields_of(Record& form, Visit&& visit) {
    visit("C1N", form.C1N, form.NNUM);
    visit("C2N", form.C2N, form.NNUM);
    visit("C1D", form.C1D, form.NDEN);
    visit("C2D", form.C2D, form.NDEN);
    visit("SC", form.SC);
    visit("CK", form.CK);
    visit("NNUM", form.NNUM);
    visit("NDEN", form.NDEN);
    visit("SCALED", form.SCALED);
}
static_assert(lists_each_field<CascadeForm>);

// H = AO + sum (AL(k) + BE(k) z^-1)/(1 + GA(k) z^-1 + DE(k) z^-2).
struct ParallelForm {
    Table<double, 26> AL;  // [k] 1 <= k <= NPAR
    Table<double, 26> BE;
    Table<double, 26> GA;
    Table<double, 26> DE;
    double AO = 0.0;
    int NPAR = 0;
};
template <ListedAs<ParallelForm> Record, class Visit>
constexpr void fields_of(Record& form, Visit&& visit) {
    visit("AL", form.AL, form.NPAR);
    visit("BE", form.BE, form.NPAR);
    visit("GA", form.GA, form.NPAR);
    visit("DE", form.DE, form.NPAR);
    visit("AO", form.AO);
    visit("NPAR", form.NPAR);
}
static_assert(lists_each_field<ParallelForm>);

// Coefficients of ascending powers of z^-1; ZDEN(1) counts as 1.
struct DirectForm {
    Table<double, 51> ZNUM;  // [i] 1 <= i <= JN
    Table<double, 51> ZDEN;  // [i] 1 <= i <= JD
    int JN = 0;
    int JD = 0;
};
template <ListedAs<DirectForm> Record, class Visit>
constexpr void fields_of(Record& form, Visit&& visit) {
    visit("ZNUM", form.ZNUM, form.JN);
    visit("ZDEN", form.ZDEN, form.JD);
    visit("JN", form.JN);
    visit("JD", form.JD);
}
static_assert(lists_each_field<DirectForm>);

// Gray-Markel lattice: reflection coefficients and tap weights.
struct LatticeForm {
    Table<double, 51> GMMUL;  // [i] 1 <= i <= JM
    Table<double, 51> GMTAP;  // [i] 1 <= i <= JT = JM + 1
    int JM = 0;
    int JT = 0;
};
template <ListedAs<LatticeForm> Record, class Visit>
constexpr void fields_of(Record& form, Visit&& visit) {
    visit("GMMUL", form.GMMUL, form.JM);
    visit("GMTAP", form.GMTAP, form.JT);
    visit("JM", form.JM);
    visit("JT", form.JT);
}
static_assert(lists_each_field<LatticeForm>);

// Two chains of allpass sections (A2 + A1 z^-1 + z^-2)/(1 + A1 z^-1 + A2 z^-2), of first order (A1 + z^-1)/(1 + A1
// z^-1) where A2 is 0. The sum of their outputs has half their sum, the difference minus half their difference.
struct AllpassForm {
    Table<double, 13> TA1;  // [k] 1 <= k <= NTA: first chain
    Table<double, 13> TA2;
    Table<double, 13> TB1;  // [k] 1 <= k <= NTB: second chain
    Table<double, 13> TB2;
    int NTA = 0;
    int NTB = 0;
    Table<int, iir_root_limit> LARR;  // [i] of pole i as the design had it: 1 the first chain, any other the second
    bool ALLPASS_OK = false;          // LARR is set, and the poles are those of the design
};
template <ListedAs<AllpassForm> Record, class Visit>
constexpr void fields_of(Record& form, Visit&& visit) {
    visit("TA1", form.TA1, form.NTA);
    visit("TA2", form.TA2, form.NTA);
    visit("TB1", form.TB1, form.NTB);
    visit("TB2", form.TB2, form.NTB);
    visit("NTA", form.NTA);
    visit("NTB", form.NTB);
    visit("LARR", form.LARR);
    visit("ALLPASS_OK", form.ALLPASS_OK);
}
static_assert(lists_each_field<AllpassForm>);

// `delay`: a delay line or a delay equalizer.
enum class DigitalKind : int { unknown = 0, low_pass = 1, high_pass = 2, band_pass = 3, band_reject = 4, delay = 5 };

// What was asked of the filter, as bands of its own frequencies in Hz: at most so much loss in a pass band, at least so
// much in a stopband. Losses count from `flat_loss`. Without rows nothing was asked.
struct IirRequestRow {
    bool stopband = false;
    double from = 0;
    double to = 0;
    double loss = 0;
};
template <ListedAs<IirRequestRow> Record, class Visit>
constexpr void fields_of(Record& row, Visit&& visit) {
    visit("stopband", row.stopband);
    visit("from", row.from);
    visit("to", row.to);
    visit("loss", row.loss);
}
static_assert(lists_each_field<IirRequestRow>);
struct IirAsked {
    int count = 0;
    Table<IirRequestRow, 4> rows;  // [i] 1 <= i <= count, pass bands first
    double flat_loss = 0;          // dB
    bool sloping = false;          // the pass band's losses lie in a strip of `loss` about a slope in dB/octave
    double slope = 0;
};
template <ListedAs<IirAsked> Record, class Visit>
constexpr void fields_of(Record& asked, Visit&& visit) {
    visit("count", asked.count);
    visit("rows", asked.rows, asked.count);
    visit("flat_loss", asked.flat_loss);
    visit("sloping", asked.sloping);
    visit("slope", asked.slope);
}
static_assert(lists_each_field<IirAsked>);

struct IirFilter {
    double fs = 0.0;   // Hz
    double T = 0.0;    // seconds, 1/fs
    double FLO = 0.0;  // edges of the pass band in Hz, 0 where there is none
    double FHI = 0.0;
    DigitalKind kind = DigitalKind::unknown;
    FixedText<20> FilterTypeText = "unknown";
    ZTransform z_transform = ZTransform::unknown;
    SpectralKind spectral = SpectralKind::none;
    bool converted = false;                     // "conv" was done
    bool Modified = false;                      // no longer the designed or stored one: set by every edit
    WordLength word{.bits = unquantised_bits};  // of the coefficients
    double LastBits = unquantised_bits;  // a truncation takes a shorter word; 0 after a conversion: there is no other
    DigitalRoots roots;
    CascadeForm cascade;
    ParallelForm parallel;
    DirectForm direct;
    LatticeForm lattice;
    AllpassForm allpass;
    int unequalized_count = 0;  // poles of the filter before it was equalized
    Table<double, 51> UNEQUALIZED_RE;
    Table<double, 51> UNEQUALIZED_IM;

    bool designed = false;      // what follows is the design that it came from
    FilterSpec spec;            // of the analog prototype, with what was found for it
    TransferFunction transfer;  // the prototype
    DesignBackground background;
    IirAsked asked;
};
template <ListedAs<IirFilter> Record, class Visit>
constexpr void fields_of(Record& filter, Visit&& visit) {
    visit("fs", filter.fs);
    visit("T", filter.T);
    visit("FLO", filter.FLO);
    visit("FHI", filter.FHI);
    visit("kind", filter.kind);
    visit("FilterTypeText", filter.FilterTypeText);
    visit("z_transform", filter.z_transform);
    visit("spectral", filter.spectral);
    visit("converted", filter.converted);
    visit("Modified", filter.Modified);
    visit("word", filter.word);
    visit("LastBits", filter.LastBits);
    visit("roots", filter.roots);
    visit("cascade", filter.cascade);
    visit("parallel", filter.parallel);
    visit("direct", filter.direct);
    visit("lattice", filter.lattice);
    visit("allpass", filter.allpass);
    visit("unequalized_count", filter.unequalized_count);
    visit("UNEQUALIZED_RE", filter.UNEQUALIZED_RE, filter.unequalized_count);
    visit("UNEQUALIZED_IM", filter.UNEQUALIZED_IM, filter.unequalized_count);
    visit("designed", filter.designed);
    visit("spec", filter.spec);
    visit("transfer", filter.transfer);
    visit("background", filter.background);
    visit("asked", filter.asked);
}
static_assert(lists_each_field<IirFilter>);

static_assert(std::is_trivially_copyable_v<IirFilter>);

// The roots of one factor 1 + c1 z^-1 + c2 z^-2, appended to a list of `count`: -c1 alone where c2 is exactly 0.
void factorRoots(double c1, double c2, Table<double, 51>& re, Table<double, 51>& im, int& count);

// The roots from the cascade, as its own factors have them: ZMULT is CK times the scale factors, PMULT 1. A factor of 1
// has none.
void rootsFromFactors(IirFilter& filter);

// Undoes scaling: the scale factors go back into CK and are 1.
void unscale(CascadeForm& cascade);

// Takes scale factors in place of those in force, one for each section, none of them 0; H stays, by CK. A factor of 1
// is added to the numerators for each section that is scaled and has none.
using ScaleFactors = Table<double, iir_section_limit>;
void rescale(CascadeForm& cascade, const ScaleFactors& SC);

// Whether the roots of z^2 + c1 z + c2 are inside the unit circle.
[[nodiscard]] constexpr bool has_poles_inside(double c1, double c2) {
    const long double limit = 1 + static_cast<long double>(c2);
    return c2 < 1 && c1 < limit && -c1 < limit;
}

// Numerator factor k as 1 + c1 z^-1 + c2 z^-2: what is stored, over SC(k).
struct FactorCoefficients {
    double c1 = 0;
    double c2 = 0;
};
[[nodiscard]] FactorCoefficients numerator_factor(const CascadeForm& cascade, int k);

[[nodiscard]] constexpr int section_count(const CascadeForm& c) { return c.NNUM > c.NDEN ? c.NNUM : c.NDEN; }
[[nodiscard]] constexpr bool is_there(const ParallelForm& form) { return form.NPAR > 0; }
[[nodiscard]] constexpr bool is_there(const DirectForm& form) { return form.JN + form.JD > 0; }
[[nodiscard]] constexpr bool is_there(const LatticeForm& form) { return form.JM + form.JT > 0; }
[[nodiscard]] constexpr bool is_there(const AllpassForm& form) { return form.NTA * form.NTB > 0; }

// Whether there is a filter at all.
[[nodiscard]] constexpr bool has_filter(const IirFilter& filter) { return filter.fs > 0; }

// Whether the coefficients are no longer those of the roots, but were brought to a finite word.
[[nodiscard]] constexpr bool is_truncated(const IirFilter& filter) { return filter.word.bits < unquantised_bits; }

// Gives up the four forms that are made of the cascade; the chains of a differential allpass are known no more.
void clear_derived_forms(IirFilter& filter);

// Takes a root out of a list: the nearest one within max(1e-8, 1e-10 |value|) of `value`. False where there is none.
[[nodiscard]] bool removeRoot(Complex<double> value, Table<double, 51>& re, Table<double, 51>& im, int& count);

// Which output of a differential allpass pair is the filter: the sum of a low-pass and a band-reject.
enum class AllpassOutput : int { filter = 1, sum = 2, difference = 3 };
[[nodiscard]] constexpr AllpassOutput output_that_is_the_filter(DigitalKind kind) {
    const bool difference = kind == DigitalKind::high_pass || kind == DigitalKind::band_pass;
    return difference ? AllpassOutput::difference : AllpassOutput::sum;
}

// The texts of ZTransform and of DigitalKind in reports and state files.
[[nodiscard]] std::string_view z_transform_text(ZTransform transform);
[[nodiscard]] std::string_view kind_name(DigitalKind kind);           // "low_pass", "unknown"
[[nodiscard]] std::string_view spectral_name(SpectralKind spectral);  // "lowpass-to-highpass", "none"

}  // namespace kavrel
