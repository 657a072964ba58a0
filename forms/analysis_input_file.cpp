#include "forms/analysis_input_file.h"

#include "forms/input_items.h"

namespace kavrel {

namespace {

struct FilterItems {
    template <class File, class Request, class Units>
    static void list(File& file, Request& r, Units& units);
};
struct FirItems {
    template <class File, class Request, class Units>
    static void list(File& file, Request& r, Units& units);
};

}  // namespace

std::string analysis_input_bytes(const FilterAnalysisRequest& request, const UnitSet& units) {
    return input_bytes<FilterItems>(request, units);
}

bool read_analysis_input(std::string_view bytes, FilterAnalysisRequest& request, UnitSet& units) {
    return read_input<FilterItems>(bytes, request, units);
}

std::string fir_analysis_input_bytes(const FirAnalysisRequest& request, const UnitSet& units) {
    return input_bytes<FirItems>(request, units);
}

bool read_fir_analysis_input(std::string_view bytes, FirAnalysisRequest& request, UnitSet& units) {
    return read_input<FirItems>(bytes, request, units);
}

namespace {

template <class File, class Request, class Units>
void FilterItems::list(File& file, Request& r, Units&) {
    file.begin();
    lists(file, r.TR_POLES, r.TR_ZEROS, r.NUMER, r.DENOM, r.FEED);
    file.end();

    file.begin();
    numbers(file, r.lower_passband, r.upper_passband, r.sampling_or_qw);
    whole(file, r.analysis_kind, 1, 5);
    whole(file, r.analysis_type, 1, 6);
    file.require(r.analysis_type <= AnalysisType::high_pass || r.analysis_type >= AnalysisType::band_pass);
    whole(file, r.zeros_at_infinity, 0, max_degree);
    choice(file, r.form, 2);
    choice(file, r.structure, 3);
    file.end();
}

template <class File, class Request, class Units>
void FirItems::list(File& file, Request& r, Units&) {
    std::array<double, 2> spare_bands{};
    file.begin();
    lists(file, r.COEFFICIENTS, r.FIR_ZEROS);
    file.end();

    file.begin();
    numbers(file, r.sampling_freq);
    file.items(spare_bands);
    whole(file, r.filter_data, 1, 2);
    choice(file, r.filter_symmetry, 3);
    whole(file, r.filter_length, 0, fir_coefficient_limit);
    file.end();
}

}  // namespace

}  // namespace kavrel
