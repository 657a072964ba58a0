#include "passive/passive_forms.h"

#include <algorithm>

#include "circuit/branch_elements.h"
#include "exchange/transfer_types.h"
#include "shell/field_table.h"
#include "workshop/tee_pi.h"
#include "workshop/three_elements.h"

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

// Two branches, or one.

template <auto Member>
constexpr std::array<Field, 2> two_branches = {{
    branch_number<Member, &TwoBranches::branch1>("branch1", "Branch number"),
    branch_number<Member, &TwoBranches::branch2>("branch2", "and branch number"),
}};
template <auto Member>
constexpr std::array<Field, 1> one_branch = {{branch_number<Member>("branch", "Branch number")}};

constexpr Field split_fields[] = {
    branch_number<&R::split, &SplitRequest::branch>("branch", "Branch number"),
    real<&R::split, &SplitRequest::value>("value", "Value of the new branch"),
    integer<&R::split, &SplitRequest::match>("match", "or that of branch (below 0: negative)", -highest_number,
                                             highest_number),
    flag<&R::split, &SplitRequest::half>("half", "Halves"),
};

constexpr ValueField split_values[] = {{[](R& r) -> double& { return r.split.value; }, "LC"}};

void split_form_opens(R& request, const UnitSet& units) {
    show_values(request, request.split.branch, split_values, units);
}

void split_rules(const R& request, FieldStates& states) {
    states.off("value", request.split.half || request.split.match != 0);
    states.off("match", request.split.half);
    if (request.circuit == nullptr || !branchExists(*request.circuit, request.split.branch)) return;
    const std::string_view letters = branch_kinds[unpackBranch(*request.circuit, request.split.branch).id].cells;
    if (letters.size() == 1) states.unit("value", unit_of_value(request, letters.front()));
}

constexpr Field convert_fields[] = {
    branch_number<&R::converted, &TwoBranches::branch1>("branch1", "Resonant or three-element branch"),
    branch_number<&R::converted, &TwoBranches::branch2>("branch2", "and the element beside it"),
};

constexpr Choice tee_pi_sides[] = {{"Up", TeePiSide::up}, {"Down", TeePiSide::down}};
constexpr Field tee_pi_fields[] = {
    branch_number<&R::tee_pi, &TeePiRequest::branch>("branch", "Branch number"),
    radio<&R::tee_pi, &TeePiRequest::side>("side", "End that changes its kind", tee_pi_sides),
};

void tee_pi_rules(const R& request, FieldStates& states) {
    const Circuit* circuit = request.circuit;
    const int k = request.tee_pi.branch;
    states.off("side", circuit != nullptr && branchExists(*circuit, k) && !has_resonant_middle(*circuit, k));
}

// A branch of three elements is taken apart by itself.
void convert_rules(const R& request, FieldStates& states) {
    const int k = request.converted.branch1;
    if (request.circuit == nullptr || !branchExists(*request.circuit, k)) return;
    states.off("branch2", is_three_element(unpackBranch(*request.circuit, k).id));
}

constexpr Choice other_couplings[] = {
    {"None", OtherCoupling::none}, {"1-2", OtherCoupling::at_load}, {"2-3", OtherCoupling::at_source}};
constexpr Field triplet_fields[] = {
    branch_number<&R::triplet, &TripletRequest::branch>("branch", "Branch number"),
    radio<&R::triplet, &TripletRequest::coupling>("coupling", "Coupling of the other kind", other_couplings),
};

// Norton transformations.

constexpr auto norton_branches = std::array<Field, 2>{{
    branch_number<&R::norton, &NortonRequest::branches, &TwoBranches::branch1>("branch1", "Branch number"),
    branch_number<&R::norton, &NortonRequest::branches, &TwoBranches::branch2>("branch2", "and branch number"),
}};
constexpr auto norton_simple_fields =
    joined(norton_branches, std::array{real<&R::norton, &NortonRequest::ratio>("ratio", "Ratio (0: the largest)")});
constexpr auto norton_computed_fields = joined(
    norton_branches, std::array{integer<&R::norton, &NortonRequest::index>("index", "Computed ratio number", 0, 24)});
