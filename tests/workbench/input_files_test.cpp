// Input data of all design and analysis forms: saved, recalled and saved again the bytes are the same, and a file that
// is not whole or not the form's own changes nothing.
#include <algorithm>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>

#include <gtest/gtest.h>

#include "forms/input_forms.h"
#include "tests/support/fake_window.h"
#include "tests/support/scratch_folder.h"
#include "workbench/events.h"

namespace kavrel {
namespace {

UnitSet kilohertz() {
    UnitSet units;
    units.frequency_index = 2;
    units.time_index = 2;
    settle_units(units);
    return units;
}

// Rows n + 1, n + 2, ... in the cells of a list.
template <int Rows, int Columns>
void fill(FormList<Rows, Columns>& list, int rows) {
    list.rows = rows;
    for (int row = 1; row <= rows; ++row) {
        for (int column = 1; column <= Columns; ++column) list(row, column) = row + 0.25 * column;
    }
}

// A form that stores its data: its events, what fills its record with data of every field, and the bytes it saves.
struct InputCase {
    const char* name;
    int new_event, recall_event;
    std::string extension;
    bool has_units;
    std::size_t record;  // whose last integers are choices and counts of the form
    std::vector<bool> bounded;
    void (*fill_in)(Workbench&);
    std::function<std::string(const Workbench&)> bytes;
    std::function<bool(std::string_view, Workbench&)> read;
};

template <class Request>
InputCase input_case(const char* name, int new_event, int recall_event, bool has_units, std::size_t record,
                     const std::vector<bool>& bounded, const InputForm<Request>& input, Request Workbench::*request,
                     void (*fill_in)(Workbench&)) {
    return {name,
            new_event,
            recall_event,
            std::string(input.files.extension),
            has_units,
            record,
            bounded,
            fill_in,
            [&input, request](const Workbench& b) { return input.bytes(b.*request, b.session.units); },
            [&input, request](std::string_view bytes, Workbench& b) {
                return input.take(bytes, b.*request, b.session.units);
            }};
}

void fill_filter(Workbench& bench) {
    FilterRequest& r = bench.filter_request;
    r.filter_kind = FilterKind::active_rc;
    r.filter_type = TypeChoice::low_pass;
    r.stopband_type = StopbandChoice::placer;
    r.band_edge_loss = 0.5;
    r.upper_passband = 3.0;
    r.zeros_at_infinity = 2;
    r.odd_parametric = true;
    r.zs_parameter = -1;
    r.lower_movable = 3;
    fill(r.PLACER_REQS, 4);
    fill(r.FIXED_ZEROS, 10);
    fill(r.MOVABLE_ZEROS, 25);
    fill(r.TR_ZEROS, 2);
    fill(r.DOUBLETS, 3);
    r.save_design = true;
}

void fill_delay(Workbench& bench) {
    DelayRequest& r = bench.delay_request;
    double number = 1.25;
    for (double* cell : {&r.end_of_passband, &r.start_of_stopband, &r.center_frequency, &r.delay, &r.q_value,
                         &r.fq_or_fs, &r.r1, &r.r2, &r.normalization_freq}) {
        *cell = number++;
    }
    r.delay_type = DelayType::equal_ripple;
    r.implementation = DelayImplementation::microwave;
    r.stopband = DelayStopband::specified;
    r.degree = 40;
    r.zeros_at_infinity = 2;
    r.hurwitz = HurwitzType::non_hurwitz;
    r.selection = SignSelection::manual;
    r.odd_parametric = true;
    fill(r.TR_ZEROS, 25);
    r.PLUS_MIN = {.rows = 4, .cells = {1.0, -1.0, 1.0, -1.0}};
    r.save_design = true;
}

void fill_equalizer(Workbench& bench) {
    fill_delay(bench);
    bench.delay_request.delay_type = DelayType::equalizer;
    bench.delay_request.TR_ZEROS = {};
    fill(bench.delay_request.DELAY_DATA, 501);
}

void fill_fir(Workbench& bench) {
    FirRequest& r = bench.fir_request;
    r.design_method = FirMethod::windowed;
    r.filter_length = 21;
    r.upper_frequency = 1.0;
    r.sampling_frequency = 5.0;
    r.window_type = FirWindow::sampled_kaiser;
    r.parameter = 60.0;
    fill(r.QUADRUPLETS, 10);
    fill(r.shape, 501);
    r.save_design = true;
}

void fill_analysis(Workbench& bench) {
    FilterAnalysisRequest& r = bench.analysis_request;
    r.analysis_kind = AnalysisKind::switched_capacitor;
    r.analysis_type = AnalysisType::delay_equalizer;
    r.structure = AnalysisStructure::leapfrog;
    r.form = AnalysisForm::factors;
    r.lower_passband = 1.5;
    r.upper_passband = 2.5;
    r.sampling_or_qw = 10.0;
    r.zeros_at_infinity = 50;
    fill(r.TR_POLES, 25);
    fill(r.TR_ZEROS, 1);
    fill(r.NUMER, 24);
    fill(r.DENOM, 25);
    fill(r.FEED, 3);
    r.save_analysis = true;
}

void fill_fir_analysis(Workbench& bench) {
    FirAnalysisRequest& r = bench.fir_analysis_request;
    r.sampling_freq = 8.0;
    r.filter_data = FirData::quadratics;
    r.filter_symmetry = FirSymmetryChoice::none;
    r.filter_length = 1026;
    fill(r.COEFFICIENTS, 1026);
    fill(r.FIR_ZEROS, 511);
    r.save_analysis_data = true;
}

using W = Workbench;
constexpr bool o = false;  // an integer that may be anything
const InputCase input_cases[] = {
    input_case("filter", 166, 167, true, 1, {1, 1, 1, 1, o, 1, 1, 1, 1, 1, 1, o, 1, 1}, filter_input,
               &W::filter_request, fill_filter),
    input_case("delay", 135, 136, true, 2, {1, 1, 1, 1, 1, 1, 1, 1, o, o}, delay_input, &W::delay_request, fill_delay),
    input_case("equalizer", 135, 136, true, 0, {1}, delay_input, &W::delay_request, fill_equalizer),
    input_case("fir", 1031, 1032, false, 1, {1, 1, 1, 1, 1, 1}, fir_input, &W::fir_request, fill_fir),
    input_case("shape", 1031, 1032, false, 0, {1}, fir_input, &W::fir_request, fill_fir),
    input_case("analysis", 149, 169, false, 1, {1, 1, 1, 1, 1}, analysis_input, &W::analysis_request, fill_analysis),
    input_case("sections", 149, 169, false, 0, {1, 1, 1, 1, 1}, analysis_input, &W::analysis_request, fill_analysis),
    input_case("fir_analysis", 152, 170, false, 1, {1, 1, 1}, fir_analysis_input, &W::fir_analysis_request,
               fill_fir_analysis),
    input_case("taps", 152, 170, false, 0, {1, 1}, fir_analysis_input, &W::fir_analysis_request, fill_fir_analysis),
};

struct InputFiles : testing::Test {
    ScratchFolder folder;
    FakeWindow window;
    std::function<bool(FormSheet&)> accept = [](FormSheet&) { return true; };

