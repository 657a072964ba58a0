#include "iir/iir_request_check.h"

#include <cmath>

#include "approximation/loss_rows.h"
#include "iir/roots_loss.h"

namespace kavrel {

namespace {

void add_slope_rows(const IirAsked& asked, const DigitalBand& pass, const LossOfFrequency& loss, double strip,
                    double origin, RequestCheck& check);
CheckRow stability(const DigitalRoots& roots);

}  // namespace

RequestCheck check_iir(const IirFilter& filter, Watcher& watcher) {
    RequestCheck check;
    const IirAsked& asked = filter.asked;
    const LossOfFrequency loss = [&](double hertz) { return loss_of_roots(filter, hertz); };
    for (int i = 1; i <= asked.count; ++i) {
        const IirRequestRow& row = asked.rows(i);
        const DigitalBand band(filter, {row.from, row.to}, watcher);
        if (row.stopband) {
            check.rows.push_back(at_least("stopband", band.band(), row.loss, band.least(loss).value - asked.flat_loss));
        } else if (asked.sloping) {
            add_slope_rows(asked, band, loss, row.loss, filter.converted ? filter.fs / 2 : 0, check);
        } else {
            check.rows.push_back(
                at_most("pass band", band.band(), row.loss, band.highest(loss).value - asked.flat_loss));
        }
    }
    if (check.has_request()) check.rows.push_back(stability(filter.roots));
    return watcher.stopped() ? RequestCheck{.stopped = true} : check;
}

namespace {

// The slope is a straight line over the logarithm of the frequency, of a converted filter counted from fs/2 down.
void add_slope_rows(const IirAsked& asked, const DigitalBand& pass, const LossOfFrequency& loss, double strip,
                    double origin, RequestCheck& check) {
    const CheckBand band = pass.band();
    const auto about_slope = [&](double hertz) {
        return loss(hertz) - asked.slope * std::log2((hertz - origin) / (band.from - origin));
    };
    const double width = pass.highest(about_slope).value - pass.least(about_slope).value;
    check.rows.push_back(at_most("slope", band, strip, width));
    check.rows.push_back(flat_loss_row(band, asked.flat_loss, strip, pass.least(loss).value));
}

// A pole on the circle is one too far out.
CheckRow stability(const DigitalRoots& roots) {
    const double radius = largest_pole_radius(roots);
    return {.what = "stability", .asked = 1, .reached = radius, .margin = 1 - radius, .unit = "", .met = radius < 1};
}

}  // namespace

}  // namespace kavrel
