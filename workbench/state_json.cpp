#include "workbench/state_json.h"

#include <nlohmann/json.hpp>

#include "approximation/filter_json.h"
#include "fir/fir_json.h"
#include "passive/passive_json.h"
#include "synthesis/synthesis_json.h"
#include "workbench/json_text.h"
#include "workbench/rooms.h"

namespace kavrel {

namespace {

using Json = nlohmann::ordered_json;
using Bench = const Workbench&;

constexpr int format_number = 1;

Json design_part(DesignOutcome design);
Json units_part(const UnitSet& units);
Json results_part(Bench bench, AnalysisResult::Kind kind);
Json boxes_part(const Journal& journal);

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
    {"spec", [](Bench b) { return spec_part(b.filter_spec); }},
    {"transfer", [](Bench b) { return transfer_part(b.filter.worked.medium, b.filter.transfer); }},
    {"x_plane", [](Bench b) { return x_plane_part(b.filter.worked, b.filter.x_plane); }},
    {"immittance", [](Bench b) { return immittance_part(b.filter.x_plane); }},
    {"terminations", [](Bench b) { return terminations_part(b.filter.worked, b.filter.x_plane, b.ladder); }},
    {"synthesis", [](Bench b) { return synthesis_part(b.ladder); }},
    {"circuit", [](Bench b) { return circuit_part(b.passive.circuit); }},
    {"parts", [](Bench b) { return parts_part(b.passive.circuit); }},
    {"analysis", [](Bench b) { return results_part(b, AnalysisResult::Kind::frequency); }},
    {"time", [](Bench b) { return results_part(b, AnalysisResult::Kind::time); }},
    {"fir", [](Bench b) { return fir_part(b.fir); }},
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