    // A workbench in kilohertz with a form's data in its record.
    std::unique_ptr<Workbench> filled(const InputCase& form) {
        auto bench = std::make_unique<Workbench>(window);
        bench->session.units = kilohertz();
        form.fill_in(*bench);
        return bench;
    }
};

TEST_F(InputFiles, SaveRecallAndSaveGiveTheSameBytes) {
    for (const InputCase& form : input_cases) {
        SCOPED_TRACE(form.name);
        const auto bench = filled(form);
        window.boxes.clear();
        window.files = {form.name};
        window.forms = {accept};
        dispatch_event(*bench, form.new_event);
        const std::string file = std::string(form.name) + form.extension;
        const std::string first = read_text(file);
        ASSERT_EQ(first, form.bytes(*bench));
        EXPECT_EQ(bench->session.input_file, std::string_view(file));

        const auto other = std::make_unique<Workbench>(window);
        window.files = {file};
        window.forms = {[&](FormSheet& sheet) {
            const int save = std::max(find_field(sheet, "Save design data"), find_field(sheet, "Save analysis data"));
            return sheet.enter(static_cast<std::size_t>(save), "yes").empty();
        }};
        dispatch_event(*other, form.recall_event);
        EXPECT_EQ(form.bytes(*other), first);
        EXPECT_EQ(read_text(file), first) << "written again under its own name";
        EXPECT_EQ(other->session.units, form.has_units ? kilohertz() : UnitSet{});
        EXPECT_EQ(other->session.frequency_scale, form.has_units ? 1e3 : 1.0) << "in force at once";
        for (const std::string& box : window.boxes) {
            EXPECT_TRUE(box.starts_with("Default: ") || box == "Warning: No space available")
                << box << ": only designs that are still to come";
        }
    }
}

// Everything that is no whole file of the form itself.
TEST_F(InputFiles, DamagedTruncatedForeignAndEmptyFilesAreRefused) {
    for (const InputCase& form : input_cases) {
        SCOPED_TRACE(form.name);
        const std::string good = form.bytes(*filled(form));
        std::vector<std::string> bad = {"", "no stored data", good + good, good + '\0', std::string(good.size(), 'x')};
        for (std::size_t kept = 0; kept < good.size(); kept += kept < 400 ? 1 : 211)
            bad.push_back(good.substr(0, kept));
        bad.push_back(good.substr(0, good.size() - 1));
        for (const InputCase& other : input_cases) {
            const std::string foreign = other.bytes(*filled(other));
            if (!form.read(foreign, *filled(form))) {
                bad.push_back(foreign);
            } else {
                EXPECT_EQ(form.new_event, other.new_event) << other.name;
            }
        }
        // A wrong count of every record, at its head and at its end.
        for (std::size_t at = 0; at < good.size();) {
            std::int32_t length = 0;
            std::memcpy(&length, good.data() + at, sizeof length);
            const std::size_t end = at + 4 + static_cast<std::size_t>(length);
            for (const std::size_t count : {at, end}) {
                bad.push_back(good);
                bad.back()[count] = static_cast<char>(bad.back()[count] ^ 1);
            }
            at = end + 4;
        }
        const auto bench = std::make_unique<Workbench>(window);
        const std::string before = form.bytes(*bench);
        int n = 0;
        for (const std::string& bytes : bad) {
            EXPECT_FALSE(form.read(bytes, *bench)) << "case " << n;
            EXPECT_EQ(form.bytes(*bench), before) << "case " << n++;
        }
    }
}

TEST_F(InputFiles, NoNumberThatTheFormCouldNotHoldIsTaken) {
    for (const InputCase& form : input_cases) {
        SCOPED_TRACE(form.name);
        const std::string good = form.bytes(*filled(form));
        const std::string before = form.bytes(*std::make_unique<Workbench>(window));
        const auto refused = [&](std::size_t at, auto value) {
            const auto bench = std::make_unique<Workbench>(window);
            std::string bytes = good;
            std::memcpy(bytes.data() + at, &value, sizeof value);
            return !form.read(bytes, *bench) && form.bytes(*bench) == before;
        };
        EXPECT_TRUE(refused(4, std::numeric_limits<double>::infinity())) << "the first number";
        EXPECT_TRUE(refused(4, std::numeric_limits<double>::quiet_NaN()));
        if (form.has_units) {
            const std::size_t multipliers = good.size() - 4 - 16 - 32;
            EXPECT_TRUE(refused(multipliers, 500.0)) << "no unit of frequency";
            EXPECT_TRUE(refused(multipliers + 8, 1e3)) << "no unit of an inductor";
            EXPECT_TRUE(refused(multipliers + 16, 1e-13)) << "no unit of a capacitor";
            EXPECT_TRUE(refused(multipliers + 24, 2e-6)) << "no unit of time";
        }
        std::size_t end = 0;  // of the record
        for (std::size_t record = 0; record <= form.record; ++record) {
            std::uint32_t length = 0;
            std::memcpy(&length, good.data() + end, sizeof length);
            end += length + 2 * sizeof length;
        }
        for (std::size_t i = 0; i < form.bounded.size(); ++i) {
            const std::size_t at = end - 4 - 4 * (form.bounded.size() - i);
            for (const int number : {-2, 1 << 30}) EXPECT_EQ(refused(at, number), form.bounded[i]) << i;
        }
    }
}

TEST(FirInputFile, NumbersBeyondSinglePrecisionAreStoredAsItsLargest) {
    FirRequest request, again;
    UnitSet units;
    request.shape.rows = 2;
    request.shape(1, 1) = 0.1, request.shape(1, 2) = -1e39;
    request.shape(2, 1) = 1e300, request.shape(2, 2) = 1e-60;
    ASSERT_TRUE(fir_input.take(fir_input.bytes(request, {}), again, units));
    const double largest = std::numeric_limits<float>::max();
    EXPECT_EQ(again.shape(1, 1), static_cast<double>(0.1F));
    EXPECT_EQ(again.shape(1, 2), -largest);
    EXPECT_EQ(again.shape(2, 1), largest);
    EXPECT_EQ(again.shape(2, 2), 0);
}

// A cut name would be that of another file.
TEST_F(InputFiles, ANameTooLongToBeKeptIsReadButNotWrittenTo) {
    std::string path;
    while (path.size() <= sizeof(Session::input_file)) path += "./";
    for (const InputCase& form : input_cases) {
        SCOPED_TRACE(form.name);
        const std::string file = std::string("stored") + form.extension;
        const auto stored = filled(form);
        write_text(file, form.bytes(*stored));
        const auto bench = std::make_unique<Workbench>(window);
        window.files = {path + file, path + "other"};
        window.forms = {[&](FormSheet& sheet) {
            const int save = std::max(find_field(sheet, "Save design data"), find_field(sheet, "Save analysis data"));
            return sheet.enter(static_cast<std::size_t>(save), "yes").empty();
        }};
        window.boxes.clear();
        dispatch_event(*bench, form.recall_event);
        EXPECT_EQ(form.bytes(*bench), form.bytes(*stored));
        EXPECT_EQ(window.boxes.front(), "Error: File could not be written");
        EXPECT_TRUE(bench->session.input_file.is_blank());
        EXPECT_EQ(read_text(std::string("other") + form.extension), "");
    }
}

TEST_F(InputFiles, ARefusedFileIsToldAndChangesNothing) {
    for (const InputCase& form : input_cases) {
        SCOPED_TRACE(form.name);
        const auto bench = std::make_unique<Workbench>(window);
        const std::string before = form.bytes(*bench);
        const std::string good = form.bytes(*filled(form));
        const std::string file = std::string("bad") + form.extension;
        for (const std::string& bytes : {std::string{}, good.substr(0, good.size() / 2), std::string("text\n")}) {
            write_text(file, bytes);
            window.boxes.clear();
            window.files = {file};
            window.forms = {accept};
            dispatch_event(*bench, form.recall_event);
            EXPECT_EQ(window.boxes, std::vector<std::string>{"Error: File contains incorrect data"});
            EXPECT_EQ(window.forms.size(), 1U) << "the form does not open";
            EXPECT_EQ(form.bytes(*bench), before);
            EXPECT_EQ(bench->session.units, UnitSet{});
            EXPECT_TRUE(bench->session.input_file.is_blank());
            EXPECT_TRUE(bench->session.design_class.is_blank());
        }
        window.files = {"missing.qfi"};
        dispatch_event(*bench, form.recall_event);
        EXPECT_EQ(window.boxes.back(), "Error: File was not found");
    }
}

TEST_F(InputFiles, ARecalledFormThatIsCancelledChangesNothing) {
    for (const InputCase& form : input_cases) {
        SCOPED_TRACE(form.name);
        const std::string file = std::string("stored") + form.extension;
        const auto stored = filled(form);
        write_text(file, form.bytes(*stored));
        const auto bench = std::make_unique<Workbench>(window);
        const std::string before = form.bytes(*bench);
        window.files = {file};
        window.forms = {[&](FormSheet&) {
            EXPECT_EQ(form.bytes(*bench), form.bytes(*stored)) << "the form shows what is stored";
            return false;
        }};
        dispatch_event(*bench, form.recall_event);
        EXPECT_EQ(form.bytes(*bench), before);
        EXPECT_EQ(bench->session.units, UnitSet{});
        EXPECT_EQ(bench->session.frequency_scale, 1.0);
        EXPECT_TRUE(bench->session.input_file.is_blank());
    }
}

TEST_F(InputFiles, AnotherFormsFileIsNotOverwritten) {
    const auto bench = filled(input_cases[1]);
    write_text("filter.qfi", input_cases[0].bytes(*filled(input_cases[0])));
    const std::string kept = read_text("filter.qfi");
    bench->session.input_file = "filter.qfi";
    window.files = {"delay.data"};
    window.forms = {accept};
    dispatch_event(*bench, 135);
    EXPECT_EQ(read_text("filter.qfi"), kept);
    EXPECT_EQ(read_text("delay.data.qfi"), input_cases[1].bytes(*bench));
}

// Of the lists of the delay form the one that its delay type uses is stored.
TEST(DelayInputFile, FourRecordsInTheirOrder) {
    FakeWindow window;
    const auto bench = std::make_unique<Workbench>(window);
    fill_equalizer(*bench);
    const std::string bytes = delay_input_bytes(bench->delay_request, kilohertz());
    const auto double_at = [&](std::size_t at) {
        double value = 0.0;
        std::memcpy(&value, bytes.data() + at, sizeof value);
        return value;
    };
    const auto integer_at = [&](std::size_t at) {
        std::int32_t value = 0;
        std::memcpy(&value, bytes.data() + at, sizeof value);
        return value;
    };
    constexpr std::size_t record_1 = 4;
    constexpr std::size_t record_2 = record_1 + 2 * 501 * 8 + 4 + 8;
    constexpr std::size_t record_3 = record_2 + 9 * 8 + 8;
    constexpr std::size_t record_4 = record_3 + 10 * 4 + 8;
    ASSERT_EQ(bytes.size(), record_4 + 4 * 8 + 4 * 4 + 4);
    EXPECT_EQ(integer_at(0), 2 * 501 * 8 + 4);
    EXPECT_EQ(double_at(record_1 + 8), 2.25) << "second frequency";
    EXPECT_EQ(double_at(record_1 + 501 * 8), 1.5) << "first delay";
    EXPECT_EQ(integer_at(record_1 + 2 * 501 * 8), 501);
    for (std::size_t i = 0; i < 9; ++i) EXPECT_EQ(double_at(record_2 + 8 * i), 1.25 + static_cast<double>(i));
    const int integers[] = {2 + 8, 3, 1, 2, 2, 40, 2, 2, 3, 1};
    for (std::size_t i = 0; i < 10; ++i) EXPECT_EQ(integer_at(record_3 + 4 * i), integers[i]) << i;
    EXPECT_EQ(double_at(record_4), 1e3);
    EXPECT_EQ(integer_at(record_4 + 32), 2);

    DelayRequest read;
    read.TR_ZEROS.rows = 1;
    UnitSet units;
    ASSERT_TRUE(read_delay_input(bytes, read, units));
    EXPECT_EQ(read.DELAY_DATA, bench->delay_request.DELAY_DATA);
    EXPECT_EQ(read.PLUS_MIN, bench->delay_request.PLUS_MIN);
    EXPECT_EQ(read.TR_ZEROS.rows, 0) << "what the file does not hold is not mixed with what it does";
}

TEST(DelayInputFile, AWriterWithoutATypeOfDelayMeansAnEqualizerByItsTable) {
    FakeWindow window;
    const auto bench = std::make_unique<Workbench>(window);
    fill_equalizer(*bench);
    const std::int32_t spare = 0;
    const auto read_type = [&](const DelayRequest& request) {
        std::string bytes = delay_input_bytes(request, {});
        std::memcpy(bytes.data() + bytes.size() - 56 - 8 - 4, &spare, sizeof spare);
        DelayRequest read;
        UnitSet units;
        return read_delay_input(bytes, read, units) ? read.delay_type : DelayType{-1};
    };
    EXPECT_EQ(read_type(bench->delay_request), DelayType::equalizer);
    bench->delay_request.DELAY_DATA = {};
    EXPECT_EQ(read_type(bench->delay_request), DelayType::max_flat);
}

TEST_F(InputFiles, NewOpensTheFormOfTheLastDesign) {
    const auto bench = std::make_unique<Workbench>(window);
    std::string opened;
    const auto note = [&](FormSheet& sheet) {
        opened += std::string(sheet.form().name) + ' ';
        return sheet.form().name == "DELAY_DESIGN_DLG";
    };
    fill_delay(*bench);
    bench->delay_request.save_design = false;
    window.forms = {note, note, note, note};
    dispatch_event(*bench, 524);
    dispatch_event(*bench, 135);
    EXPECT_EQ(bench->session.design_class, std::string_view("delay"));
    dispatch_event(*bench, 524);
    dispatch_event(*bench, 651);
    EXPECT_EQ(opened, "DESIGN_FILTER_DLG DELAY_DESIGN_DLG DELAY_DESIGN_DLG DELAY_DESIGN_DLG ");
    EXPECT_EQ(window.boxes, std::vector<std::string>(3, "Default: Command not implemented"));
}

}  // namespace
}  // namespace kavrel
