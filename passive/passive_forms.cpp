#include "passive/passive_forms.h"

#include <algorithm>

#include "circuit/branch_elements.h"
#include "exchange/transfer_types.h"
#include "shell/field_table.h"

namespace kavrel {

namespace {

using R = PassiveRequest;

// Macros wait for a form by the head of its title.
constexpr std::string_view insert_title = "<New Passive> Insert a branch";
constexpr std::string_view delete_title = "<New Passive> Delete a branch";
constexpr std::string_view change_title = "<New Passive> Change a branch";

constexpr int highest_number = 999;  // that can be typed: whether a branch has it, the command finds

template <auto... Path>
constexpr Field branch_number(std::string_view name, std::string_view label) {
    return integer<Path...>(name, label, 0, highest_number);
}

// Frequency and time analysis.

constexpr std::array<Field, 2> q_fields = {
    {real<&R::inductor_q>("inductor_q", "Inductor Q"), real<&R::capacitor_q>("capacitor_q", "Capacitor Q")}};
constexpr auto frequency_form_fields = joined(frequency_fields<&R::frequency>, q_fields);
constexpr auto& time_form_fields = time_fields<&R::time>;

void frequency_form_rules(const PassiveRequest& request, FieldStates& states) {
    frequency_rules(request.frequency, states);
}
Refusal frequency_form_refusal(const PassiveRequest& request) { return frequency_refusal(request.frequency); }
Refusal time_form_refusal(const PassiveRequest& request) { return time_refusal(request.time); }

// Plots. The numbers are those of the rows of curves that the commands know.

constexpr Choice frequency_curves[] = {{"None", no_curve}, {"Loss", 1},      {"Phase", 2},          {"Delay", 3},
                                       {"Return loss", 4}, {"Real part", 5}, {"Imaginary part", 6}, {"None", no_curve}};
constexpr Choice time_curves[] = {
    {"None", no_curve}, {"Impulse response", 1}, {"Step response", 2}, {"None", no_curve}};
constexpr auto plot_frequency_fields = plot_fields<&R::frequency_plot>(frequency_curves, Unit::frequency);
constexpr auto plot_time_fields = plot_fields<&R::time_plot>(time_curves, Unit::time);

// Branches.

constexpr auto insert_choices = [] {
    std::array<Choice, insert_copy> choices{};
    for (const BranchId id : insertable_kinds) {
        const int choice = insert_choice(id);
        choices[static_cast<std::size_t>(choice - 1)] = {branch_kinds[id].name, choice};
    }
    choices.back() = {"copy", insert_copy};
    return choices;
}();

constexpr Field insert_fields[] = {
    choice<&R::insert, &InsertRequest::element>("element", "Element", insert_choices),
    branch_number<&R::insert, &InsertRequest::branch>("branch", "Branch number"),
    real<&R::insert, &InsertRequest::value1>("value1", "Value"),
    real<&R::insert, &InsertRequest::value2>("value2", "Second value"),
    real<&R::insert, &InsertRequest::value3>("value3", "Third value"),
    branch_number<&R::insert, &InsertRequest::copy_of>("copy_of", "Copy of branch"),
};

// What a value is called by its letter, and what the second one of a branch is.
struct ValueLabel {
    char letter;
    std::string_view first, second;
};
constexpr ValueLabel value_labels[] = {
    {'R', "Resistance", "Second resistance"},
    {'L', "Inductance", "Second inductance"},
    {'C', "Capacitance", "Second capacitance"},
    {'Z', "Impedance", "Second impedance"},
};

// Stubs and lines are typed as impedances.
Unit unit_of_value(const R& request, char letter) {
    const bool lumped = request.circuit == nullptr || request.circuit->kind == CircuitKind::lumped;
    return lumped && letter == 'L' ? Unit::inductor : lumped && letter == 'C' ? Unit::capacitor : Unit::resistance;
}

void insert_rules(const PassiveRequest& request, FieldStates& states) {
    const int choice = request.insert.element;
    const std::string_view typed = choice == insert_copy ? "" : insert_kind(choice).typed;
    constexpr std::string_view fields[] = {"value1", "value2", "value3"};
    for (std::size_t i = 0; i < std::size(fields); ++i) {
        states.off(fields[i], i >= typed.size());
        if (i >= typed.size()) continue;
        const ValueLabel& label = *std::ranges::find(value_labels, typed[i], &ValueLabel::letter);
        states.label(fields[i], typed.find(typed[i]) < i ? label.second : label.first);
        states.unit(fields[i], unit_of_value(request, typed[i]));
    }
    states.off("copy_of", choice != insert_copy);
}

constexpr Field delete_fields[] = {branch_number<&R::deleted_branch>("branch", "Branch number")};

constexpr Field change_fields[] = {
    branch_number<&R::change, &ChangeRequest::branch>("branch", "Branch number"),
    real<&R::change, &ChangeRequest::first>("first", "R, L or Z"),
    real<&R::change, &ChangeRequest::second>("second", "C"),
};

// Edits of one branch show the values that it has: a row for each field that takes one, with the letters of the cells
// whose value it is.
struct ValueField {
    double& (*value)(R& request);
    std::string_view letters;
};
constexpr ValueField change_values[] = {
    {[](R& r) -> double& { return r.change.first; }, "RLZ"},
    {[](R& r) -> double& { return r.change.second; }, "C"},
};

void show_values(R& request, int k, std::span<const ValueField> fields, const UnitSet& units) {
    if (request.circuit == nullptr) return;
    if (!branchExists(*request.circuit, k)) {
        for (const ValueField& field : fields) field.value(request) = 0;
        return;
    }
    const Branch branch = unpackBranch(*request.circuit, k);
    const std::string_view letters = branch_kinds[branch.id].cells;
    const auto values = branch_values(*request.circuit, branch);
    for (const ValueField& field : fields) {
        const auto cell = letters.find_first_of(field.letters);
        field.value(request) =
            cell < values.size() ? typed_value(*request.circuit, letters[cell], values[cell], units) : 0;
    }
}

void change_form_opens(R& request, const UnitSet& units) {
    show_values(request, request.change.branch, change_values, units);
}

void change_rules(const R& request, FieldStates& states) {
    if (request.circuit == nullptr || !branchExists(*request.circuit, request.change.branch)) return;
    const std::string_view letters = branch_kinds[unpackBranch(*request.circuit, request.change.branch).id].cells;
    states.off("first", letters.find_first_of("RLZ") == std::string_view::npos);
    states.off("second", letters.find('C') == std::string_view::npos);
    for (const char letter : letters) states.unit(letter == 'C' ? "second" : "first", unit_of_value(request, letter));
}

constexpr Field resonance_fields[] = {
    branch_number<&R::resonant_branch>("branch", "Branch number"),
    branch_number<&R::resonant_branch2>("branch2", "with branch number (0: alone)"),
};

// The rest.

constexpr Choice display_choices[] = {{"Off", DisplayChoice::off}, {"On", DisplayChoice::on}};
constexpr Field suppress_fields[] = {radio<&R::display>("display", "Display of intermediate results", display_choices)};

constexpr Field title_fields[] = {text<&R::title>("title", "Enter new title")};

constexpr auto file_types = [] {
    std::array<Choice, transfer_types.size()> choices{};
    for (std::size_t i = 0; i < choices.size(); ++i)
        choices[i] = {transfer_types[i].label, transfer_types[i].file_type};
    return choices;
}();
constexpr auto dialects = [] {
    std::array<Choice, transfer_dialects.size()> choices{};
    for (std::size_t i = 0; i < choices.size(); ++i)
        choices[i] = {transfer_dialects[i].label, transfer_dialects[i].dialect};
    return choices;
}();
constexpr Field transfer_fields[] = {radio<&R::file_type>("file_type", "File type", file_types),
                                     radio<&R::dialect>("dialect", "Dialect", dialects),
                                     flag<&R::variable_block>("variable_block", "Variable block")};

void transfer_rules(const PassiveRequest& request, FieldStates& states) {
    for (const TransferDialectRow& row : transfer_dialects) {
        states.choice_off("dialect", row.dialect, !has_dialect(request.file_type, row.dialect));
    }
    states.off("variable_block", !has_variable_block(request.file_type, request.dialect));
}

constexpr Field print_fields[] = {print_field<&R::printing_to>};

}  // namespace

double typed_value(const Circuit& circuit, char letter, double value, const UnitSet& units) {
    if (circuit.kind != CircuitKind::lumped) return shown_value(circuit.kind, letter, value);
    return letter == 'L'   ? value / units.inductor_multiplier
           : letter == 'C' ? value / units.capacitor_multiplier
                           : value;
}

constexpr Form PASSIVE_FREQUENCY_DLG = form_of<R, frequency_form_rules, frequency_form_refusal>(
    "FREQUENCY_DLG", "Frequency domain analysis", frequency_form_fields);
constexpr Form PASSIVE_TIME_DLG =
    form_of<R, nullptr, time_form_refusal>("TIME_DLG", "Time domain analysis", time_form_fields);
constexpr Form PASSIVE_PLOT_FREQUENCY_DLG =
    form_of<R>("PLOT_FREQUENCY_DLG", "Plot of frequency domain results", plot_frequency_fields);
constexpr Form PASSIVE_PLOT_TIME_DLG = form_of<R>("PLOT_TIME_DLG", "Plot of time domain results", plot_time_fields);
constexpr Form PASSIVE_INSERT_DLG = form_of<R, insert_rules>("INSERT_DLG", insert_title, insert_fields);
constexpr Form PASSIVE_DELETE_DLG = form_of<R>("DELETE_DLG", delete_title, delete_fields);
constexpr Form PASSIVE_CHANGE_DLG =
    led_by<R, change_form_opens>("branch", form_of<R, change_rules>("CHANGE_DLG", change_title, change_fields));
constexpr Form PASSIVE_RESONANCE_DLG = form_of<R>("RESONANCE_DLG", "Resonant frequency", resonance_fields);
constexpr Form PASSIVE_SUPPRESS_DLG = form_of<R>("SUPPRESS_DLG", "Suppress display", suppress_fields);
constexpr Form PASSIVE_TITLE_DLG = form_of<R>("TITLE_DLG", "Title", title_fields);
constexpr Form PASSIVE_TRANSFER_DLG = form_of<R, transfer_rules>("TRANSFER_DLG", "Transfer file", transfer_fields);
constexpr Form PASSIVE_PRINT_DLG = form_of<R>("PRINT_DLG", "Printing to", print_fields);

}  // namespace kavrel
