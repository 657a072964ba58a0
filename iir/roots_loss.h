// The loss of a digital filter from its roots, and its extremes in a band.
#pragma once

#include <vector>

#include "iir/iir_filter.h"
#include "numeric/highest_value.h"
#include "segment/request_check.h"
#include "shell/watcher.h"

namespace kavrel {

// 20 log10 1/|H| in dB at a frequency in Hz; infinite at a zero on the unit circle, minus infinite at such a pole.
[[nodiscard]] double loss_of_roots(const IirFilter& filter, double hertz);

// The largest magnitude of a pole; 0 without poles.
[[nodiscard]] double largest_pole_radius(const DigitalRoots& roots);

// A band within 0 to fs/2 in which extremes are searched: between places that are dense towards its ends and lie about
// every pole and zero, each extreme is closed in on. Asks the watcher at each frequency; after a stop there are no
// values.
class DigitalBand {
public:
    DigitalBand(const IirFilter& filter, CheckBand band, Watcher& watcher);
    // Between places that fit other roots than the filter's own; frequencies of `fs` in Hz.
    DigitalBand(const DigitalRoots& roots, double fs, CheckBand band, Watcher& watcher);

    // The largest and the least value of f(hertz) in the band, its ends included, with its frequency in Hz; NaN for a
    // band that is none.
    template <class Function>
    [[nodiscard]] Peak<double> highest(const Function& f) const;
    template <class Function>
    [[nodiscard]] Peak<double> least(const Function& f) const;

    // Whether f is above a limit anywhere, or no number at a place; ends with the first such value.
    template <class Function>
    [[nodiscard]] bool rises_above(double limit, const Function& f) const;

    [[nodiscard]] const CheckBand& band() const { return band_; }

private:
    void add(double hertz);

    Watcher& watcher_;
    CheckBand band_;
    std::vector<double> places_;  // Hz, ascending
};

template <class Function>
Peak<double> DigitalBand::highest(const Function& f) const {
    return highest_value(
        places_, [&](double hertz) { return watcher_.go_on() ? f(hertz) : std::numeric_limits<double>::quiet_NaN(); });
}

template <class Function>
Peak<double> DigitalBand::least(const Function& f) const {
    const Peak<double> found = highest([&](double hertz) { return -f(hertz); });
    return {found.at, -found.value};
}

template <class Function>
bool DigitalBand::rises_above(double limit, const Function& f) const {
    bool above = false;
    const auto until_above = [&](double hertz) {
        if (above || !watcher_.go_on()) return std::numeric_limits<double>::quiet_NaN();
        const double value = f(hertz);
        above = !(value <= limit);
        return value;
    };
    return highest_value(places_, until_above, limit).value > limit || above;
}

}  // namespace kavrel
