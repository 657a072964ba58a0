#include "fir/fir_json.h"

#include <nlohmann/json.hpp>

namespace kavrel {

using Json = nlohmann::ordered_json;

Json fir_part(const FirFilter& filter) {
    if (filter.functions == 0) return {};
    constexpr const char* symmetries[] = {"even", "odd"};
    Json functions = Json::array();
    for (int n = 1; n <= filter.functions; ++n) {
        Json function{{"number", n}, {"impulse", full_response(filter, n)}};
        if (filter.WORD(n) != fir_untruncated) function["bits"] = filter.WORD(n);
        functions.push_back(std::move(function));
    }
    const std::vector<double> impulse = full_response(filter, 1);
    Json part{{"length", impulse.size()},
              {"symmetry", symmetries[filter.NEG]},
              {"fs", filter.sampling_frequency},
              {"impulse", impulse}};
    if (filter.deviation > 0.0) part["deviation"] = filter.deviation;
    part["functions"] = std::move(functions);
    return part;
}

}  // namespace kavrel
