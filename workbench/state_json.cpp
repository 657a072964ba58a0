#include "workbench/state_json.h"

#include <nlohmann/json.hpp>

#include "approximation/filter_json.h"
#include "fir/fir_json.h"
#include "iir/iir_json.h"
#include "passive/passive_json.h"
#include "segment/request_check_json.h"
#include "synthesis/synthesis_json.h"
#include "workbench/json_text.h"
#include "workbench/rooms.h"
#include "workbench/shown.h"

namespace kavrel {

namespace {

using Json = nlohmann::ordered_json;
using Bench = const Workbench&;

constexpr int format_number = 1;

Json design_part(DesignOutcome design);
Json units_part(const UnitSet& units);
Json results_part(Bench bench, AnalysisResult::Kind kind);
Json boxes_part(const Journal& journal);

Json spec_of_shown(const Shown& is) { return is.spec != nullptr ? spec_part(*is.spec) : Json{}; }
Json transfer_of_shown(const Shown& is) {
    return is.transfer != nullptr ? transfer_part(*is.request, *is.spec, *is.transfer, is.used_q) : Json{};
}
Json synthesis_of_shown(const Shown& is) { return is.synthesis != nullptr ? synthesis_part(*is.synthesis) : Json{}; }
Json terminations_of_shown(const Shown& is) {
    if (is.filter == nullptr) return {};
    return terminations_part(is.filter->design.worked, is.filter->design.x_plane, is.synthesis);
}
template <auto part>
Json of_design(Bench bench) {
    const DesignedFilter* filter = shown(bench).filter;
    return filter != nullptr ? part(filter->design) : Json{};
}

// In the order of the file. A part that is null is left out.
struct StatePart {
    const char* key;
    Json (*of)(Bench bench);
};
constexpr StatePart parts[] = {
    {"format", [](Bench) -> Json { return format_number; }},
    {"version", [](Bench) -> Json { return KAVREL_VERSION; }},
    {"title", [](Bench b) -> Json { return b.session.TITLE.text(); }},
    {"segment", [](Bench b) -> Json { return room_of(b.session.segment).name; }},
    {"design", [](Bench b) { return design_part(b.design); }},
    {"units", [](Bench b) { return units_part(b.session.units); }},
    {"request", [](Bench b) { return b.discontinued_request ? spec_part(*b.discontinued_request) : Json{}; }},
    {"spec", [](Bench b) { return spec_of_shown(shown(b)); }},
    {"transfer", [](Bench b) { return transfer_of_shown(shown(b)); }},
    {"check", [](Bench b) { return check_part(check_of_shown(b)); }},
    {"x_plane", of_design<[](const FilterDesign& d) { return x_plane_part(d.worked, d.x_plane); }>},
    {"immittance", of_design<[](const FilterDesign& d) { return immittance_part(d.x_plane); }>},
    {"terminations", [](Bench b) { return terminations_of_shown(shown(b)); }},
    {"synthesis", [](Bench b) { return synthesis_of_shown(shown(b)); }},
    {"circuit", [](Bench b) { return circuit_part(b.passive.circuit); }},
    {"parts", [](Bench b) { return parts_part(b.passive.circuit); }},
    {"analysis", [](Bench b) { return results_part(b, AnalysisResult::Kind::frequency); }},
    {"time", [](Bench b) { return results_part(b, AnalysisResult::Kind::time); }},
    {"iir", [](Bench b) { return iir_part(b.iir, b.iir_state.words); }},
    {"fir", [](Bench b) { return fir_part(b.fir, b.fir_state); }},
    {"boxes", [](Bench b) { return boxes_part(b.journal); }},
    {"report", [](Bench b) -> Json { return b.journal.lines; }},
};

}  // namespace

std::string state_json(const Workbench& bench) {
    Json state;
    for (const StatePart& part : parts) {
        if (Json value = part.of(bench); !value.is_null()) state[part.key] = std::move(value);
    }
    return json_text(state);
}

namespace {

Json design_part(DesignOutcome design) {
    switch (design) {
        case DesignOutcome::done: return "done";
        case DesignOutcome::discontinued: return "discontinued";
        case DesignOutcome::none: break;
    }
    return "none";
}

Json units_part(const UnitSet& units) {
    return {{"frequency", units.frequency_multiplier},
            {"inductor", units.inductor_multiplier},
            {"capacitor", units.capacitor_multiplier},
            {"time", units.time_multiplier}};
}

// The columns of one kind of analysis that the results have, by their names.
Json results_part(Bench bench, AnalysisResult::Kind kind) {
    const AnalysisResult& results = bench.results;
    Json part;
    for (const ColumnRow& row : result_columns) {
        if (row.kind == kind && has_column(results, row)) part[std::string(row.name)] = column_values(results, row);
    }
    if (part.contains("frequency")) {
        part["frequency_unit"] = column_unit(results, result_columns.front());
        if (!results.structure.is_blank()) part["structure"] = results.structure.trimmed();
    }
    if (!part.is_null() && is_earlier(bench, analysed_filter(results, kind))) part["earlier"] = true;
    return part;
}

Json boxes_part(const Journal& journal) {
    Json boxes = Json::array();
    for (const JournalBox& box : journal.boxes) {
        boxes.push_back({{"caption", box.caption}, {"text", box.text}, {"answer", box.answer}});
    }
    return boxes;
}

}  // namespace

}  // namespace kavrel
