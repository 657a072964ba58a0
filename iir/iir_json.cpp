#include "iir/iir_json.h"

#include <nlohmann/json.hpp>

#include "iir/stored_iir.h"

namespace kavrel {

using Json = nlohmann::ordered_json;

namespace {

// Rows of the cells (1) to (count) of tables.
template <class... Tables>
Json rows(int count, const Tables&... tables) {
    Json list = Json::array();
    for (int i = 1; i <= count; ++i) {
        if constexpr (sizeof...(tables) == 1) {
            list.push_back((tables(i), ...));
        } else {
            list.push_back(Json::array({tables(i)...}));
        }
    }
    return list;
}

Json cascade_part(const CascadeForm& c);
void add_word_results(const WordResults& words, Fingerprint shown, Json& part);

}  // namespace

Json iir_part(const IirFilter& filter, const WordResults& words) {
    if (!has_filter(filter)) return {};
    const DigitalRoots& r = filter.roots;
    const ParallelForm& p = filter.parallel;
    const DirectForm& d = filter.direct;
    const LatticeForm& l = filter.lattice;
    const AllpassForm& a = filter.allpass;
    Json part{{"fs", filter.fs},
              {"kind", kind_name(filter.kind)},
              {"z_transform", z_transform_text(filter.z_transform)},
              {"spectral", spectral_name(filter.spectral)},
              {"edges", {filter.FLO, filter.FHI}},
              {"converted", filter.converted},
              {"scaled", filter.cascade.SCALED},
              {"bits", filter.word.bits},
              {"zeros", rows(r.NZ, r.ZR, r.ZI)},
              {"poles", rows(r.NP, r.QR, r.PI)},
              {"zero_multiplier", r.ZMULT},
              {"pole_multiplier", r.PMULT},
              {"cascade", cascade_part(filter.cascade)}};
    if (is_there(p)) part["parallel"] = {{"constant", p.AO}, {"blocks", rows(p.NPAR, p.AL, p.BE, p.GA, p.DE)}};
    if (is_there(d)) part["direct"] = {{"numerator", rows(d.JN, d.ZNUM)}, {"denominator", rows(d.JD, d.ZDEN)}};
    if (is_there(l)) part["lattice"] = {{"multipliers", rows(l.JM, l.GMMUL)}, {"taps", rows(l.JT, l.GMTAP)}};
    if (is_there(a)) {
        const bool difference = output_that_is_the_filter(filter.kind) == AllpassOutput::difference;
        part["allpass"] = {{"first", rows(a.NTA, a.TA1, a.TA2)},
                           {"second", rows(a.NTB, a.TB1, a.TB2)},
                           {"output", difference ? "difference" : "sum"}};
    }
    add_word_results(words, fingerprint(filter), part);
    return part;
}

namespace {

Json cascade_part(const CascadeForm& c) {
    const auto one = [](int) { return 1.0; };
    return {{"front", c.CK},
            {"scale", rows(std::max(c.NNUM, c.NDEN), c.SC)},
            {"numerator", rows(c.NNUM, c.SC, c.C1N, c.C2N)},
            {"denominator", rows(c.NDEN, one, c.C1D, c.C2D)}};
}

Json limit_cycle_part(const LimitCycle& cycle) {
    return {{"section", cycle.section},
            {"frequency", cycle.frequency},
            {"amplitude_bound", cycle.amplitude_bound},
            {"rms", cycle.rms},
            {"output_rms", cycle.output_rms}};
}

Json order_part(const SectionOrder& order) {
    return {{"seed", order.seed},
            {"numerator", order.numerator},
            {"denominator", order.denominator},
            {"noise_gain", order.noise_gain},
            {"natural", order.natural}};
}

Json least_word_part(const LeastWord& least) {
    Json part{{"form", form_name(least.form)}};
    add_least_word(least, part);
    return part;
}

// What is of the filter shown.
void add_word_results(const WordResults& words, Fingerprint shown, Json& part) {
    const auto list = [](const auto& results, auto part_of) {
        Json parts = Json::array();
        for (const auto& one : results) parts.push_back(part_of(one));
        return parts;
    };
    if (words.noise_gain.of == shown) part["noise_gain"] = words.noise_gain.result;
    if (words.limit_cycles.of == shown) part["limit_cycles"] = list(words.limit_cycles.result, limit_cycle_part);
    if (words.order.of == shown) part["order"] = order_part(words.order.result);
    if (words.word_lengths.of == shown) part["word_lengths"] = list(words.word_lengths.result, least_word_part);
}

}  // namespace

}  // namespace kavrel
