#include "fir/factor_commands.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "fir/factor_extraction.h"
#include "fir/factor_text.h"
#include "numeric/complex.h"
#include "shell/edited.h"

namespace kavrel {

namespace {

constexpr std::string_view factors_work = "Factors";
constexpr std::string_view no_such_factor = "Indicated factor not present";
constexpr std::string_view not_converged = "Root extraction did not converge";

bool has_factors(FirDesk& desk);
void edit_factors(FirDesk& desk, FirEdit edit);
Refusal refusal_of(ExtractionVerdict verdict);

Refusal flip(FirFilter& filter, const FirCommandRequest& request, Lines& lines);
Refusal to_minimum_phase(FirFilter& filter, const FirCommandRequest& request, Lines& lines);
Refusal add(FirFilter& filter, const FirCommandRequest& request, Lines& lines);
Refusal remove(FirFilter& filter, const FirCommandRequest& request, Lines& lines);
Refusal change(FirFilter& filter, const FirCommandRequest& request, Lines& lines);
Refusal multiply_all(FirFilter& filter, const FirCommandRequest& request, Lines& lines);
Refusal multiply_listed(FirFilter& filter, const FirCommandRequest& request, Lines& lines);
Refusal square(FirFilter& filter, const FirCommandRequest& request, Lines& lines);

}  // namespace

void factor_function(FirDesk& desk) {
    if (!has_function(desk, needs_filter(desk))) return;
    const int n = desk.command.function_number;
    const auto filter = std::make_unique<FirFilter>(desk.filter);
    FirFactors& factors = filter->factors;
    WindowWatcher watcher(desk.window, factors_work);
    const auto verdict = extract_factors(full_response(*filter, n), watcher, factors);
    if (verdict == ExtractionVerdict::stopped) return desk.reporter.report_line(stopped_line);
    if (verdict != ExtractionVerdict::extracted) {
        refuse(desk, refusal_of(verdict));
        if (verdict == ExtractionVerdict::not_found) static_cast<void>(has_factors(desk));
        return;
    }
    if (factors.count == 0) {
        return refuse(desk, warning("One tap only is not 0: there are no factors", "function_number"));
    }
    factors.function = n;
    factors.gain = filter->FUNCTION(n).gain;
    factors.asked = filter->FUNCTION(n).asked;
    take_edited(desk, *filter, factor_table(factors));
}

void print_factors(FirDesk& desk) {
    if (has_factors(desk)) report_lines(desk, factor_table(desk.filter.factors));
}

void write_factors(FirDesk& desk) {
    if (!has_factors(desk)) return;
    const Lines lines = factor_rows(desk.filter.factors, desk.session.TITLE.trimmed());
    if (write_lines(desk, lines, ExtSlot::factored_data)) report_edit_done(desk);
}

void flip_factors(FirDesk& desk) { edit_factors(desk, flip); }
void make_minimum_phase(FirDesk& desk) { edit_factors(desk, to_minimum_phase); }
void add_factor(FirDesk& desk) { edit_factors(desk, add); }
void delete_factor(FirDesk& desk) { edit_factors(desk, remove); }
void change_factor(FirDesk& desk) { edit_factors(desk, change); }
void multiply_factors(FirDesk& desk) { edit_factors(desk, multiply_all); }
void multiply_selected(FirDesk& desk) { edit_factors(desk, multiply_listed); }

void cascade_with_itself(FirDesk& desk) {
    if (has_function(desk, needs_filter(desk))) make_edit(desk, square);
}

namespace {

bool has_factors(FirDesk& desk) {
    const auto why = needs_factors(desk);
    if (!why.empty()) refuse(desk, warning(why));
    return why.empty();
}

void edit_factors(FirDesk& desk, FirEdit edit) {
    if (has_factors(desk)) make_edit(desk, edit);
}

Refusal refusal_of(ExtractionVerdict verdict) {
    switch (verdict) {
        case ExtractionVerdict::all_zero: return {"All taps are 0: there are no factors", "function_number"};
        case ExtractionVerdict::too_long: return warning(no_space, "function_number");
        case ExtractionVerdict::not_found: return {not_converged, "function_number"};
        case ExtractionVerdict::extracted:
        case ExtractionVerdict::stopped: break;
    }
    return {};
}

// The list is that of no function any more. What is asked of a magnitude goes on being asked while the factors have it.
Refusal reflect(FirFactors& factors, CircleSide from, std::string_view nothing, Lines& lines) {
    if (reflect_zeros(factors, from) == 0) {
        lines.emplace_back(nothing);
        return {};
    }
    if (factors.multiplier == 0) return "Values of the filter are out of range";
    factors.function = 0;
    return {};
}
Refusal flip(FirFilter& filter, const FirCommandRequest&, Lines& lines) {
    return reflect(filter.factors, CircleSide::inside, " There are no zeros inside the unit circle", lines);
}
Refusal to_minimum_phase(FirFilter& filter, const FirCommandRequest&, Lines& lines) {
    return reflect(filter.factors, CircleSide::outside, " There are no zeros outside the unit circle", lines);
}

// After a change by hand the factors are those of no function, and nothing is asked of them.
void disown(FirFactors& factors) {
    factors.function = 0;
    factors.asked = false;
    factors.gain = 0;
}

// The place of a serial number in the list, or 0.
int place_of(const FirFactors& factors, double serial) {
    for (int k = 1; k <= factors.count; ++k) {
        if (factors.ISER(k) == serial) return k;
    }
    return 0;
}

// The number of a new factor: the next one, or where forms cannot hold it, the least one that is free.
int next_serial(const FirFactors& factors) {
    if (factors.last_serial < fir_serial_limit) return factors.last_serial + 1;
    int serial = 1;
    while (place_of(factors, serial) != 0) ++serial;
    return serial;
}

Refusal row_refusal(const FirCommandRequest& request) {
    const QuadraticRow row{request.linear, request.quadratic};
    return zeros_of(row) > 0 ? Refusal() : Refusal("A factor needs a coefficient that is not 0", "linear");
}

Refusal add(FirFilter& filter, const FirCommandRequest& request, Lines&) {
    FirFactors& factors = filter.factors;
    if (Refusal wrong = row_refusal(request); !wrong.empty()) return wrong;
    if (factors.count == fir_factor_limit) return warning(no_space);
    const int serial = next_serial(factors);
    const int k = ++factors.count;
    factors.A1(k) = request.linear;
    factors.A2(k) = request.quadratic;
    factors.ISER(k) = serial;
    factors.last_serial = std::max(factors.last_serial, serial);
    disown(factors);
    return {};
}

Refusal remove(FirFilter& filter, const FirCommandRequest& request, Lines&) {
    FirFactors& factors = filter.factors;
    const int place = place_of(factors, request.serial);
    if (place == 0) return warning(no_such_factor, "serial");
    if (factors.count == 1) {
        factors = {};
        return {};
    }
    for (int k = place; k < factors.count; ++k) {
        factors.A1(k) = factors.A1(k + 1);
        factors.A2(k) = factors.A2(k + 1);
        factors.ISER(k) = factors.ISER(k + 1);
    }
    factors.A1(factors.count) = factors.A2(factors.count) = 0;
    factors.ISER(factors.count) = 0;
    --factors.count;
    disown(factors);
    return {};
}

Refusal change(FirFilter& filter, const FirCommandRequest& request, Lines& lines) {
    FirFactors& factors = filter.factors;
    const int place = place_of(factors, request.serial);
    if (place == 0) return warning(no_such_factor, "serial");
    if (Refusal wrong = row_refusal(request); !wrong.empty()) return wrong;
    if (factors.A1(place) == request.linear && factors.A2(place) == request.quadratic) {
        lines.emplace_back(" The factor has these coefficients");
        return {};
    }
    factors.A1(place) = request.linear;
    factors.A2(place) = request.quadratic;
    disown(factors);
    return {};
}

Refusal add_response(FirFilter& filter, std::span<const double> taps, const FirFunction& asked, Lines& lines) {
    if (!std::ranges::all_of(taps, [](double h) { return std::isfinite(h); })) {
        return "Values of the filter are out of range";
    }
    FirResponse response = response_of(taps);
    response.function.asked = asked.asked;
    response.function.gain = asked.gain;
    const int free = free_cells(filter), functions = filter.functions;
    if (!add_function(filter, response.function, response.coefficients)) {
        lines.push_back(edited<"(' Functions: ',I,' of ',I,', cells free: ',I,' of ',I,', needed: ',I)">(
            functions, fir_function_limit, free, fir_store, static_cast<int>(response.coefficients.size())));
        return warning(no_space);
    }
    lines.push_back(edited<"(' Function number ',I2,', length ',I)">(filter.functions, response.function.taps));
    return {};
}

Refusal multiply_all(FirFilter& filter, const FirCommandRequest&, Lines& lines) {
    const FirFactors& factors = filter.factors;
    FirFunction asked;
    asked.asked = factors.asked;
    asked.gain = factors.gain;
    return add_response(filter, product_of(factors), asked, lines);
}

Refusal multiply_listed(FirFilter& filter, const FirCommandRequest& request, Lines& lines) {
    const FirFactors& factors = filter.factors;
    std::vector<int> places;
    std::vector<QuadraticRow> rows;
    for (int row = 1; row <= request.SERIAL.rows; ++row) {
        const int place = place_of(factors, request.SERIAL(row, 1));
        if (place == 0) return warning(no_such_factor, "SERIAL");
        if (std::ranges::find(places, place) != places.end()) return {"A factor is listed twice", "SERIAL"};
        places.push_back(place);
        rows.push_back({factors.A1(place), factors.A2(place)});
    }
    if (rows.empty()) return {"No factors are listed", "SERIAL"};
    return add_response(filter, product_of(factors_of(rows)), {}, lines);
}

Refusal square(FirFilter& filter, const FirCommandRequest& request, Lines& lines) {
    const auto taps = full_response(filter, request.function_number);
    std::vector<Wide> sums(2 * taps.size() - 1);
    for (std::size_t i = 0; i < taps.size(); ++i) {
        for (std::size_t j = 0; j < taps.size(); ++j) sums[i + j] += static_cast<Wide>(taps[i]) * taps[j];
    }
    return add_response(filter, std::vector<double>(sums.begin(), sums.end()), {}, lines);
}

}  // namespace

}  // namespace kavrel
