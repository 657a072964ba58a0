#include "iir/truncation.h"

#include <algorithm>

#include "numeric/quantise.h"
#include "shell/edited.h"
#include "shell/whole_part.h"

namespace kavrel {

namespace {

void quantise_cascade(CascadeForm& form, const WordLength& word);
void quantise_parallel(ParallelForm& form, const WordLength& word);
void quantise_lattice(LatticeForm& form, const WordLength& word);
void quantise_direct(DirectForm& form, const WordLength& word);
void quantise_allpass(AllpassForm& form, const WordLength& word);

}  // namespace

Refusal truncateFilter(IirFilter& filter, const IirRequest& request, const UnitSet&, Lines& lines) {
    if (filter.LastBits <= request.truncated_to.bits) {
        lines.push_back(edited<"(' Function already truncated to',I3,' bits')">(whole_part<int>(filter.LastBits)));
        return {};
    }
    return truncate_to(filter, request.truncated_to);
}

Refusal truncate_to(IirFilter& filter, const WordLength& word) {
    filter.word = word;
    filter.LastBits = word.bits;
    quantise_form(filter, Implementation::parallel, word);
    if (filter.roots.NP == 0) return {};
    const CascadeForm before = filter.cascade;
    for (const auto form :
         {Implementation::cascade, Implementation::direct, Implementation::lattice, Implementation::allpass}) {
        quantise_form(filter, form, word);
    }
    if (std::ranges::count(filter.cascade.SC, 0) > 0) return {"A scale factor would be 0 in so short a word", "bits"};
    filter.roots.ZMULT = filter.cascade.CK * filter.roots.PMULT;
    if (before.SCALED) {
        for (const double scale : before.SC) filter.roots.ZMULT *= scale;
    }
    return {};
}

void quantise_form(IirFilter& filter, Implementation form, const WordLength& word) {
    switch (form) {
        case Implementation::cascade: return quantise_cascade(filter.cascade, word);
        case Implementation::parallel: return quantise_parallel(filter.parallel, word);
        case Implementation::lattice: return quantise_lattice(filter.lattice, word);
        case Implementation::direct: return quantise_direct(filter.direct, word);
        case Implementation::allpass: return quantise_allpass(filter.allpass, word);
        case Implementation::natural_modes: return;
    }
}

DigitalRoots roots_of_factors(const IirFilter& filter) {
    IirFilter work = filter;
    rootsFromFactors(work);
    return work.roots;
}

namespace {

template <int N>
void quantise_first(int count, Table<double, N>& values, const WordLength& word) {
    for (int i = 1; i <= count; ++i) values(i) = quantise(values(i), word);
}

// A section without a numerator has a scale factor all the same.
void quantise_cascade(CascadeForm& form, const WordLength& word) {
    form.CK = quantise(form.CK, word.bits, word.method == WordMethod::round);
    quantise_first(section_count(form), form.SC, word);
    for (auto* values : {&form.C1N, &form.C2N}) quantise_first(form.NNUM, *values, word);
    for (auto* values : {&form.C1D, &form.C2D}) quantise_first(form.NDEN, *values, word);
}

void quantise_parallel(ParallelForm& form, const WordLength& word) {
    for (auto* values : {&form.AL, &form.BE, &form.GA, &form.DE}) quantise_first(form.NPAR, *values, word);
    form.AO = quantise(form.AO, word);
}

void quantise_lattice(LatticeForm& form, const WordLength& word) {
    for (auto* values : {&form.GMTAP, &form.GMMUL}) quantise_first(std::max(form.JM, form.JT), *values, word);
}

void quantise_direct(DirectForm& form, const WordLength& word) {
    for (auto* values : {&form.ZNUM, &form.ZDEN}) quantise_first(form.JD, *values, word);
}

void quantise_allpass(AllpassForm& form, const WordLength& word) {
    for (auto* values : {&form.TA1, &form.TA2}) quantise_first(form.NTA, *values, word);
    for (auto* values : {&form.TB1, &form.TB2}) quantise_first(form.NTB, *values, word);
}

}  // namespace

}  // namespace kavrel
