#include "iir/iir_records.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "approximation/design_check.h"
#include "shell/finite.h"
#include "shell/stored_files.h"

namespace kavrel {

namespace {

constexpr FixedText<8> mark = "Kavrel 1";

// The two directions: `File` is a RecordWriter or a RecordReader, `Filter` an IirFilter, const or not accordingly.
template <class File, class Filter, class Title>
void first_records(File& file, Filter& filter, Title& title);
template <class File, class Filter, class Mark>
void last_record(File& file, Filter& filter, Mark& stored_mark);
template <class File, class Filter, class Title>
void snapshot_records(File& file, Filter& filter, Title& title);
void settle(IirFilter& filter);
void leave_design(IirFilter& filter);
bool sound(const IirFilter& filter);
bool has_pairs(int count, const Table<double, 51>& im);

}  // namespace

std::string iir_records(const IirFilter& filter, const FixedText<80>& title) {
    RecordWriter file;
    first_records(file, filter, title);
    last_record(file, filter, mark);
    return file.bytes();
}

bool read_iir_records(std::string_view bytes, IirFilter& filter, FixedText<80>& title) {
    IirFilter found;
    FixedText<80> found_title;
    RecordReader file(bytes);
    first_records(file, found, found_title);
    if (file.finished()) {
        leave_design(found);
    } else {
        FixedText<8> found_mark;
        last_record(file, found, found_mark);
        if (!file.finished() || found_mark.bytes != mark.bytes) return false;
    }
    if (!sound(found)) return false;
    const bool is_filter = found.T > 0 && found.fs > 0 && std::ranges::count(found.cascade.SC, 0) == 0 &&
                           has_pairs(found.roots.NZ, found.roots.ZI) && has_pairs(found.roots.NP, found.roots.PI);
    if (!is_filter || !is_finite(found)) return false;
    settle(found);
    filter = found;
    title = found_title;
    return true;
}

std::string iir_snapshot(const IirFilter& filter, const FixedText<80>& title) {
    RecordWriter file;
    snapshot_records(file, filter, title);
    return file.bytes();
}

bool read_iir_snapshot(std::string_view bytes, IirFilter& filter, FixedText<80>& title) {
    IirFilter found;
    FixedText<80> found_title;
    RecordReader file(bytes);
    snapshot_records(file, found, found_title);
    if (!file.finished() || !sound(found)) return false;
    filter = found;
    title = found_title;
    return true;
}

namespace {

// Filter kinds have the numbers of FilterType, 0 where it is not known.
constexpr FilterType number_of(DigitalKind kind) {
    constexpr std::array numbers = {FilterType{0}, low_pass, high_pass, band_pass, band_reject, delay_equalizer};
    return numbers[static_cast<std::size_t>(kind)];
}
constexpr DigitalKind kind_of(FilterType number) {
    using enum DigitalKind;
    for (const DigitalKind kind : {low_pass, high_pass, band_pass, band_reject, delay}) {
        if (number_of(kind) == number) return kind;
    }
    return number == linear_phase_low_pass ? DigitalKind::low_pass : DigitalKind::unknown;
}

constexpr std::size_t prototype_bytes = 1800;
constexpr std::size_t design_bytes = 208;

// Edges, losses, choices and counts of a design.
template <class Spec, class Background, class Visit>
constexpr auto design_block(Spec& spec, Background& background, const Visit& visit) {
    return visit(spec.lowerPassEdge, spec.upperPassEdge, spec.lowerStopEdge, spec.upperStopEdge, spec.bandEdgeLoss,
                 spec.stopbandLoss, spec.upperStopLoss, spec.sourceResistance, spec.loadResistance, spec.predistortionQ,
                 spec.freal, spec.functionMultiplier, spec.reflectionInput, spec.flatLoss, spec.sampleFrequency,
                 spec.centerFrequency, spec.filterType, spec.passbandType, spec.bandpassType, spec.stopbandType,
                 spec.medium, spec.numeratorDegree, spec.denominatorDegree, spec.zerosAtZero, spec.zerosAtInfinity,
                 spec.unitElements, spec.zeroCount, spec.degree, spec.degreeParity, spec.symmetryFlag, spec.runFlag,
                 spec.designError, background.worked_lower_edge, background.worked_upper_edge);
}

template <class... Items>
constexpr std::size_t bytes_of_items(const Items&...) {
    return (sizeof(Items) + ... + 0);
}
constexpr std::size_t listed_design_bytes = [] {
    constexpr FilterSpec spec;
    constexpr DesignBackground background;
    return design_block(spec, background, [](const auto&... items) { return bytes_of_items(items...); });
}();
constexpr std::size_t listed_prototype_bytes = [] {
    std::size_t bytes = 0;
    constexpr TransferFunction prototype;
    for_each_field(prototype, [&](const auto& field) { bytes += sizeof field; });
    return bytes;
}();
static_assert(listed_prototype_bytes <= prototype_bytes);
static_assert(listed_design_bytes == design_bytes);
static_assert(6 * sizeof(DirectForm::ZNUM) == 2448 && sizeof(DigitalRoots::ZR) == 408);
static_assert(4 * sizeof(ParallelForm::AL) + sizeof(ParallelForm::AO) == 840);
static_assert(sizeof(AllpassForm::LARR) == 200 && 4 * sizeof(AllpassForm::TA1) == 416);
static_assert(sizeof(CascadeForm::SC) == 200 && sizeof(IirFilter::FilterTypeText) == 20);

template <class File, class Filter>
void polynomials(File& file, Filter& f) {
    file.items(f.direct.ZNUM, f.direct.ZDEN, f.lattice.GMMUL, f.lattice.GMTAP, f.UNEQUALIZED_RE, f.UNEQUALIZED_IM);
}
template <class File, class Filter>
void root_block(File& file, Filter& f) {
    auto& r = f.roots;
    file.items(r.ZR, r.ZI, r.ZMULT, r.QR, r.PI, r.PMULT, r.NZ, r.NP);
}
template <class File, class Filter>
void factor_tables(File& file, Filter& f) {
    file.items(f.cascade.C1D, f.cascade.C2D, f.cascade.C1N, f.cascade.C2N);
}
template <class File, class Filter>
void parallel_block(File& file, Filter& f) {
    file.items(f.parallel.AL, f.parallel.BE, f.parallel.GA, f.parallel.DE, f.parallel.AO);
}
template <class File, class Filter>
void polynomial_counts(File& file, Filter& f) {
    file.items(f.direct.JN, f.direct.JD, f.lattice.JM, f.lattice.JT, f.unequalized_count);
}
template <class File, class Filter>
void allpass_tables(File& file, Filter& f) {
    file.items(f.allpass.TA1, f.allpass.TA2, f.allpass.TB1, f.allpass.TB2, f.allpass.NTA, f.allpass.NTB);
}

// The block of the prototype, and that of its design, which nobody reads here.
template <class File, class Filter>
void prototype_blocks(File& file, Filter& f) {
    std::array<char, prototype_bytes - listed_prototype_bytes> rest{};
    file.items(f.transfer, rest);
    auto spec = f.spec;
    auto background = f.background;
    design_block(spec, background, [&](auto&... items) { file.items(items...); });
}

// Method and number form of a word in one integer: 0 is that of files that do not say it.
std::int32_t word_code(const WordLength& word) {
    return 2 * (static_cast<int>(word.number_form) - 1) + static_cast<int>(word.method) - 1;
}
void take_word_code(std::int32_t code, WordLength& word) {
    word.method = static_cast<WordMethod>((code & 1) + 1);
    word.number_form = static_cast<NumberForm>((code >> 1) + 1);
}

// Records 1 to 7.
template <class File, class Filter, class Title>
void first_records(File& file, Filter& f, Title& title) {
    FilterType kind = number_of(f.kind);
    std::int32_t none = 0, word = word_code(f.word);
    file.record(f.T, title);
    file.begin();
    root_block(file, f);
    file.end();
    file.record(f.cascade.SC, f.FLO, f.FHI, f.LastBits, f.spectral);
    file.begin();
    factor_tables(file, f);
    file.items(f.cascade.CK, f.FilterTypeText, f.z_transform, kind);
    file.items(f.cascade.SCALED, f.converted, f.cascade.NNUM, f.cascade.NDEN);
    file.end();
    file.begin();
    prototype_blocks(file, f);
    polynomials(file, f);
    file.end();
    file.begin();
    parallel_block(file, f);
    polynomial_counts(file, f);
    file.items(word, f.parallel.NPAR);
    file.end();
    file.begin();
    file.items(f.allpass.LARR, f.allpass.ALLPASS_OK);
    allpass_tables(file, f);
    file.items(none);
    file.end();
    if constexpr (File::reads) {
        f.kind = kind_of(kind);
        take_word_code(word, f.word);
    }
}

template <class File, class Filter, class Mark>
void last_record(File& file, Filter& f, Mark& stored_mark) {
    file.record(stored_mark, f.fs, f.Modified, f.word.bits, f.designed, f.spec, f.background, f.asked);
}

template <class File, class Filter, class Title>
void snapshot_records(File& file, Filter& f, Title& title) {
    file.begin();
    polynomials(file, f);
    root_block(file, f);
    file.items(f.cascade.SC);
    factor_tables(file, f);
    parallel_block(file, f);
    file.items(f.parallel.NPAR);
    polynomial_counts(file, f);
    file.items(f.cascade.NNUM, f.cascade.NDEN);
    allpass_tables(file, f);
    file.items(f.allpass.ALLPASS_OK, f.LastBits, f.cascade.SCALED);
    file.end();
    file.begin();
    file.items(title, f.fs, f.T, f.FLO, f.FHI, f.kind, f.FilterTypeText, f.z_transform, f.spectral, f.converted);
    file.items(f.Modified, f.word, f.cascade.CK, f.allpass.LARR);
    file.items(f.designed, f.spec, f.transfer, f.background, f.asked);
    file.end();
}

// What a file from elsewhere may leave open. A scale factor without a numerator makes one of it. No last word is that
// of a conversion; without one, there was no truncation.
void settle(IirFilter& filter) {
    CascadeForm& c = filter.cascade;
    for (int k = c.NNUM + 1; k <= iir_section_limit; ++k) {
        if (k > c.NDEN) c.SC(k) = 1;
        if (c.SC(k) == 1) continue;
        for (int i = c.NNUM + 1; i <= k; ++i) c.C1N(i) = c.C2N(i) = 0;
        c.NNUM = k;
    }
    if (filter.LastBits == 0 && !filter.converted) filter.LastBits = unquantised_bits;
    if (filter.roots.ZMULT == 0) filter.roots.ZMULT = 1;
    if (filter.roots.PMULT == 0) filter.roots.PMULT = 1;
    if (filter.z_transform < ZTransform::impulse_invariant || filter.z_transform > ZTransform::unknown) {
        filter.z_transform = ZTransform::unknown;
    }
}

// Of a file that ends after record 7: what its prototype is, nobody knows.
void leave_design(IirFilter& filter) {
    filter.fs = 1 / filter.T;
    filter.transfer = {};
    filter.word = {.bits = unquantised_bits};
}

bool sound_chains(const IirFilter& filter);

bool sound_word(const WordLength& word) {
    const int code = word_code(word);
    return word.bits >= 1 && word.bits <= unquantised_bits && code >= 0 && code <= 3;
}

bool sound(const IirFilter& filter) {
    const DigitalRoots& roots = filter.roots;
    const LatticeForm& lattice = filter.lattice;
    const bool choices = filter.kind >= DigitalKind::unknown && filter.kind <= DigitalKind::delay &&
                         filter.spectral >= SpectralKind::none && filter.spectral <= SpectralKind::to_bandreject;
    const bool counts = counts_fit(filter) && roots.NZ <= iir_root_limit && roots.NP <= iir_root_limit &&
                        (lattice.JT == 0 ? lattice.JM == 0 : lattice.JM == lattice.JT - 1);
    return choices && counts && sound_word(filter.word) && sound_spec(filter.spec) &&
           sound_spec(filter.background.request) && sound_chains(filter);
}

// A complex root is followed by one of the other half plane. The count is within the table.
bool has_pairs(int count, const Table<double, 51>& im) {
    for (int i = 1; i <= count; ++i) {
        if (im(i) == 0) continue;
        if (i == count || !(im(i) > 0 && im(i + 1) < 0)) return false;
        ++i;
    }
    return true;
}

// Each chain of a differential allpass has its places.
bool sound_chains(const IirFilter& filter) {
    if (!filter.allpass.ALLPASS_OK) return true;
    int first = 0, second = 0;
    for (int i = 1; i <= filter.roots.NP; ++i) {
        ++(filter.allpass.LARR(i) == 1 ? first : second);
        if (filter.roots.PI(i) != 0) ++i;
    }
    return first <= decltype(AllpassForm::TA1)::bound && second <= decltype(AllpassForm::TB1)::bound;
}

}  // namespace

}  // namespace kavrel
