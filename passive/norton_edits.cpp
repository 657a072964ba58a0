#include "passive/norton_edits.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "passive/hindrances.h"
#include "shell/edited.h"
#include "shell/whole_part.h"
#include "workshop/norton.h"

namespace kavrel {

namespace {

constexpr double no_ratio = 1e-12;      // up to which none was entered
constexpr double no_difference = 1e-6;  // from 1

// A Norton transformation that is being prepared, and how the questions about its ratio were answered.
struct Transformation {
    NortonSection section;
    double largest = 1;
    std::optional<double> ratio = {};  // n^2
    std::string answers = {};          // lines of the macro
};

Refusal find_ratio(const PassiveDesk& desk, const Circuit& circuit, Transformation& work);
bool agree_on_ratio(PassiveDesk& desk, const Circuit& circuit, Transformation& work);
MacroStep norton_macro(const NortonRequest& request, const Transformation& work);
void equalise(PassiveDesk& desk, EndValues ends);

}  // namespace

bool norton_transformation(PassiveDesk& desk, EditStep& step) {
    const NortonRequest& request = desk.command.norton;
    const auto [k1, k2] = request.branches;
    const auto element = request.kind == NortonKind::computed ? NewElement::own_branch : NewElement::joins;
    Circuit& circuit = step.circuit();
    Transformation work;
    if (!passes(desk, nortonSection(circuit, k1, k2, element, work.section))) return false;
    work.largest = largestRatio(circuit, work.section);
    if (!passes(desk, find_ratio(desk, circuit, work)) || !agree_on_ratio(desk, circuit, work)) return false;

    desk.reporter.report_line(edited<"(A,1P,D16.7)">(" Largest transformation ratio:", work.largest));
    desk.reporter.report_line(edited<"(A,1P,D19.7)">(" Transformation ratio used:", *work.ratio));
    step.changed = std::min({k1, k2, firstBranch(circuit, work.section)});
    step.macro = norton_macro(request, work);
    norton(circuit, work.section, *work.ratio);
    return true;
}

void equalise_all(PassiveDesk& desk) { equalise(desk, EndValues::equal); }

void equalise_inner(PassiveDesk& desk) { equalise(desk, EndValues::halved); }

namespace {

bool asks(PassiveDesk& desk, std::string_view question, Transformation& work);

// The ratio that was asked for; none where none was, or where none makes the two elements equal.
Refusal find_ratio(const PassiveDesk& desk, const Circuit& circuit, Transformation& work) {
    const NortonRequest& request = desk.command.norton;
    const ComputedRatios& computed = desk.state.computed;
    switch (request.kind) {
        case NortonKind::simple:
            if (std::fabs(request.ratio) > no_ratio) work.ratio = std::fabs(request.ratio);
            break;
        case NortonKind::computed:
            if (request.index < 1 || request.index > computed.count) return {data_unavailable, "index"};
            work.ratio = computed.t(request.index);
            break;
        case NortonKind::matching:
            return matchingRatio(desk.filter.circuit, circuit, work.section, request.match1, request.match2,
                                 work.ratio);
    }
    return {};
}

// Asks what the ratio leaves open; false where nothing is to be done.
bool agree_on_ratio(PassiveDesk& desk, const Circuit& circuit, Transformation& work) {
    if (!work.ratio) {
        if (!asks(desk, "Do you want maximum transformation?", work)) return false;
        work.ratio = work.largest;
    }
    double& ratio = *work.ratio;
    ratio = settledRatio(circuit, work.section, ratio);
    const bool within = ratio >= std::min(work.largest, 1.0) && ratio <= std::max(work.largest, 1.0);
    const bool changes = std::fabs(ratio - 1) >= no_difference;
    if (changes && !within && desk.command.norton.kind != NortonKind::computed &&
        !asks(desk, "Is negative element acceptable?", work))
        ratio = work.largest;
    return std::fabs(ratio - 1) >= no_difference || passes(desk, {"No change"});
}

bool asks(PassiveDesk& desk, std::string_view question, Transformation& work) {
    const bool yes = desk.reporter.message(question, "Question", Buttons::yes_no) == Answer::yes;
    work.answers += yes ? "SendKey(\"~\")\n" : "SendKey(\"!n\")\n";
    return yes;
}

MacroStep norton_macro(const NortonRequest& request, const Transformation& work) {
    std::string keys = macro_branch(request.branches.branch1);
    const auto add = [&](const std::string& text) { keys += std::string(macro_tab) + text; };
    add(macro_branch(request.branches.branch2));
    std::string_view menu;
    switch (request.kind) {
        case NortonKind::simple:
            menu = "Modify Norton Simple";
            add(macro_value_d(request.ratio));
            add(macro_value_d(*work.ratio));
            break;
        case NortonKind::computed:
            menu = "Modify Norton Computed";
            add(macro_branch(request.index));
            break;
        case NortonKind::matching:
            menu = "Modify Norton Matching";
            add(macro_branch(request.match1));
            add(macro_branch(request.match2));
            break;
    }
    return {menu, keys + std::string(macro_return), work.answers, true};
}

// The branches of the list; none where a row is no number of one.
std::optional<std::vector<int>> listed_branches(const PassiveDesk& desk) {
    const auto& list = desk.command.equalised;
    std::vector<int> branches;
    for (int row = 1; row <= list.rows; ++row) {
        const int k = whole_part(list(row, 1));
        if (k != list(row, 1) || k < 1 || k > desk.filter.circuit.klast) return std::nullopt;
        branches.push_back(k);
    }
    return branches;
}

void equalise(PassiveDesk& desk, EndValues ends) {
    constexpr std::string_view field = "branches";
    if (const auto why = needs_branches<no_listed_branch>(desk); !why.empty()) return refuse(desk, why);
    const auto list = listed_branches(desk);
    if (!list) return refuse(desk, {no_listed_branch, field});
    if (list->empty()) return refuse(desk, {"Not enough branches specified", field});

    ComputedRatios& computed = desk.state.computed;
    if (!passes(desk, equalise(desk.filter.circuit, *list, ends, computed))) return;
    desk.reporter.report_line(" Process converged, use transformations:");
    std::string keys;
    for (int i = 1; i <= computed.count; ++i)
        desk.reporter.report_line(edited<"(A,I2,A,1P,D15.7)">(" t(", i, ") =", computed.t(i)));
    for (const int k : *list) keys += macro_branch(k) + " {TAB}";
    const std::string_view menu =
        ends == EndValues::halved ? "Modify Norton All End values halved" : "Modify Norton All ";
    record_macro(desk, {menu, "~ ~ {F2}", macro_key_line(keys) + macro_key_line("^{TAB} ~")});
}

}  // namespace

}  // namespace kavrel
