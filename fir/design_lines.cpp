#include "fir/design_lines.h"

#include <algorithm>

#include "fir/fir_report.h"
#include "fir/fir_task.h"
#include "fir/level_edits.h"
#include "fir/window_design.h"
#include "fir/windows.h"
#include "shell/edited.h"

namespace kavrel {

using Lines = std::vector<std::string>;

namespace {

void add_design(const FirFilter& filter, Lines& lines);
void add_bands(const FirFilter& filter, Lines& lines);
void add_window(const FirFilter& filter, Lines& lines);
void add_functions(const FirFilter& filter, Lines& lines);
void add_factors(const FirFactors& factors, Lines& lines);

}  // namespace

Lines design_lines(const FirFilter& filter, std::string_view title) {
    Lines lines{" " + std::string(title)};
    add_design(filter, lines);
    add_functions(filter, lines);
    add_factors(filter.factors, lines);
    return lines;
}

Lines function_lines(const FirFilter& filter, int n, std::string_view title) {
    Lines lines{" " + std::string(title),
                edited<"(' Function number ',I2,', length ',A)">(n, wide_number(filter.FUNCTION(n).taps))};
    const Lines response = impulse_response_lines(filter, n);
    lines.insert(lines.end(), response.begin(), response.end());
    const bool nothing = std::ranges::all_of(stored_coefficients(filter, n), [](double h) { return h == 0; });
    if (nothing) lines.emplace_back("    **** All coefficients are 0 ****");
    return lines;
}

namespace {

void add_frequency(std::string_view label, double hertz, Lines& lines) {
    lines.push_back(edited<"(4X,A,' = ',1P,E15.7,' Hz.')">(label, hertz));
}

void add_design(const FirFilter& filter, Lines& lines) {
    switch (filter.origin) {
        case FirOrigin::equal_ripple: add_bands(filter, lines); break;
        case FirOrigin::windowed: add_window(filter, lines); break;
        case FirOrigin::given:
            lines.emplace_back(" Filter from outside");
            add_frequency("Sampling rate", filter.sampling_frequency, lines);
            break;
    }
}

void add_bands(const FirFilter& filter, Lines& lines) {
    const FirRequest& request = filter.request;
    const FirType type = request.fir_type;
    lines.emplace_back(" Equal ripple linear-phase filter design");
    lines.push_back(edited<"(4X,'Type : ',A)">(type == FirType::differentiator ? "Differentiator"
                                               : type == FirType::hilbert      ? "Hilbert transformer"
                                                                               : "Filter"));
    add_frequency("Sampling rate", filter.sampling_frequency, lines);
    FirTask task;
    if (take_task(request, task) != nullptr) return;
    const bool in_db = type == FirType::filter && request.specification_type == FirSpecification::ripple_in_db;
    lines.push_back(edited<"('  Band  Lower edge, Hz  Upper edge, Hz',2A15)">(
        type == FirType::differentiator ? "Slope" : "Value", in_db ? "Ripple, dB" : "Weight"));
    for (int band = 1; band <= task.BANDS.NBANDS; ++band) {
        const double ripple = in_db ? request.QUADRUPLETS(band, 4) : task.BANDS.WTX(band);
        lines.push_back(edited<"(I5,1X,1P,2E16.7,0P,F15.9,1P,E15.7)">(
            band, task.BANDS.EDGE(2 * band - 1) * filter.sampling_frequency,
            task.BANDS.EDGE(2 * band) * filter.sampling_frequency, task.BANDS.FX(band), ripple));
    }
    if (task.SHAPE.count > 0) lines.push_back(edited<"(4X,'Pass band shaped by ',I0,' points')">(task.SHAPE.count));
}

void add_window(const FirFilter& filter, Lines& lines) {
    lines.emplace_back(" Windowed linear-phase filter design");
    const Lines request = windowed_request_lines(filter);
    lines.insert(lines.end(), request.begin(), request.end());
    if (parameter_kind(filter.request.window_type) == WindowParameter::none) return;
    lines.push_back(edited<"(4X,'Parameter = ',1P,E15.7)">(filter.request.parameter));
}

void add_functions(const FirFilter& filter, Lines& lines) {
    lines.emplace_back("");
    lines.push_back(edited<"(A4,A8,A10,A9,A15,2X,A)">("No.", "Length", "Symmetry", "Gain, dB", "Sum of |H|", "Word"));
    for (int n = 1; n <= filter.functions; ++n) {
        const FirFunction& function = filter.FUNCTION(n);
        lines.push_back(edited<"(I4,I8,A10,F9.3,1P,E15.7,2X,A)">(
            n, function.taps, name_of(function.symmetry), function.gain, largest_output(filter, n),
            function.word.bits == fir_untruncated ? "untruncated" : text_of(function.word)));
    }
    lines.push_back(edited<"(4X,'Free cells of the store : ',I0)">(free_cells(filter)));
}

void add_factors(const FirFactors& factors, Lines& lines) {
    if (factors.count == 0) return;
    std::string line = edited<"(4X,'Factors : ',I0)">(factors.count);
    if (factors.function > 0) line += edited<"(' of function ',I0)">(factors.function);
    line += edited<"(', multiplier = ',1P,E15.8)">(factors.multiplier);
    if (factors.delay > 0) line += edited<"(', delay = ',I0)">(factors.delay);
    lines.push_back(line);
}

}  // namespace

}  // namespace kavrel
