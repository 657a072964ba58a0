#include "iir/iir_json.h"

#include <nlohmann/json.hpp>

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

}  // namespace

Json iir_part(const IirFilter& filter) {
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
              {"bits", filter.bits},
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

}  // namespace

}  // namespace kavrel
