#include "segment/request_check_json.h"

#include <cmath>

#include <nlohmann/json.hpp>

namespace kavrel {

using Json = nlohmann::ordered_json;

Json check_part(const RequestCheck& check) {
    if (!check.has_request()) return {};
    Json rows = Json::array();
    for (const CheckRow& row : check.rows) {
        Json part{{"what", row.what}};
        if (!row.of.empty()) part["of"] = row.of;
        part["band"] = row.band.is_given() ? Json{row.band.from, row.band.to} : Json{};
        part["asked"] = row.asked;
        part["reached"] = row.reached;
        part["margin"] = std::isnan(row.asked) ? row.asked : row.margin;
        part["met"] = row.met;
        rows.push_back(std::move(part));
    }
    return rows;
}

}  // namespace kavrel
