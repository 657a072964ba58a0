#include "workbench/state_json.h"

#include <cmath>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "workbench/circuit_json.h"
#include "workbench/filter_json.h"
#include "workbench/rooms.h"

namespace kavrel {

namespace {

using Json = nlohmann::ordered_json;

constexpr int format_number = 1;

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
Json results_part(const AnalysisResult& results, AnalysisResult::Kind kind) {
    Json part;
    for (const ColumnRow& row : result_columns) {
        if (row.kind == kind && has_column(results, row)) part[std::string(row.name)] = column_values(results, row);
    }
    return part;
}

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

Json boxes_part(const Journal& journal) {
    Json boxes = Json::array();
    for (const JournalBox& box : journal.boxes) {
        boxes.push_back({{"caption", box.caption}, {"text", box.text}, {"answer", box.answer}});
    }
    return boxes;
}

// Writes a value with numbers of 17 significant digits, objects a member a line, lists on one line.
void write(const Json& value, int indent, std::string& out) {
    if (value.is_object() && !value.empty()) {
        out += '{';
        const char* separator = "\n";
        for (const auto& [key, member] : value.items()) {
            out += separator + std::string(static_cast<std::size_t>(indent) + 2, ' ') + Json(key).dump() + ": ";
            write(member, indent + 2, out);
            separator = ",\n";
        }
        out += '\n' + std::string(static_cast<std::size_t>(indent), ' ') + '}';
    } else if (value.is_array()) {
        const bool of_lines = !value.empty() && (value[0].is_string() || value[0].is_object());
        const std::string gap = of_lines ? '\n' + std::string(static_cast<std::size_t>(indent) + 2, ' ') : " ";
        out += '[';
        for (std::size_t i = 0; i < value.size(); ++i) {
            if (i > 0) out += ',';
            if (i > 0 || of_lines) out += gap;
            write(value[i], indent + 2, out);
        }
        if (of_lines) out += '\n' + std::string(static_cast<std::size_t>(indent), ' ');
        out += ']';
    } else if (value.is_number_float()) {
        const double number = value.get<double>();
        out += std::isfinite(number) ? fmt::format("{:.17g}", number) : "null";
    } else {
        out += value.dump(-1, ' ', false, Json::error_handler_t::replace);
    }
}

}  // namespace

std::string state_json(const Workbench& bench) {
    Json state;
    state["format"] = format_number;
    state["version"] = KAVREL_VERSION;
    state["title"] = bench.session.TITLE.text();
    state["segment"] = room_of(bench.session.segment).name;
    state["design"] = design_part(bench.design);
    state["units"] = units_part(bench.session.units);
    const auto part = [&](const char* name, Json value) {
        if (!value.empty()) state[name] = std::move(value);
    };
    part("spec", spec_part(bench.filter_spec));
    part("transfer", transfer_part(bench.filter.transfer));
    part("x_plane", x_plane_part(bench.filter.worked, bench.filter.x_plane));
    part("immittance", immittance_part(bench.filter.x_plane));
    part("terminations", terminations_part(bench.filter.worked, bench.filter.x_plane, bench.ladder));
    part("synthesis", synthesis_part(bench.ladder));
    part("circuit", circuit_part(bench.passive.circuit));
    part("parts", parts_part(bench.passive.circuit));
    part("analysis", results_part(bench.results, AnalysisResult::Kind::frequency));
    part("time", results_part(bench.results, AnalysisResult::Kind::time));
    part("fir", fir_part(bench.fir));
    state["boxes"] = boxes_part(bench.journal);
    state["report"] = bench.journal.lines;
    std::string text;
    write(state, 0, text);
    return text + '\n';
}

}  // namespace kavrel
