#include "iir/iir_request_check.h"

#include <algorithm>
#include <cmath>

#include "approximation/loss_rows.h"
#include "iir/form_poles.h"
#include "iir/form_response.h"
#include "iir/roots_loss.h"

namespace kavrel {

namespace {

// What is judged: a loss, and the roots about which it has its extremes.
struct Judged {
    LossOfFrequency loss;
    const DigitalRoots& roots;
    Watcher& watcher;
};
void add_loss_rows(const IirFilter& filter, const Judged& judged, std::vector<CheckRow>& rows);
void add_slope_rows(const IirAsked& asked, const DigitalBand& pass, const LossOfFrequency& loss, double strip,
                    double origin, std::vector<CheckRow>& rows);
CheckRow stability(double radius, bool stable);

}  // namespace

RequestCheck check_iir(const IirFilter& filter, Watcher& watcher) {
    RequestCheck check;
    if (filter.asked.count == 0) return check;
    if (is_truncated(filter)) {
        for (const Implementation form : forms_with_coefficients) {
            if (!is_available(filter, form)) continue;
            const auto rows = rows_of_form(filter, form, roots_of_form(filter, form), watcher);
            check.rows.insert(check.rows.end(), rows.begin(), rows.end());
        }
    } else {
        const auto loss = [&](double hertz) { return loss_of_roots(filter, hertz); };
        add_loss_rows(filter, {loss, filter.roots, watcher}, check.rows);
        const double radius = largest_pole_radius(filter.roots);
        check.rows.push_back(stability(radius, radius < 1));
    }
    return watcher.stopped() ? RequestCheck{.stopped = true} : check;
}

std::vector<CheckRow> rows_of_form(const IirFilter& filter, Implementation form, const DigitalRoots& roots,
                                   Watcher& watcher) {
    std::vector<CheckRow> rows;
    const bool stable = is_stable(filter, form);
    if (stable) add_loss_rows(filter, {loss_of_form(filter, form), roots, watcher}, rows);
    const double radius = largest_pole_radius(roots);  // may be rounded to the other side of the circle
    rows.push_back(stability(stable ? std::min(radius, std::nextafter(1.0, 0.0)) : std::max(radius, 1.0), stable));
    for (CheckRow& row : rows) row.of = form_name(form);
    return rows;
}

namespace {

void add_loss_rows(const IirFilter& filter, const Judged& judged, std::vector<CheckRow>& rows) {
    const IirAsked& asked = filter.asked;
    const LossOfFrequency& loss = judged.loss;
    for (int i = 1; i <= asked.count; ++i) {
        const IirRequestRow& row = asked.rows(i);
        const DigitalBand band(judged.roots, filter.fs, {row.from, row.to}, judged.watcher);
        if (row.stopband) {
            rows.push_back(at_least("stopband", band.band(), row.loss, band.least(loss).value - asked.flat_loss));
        } else if (asked.sloping) {
            add_slope_rows(asked, band, loss, row.loss, filter.converted ? filter.fs / 2 : 0, rows);
        } else {
            rows.push_back(at_most("pass band", band.band(), row.loss, band.highest(loss).value - asked.flat_loss));
        }
    }
}

// The slope is a straight line over the logarithm of the frequency, of a converted filter counted from fs/2 down.
void add_slope_rows(const IirAsked& asked, const DigitalBand& pass, const LossOfFrequency& loss, double strip,
                    double origin, std::vector<CheckRow>& rows) {
    const CheckBand band = pass.band();
    const auto about_slope = [&](double hertz) {
        return loss(hertz) - asked.slope * std::log2((hertz - origin) / (band.from - origin));
    };
    const double width = pass.highest(about_slope).value - pass.least(about_slope).value;
    rows.push_back(at_most("slope", band, strip, width));
    rows.push_back(flat_loss_row(band, asked.flat_loss, strip, pass.least(loss).value));
}

// A pole on the circle is one too far out.
CheckRow stability(double radius, bool stable) {
    return {.what = "stability", .asked = 1, .reached = radius, .margin = 1 - radius, .unit = "", .met = stable};
}

}  // namespace

}  // namespace kavrel
