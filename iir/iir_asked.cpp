#include "iir/iir_asked.h"

#include <cmath>

#include "approximation/loss_rows.h"

namespace kavrel {

namespace {

void add_row(IirAsked& asked, bool stopband, double from, double to, double loss) {
    if (!(loss > 0) || !(from < to)) return;
    asked.rows(++asked.count) = {.stopband = stopband, .from = from, .to = to, .loss = loss};
}

void add_bands_asked(const FilterSpec& request, double top, IirAsked& asked);
void add_images(const FilterSpec& request, const SpectralRequest& spectral, double top, IirAsked& asked);

}  // namespace

IirAsked asked_of_digital(const FilterSpec& found, const FilterDesign& design, const SpectralRequest& spectral) {
    const FilterSpec& request = design.request;
    IirAsked asked;
    if (request.passbandType == functional_passband || request.filterType == linear_phase_low_pass) return asked;
    const double top = spectral.fs / 2;
    if (request.passbandType == sloping_passband) {
        asked.sloping = true;
        asked.slope = request.stopbandLoss;
        asked.flat_loss = request.flatLoss;
        add_row(asked, false, request.lowerPassEdge, request.upperPassEdge, request.bandEdgeLoss);
        return asked;
    }
    asked.flat_loss = least_loss_of_function(request, found, design.transfer);
    if (spectral.kind == SpectralKind::none) {
        add_bands_asked(request, top, asked);
    } else {
        add_images(request, spectral, top, asked);
    }
    return asked;
}

namespace {

void add_bands_asked(const FilterSpec& r, double top, IirAsked& asked) {
    const bool low = r.filterType == low_pass, high = r.filterType == high_pass;
    const bool matching = r.bandpassType == impedance_matching;  // its loss at zero is that of the terminations
    add_row(asked, false, low ? 0 : r.lowerPassEdge, high ? top : r.upperPassEdge, r.bandEdgeLoss);
    if (!low && !matching && r.lowerStopEdge > 0) add_row(asked, true, 0, r.lowerStopEdge, r.stopbandLoss);
    if (!high && r.upperStopEdge > 0)
        add_row(asked, true, r.upperStopEdge, top, low ? r.stopbandLoss : r.upperStopLoss);
}

void add_images(const FilterSpec& r, const SpectralRequest& spectral, double top, IirAsked& asked) {
    const auto [kind, fs, edge, lower, upper] = spectral;
    const auto pass = [&](double from, double to) { add_row(asked, false, from, to, r.bandEdgeLoss); };
    const bool has_stopband = r.upperStopEdge > 0 && r.upperStopEdge < top;
    const FrequencyImages image = has_stopband ? images_of(spectral, r.upperStopEdge) : FrequencyImages{};
    const auto stop = [&](double from, double to) {
        if (has_stopband) add_row(asked, true, from, to, r.stopbandLoss);
    };
    switch (kind) {
        case SpectralKind::none: return;
        case SpectralKind::to_lowpass: pass(0, upper), stop(image.upper, top); return;
        case SpectralKind::to_highpass: pass(lower, top), stop(0, image.lower); return;
        case SpectralKind::to_bandpass: pass(lower, upper), stop(0, image.lower), stop(image.upper, top); return;
        case SpectralKind::to_bandreject: pass(0, lower), pass(upper, top), stop(image.lower, image.upper); return;
    }
}

}  // namespace

}  // namespace kavrel
