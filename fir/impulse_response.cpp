#include "fir/impulse_response.h"

namespace kavrel {

HalfResponse impulse_response(const FirPlan& plan, const CosineSeries& alpha) {
    const int nfcns = plan.NFCNS, nz = nfcns + 1;
    const auto above = [&](int i) { return i <= nfcns ? alpha(i) : 0.0; };
    HalfResponse h;
    if (plan.NEG == 0 && plan.NODD == 1) {
        for (int j = 1; j < nfcns; ++j) h(j) = 0.5 * alpha(nz - j);
        h(nfcns) = alpha(1);
        return h;
    }
    const double sign = plan.NEG == 0 ? 1 : -1;
    const int apart = plan.NEG == 1 && plan.NODD == 1 ? 2 : 1;
    for (int j = 1; j < nfcns; ++j) h(j) = 0.25 * (alpha(nz - j) + sign * above(nz - j + apart));
    h(nfcns) = 0.5 * alpha(1) + sign * 0.25 * above(1 + apart);
    return h;
}

}  // namespace kavrel
