#include "iir/iir_forms.h"

#include "iir/program_dialects.h"
#include "iir/sampled_response.h"
#include "iir/scaling_commands.h"
#include "shell/field_table.h"

namespace kavrel {

namespace {

using R = IirRequest;

constexpr std::string_view allowance_negative = "Values must be >= 0.0";

// The z step.

constexpr Choice z_transforms[] = {{"Impulse-invariant", ZTransformChoice::impulse_invariant},
                                   {"Matched", ZTransformChoice::matched},
                                   {"Bilinear", ZTransformChoice::bilinear}};
constexpr Field z_transform_fields[] = {
    radio<&R::z_transform_type>("z_transform_type", "Z-transform type", z_transforms),
    real<&R::sampling>("sampling", "Enter sampling time in sec or sampling frequency in Hz"),
};

constexpr Choice spectral_kinds[] = {{"None", SpectralChoice::none},
                                     {"Lowpass-to-lowpass", SpectralChoice::to_lowpass},
                                     {"Lowpass-to-highpass", SpectralChoice::to_highpass},
                                     {"Lowpass-to-bandpass", SpectralChoice::to_bandpass},
                                     {"Lowpass-to-bandreject", SpectralChoice::to_bandreject}};
constexpr Field spectral_fields[] = {
    radio<&R::frequency_transformation>("frequency_transformation", "Frequency transformation", spectral_kinds),
    real<&R::lower_passband>("lower_passband", "Lower passband freq", Unit::frequency),
    real<&R::upper_passband>("upper_passband", "Upper passband freq", Unit::frequency),
};

void spectral_rules(const R& request, FieldStates& states) {
    const SpectralChoice kind = request.frequency_transformation;
    states.off("lower_passband", kind == SpectralChoice::none || kind == SpectralChoice::to_lowpass);
    states.off("upper_passband", kind == SpectralChoice::none || kind == SpectralChoice::to_highpass);
}

// Analysis.

constexpr Choice implementations[] = {{"Cascade", Implementation::cascade},
                                      {"Parallel", Implementation::parallel},
                                      {"Lattice", Implementation::lattice},
                                      {"Direct", Implementation::direct},
                                      {"Differential allpass", Implementation::allpass},
                                      {"Natural modes", Implementation::natural_modes}};
constexpr std::span simulated_implementations = std::span(implementations).first(5);
constexpr Choice outputs[] = {
    {"Filter", AllpassOutput::filter}, {"Sum", AllpassOutput::sum}, {"Difference", AllpassOutput::difference}};

constexpr std::array<Field, 1> analysed_field = {
    {radio<&R::analysed>("implementation", "Implementation to analyze", implementations)}};
constexpr auto frequency_form_fields = joined(frequency_fields<&R::frequency>, analysed_field);
void frequency_form_rules(const R& request, FieldStates& states) { frequency_rules(request.frequency, states); }
Refusal frequency_form_refusal(const R& request) { return frequency_refusal(request.frequency); }

constexpr std::array<Field, 2> simulated_fields = {
    {radio<&R::simulated>("implementation", "Implementation to simulate", simulated_implementations),
     radio<&R::output>("output", "Output", outputs)}};
constexpr auto time_form_fields =
    joined(joined(time_fields<&R::time>, simulated_fields), word_fields<&R::simulated_word>);
void time_form_rules(const R& request, FieldStates& states) {
    states.off("output", request.simulated != Implementation::allpass);
}

Refusal time_form_refusal(const R& request) { return sampled_time_refusal(request.time); }

constexpr Choice frequency_curves[] = {{"None", no_curve}, {"Loss", 1}, {"Phase", 2}, {"Delay", 3}, {"None", no_curve}};
constexpr Choice time_curves[] = {
    {"None", no_curve}, {"Impulse response", 1}, {"Step response", 2}, {"None", no_curve}};
constexpr auto plot_frequency_fields = plot_fields<&R::frequency_plot>(frequency_curves, Unit::frequency);
constexpr auto plot_time_fields = plot_fields<&R::time_plot>(time_curves, Unit::time);

// Edits.

constexpr Choice places[] = {
    {"Numerator", FactorPlace::numerator}, {"Denominator", FactorPlace::denominator}, {"Both", FactorPlace::both}};
constexpr std::span one_place = std::span(places).first(2);

constexpr Field flat_fields[] = {real<&R::loss>("loss", "Flat loss", Unit::decibel)};
constexpr Field add_fields[] = {real<&R::c1>("c1", "Coefficient of z**(-1)"),
                                real<&R::c2>("c2", "Coefficient of z**(-2)"),
                                radio<&R::added_to>("place", "Place", one_place)};
constexpr Field delete_fields[] = {integer<&R::deleted>("number", "Factor number", 0, iir_section_limit),
                                   radio<&R::deleted_from>("place", "Place", one_place)};
constexpr Field permute_fields[] = {radio<&R::permuted>("place", "Place", places),
                                    text<&R::sequence>("sequence", "Permuted serial numbers")};
constexpr Field resample_fields[] = {
    real<&R::sampling_frequency>("sampling_frequency", "Sampling frequency", Unit::frequency)};

// Word lengths.

constexpr std::array<Field, 2> allowance_fields = {
    {real<&R::passband_allowance>("passband_allowance", "Passband allowance of the least word", Unit::decibel),
     real<&R::stopband_allowance>("stopband_allowance", "Stopband allowance of the least word", Unit::decibel)}};
constexpr auto truncate_fields = joined(word_fields<&R::truncated_to>, allowance_fields);
void truncate_rules(const R& request, FieldStates& states) {
    for (const Field& field : allowance_fields) states.off(field.name, request.truncated_to.bits != 0);
}
Refusal truncate_refusal(const R& request) {
    if (!(request.passband_allowance >= 0)) return {allowance_negative, "passband_allowance"};
    return request.stopband_allowance >= 0 ? Refusal() : Refusal(allowance_negative, "stopband_allowance");
}

constexpr Choice scaling_methods[] = {{"L-two", ScalingMethod::l_two}, {"L-infinity", ScalingMethod::l_infinity}};
constexpr Choice scaling_answers[] = {
    {"No", ScalingAnswer::no}, {"Yes", ScalingAnswer::yes}, {"Ask", ScalingAnswer::ask}};
constexpr Field scale_fields[] = {
    radio<&R::scaling_method>("scaling_method", "Scaling method", scaling_methods),
    radio<&R::separately>("separately", separately_question, scaling_answers),
    radio<&R::denominators_first>("denominators_first", denominators_first_question, scaling_answers)};
void scale_rules(const R& request, FieldStates& states) {
    for (const auto name : {"separately", "denominators_first"}) {
        states.off(name, request.scaling_method != ScalingMethod::l_infinity);
    }
}
constexpr Column factor_columns[] = {{"Scale factor"}};
constexpr Field factor_fields[] = {list<&R::SCALE_FACTORS>("SCALE_FACTORS", "SCALE_FACTORS", factor_columns)};
constexpr Field order_fields[] = {integer<&R::seed>("seed", "Seed", 0, highest_seed),
                                  flag<&R::apply>("apply", "Apply the best order")};

// Programs.

constexpr auto dialects = [] {
    std::array<Choice, std::size(program_dialects)> choices{};
    for (std::size_t i = 0; i < choices.size(); ++i)
        choices[i] = {program_dialects[i].label, program_dialects[i].dialect};
    return choices;
}();
constexpr Field program_fields[] = {
    radio<&R::programmed>("implementation", "Implementation", simulated_implementations),
    radio<&R::program_output>("output", "Output", outputs), radio<&R::dialect>("dialect", "Dialect", dialects)};
void program_rules(const R& request, FieldStates& states) {
    const ProgramDialectRow& row = row_of(request.dialect);
    states.off("implementation", row.is_of_cascade());
    states.off("output", row.is_of_cascade() || request.programmed != Implementation::allpass);
}

// Views.

constexpr Choice diagrams[] = {{"Multiple input form", DiagramChoice::multiple_input},
                               {"Summed output form", DiagramChoice::summed_output}};
constexpr Choice formats[] = {{"Decimal", DisplayFormat::decimal}, {"Hexadecimal", DisplayFormat::hexadecimal}};
constexpr Field section_fields[] = {integer<&R::section>("section", "Section number", 0, 26),
                                    radio<&R::diagram>("diagram", "Diagram", diagrams),
                                    radio<&R::display_format>("display_format", "Display format", formats)};
constexpr Field title_fields[] = {text<&R::title>("title", "Title")};
constexpr Field print_fields[] = {print_field<&R::printing_to>};

}  // namespace

constexpr Form Z_TRANSFORM_DLG = form_of<R>("Z_TRANSFORM_DLG", "Z transform", z_transform_fields);
constexpr Form SPECTRAL_DLG = form_of<R, spectral_rules>("SPECTRAL_DLG", "Spectral transformation", spectral_fields);
constexpr Form IIR_FREQUENCY_DLG = form_of<R, frequency_form_rules, frequency_form_refusal>(
    "FREQUENCY_DLG", "Frequency domain analysis", frequency_form_fields);
constexpr Form IIR_TIME_DLG =
    form_of<R, time_form_rules, time_form_refusal>("TIME_DLG", "Time domain analysis", time_form_fields);
constexpr Form IIR_PLOT_FREQUENCY_DLG =
    form_of<R>("PLOT_FREQUENCY_DLG", "Plot of frequency domain results", plot_frequency_fields);
constexpr Form IIR_PLOT_TIME_DLG = form_of<R>("PLOT_TIME_DLG", "Plot of time domain results", plot_time_fields);
constexpr Form IIR_FLAT_DLG = form_of<R>("FLAT_DLG", "Flat loss", flat_fields);
constexpr Form IIR_ADD_DLG = form_of<R>("ADD_DLG", "Add a factor", add_fields);
constexpr Form IIR_DELETE_DLG = form_of<R>("DELETE_FACTOR_DLG", "Delete a factor", delete_fields);
constexpr Form IIR_PERMUTE_DLG = form_of<R>("PERMUTE_DLG", "Permute factors", permute_fields);
constexpr Form IIR_TRUNCATE_DLG =
    form_of<R, truncate_rules, truncate_refusal>("TRUNCATE_DLG", "Truncate coefficients", truncate_fields);
constexpr Form IIR_SCALE_DLG = form_of<R, scale_rules>("SCALE_DLG", "Scale the sections", scale_fields);
constexpr Form IIR_SCALE_FACTORS_DLG = form_of<R>("SCALE_FACTORS_DLG", "Scale factors", factor_fields);
constexpr Form IIR_ORDER_DLG = form_of<R>("ORDER_DLG", "Order the sections", order_fields);
constexpr Form IIR_PROGRAM_DLG = form_of<R, program_rules>("PROGRAM_DLG", "Filter program", program_fields);
constexpr Form IIR_SECTION_DLG = form_of<R>("SECTION_DLG", "Diagram of a section", section_fields);
constexpr Form IIR_RESAMPLE_DLG = form_of<R>("RESAMPLE_DLG", "Change sampling frequency", resample_fields);
constexpr Form IIR_TITLE_DLG = form_of<R>("TITLE_DLG", "Title", title_fields);
constexpr Form IIR_PRINT_DLG = form_of<R>("PRINT_DLG", "Printing to", print_fields);

}  // namespace kavrel
