#include "fir/fir_filter.h"

namespace kavrel {

Fingerprint fingerprint(const FirFilter& filter) {
    std::vector<double> numbers{filter.sampling_frequency};
    for (int n = 1; n <= filter.functions; ++n) {
        const std::vector<double> taps = full_response(filter, n);
        numbers.insert(numbers.end(), taps.begin(), taps.end());
    }
    return fingerprint_of({reinterpret_cast<const char*>(numbers.data()), numbers.size() * sizeof(double)});
}

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
