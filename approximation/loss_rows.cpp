#include "approximation/loss_rows.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "approximation/s_plane.h"
#include "numeric/highest_value.h"

namespace kavrel {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr int even_places = 64;  // of a band, denser towards its ends

// A band in which losses are searched, in the angle whose tangent is the frequency over that of an edge: bounded, also
// where the band reaches to infinity.
class SearchedBand {
public:
    SearchedBand(const JudgedLoss& judged, CheckBand band);

    [[nodiscard]] const CheckBand& band() const { return band_; }
    template <class Function>
    [[nodiscard]] double highest(const Function& f) const {
        return highest_value(places_, watched(f)).value;
    }
    template <class Function>
    [[nodiscard]] double lowest(const Function& f) const {
        return least(f).value;
    }
    // The same with its frequency.
    template <class Function>
    [[nodiscard]] Peak<double> least(const Function& f) const {
        const Peak<double> found = highest_value(places_, watched([&](double hertz) { return -f(hertz); }));
        return {hertz(found.at), -found.value};
    }

private:
    // Of the angle; no number once the search was stopped, which so ends at once.
    template <class Function>
    [[nodiscard]] auto watched(const Function& f) const {
        return [this, f](double angle) {
            return watcher_.go_on() ? f(hertz(angle)) : std::numeric_limits<double>::quiet_NaN();
        };
    }
    [[nodiscard]] double angle(double frequency) const { return std::atan(frequency / edge_); }
    [[nodiscard]] double hertz(double place) const;
    void add_design(const JudgedLoss& judged);

    Watcher& watcher_;
    CheckBand band_;
    double edge_;
    double top_;  // of the medium
    std::vector<double> places_;
};

bool is_shifted(const JudgedLoss& judged) { return judged.found.centerFrequency > 0; }
CheckBand pass_band(const FilterSpec& spec);
double top_of_medium(const FilterSpec& spec);
void add_slope_rows(const JudgedLoss& judged, const SearchedBand& band, RequestCheck& check);
double flat_loss(const JudgedLoss& judged, const SearchedBand& band);

}  // namespace

void add_loss_rows(const JudgedLoss& judged, RequestCheck& check) {
    const FilterSpec& asked = judged.request;
    const bool given = asked.passbandType == functional_passband && !(is_shifted(judged) && asked.bandEdgeLoss > 0);
    if (given) return;
    const SearchedBand pass(judged, pass_band(asked));
    if (asked.passbandType == sloping_passband) return add_slope_rows(judged, pass, check);
    const double flat = flat_loss(judged, pass);
    const auto loss = [&](double hertz) { return judged.loss(hertz) - flat; };
    check.rows.push_back(at_most("pass band", pass.band(), asked.bandEdgeLoss, pass.highest(loss)));

    const auto stopband = [&](CheckBand band, double least) {
        if (!(least > 0)) return;
        check.rows.push_back(at_least("stopband", band, least, SearchedBand(judged, band).lowest(loss)));
    };
    const bool low = asked.filterType == low_pass;
    const double upper_loss = low ? asked.stopbandLoss : asked.upperStopLoss;
    const bool matching = asked.bandpassType == impedance_matching;  // its loss at zero is that of the terminations
    if (!low && !matching && asked.lowerStopEdge > 0) stopband({0, asked.lowerStopEdge}, asked.stopbandLoss);
    if (asked.filterType != high_pass && asked.upperStopEdge > 0) {
        stopband({asked.upperStopEdge, top_of_medium(asked)}, upper_loss);
    }
}

CheckRow flat_loss_row(CheckBand band, double asked, double strip, double least) {
    CheckRow row = at_least("flat loss", band, asked, least);
    if (least > asked + strip) row = at_most("flat loss", band, asked, least);
    row.spare = false;
    return row;
}

RequestCheck check_function(const FilterSpec& request, const FilterSpec& found, const TransferFunction& transfer,
                            double used_q, Watcher& watcher) {
    RequestCheck check;
    add_loss_rows({.loss = [&](double hertz) { return loss_of_function(found, transfer, hertz, used_q); },
                   .request = request,
                   .found = found,
                   .transfer = transfer,
                   .watcher = watcher,
                   .used_q = used_q},
                  check);
    return watcher.stopped() ? RequestCheck{.stopped = true} : check;
}

double flat_loss_of_predistortion(const FilterSpec& request, const FilterSpec& found, const TransferFunction& transfer,
                                  double used_q) {
    const auto loss = [&](double hertz) { return loss_of_function(found, transfer, hertz, used_q); };
    Unwatched watcher;  // some hundred frequencies
    const SearchedBand pass(
        {.loss = loss, .request = request, .found = found, .transfer = transfer, .watcher = watcher, .used_q = used_q},
        pass_band(request));
    const Peak<double> least = pass.least(loss);
    const bool open_level = found.loadResistance == 0;
    return open_level ? least.value - loss_of_function(found, transfer, least.at) : least.value;
}

double least_loss_of_function(const FilterSpec& request, const FilterSpec& found, const TransferFunction& transfer) {
    const auto loss = [&](double hertz) { return loss_of_function(found, transfer, hertz); };
    Unwatched watcher;  // some hundred frequencies
    return SearchedBand({.loss = loss, .request = request, .found = found, .transfer = transfer, .watcher = watcher},
                        pass_band(request))
        .lowest(loss);
}

