#include "iir/edits.h"

#include <cmath>
#include <optional>
#include <vector>

#include "approximation/loss_rows.h"
#include "approximation/s_plane.h"
#include "shell/edited.h"
#include "shell/number_text.h"

namespace kavrel {

namespace {

using Coefficients = Table<double, iir_section_limit>;

// What is of one place of the cascade, numerator or denominator.
struct Place {
    Coefficients& C1;
    Coefficients& C2;
    int& factors;
    Table<double, 51>& re;
    Table<double, 51>& im;
    int& roots;
};
Place place_of(IirFilter& filter, FactorPlace place);
void end_request(IirFilter& filter);
bool remove_roots(double c1, double c2, Place& place);
void close_gap(Coefficients& values, int hole, int count);
std::optional<std::vector<int>> sequence_of(const IirRequest& request);
bool permutes(const std::vector<int>& sequence, int count);

}  // namespace

Refusal add_flat_loss(IirFilter& filter, const IirRequest& request, const UnitSet&, Lines& lines) {
    if (request.loss == 0) return {};
    const double factor = std::pow(10.0, request.loss / -20);
    const double level = filter.cascade.CK * factor;
    if (filter.cascade.CK != 0 && !std::isnormal(level)) return {"Flat loss is out of range", "loss"};
    for (double* value : {&filter.roots.ZMULT, &filter.cascade.CK, &filter.parallel.AO}) *value *= factor;
    for (auto* table : {&filter.parallel.AL, &filter.parallel.BE}) {
        for (double& value : *table) value *= factor;
    }
    for (auto* table : {&filter.lattice.GMTAP, &filter.direct.ZNUM}) {
        for (double& value : *table) value *= factor;
    }
    if (filter.allpass.ALLPASS_OK) lines.emplace_back(" Flat loss: the differential allpass form is given up");
    filter.allpass = {};
    filter.asked.flat_loss += request.loss;
    return {};
}

Refusal add_factor(IirFilter& filter, const IirRequest& request, const UnitSet&, Lines&) {
    const double c1 = request.c1, c2 = request.c2;
    if (c1 == 0 && c2 == 0) return {"Values not permitted", "c1"};
    const Place place = place_of(filter, request.added_to);
    if (place.roots + (c2 == 0 ? 1 : 2) > iir_root_limit) return {degree_too_high, "place"};
    if (request.added_to == FactorPlace::denominator && !has_poles_inside(c1, c2)) return {pole_outside, "c1"};
    if (place.factors == iir_section_limit) return {"There is no place for another factor", "place"};
    const int k = ++place.factors;
    place.C1(k) = c1;
    place.C2(k) = c2;
    factorRoots(c1, c2, place.re, place.im, place.roots);
    end_request(filter);
    return {};
}

Refusal delete_factor(IirFilter& filter, const IirRequest& request, const UnitSet&, Lines&) {
    Place place = place_of(filter, request.deleted_from);
    const int k = request.deleted;
    if (k < 1 || k > place.factors) return {no_such_factor, "number"};
    unscale(filter.cascade);
    const bool found = remove_roots(place.C1(k), place.C2(k), place);
    if (!found && is_truncated(filter)) return {"Sorry, a root was not found due to truncation"};
    close_gap(place.C1, k, place.factors);
    close_gap(place.C2, k, place.factors);
    --place.factors;
    // Roots that nearly coincide, or were pushed apart, are those of no factor to the last digits.
    if (!found) rootsFromFactors(filter);
    end_request(filter);
    return {};
}

Refusal permute_factors(IirFilter& filter, const IirRequest& request, const UnitSet&, Lines&) {
    CascadeForm& cascade = filter.cascade;
    if (section_count(cascade) == 0) return {no_cascade};
    const bool numerators = request.permuted != FactorPlace::denominator;
    const bool denominators = request.permuted != FactorPlace::numerator;
    if ((numerators && cascade.NNUM < 2) || (denominators && cascade.NDEN < 2)) return {too_few_to_permute, "place"};
    const auto sequence = sequence_of(request);
    const bool fits = sequence && !(numerators && !permutes(*sequence, cascade.NNUM)) &&
                      !(denominators && !permutes(*sequence, cascade.NDEN));
    if (!fits) {
        Refusal wrong{"Incorrect permuted sequence", "sequence"};
        wrong.caption = "Eror";
        return wrong;
    }
    if (numerators) {
        for (Coefficients* values : {&cascade.C1N, &cascade.C2N, &cascade.SC}) permute(*values, *sequence);
    }
    if (denominators) {
        for (Coefficients* values : {&cascade.C1D, &cascade.C2D}) permute(*values, *sequence);
    }
    return {};
}

void permute(Table<double, iir_section_limit>& values, const std::vector<int>& sequence) {
    const Coefficients before = values;
    int k = 0;
    for (const int number : sequence) values(++k) = before(number);
}

Refusal resample(IirFilter& filter, const IirRequest& request, const UnitSet& units, Lines&) {
    const double fs = request.sampling_frequency * units.frequency_multiplier;
    if (!(fs > 0)) return {fs == 0 ? "Zero value not permitted" : "Values must be > 0.0", "sampling_frequency"};
    const double factor = fs / filter.fs;
    if (!is_in_range(fs) || !is_in_range(factor) || factor == 0) {
        return {"Sampling frequency is out of range", "sampling_frequency"};
    }
    filter.fs = fs;
    filter.T = 1 / fs;
    DesignBackground& background = filter.background;
    for (double* frequency : {&filter.FLO, &filter.FHI, &background.worked_lower_edge, &background.worked_upper_edge}) {
        *frequency *= factor;
    }
    for (int i = 1; i <= filter.asked.count; ++i) {
        IirRequestRow& row = filter.asked.rows(i);
        row.from *= factor;
        row.to *= factor;
    }
    if (filter.designed) scale_transfer(filter.spec.medium, factor, filter.transfer);
    for (FilterSpec* spec : {&filter.spec, &background.request}) *spec = scaled_request(*spec, factor);
    return {};
}

namespace {

Place place_of(IirFilter& filter, FactorPlace place) {
    CascadeForm& c = filter.cascade;
    DigitalRoots& r = filter.roots;
    if (place == FactorPlace::denominator) return {c.C1D, c.C2D, c.NDEN, r.QR, r.PI, r.NP};
    return {c.C1N, c.C2N, c.NNUM, r.ZR, r.ZI, r.NZ};
}

// Of what it was designed for: the filter is another one now.
void end_request(IirFilter& filter) {
    clear_derived_forms(filter);
    filter.asked = {};
}

// The roots of a factor; one that is 0 alone, as in a factor of 1, is none.
bool remove_roots(double c1, double c2, Place& place) {
    if (c1 == 0 && c2 == 0) return true;
    Table<double, 51> re, im;
    int count = 0;
    factorRoots(c1, c2, re, im, count);
    for (int i = 1; i <= count; ++i) {
        if (!removeRoot({re(i), im(i)}, place.re, place.im, place.roots)) return false;
    }
    return true;
}

void close_gap(Coefficients& values, int hole, int count) {
    for (int k = hole; k < count; ++k) values(k) = values(k + 1);
    values(count) = 0;
}

// The numbers as they were typed; none where a word is no whole number.
std::optional<std::vector<int>> sequence_of(const IirRequest& request) {
    std::vector<int> sequence;
    for (const std::string_view word : words_of_free_format(request.sequence.trimmed())) {
        const auto number = parse_integer(word);
        if (!number) return std::nullopt;
        sequence.push_back(*number);
    }
    return sequence;
}

// Each number from 1 to `count` once.
bool permutes(const std::vector<int>& sequence, int count) {
    if (sequence.size() != static_cast<std::size_t>(count)) return false;
    std::vector<bool> found(sequence.size());
    for (const int number : sequence) {
        if (number < 1 || number > count || found[static_cast<std::size_t>(number) - 1]) return false;
        found[static_cast<std::size_t>(number) - 1] = true;
    }
    return true;
}

}  // namespace

}  // namespace kavrel