constexpr auto norton_matching_fields =
    joined(norton_branches,
           std::array<Field, 2>{{branch_number<&R::norton, &NortonRequest::match1>("match1", "Make branch"),
                                 branch_number<&R::norton, &NortonRequest::match2>("match2", "equal to branch")}});

template <NortonKind kind>
void norton_form_opens(R& request, const UnitSet&) {
    request.norton.kind = kind;
}

constexpr Column branch_column[] = {{"BRANCH"}};
constexpr std::array<Field, 1> equal_fields = {{list<&R::equalised>("branches", "Branches", branch_column)}};

constexpr Choice coupling_choices[] = {{"Inductive", SideBranches::inductive},
                                       {"Capacitive", SideBranches::capacitive}};
constexpr auto multiple_branch =
    std::array{branch_number<&R::multiple, &MultipleRequest::branch>("branch", "Section number")};
constexpr auto multiple_values_fields = joined(
    multiple_branch, std::array<Field, 4>{{radio<&R::multiple, &MultipleRequest::couplings>(
                                               "couplings", "Side branches", coupling_choices),
                                           real<&R::multiple, &MultipleRequest::value1>("value1", "Value at node 2"),
                                           real<&R::multiple, &MultipleRequest::value2>("value2", "Value at node 3"),
                                           real<&R::multiple, &MultipleRequest::value3>("value3", "Value at node 4")}});

void multiple_values_rules(const R& request, FieldStates& states) {
    const Unit unit = unit_of_value(request, request.multiple.couplings == SideBranches::inductive ? 'L' : 'C');
    for (const std::string_view name : {"value1", "value2", "value3"}) states.unit(name, unit);
    const Circuit* circuit = request.circuit;
    const int k = request.multiple.branch;
    const bool triplet = circuit != nullptr && branchExists(*circuit, k) &&
                         branch_kinds[unpackBranch(*circuit, k).id].structure == Structure::triplet;
    states.off("value3", triplet);
}

template <MultipleKind kind>
void multiple_form_opens(R& request, const UnitSet&) {
    request.multiple.kind = kind;
}

// The whole circuit.

constexpr std::array<Field, 1> r_scaling_fields = {{real<&R::impedance_factor>("factor", "Factor, or -R of branch 1")}};
constexpr std::array<Field, 1> f_scaling_fields = {{real<&R::frequency_factor>("factor", "Factor")}};
constexpr Choice percent_classes[] = {{"0.5%", PercentClass::half_percent},
                                      {"1%", PercentClass::one_percent},
                                      {"2%-5%", PercentClass::two_to_five},
                                      {"10%", PercentClass::ten}};
constexpr std::array<Field, 1> preferred_fields = {
    {radio<&R::percent_class>("percent_class", "Percent class", percent_classes)}};
constexpr Field band_reject_fields[] = {
    real<&R::rejected, &BandEdges::lower>("lower", "Lower edge", Unit::frequency),
    real<&R::rejected, &BandEdges::upper>("upper", "Upper edge", Unit::frequency),
};

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

