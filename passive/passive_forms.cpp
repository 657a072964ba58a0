#include "passive/passive_forms.h"

#include <algorithm>

#include "exchange/transfer_file.h"

namespace kavrel {

namespace {

// Macros wait for a form by the head of its title.
constexpr std::string_view insert_title = "<New Passive> Insert a branch";
constexpr std::string_view delete_title = "<New Passive> Delete a branch";
constexpr std::string_view change_title = "<New Passive> Change a branch";

constexpr int highest_number = 999;  // that can be typed: whether a branch has it, the command tells

template <auto Member>
constexpr Field branch_field(std::string_view name, std::string_view label) {
    return {.name = name,
            .label = label,
            .kind = FieldKind::integer,
            .low = 0,
            .high = highest_number,
            .cell = cell_of<Member>};
}
template <auto Outer, auto Inner>
constexpr Field branch_field_of(std::string_view name, std::string_view label) {
    return {.name = name,
            .label = label,
            .kind = FieldKind::integer,
            .low = 0,
            .high = highest_number,
            .cell = nested_cell<Outer, Inner>};
}

// Frequency and time analysis.

constexpr std::array<Field, 2> q_fields = {
    {{.name = "inductor_q", .label = "Inductor Q", .cell = cell_of<&PassiveRequest::inductor_q>},
     {.name = "capacitor_q", .label = "Capacitor Q", .cell = cell_of<&PassiveRequest::capacitor_q>}}};
constexpr auto frequency_form_fields = joined(frequency_fields<&PassiveRequest::frequency>, q_fields);
constexpr auto& time_form_fields = time_fields<&PassiveRequest::time>;

std::string_view frequency_form_message(const PassiveRequest& request) { return frequency_message(request.frequency); }
std::string_view time_form_message(const PassiveRequest& request) { return time_message(request.time); }

// Plots. "None" stands where the list of the curve begins or ends.

constexpr Choice frequency_curves[] = {{"None", no_curve},
                                       {"Loss", FrequencyCurve::loss},
                                       {"Phase", FrequencyCurve::phase},
                                       {"Delay", FrequencyCurve::delay},
                                       {"Return loss", FrequencyCurve::return_loss},
                                       {"Real part", FrequencyCurve::real},
                                       {"Imaginary part", FrequencyCurve::imaginary},
                                       {"None", no_curve}};
constexpr Choice time_curves[] = {{"None", no_curve},
                                  {"Impulse response", TimeCurve::impulse},
                                  {"Step response", TimeCurve::step},
                                  {"None", no_curve}};
constexpr std::span<const Choice> first_curves(std::span<const Choice> curves) { return curves.subspan(1); }
constexpr std::span<const Choice> second_curves(std::span<const Choice> curves) {
    return curves.first(curves.size() - 1);
}
constexpr auto plot_frequency_fields = plot_fields<&PassiveRequest::frequency_plot>(
    first_curves(frequency_curves), second_curves(frequency_curves), Unit::frequency);
constexpr auto plot_time_fields =
    plot_fields<&PassiveRequest::time_plot>(first_curves(time_curves), second_curves(time_curves), Unit::time);

// Branches.

constexpr Choice insert_choices[] = {
    {"r", InsertChoice::r},     {"l", InsertChoice::l},      {"c", InsertChoice::c},     {"lc", InsertChoice::lc},
    {"ue", InsertChoice::ue},   {"lcc", InsertChoice::lcc},  {"lcl", InsertChoice::lcl}, {"eqa", InsertChoice::eqa},
    {"eqb", InsertChoice::eqb}, {"copy", InsertChoice::copy}};

constexpr Field insert_fields[] = {
    {.name = "element",
     .label = "Element",
     .kind = FieldKind::choice,
     .choices = insert_choices,
     .cell = nested_cell<&PassiveRequest::insert, &InsertRequest::element>},
    branch_field_of<&PassiveRequest::insert, &InsertRequest::branch>("branch", "Branch number"),
    {.name = "value1", .label = "Value", .cell = nested_cell<&PassiveRequest::insert, &InsertRequest::value1>},
    {.name = "value2", .label = "Second value", .cell = nested_cell<&PassiveRequest::insert, &InsertRequest::value2>},
    {.name = "value3", .label = "Third value", .cell = nested_cell<&PassiveRequest::insert, &InsertRequest::value3>},
    branch_field_of<&PassiveRequest::insert, &InsertRequest::copy_of>("copy_of", "Copy of branch"),
};

// What the values of each choice are; a blank label turns the field off.
struct ValueLabels {
    int element;
    std::string_view value1, value2, value3;
};
constexpr ValueLabels value_labels[] = {
    {InsertChoice::r, "Resistance", "", ""},
    {InsertChoice::l, "Inductance", "", ""},
    {InsertChoice::c, "Capacitance", "", ""},
    {InsertChoice::lc, "Inductance", "Capacitance", ""},
    {InsertChoice::ue, "Impedance", "", ""},
    {InsertChoice::lcc, "Inductance", "Capacitance", "Second capacitance"},
    {InsertChoice::lcl, "Inductance", "Capacitance", "Second inductance"},
    {InsertChoice::eqa, "Inductance", "Resistance", "Capacitance"},
    {InsertChoice::eqb, "Inductance", "Resistance", "Capacitance"},
    {InsertChoice::copy, "", "", ""},
};

void insert_rules(const PassiveRequest& request, FieldStates& states) {
    for (const ValueLabels& row : value_labels) {
        if (row.element != request.insert.element) continue;
        const auto settle = [&](std::string_view name, std::string_view label) {
            states.off(name, label.empty());
            if (!label.empty()) states.label(name, label);
        };
        settle("value1", row.value1);
        settle("value2", row.value2);
        settle("value3", row.value3);
    }
    states.off("copy_of", request.insert.element != InsertChoice::copy);
}

constexpr Field delete_fields[] = {branch_field<&PassiveRequest::deleted_branch>("branch", "Branch number")};

constexpr Field change_fields[] = {
    branch_field_of<&PassiveRequest::change, &ChangeRequest::branch>("branch", "Branch number"),
    {.name = "first", .label = "R, L or Z", .cell = nested_cell<&PassiveRequest::change, &ChangeRequest::first>},
    {.name = "second", .label = "C", .cell = nested_cell<&PassiveRequest::change, &ChangeRequest::second>},
};

constexpr Field resonance_fields[] = {
    branch_field<&PassiveRequest::resonant_branch>("branch", "Branch number"),
    branch_field<&PassiveRequest::resonant_branch2>("branch2", "with branch number (0: alone)"),
};

// The rest.

constexpr Choice display_choices[] = {{"Off", DisplayChoice::off}, {"On", DisplayChoice::on}};
constexpr Field suppress_fields[] = {{.name = "display",
                                      .label = "Display of intermediate results",
                                      .kind = FieldKind::radio,
                                      .choices = display_choices,
                                      .cell = cell_of<&PassiveRequest::display>}};

constexpr Field title_fields[] = {
    {.name = "title", .label = "Enter new title", .kind = FieldKind::text, .text = text_of<&PassiveRequest::title>}};

constexpr auto file_types = [] {
    std::array<Choice, transfer_types.size()> choices{};
    for (std::size_t i = 0; i < choices.size(); ++i)
        choices[i] = {transfer_types[i].label, transfer_types[i].file_type};
    return choices;
}();
constexpr Choice dialects[] = {{"Classic", DialectChoice::classic},
                               {"ngspice", DialectChoice::ngspice},
                               {"S-parameters", DialectChoice::s_parameters}};
constexpr Field transfer_fields[] = {{.name = "file_type",
                                      .label = "File type",
                                      .kind = FieldKind::radio,
                                      .choices = file_types,
                                      .cell = cell_of<&PassiveRequest::file_type>},
                                     {.name = "dialect",
                                      .label = "Dialect",
                                      .kind = FieldKind::radio,
                                      .choices = dialects,
                                      .cell = cell_of<&PassiveRequest::dialect>}};

void transfer_rules(const PassiveRequest& request, FieldStates& states) {
    for (const Choice& dialect : dialects) {
        const bool has = dialect.value == DialectChoice::classic || dialect.label == modern_dialect(request.file_type);
        states.choice_off("dialect", dialect.value, !has);
    }
}

constexpr Field print_fields[] = {print_field<&PassiveRequest::printing_to>};

}  // namespace

constexpr Form PASSIVE_FREQUENCY_DLG = form_of<PassiveRequest, nullptr, frequency_form_message>(
    "FREQUENCY_DLG", "Frequency domain analysis", frequency_form_fields);
constexpr Form PASSIVE_TIME_DLG =
    form_of<PassiveRequest, nullptr, time_form_message>("TIME_DLG", "Time domain analysis", time_form_fields);
constexpr Form PASSIVE_PLOT_FREQUENCY_DLG =
    form_of<PassiveRequest>("PLOT_FREQUENCY_DLG", "Plot of frequency domain results", plot_frequency_fields);
constexpr Form PASSIVE_PLOT_TIME_DLG =
    form_of<PassiveRequest>("PLOT_TIME_DLG", "Plot of time domain results", plot_time_fields);
constexpr Form PASSIVE_INSERT_DLG = form_of<PassiveRequest, insert_rules>("INSERT_DLG", insert_title, insert_fields);
constexpr Form PASSIVE_DELETE_DLG = form_of<PassiveRequest>("DELETE_DLG", delete_title, delete_fields);
constexpr Form PASSIVE_CHANGE_DLG = form_of<PassiveRequest>("CHANGE_DLG", change_title, change_fields);
constexpr Form PASSIVE_RESONANCE_DLG = form_of<PassiveRequest>("RESONANCE_DLG", "Resonant frequency", resonance_fields);
constexpr Form PASSIVE_SUPPRESS_DLG = form_of<PassiveRequest>("SUPPRESS_DLG", "Suppress display", suppress_fields);
constexpr Form PASSIVE_TITLE_DLG = form_of<PassiveRequest>("TITLE_DLG", "Title", title_fields);
constexpr Form PASSIVE_TRANSFER_DLG =
    form_of<PassiveRequest, transfer_rules>("TRANSFER_DLG", "Transfer file", transfer_fields);
constexpr Form PASSIVE_PRINT_DLG = form_of<PassiveRequest>("PRINT_DLG", "Printing to", print_fields);

std::string_view dialect_name(int dialect) {
    const auto found = std::ranges::find(dialects, dialect, &Choice::value);
    return found == std::end(dialects) ? std::string_view{} : found->label;
}

std::string_view modern_dialect(int file_type) {
    const auto found = std::ranges::find(transfer_types, file_type, &TransferTypeRow::file_type);
    return found == transfer_types.end() ? std::string_view{} : found->modern;
}

}  // namespace kavrel
