#include "fir/fir_forms.h"

#include "fir/fir_command_request.h"
#include "fir/program_dialects.h"
#include "shell/field_table.h"

namespace kavrel {

namespace {

using R = FirCommandRequest;

constexpr std::array<Field, 1> function_field = {
    {integer<&R::function_number>("function_number", "Function number", 1, fir_function_limit)}};

// Analysis.

constexpr auto frequency_form_fields = joined(frequency_fields<&R::frequency>, function_field);
void frequency_form_rules(const R& request, FieldStates& states) { frequency_rules(request.frequency, states); }
Refusal frequency_form_refusal(const R& request) {
    const Refusal wrong = frequency_refusal(request.frequency);
    return wrong.empty() ? wrong : Refusal("No frequencies", wrong.field);
}

constexpr Choice frequency_curves[] = {{"None", no_curve}, {"Loss", 1}, {"Phase", 2}, {"Delay", 3}, {"None", no_curve}};
constexpr Choice time_curves[] = {{"None", no_curve}, {"Pulse response", 1}, {"Step response", 2}, {"None", no_curve}};
constexpr auto plot_frequency_fields = plot_fields<&R::frequency_plot>(frequency_curves, Unit::frequency);
constexpr auto plot_time_fields = plot_fields<&R::time_plot>(time_curves, Unit::time);

// Functions.

constexpr std::array<Field, 1> allowance_field = {
    {real<&R::stopband_allowance>("stopband_allowance", "Allowance of the least word", Unit::decibel)}};
constexpr auto truncate_fields = joined(joined(word_fields<&R::truncated_to>, allowance_field), function_field);
void truncate_rules(const R& request, FieldStates& states) {
    states.off("stopband_allowance", request.truncated_to.bits != 0);
}
Refusal truncate_refusal(const R& request) {
    return request.stopband_allowance >= 0 ? Refusal() : Refusal("Values must be >= 0.0", "stopband_allowance");
}
constexpr auto gain_fields =
    joined(std::array<Field, 1>{real<&R::gain>("gain", "Gain in dB", Unit::decibel)}, function_field);

constexpr auto dialects = [] {
    std::array<Choice, std::size(fir_dialects)> choices{};
    for (std::size_t i = 0; i < choices.size(); ++i) choices[i] = {fir_dialects[i].label, fir_dialects[i].dialect};
    return choices;
}();
constexpr auto program_fields =
    joined(function_field, std::array<Field, 1>{radio<&R::dialect>("dialect", "Dialect", dialects)});

// Factors.

constexpr std::array<Field, 2> factor_fields = {
    {real<&R::linear>("linear", "Linear"), real<&R::quadratic>("quadratic", "Quadratic")}};
constexpr std::array<Field, 1> serial_field = {
    {integer<&R::serial>("serial", "Serial no. of factor", 0, fir_serial_limit)}};
constexpr auto change_fields = joined(serial_field, factor_fields);
constexpr Column serial_columns[] = {{"Factors to be multiplied"}};
constexpr Field serial_fields[] = {list<&R::SERIAL>("SERIAL", "Serial # of factors", serial_columns)};

constexpr Field title_fields[] = {text<&R::title>("title", "Enter new title")};
constexpr Field print_fields[] = {print_field<&R::printing_to>};

}  // namespace

constexpr Form FIR_FUNCTION_DLG = form_of<R>("FIR_FUNCTION_DLG", "Function", function_field);
constexpr Form FIR_FREQUENCY_DLG = form_of<R, frequency_form_rules, frequency_form_refusal>(
    "FREQUENCY_DLG", "Frequency domain analysis", frequency_form_fields);
constexpr Form FIR_PLOT_FREQUENCY_DLG =
    form_of<R>("PLOT_FREQUENCY_DLG", "Plot of frequency domain results", plot_frequency_fields);
constexpr Form FIR_PLOT_TIME_DLG = form_of<R>("PLOT_TIME_DLG", "Plot of time domain results", plot_time_fields);
constexpr Form FIR_TRUNCATE_DLG =
    form_of<R, truncate_rules, truncate_refusal>("FIR_TRUNCATE_DLG", "Truncate coefficients", truncate_fields);
constexpr Form FIR_GAIN_DLG = form_of<R>("FIR_GAIN_DLG", "Flat gain", gain_fields);
constexpr Form FIR_PROGRAM_DLG = form_of<R>("FIR_PROGRAM_DLG", "Filter program", program_fields);
constexpr Form FIR_ADD_DLG = form_of<R>("FIR_ADD_DLG", "Coefficients", factor_fields);
constexpr Form FIR_DELETE_DLG = form_of<R>("FIR_DELETE_DLG", "Delete a factor", serial_field);
constexpr Form FIR_CHANGE_DLG = form_of<R>("FIR_CHANGE_DLG", "New coefficients", change_fields);
constexpr Form FIR_SERIAL_DLG = form_of<R>("FIR_SERIAL_DLG", "Serial # of factors", serial_fields);
constexpr Form FIR_TITLE_DLG = form_of<R>("TITLE_DLG", "Title", title_fields);
constexpr Form FIR_PRINT_DLG = form_of<R>("PRINT_DLG", "Printing to", print_fields);

}  // namespace kavrel