double stored_value(const Circuit& circuit, char letter, double typed, const UnitSet& units) {
    if (circuit.kind != CircuitKind::lumped) return letter == 'C' ? 1 / typed : typed;
    return letter == 'L'   ? typed * units.inductor_multiplier
           : letter == 'C' ? typed * units.capacitor_multiplier
                           : typed;
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
constexpr Form PASSIVE_COMBINE_DLG =
    form_of<R>("COMBINE_DLG", "<New Passive> Combine two branches", two_branches<&R::combined>);
constexpr Form PASSIVE_SPLIT_DLG = led_by<R, split_form_opens>(
    "branch", form_of<R, split_rules>("SPLIT_DLG", "<New Passive> Split a branch", split_fields));
constexpr Form PASSIVE_INTERCHANGE_DLG =
    form_of<R>("INTERCHANGE_DLG", "<New Passive> Interchange two branches", two_branches<&R::interchanged>);
constexpr Form PASSIVE_TEE_PI_DLG = form_of<R, tee_pi_rules>("TEE_PI_DLG", "<New Passive> Tee-pi", tee_pi_fields);
constexpr Form PASSIVE_EXCHANGE_DLG =
    form_of<R>("EXCHANGE_DLG", "<New Passive> Exchange resonant branches", two_branches<&R::exchanged>);
constexpr Form PASSIVE_CONVERT_DLG =
    form_of<R, convert_rules>("CONVERT_DLG", "<New Passive> Convert three-element branches", convert_fields);
constexpr Form PASSIVE_LATTICE_DLG =
    form_of<R>("LATTICE_DLG", "<New Passive> Section into a lattice", two_branches<&R::latticed>);
constexpr Form PASSIVE_INCLUDE_DLG =
    form_of<R>("INCLUDE_DLG", "<New Passive> Include branches into a lattice", one_branch<&R::included_in>);
constexpr Form PASSIVE_TRIPLET_DLG = form_of<R>("TRIPLET_DLG", "<New Passive> Coupled triplet", triplet_fields);
constexpr Form PASSIVE_QUADRUPLET_DLG =
    form_of<R>("QUADRUPLET_DLG", "<New Passive> Coupled quadruplet", one_branch<&R::coupled_four>);
constexpr Form PASSIVE_NORTON_SIMPLE_DLG = opened_by<R, norton_form_opens<NortonKind::simple>>(
    form_of<R>("NORTON_SIMPLE_DLG", "<New Passive> Norton transformation", norton_simple_fields));
constexpr Form PASSIVE_NORTON_COMPUTED_DLG = opened_by<R, norton_form_opens<NortonKind::computed>>(
    form_of<R>("NORTON_COMPUTED_DLG", "<New Passive> Norton transformation, computed", norton_computed_fields));
constexpr Form PASSIVE_NORTON_MATCHING_DLG = opened_by<R, norton_form_opens<NortonKind::matching>>(
    form_of<R>("NORTON_MATCHING_DLG", "<New Passive> Norton transformation, matching", norton_matching_fields));
constexpr Form PASSIVE_EQUAL_DLG = form_of<R>("EQUAL_DLG", "<New Passive> All values equal", equal_fields);
constexpr Form PASSIVE_INNER_EQUAL_DLG =
    form_of<R>("INNER_EQUAL_DLG", "<New Passive> All values equal, end values halved", equal_fields);
constexpr Form PASSIVE_MULTIPLE_L_DLG = opened_by<R, multiple_form_opens<MultipleKind::equal_inductors>>(
    form_of<R>("MULTIPLE_L_DLG", "<New Passive> Multiple Norton, equal L's", multiple_branch));
constexpr Form PASSIVE_MULTIPLE_C_DLG = opened_by<R, multiple_form_opens<MultipleKind::equal_capacitors>>(
    form_of<R>("MULTIPLE_C_DLG", "<New Passive> Multiple Norton, equal C's", multiple_branch));
constexpr Form PASSIVE_MULTIPLE_VALUES_DLG =
    opened_by<R, multiple_form_opens<MultipleKind::specified>>(form_of<R, multiple_values_rules>(
        "MULTIPLE_VALUES_DLG", "<New Passive> Multiple Norton, specified values", multiple_values_fields));
constexpr Form PASSIVE_R_SCALING_DLG = form_of<R>("R_SCALING_DLG", "<New Passive> Impedance scaling", r_scaling_fields);
constexpr Form PASSIVE_F_SCALING_DLG = form_of<R>("F_SCALING_DLG", "<New Passive> Frequency scaling", f_scaling_fields);
constexpr Form PASSIVE_PREFERRED_DLG = form_of<R>("PREFERRED_DLG", "<New Passive> Preferred values", preferred_fields);
constexpr Form PASSIVE_BAND_REJECT_DLG =
    form_of<R>("BAND_REJECT_DLG", "<New Passive> Band-reject transformation", band_reject_fields);
constexpr Form PASSIVE_RESONANCE_DLG = form_of<R>("RESONANCE_DLG", "Resonant frequency", resonance_fields);
constexpr Form PASSIVE_SUPPRESS_DLG = form_of<R>("SUPPRESS_DLG", "Suppress display", suppress_fields);
constexpr Form PASSIVE_TITLE_DLG = form_of<R>("TITLE_DLG", "Title", title_fields);
constexpr Form PASSIVE_TRANSFER_DLG = form_of<R, transfer_rules>("TRANSFER_DLG", "Transfer file", transfer_fields);
constexpr Form PASSIVE_PRINT_DLG = form_of<R>("PRINT_DLG", "Printing to", print_fields);

}  // namespace kavrel
