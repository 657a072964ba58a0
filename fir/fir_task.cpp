#include "fir/fir_task.h"

#include <cmath>
#include <utility>

namespace kavrel {

namespace {

int bands_of(const FirRequest& request);
void bands_of_table(const FirRequest& request, BandTable& bands);
void band_of_frequencies(const FirRequest& request, BandTable& bands);
void take_shape(const FirRequest& request, double sampling_frequency, ShapeTable& shape);
void weights_of_ripples(BandTable& bands);

}  // namespace

const char* take_task(const FirRequest& request, FirTask& task) {
    const bool filter = request.fir_type == FirType::filter;
    task.JTYPE = request.fir_type;
    task.NFILT = request.filter_length;
    BandTable& bands = task.BANDS;
    if (filter) {
        bands_of_table(request, bands);
    } else {
        band_of_frequencies(request, bands);
    }
    const double sampling_frequency = sampling_frequency_of(request);
    if (bands.NBANDS == 0 || !(sampling_frequency > 0.0)) return bad_fir_input;
    for (int i = 2; i <= 2 * bands.NBANDS; ++i) {
        if (!(bands.EDGE(i) >= bands.EDGE(i - 1))) return bad_fir_input;
    }
    for (int i = 1; i <= 2 * bands.NBANDS; ++i) bands.EDGE(i) /= sampling_frequency;
    if (filter) {
        take_shape(request, sampling_frequency, task.SHAPE);
        if (request.specification_type == FirSpecification::ripple_in_db) weights_of_ripples(bands);
    }
    return nullptr;
}

double sampling_frequency_of(const FirRequest& request) {
    if (request.fir_type != FirType::filter) return request.sampling_frequency;
    const int bands = bands_of(request);
    return bands > 0 ? 2.0 * request.QUADRUPLETS(bands, 2) : 0.0;
}

namespace {

// Rows of the band table: those before the first whose upper edge is 0.
int bands_of(const FirRequest& request) {
    int bands = 0;
    while (bands < request.QUADRUPLETS.rows && request.QUADRUPLETS(bands + 1, 2) != 0.0) ++bands;
    return bands;
}

void bands_of_table(const FirRequest& request, BandTable& bands) {
    bands.NBANDS = bands_of(request);
    for (int row = 1; row <= bands.NBANDS; ++row) {
        bands.EDGE(2 * row - 1) = request.QUADRUPLETS(row, 1);
        bands.EDGE(2 * row) = request.QUADRUPLETS(row, 2);
        bands.FX(row) = request.QUADRUPLETS(row, 3);
        bands.WTX(row) = request.QUADRUPLETS(row, 4);
    }
}

// The one band of a differentiator or Hilbert transformer.
void band_of_frequencies(const FirRequest& request, BandTable& bands) {
    const bool differentiator = request.fir_type == FirType::differentiator;
    bands.NBANDS = 1;
    bands.EDGE(1) = differentiator ? 0.0 : request.lower_frequency;
    bands.EDGE(2) = request.upper_frequency;
    bands.FX(1) = differentiator ? request.slope : 1.0;
    bands.WTX(1) = 1.0;
}

// The shape as linear values over normalised frequency, in single precision, sorted by frequency.
void take_shape(const FirRequest& request, double sampling_frequency, ShapeTable& shape) {
    shape.count = request.shape.rows;
    for (int i = 1; i <= shape.count; ++i) {
        shape.FIR_FREQ(i) = static_cast<float>(request.shape(i, 1)) / static_cast<float>(sampling_frequency);
        shape.FIR_VALUE(i) = std::pow(10.0F, static_cast<float>(request.shape(i, 2)) / 20.0F);
    }
    for (int i = 1; i < shape.count; ++i) {
        for (int j = i + 1; j <= shape.count; ++j) {
            if (shape.FIR_FREQ(j) >= shape.FIR_FREQ(i)) continue;
            std::swap(shape.FIR_FREQ(i), shape.FIR_FREQ(j));
            std::swap(shape.FIR_VALUE(i), shape.FIR_VALUE(j));
        }
    }
}

void weights_of_ripples(BandTable& bands) {
    for (int b = 1; b <= bands.NBANDS; ++b) {
        const double ratio = std::pow(10.0, bands.WTX(b) / 20.0);
        bands.WTX(b) = bands.FX(b) != 0.0 ? (ratio + 1.0) / (ratio - 1.0) : ratio;
    }
}

}  // namespace

}  // namespace kavrel
