#include "fir/fir_grid.h"

#include <algorithm>
#include <cmath>

namespace kavrel {

namespace {

bool edges_ascend(const BandTable& bands);
bool fill_band(const FirTask& task, const FirPlan& plan, int band, double start, FirGrid& grid);
void drop_zero_at_half(const FirPlan& plan, FirGrid& grid);
bool shaped(const FirTask& task, int band);

}  // namespace

bool plan_fir(FirType jtype, int nfilt, FirPlan& plan) {
    if (jtype < FirType::filter || jtype > FirType::hilbert || nfilt < 1 || nfilt > max_fir_taps) return false;
    const int neg = jtype == FirType::filter ? 0 : 1;
    const int nodd = nfilt % 2;
    const int nfcns = nfilt / 2 + (nodd == 1 && neg == 0 ? 1 : 0);
    const int least = neg == 1 && nodd == 1 ? 2 : 1;
    if (nfcns < least) return false;
    plan = {.NFCNS = nfcns, .NODD = nodd, .NEG = neg};
    return true;
}

double desired(const FirTask& task, double f, int band) {
    const double fx = task.BANDS.FX(band);
    if (task.JTYPE == FirType::differentiator) return f * fx;
    if (!shaped(task, band)) return fx;

    const auto& freq = task.SHAPE.FIR_FREQ;
    const auto& value = task.SHAPE.FIR_VALUE;
    // i is the last point at or below f
    const auto above = std::upper_bound(freq.begin(), freq.begin() + task.SHAPE.count, f,
                                        [](double at, float point) { return at < static_cast<double>(point); });
    const int i = static_cast<int>(above - freq.begin());
    if (i == 0) return f * fx;
    if (i == task.SHAPE.count) return static_cast<double>(value(i));
    const double f0 = static_cast<double>(freq(i)), f1 = static_cast<double>(freq(i + 1));
    const double v0 = static_cast<double>(value(i)), v1 = static_cast<double>(value(i + 1));
    return fx * (v0 + (v1 - v0) * (f - f0) / (f1 - f0));
}

double weight(const FirTask& task, double f, int band) {
    const double wtx = task.BANDS.WTX(band);
    if (task.JTYPE == FirType::differentiator) return task.BANDS.FX(band) >= 0.0001 ? wtx / f : wtx;
    if (!shaped(task, band)) return wtx;
    const double des = desired(task, f, band);
    return des >= least_shape_weighed ? wtx / des : wtx;
}

bool make_grid(const FirTask& task, const FirPlan& plan, FirGrid& grid) {
    const BandTable& bands = task.BANDS;
    grid.NGRID = 0;
    grid.DELF = 0.5 / (fir_grid_density * plan.NFCNS);
    if (!edges_ascend(bands) || task.SHAPE.count < 0 || task.SHAPE.count > max_shape_points) return false;
    for (int band = 1; band <= bands.NBANDS; ++band) {
        const double lower = bands.EDGE(2 * band - 1);
        const double start = band == 1 && plan.NEG == 1 && lower < grid.DELF ? grid.DELF : lower;
        if (!fill_band(task, plan, band, start, grid)) return false;
    }
    drop_zero_at_half(plan, grid);
    if (grid.NGRID <= plan.NFCNS) return false;
    for (int k = 1; k <= grid.NGRID; ++k) {
        if (!std::isfinite(grid.DES(k)) || !std::isfinite(grid.WT(k)) || !(grid.WT(k) > 0)) return false;
    }
    return true;
}

FirPoint folded_point(const FirTask& task, const FirPlan& plan, double f, int band) {
    FirPoint point{.f = f, .X = std::cos(fir_two_pi * f), .DES = 0, .WT = 1, .band = band};
    if (band > 0) {
        point.DES = desired(task, f, band);
        point.WT = weight(task, f, band);
    }
    if (plan.NEG == 1 || plan.NODD == 0) {
        const double q = plan.NEG == 0    ? std::cos(fir_pi * f)
                         : plan.NODD == 1 ? std::sin(fir_two_pi * f)
                                          : std::sin(fir_pi * f);
        point.DES /= q;
        point.WT *= q;
    }
    return point;
}

double scale_of(const FirGrid& grid) {
    double sum = 0, weight = 0;
    for (int k = 1; k <= grid.NGRID; ++k) {
        sum += std::abs(grid.DES(k));
        weight = std::max(weight, grid.WT(k));
    }
    return weight * sum / grid.NGRID;
}

namespace {

bool edges_ascend(const BandTable& bands) {
    if (bands.NBANDS < 1 || bands.NBANDS > max_fir_bands) return false;
    double before = 0;
    for (int i = 1; i <= 2 * bands.NBANDS; ++i) {
        const double edge = bands.EDGE(i);
        if (!(edge >= before && edge <= 0.5)) return false;
        before = edge;
    }
    return true;
}

// A band of width w takes at most w / DELF + 1 points. All bands together lie within 0 to 0.5, so that the bound of the
// tables holds at 512 taps (256 functions) with ten bands to spare; 257 functions in many bands could pass it.
bool fill_band(const FirTask& task, const FirPlan& plan, int band, double start, FirGrid& grid) {
    const double upper = task.BANDS.EDGE(2 * band);
    if (!(start <= upper)) return false;
    for (double f = start, next = start + grid.DELF;; f = next, next = f + grid.DELF) {
        if (grid.NGRID == max_fir_grid) return false;
        const bool last = next > upper;
        const double at = last ? upper : f;
        const FirPoint point = folded_point(task, plan, at, band);
        const int k = ++grid.NGRID;
        grid.GRID(k) = at;
        grid.X(k) = point.X;
        grid.DES(k) = point.DES;
        grid.WT(k) = point.WT;
        grid.BAND(k) = band;
        if (last) return true;
    }
}

void drop_zero_at_half(const FirPlan& plan, FirGrid& grid) {
    if (plan.NEG == plan.NODD && grid.GRID(grid.NGRID) > 0.5 - grid.DELF) --grid.NGRID;
}

bool shaped(const FirTask& task, int band) { return task.SHAPE.count > 0 && task.BANDS.FX(band) != 0; }

}  // namespace

}  // namespace kavrel