FilterSpec scaled_request(const FilterSpec& request, double factor) {
    FilterSpec scaled = request;
    for (double FilterSpec::*frequency :
         {&FilterSpec::lowerPassEdge, &FilterSpec::upperPassEdge, &FilterSpec::lowerStopEdge,
          &FilterSpec::upperStopEdge, &FilterSpec::freal, &FilterSpec::sampleFrequency, &FilterSpec::centerFrequency}) {
        scaled.*frequency *= factor;
    }
    if (scaled.filterType == linear_phase_low_pass) scaled.upperStopLoss /= factor;  // a delay
    for (int i = 1; i <= scaled.zeroCount; ++i) {
        scaled.FZR(i) *= factor;
        scaled.FZI(i) *= factor;
    }
    return scaled;
}

namespace {

SearchedBand::SearchedBand(const JudgedLoss& judged, CheckBand band)
    : watcher_(judged.watcher),
      band_(band),
      edge_(std::isinf(band.to) ? band.from : band.to),
      top_(top_of_medium(judged.request)) {
    const double first = angle(band.from), last = angle(band.to);
    if (!(first <= last)) return;  // a band that is none: no loss is found in it
    for (int i = 0; i <= even_places; ++i) {
        const double place = (first + last) / 2 - (last - first) / 2 * std::cos(std::numbers::pi * i / even_places);
        places_.push_back(std::clamp(place, first, last));
    }
    add_design(judged);
    for (const double frequency : judged.places) places_.push_back(angle(frequency));
    std::erase_if(places_, [&](double place) { return !(place >= first && place <= last); });
    std::ranges::sort(places_);
}

// Where each pole of the design has its resonance, and about it; at each zero and halfway to the next one.
void SearchedBand::add_design(const JudgedLoss& judged) {
    const TransferFunction& t = judged.transfer;
    const auto add = [&](double omega) { places_.push_back(angle(frequency_of_root(judged.found, t, omega))); };
    for (int i = 1; i <= t.poleCount; ++i) {
        if (t.POLES_IM(i) < 0) continue;
        for (const double widths : {-1.5, -0.6, 0.0, 0.6, 1.5}) {
            if (const double omega = t.POLES_IM(i) + widths * t.POLES_RE(i); omega > 0) add(omega);
        }
    }
    std::vector<double> zeros;
    for (int i = 1; i <= t.zeroCount; ++i) {
        if (t.ZEROS_IM(i) > 0) zeros.push_back(t.ZEROS_IM(i));
    }
    std::ranges::sort(zeros);
    for (std::size_t i = 0; i < zeros.size(); ++i) {
        add(zeros[i]);
        if (i > 0) add(std::sqrt(zeros[i - 1] * zeros[i]));
    }
}

// The ends are met exactly, but for those where a response may have no value.
double SearchedBand::hertz(double place) const {
    constexpr double as_good_as_infinite = 1e7;  // times the edge
    constexpr double beside_stub_pole = 2e-5;    // of the quarter-wave frequency
    const double least = std::isinf(top_) ? edge_ / as_good_as_infinite : top_ * beside_stub_pole;
    if (place <= angle(band_.from)) return std::max(band_.from, least);
    if (place < angle(band_.to)) return std::max(edge_ * std::tan(place), least);
    if (std::isinf(band_.to)) return as_good_as_infinite * band_.from;
    return band_.to == top_ ? (1 - beside_stub_pole) * band_.to : band_.to;
}

// A matching network of unit elements alone has its band evenly about the quarter-wave frequency.
CheckBand pass_band(const FilterSpec& spec) {
    if (spec.filterType == low_pass) return {0, spec.upperPassEdge};
    if (spec.filterType == high_pass) return {spec.lowerPassEdge, top_of_medium(spec)};
    const bool mirrored = spec.bandpassType == impedance_matching && spec.medium == microwave;
    CheckBand band{spec.lowerPassEdge, spec.upperPassEdge};
    if (mirrored && band.from == 0) band.from = spec.sampleFrequency - band.to;
    if (mirrored && band.to == 0) band.to = spec.sampleFrequency - band.from;
    if (band.from > band.to) std::swap(band.from, band.to);
    return band;
}

// Hz; beyond the quarter wave, or half the sampling frequency, the loss comes back.
double top_of_medium(const FilterSpec& spec) { return spec.medium == lumped ? infinity : spec.sampleFrequency / 2; }

// The slope is a straight line over the logarithm of the frequency.
void add_slope_rows(const JudgedLoss& judged, const SearchedBand& pass, RequestCheck& check) {
    const FilterSpec& asked = judged.request;
    const CheckBand band = pass.band();
    const auto about_slope = [&](double hertz) {
        return judged.loss(hertz) - asked.stopbandLoss * std::log2(hertz / band.from);
    };
    const double strip = pass.highest(about_slope) - pass.lowest(about_slope);
    check.rows.push_back(at_most("slope", band, asked.bandEdgeLoss, strip));
    if (judged.open_level) return;
    check.rows.push_back(flat_loss_row(band, asked.flatLoss, asked.bandEdgeLoss, pass.lowest(judged.loss)));
}

double flat_loss(const JudgedLoss& judged, const SearchedBand& pass) {
    if (judged.open_level || judged.transfer.level == 0) return pass.lowest(judged.loss);
    return pass.lowest(
        [&](double hertz) { return loss_of_function(judged.found, judged.transfer, hertz, judged.used_q); });
}

}  // namespace

}  // namespace kavrel
