#include "fir/fir_json.h"

#include <nlohmann/json.hpp>

#include "fir/fir_deviation.h"
#include "fir/fir_task.h"

namespace kavrel {

using Json = nlohmann::ordered_json;

Json fir_part(const FirFilter& filter, const FirRequest* request) {
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
    FirTask task;
    if (request != nullptr && take_task(*request, task) == nullptr) {
        part["deviation"] = largest_deviation(task, filter, 1).weighted;
        const double gain = largest_outside_gain(task, filter, 1);
        if (gain >= 0) part["outside_gain"] = gain;
    }
    part["functions"] = std::move(functions);
    return part;
}

}  // namespace kavrel
