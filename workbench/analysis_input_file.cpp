#include "workbench/analysis_input_file.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "workbench/stored_list.h"

namespace kavrel {

namespace {

bool within(int value, int low, int high) { return value >= low && value <= high; }

constexpr double FilterAnalysisRequest::*analysis_numbers[] = {&FilterAnalysisRequest::lower_passband,
                                                               &FilterAnalysisRequest::upper_passband,
                                                               &FilterAnalysisRequest::sampling_or_qw};
constexpr int FilterAnalysisRequest::*analysis_integers[] = {
    &FilterAnalysisRequest::analysis_kind, &FilterAnalysisRequest::analysis_type,
    &FilterAnalysisRequest::zeros_at_infinity, &FilterAnalysisRequest::form, &FilterAnalysisRequest::structure};

bool settle(FilterAnalysisRequest& r) {
    const bool lists = settle_list(r.TR_POLES) && settle_list(r.TR_ZEROS) && settle_list(r.NUMER) &&
                       settle_list(r.DENOM) && settle_list(r.FEED);
    const bool type = within(r.analysis_type, AnalysisType::low_pass, AnalysisType::high_pass) ||
                      within(r.analysis_type, AnalysisType::band_pass, AnalysisType::delay_equalizer);
    return lists && type && within(r.analysis_kind, 1, 5) && within(r.zeros_at_infinity, 0, max_degree) &&
           within(r.form, 1, 2) && within(r.structure, 1, 3) &&
           std::ranges::all_of(analysis_numbers, [&](auto member) { return std::isfinite(r.*member); });
}

bool settle(FirAnalysisRequest& r) {
    return settle_list(r.COEFFICIENTS) && settle_list(r.FIR_ZEROS) && within(r.filter_data, 1, 2) &&
           within(r.filter_symmetry, 1, 3) && within(r.filter_length, 0, fir_coefficient_limit) &&
           std::isfinite(r.sampling_freq);
}

}  // namespace

std::string analysis_input_bytes(const FilterAnalysisRequest& request) {
    RecordWriter file;
    file.begin();
    put_cells(file, request.TR_POLES);
    put_cells(file, request.TR_ZEROS);
    put_cells(file, request.NUMER);
    put_cells(file, request.DENOM);
    put_cells(file, request.FEED);
    for (const int rows :
         {request.TR_POLES.rows, request.TR_ZEROS.rows, request.NUMER.rows, request.DENOM.rows, request.FEED.rows}) {
        file.put(rows);
    }
    file.end();
    file.begin();
    for (const auto member : analysis_numbers) file.put(request.*member);
    for (const auto member : analysis_integers) file.put(request.*member);
    file.end();
    return file.bytes();
}

bool read_analysis_input(std::string_view bytes, FilterAnalysisRequest& request) {
    FilterAnalysisRequest found = request;
    RecordReader file(bytes);
    file.begin();
    file.take(found.TR_POLES.cells);
    file.take(found.TR_ZEROS.cells);
    file.take(found.NUMER.cells);
    file.take(found.DENOM.cells);
    file.take(found.FEED.cells);
    for (int* rows :
         {&found.TR_POLES.rows, &found.TR_ZEROS.rows, &found.NUMER.rows, &found.DENOM.rows, &found.FEED.rows}) {
        file.take(*rows);
    }
    file.end();
    file.begin();
    for (const auto member : analysis_numbers) file.take(found.*member);
    for (const auto member : analysis_integers) file.take(found.*member);
    file.end();
    for (int* group : {&found.form, &found.structure}) settle_choice(*group);
    if (!file.finished() || !settle(found)) return false;
    request = found;
    return true;
}

std::string fir_analysis_input_bytes(const FirAnalysisRequest& request) {
    RecordWriter file;
    file.begin();
    put_cells(file, request.COEFFICIENTS);
    put_cells(file, request.FIR_ZEROS);
    file.put(request.COEFFICIENTS.rows);
    file.put(request.FIR_ZEROS.rows);
    file.end();
    file.begin();
    file.put(request.sampling_freq);
    file.put(std::array{0.0, 0.0});
    for (const int choice : {request.filter_data, request.filter_symmetry, request.filter_length}) file.put(choice);
    file.end();
    return file.bytes();
}

bool read_fir_analysis_input(std::string_view bytes, FirAnalysisRequest& request) {
    FirAnalysisRequest found = request;
    std::array<double, 2> spare_bands{};
    RecordReader file(bytes);
    file.begin();
    file.take(found.COEFFICIENTS.cells);
    file.take(found.FIR_ZEROS.cells);
    file.take(found.COEFFICIENTS.rows);
    file.take(found.FIR_ZEROS.rows);
    file.end();
    file.begin();
    file.take(found.sampling_freq);
    file.take(spare_bands);
    for (int* choice : {&found.filter_data, &found.filter_symmetry, &found.filter_length}) file.take(*choice);
    file.end();
    settle_choice(found.filter_symmetry);
    if (!file.finished() || !settle(found)) return false;
    request = found;
    return true;
}

}  // namespace kavrel
