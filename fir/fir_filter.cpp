#include "fir/fir_filter.h"

namespace kavrel {

std::vector<double> full_response(const FirFilter& filter, int function) {
    const int first = filter.IST(function);
    const int half = filter.LENGTH(function);
    const int taps = fir_taps(half, filter.NODD, filter.NEG);
    const double sign = filter.NEG == 1 ? -1.0 : 1.0;
    std::vector<double> response(static_cast<std::size_t>(taps), 0.0);
    for (int i = 0; i < half; ++i) {
        response[static_cast<std::size_t>(taps - 1 - i)] = sign * filter.X(first + i);
        response[static_cast<std::size_t>(i)] = filter.X(first + i);
    }
    return response;
}

}  // namespace kavrel
