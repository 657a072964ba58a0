#include "fir/fir_records.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <memory>
#include <vector>

#include "fir/factors.h"
#include "fir/fir_command_request.h"
#include "fir/fir_task.h"
#include "fir/windows.h"
#include "shell/finite.h"
#include "shell/stored_files.h"

namespace kavrel {

namespace {

// The fields of the functions as columns, and the places of the factors.
struct Columns {
    Table<FirSymmetry, fir_function_limit> symmetry;
    Table<int, fir_function_limit> taps, LENGTH, BITS;
    Table<WordMethod, fir_function_limit> method;
    Table<NumberForm, fir_function_limit> number_form;
    Table<std::int32_t, fir_function_limit> asked;
    Table<double, fir_function_limit> gain;
    Table<int, fir_factor_limit> IIND;
};
Columns columns_of(const FirFilter& filter);
// The two directions: `File` is a RecordWriter or a RecordReader, the others const or not accordingly.
template <class File, class Filter, class Table, class Title>
void records(File& file, Filter& filter, Table& columns, Title& title);
bool read(std::string_view bytes, FirFilter& filter, FixedText<80>& title, bool may_be_empty);
void take_functions(const Columns& columns, FirFilter& filter);
bool sound(const FirFilter& filter, const Columns& columns);

}  // namespace

std::string fir_records(const FirFilter& filter, const FixedText<80>& title) {
    RecordWriter file;
    const Columns columns = columns_of(filter);
    records(file, filter, columns, title);
    return file.bytes();
}

bool read_fir_records(std::string_view bytes, FirFilter& filter, FixedText<80>& title) {
    return read(bytes, filter, title, false);
}

bool read_fir_snapshot(std::string_view bytes, FirFilter& filter, FixedText<80>& title) {
    return read(bytes, filter, title, true);
}

namespace {

constexpr std::size_t block_bytes = 4368;

// Calls visit with the fields of a block; what is left of it is blank.
template <class Factors, class Table, class Visit>
constexpr auto serial_block(Factors& f, Table& c, const Visit& visit) {
    return visit(f.A1, f.ISER, c.IIND, c.symmetry, c.taps, c.method, c.number_form, c.asked, f.multiplier);
}
template <class Filter, class Table, class Title, class Visit>
constexpr auto request_block(Filter& filter, Table& c, Title& title, const Visit& visit) {
    auto& f = filter.factors;
    auto& r = filter.request;
    return visit(f.A2, title, f.delay, f.trailing, f.function, f.asked, f.last_serial, f.gain, c.gain, filter.deviation,
                 filter.origin, r.QUADRUPLETS.cells, r.QUADRUPLETS.rows, r.filter_length, r.design_method, r.fir_type,
                 r.specification_type, r.filter_type, r.window_type, r.lower_frequency, r.upper_frequency,
                 r.sampling_frequency, r.slope, r.parameter, r.shape.rows, filter.WINDOW);
}

constexpr auto bytes_of = [](const auto&... items) {
    const auto bytes = []<class Item>(const Item&) { return std::same_as<Item, bool> ? sizeof(int) : sizeof(Item); };
    return (bytes(items) + ... + 0);
};
constexpr FirFilter no_filter;
constexpr Columns no_columns;
constexpr FixedText<80> no_title;
constexpr std::size_t serial_bytes = serial_block(no_filter.factors, no_columns, bytes_of);
constexpr std::size_t request_bytes = request_block(no_filter, no_columns, no_title, bytes_of);
static_assert(sizeof(FirFilter::COEF) == 2064 && sizeof(FirFilter::X) == 4144 && sizeof(FirFilter::IST) == 24);
static_assert(sizeof(FirFactors::A1) == 273 * sizeof(double) && serial_bytes <= block_bytes &&
              request_bytes <= block_bytes);

template <class File, class Filter, class Table, class Title>
void records(File& file, Filter& filter, Table& columns, Title& title) {
    std::array<char, block_bytes - serial_bytes> after_serials{};
    std::array<char, block_bytes - request_bytes> after_request{};
    const auto items = [&file](auto&... fields) { file.items(fields...); };
    file.record(filter.COEF);
    file.begin();
    serial_block(filter.factors, columns, items);
    file.items(after_serials);
    request_block(filter, columns, title, items);
    file.items(after_request, filter.X, filter.sampling_frequency);
    file.end();
    file.record(filter.IST, columns.LENGTH, columns.BITS, filter.functions, filter.NFCNS, filter.NODD, filter.NEG,
                filter.factors.count);
    if (filter.request.shape.rows > 0) file.record(filter.request.shape.cells);
}

bool read(std::string_view bytes, FirFilter& filter, FixedText<80>& title, bool may_be_empty) {
    auto found = std::make_unique<FirFilter>();
    Columns columns;
    FixedText<80> found_title;
    RecordReader file(bytes);
    records(file, *found, columns, found_title);
    if (!file.finished()) return false;
    if (may_be_empty && found->functions == 0) {
        *found = {};
    } else {
        take_functions(columns, *found);
        if (!sound(*found, columns)) return false;
    }
    filter = *found;
    title = found_title;
    return true;
}

Columns columns_of(const FirFilter& filter) {
    Columns c;
    for (int n = 1; n <= fir_function_limit; ++n) {
        const FirFunction& function = filter.FUNCTION(n);
        c.symmetry(n) = function.symmetry;
        c.taps(n) = function.taps;
        c.LENGTH(n) = stored_cells(function.taps, function.symmetry);
        c.BITS(n) = function.word.bits;
        c.method(n) = function.word.method;
        c.number_form(n) = function.word.number_form;
        c.asked(n) = function.asked ? 1 : 0;
        c.gain(n) = function.gain;
    }
    for (int k = 1; k <= std::min(filter.factors.count, fir_factor_limit); ++k) c.IIND(k) = k;
    return c;
}

void take_functions(const Columns& c, FirFilter& filter) {
    for (int n = 1; n <= std::min(filter.functions, fir_function_limit); ++n) {
        const WordLength word{c.BITS(n), c.method(n), c.number_form(n)};
        filter.FUNCTION(n) = {c.taps(n), c.symmetry(n), word, c.gain(n), c.asked(n) != 0};
    }
}

template <class Number>
bool within(Number value, int lowest, int highest) {
    return static_cast<int>(value) >= lowest && static_cast<int>(value) <= highest;
}

bool sound_function(const FirFunction& f) {
    return f.taps >= 1 && f.taps <= 2 * fir_store && within(f.symmetry, 0, 2) &&
           within(f.word.bits, 1, fir_untruncated) && within(f.word.method, 1, 2) && within(f.word.number_form, 1, 2);
}

bool sound_functions(const FirFilter& filter, const Columns& c) {
    if (!within(filter.functions, 1, fir_function_limit) || filter.IST(1) != 1) return false;
    for (int n = 1; n <= filter.functions; ++n) {
        const FirFunction& f = filter.FUNCTION(n);
        if (!sound_function(f) || !within(c.asked(n), 0, 1) || c.LENGTH(n) != stored_cells(f.taps, f.symmetry)) {
            return false;
        }
        if (c.LENGTH(n) < 1 || filter.IST(n + 1) - filter.IST(n) != c.LENGTH(n) || filter.IST(n + 1) > fir_store + 1) {
            return false;
        }
    }
    return true;
}

bool sound_factors(const FirFactors& f, const Columns& c, int functions) {
    if (!within(f.count, 0, fir_factor_limit) || !within(f.function, 0, functions)) return false;
    if (!within(f.delay, 0, 2 * fir_store) || !within(f.trailing, 0, 2 * fir_store)) return false;
    if (f.last_serial > fir_serial_limit) return false;
    std::vector<int> serials;
    for (int k = 1; k <= f.count; ++k) {
        if (c.IIND(k) != k || !within(f.ISER(k), 1, f.last_serial)) return false;
        if (zeros_of({f.A1(k), f.A2(k)}) == 0) return false;
        serials.push_back(f.ISER(k));
    }
    std::ranges::sort(serials);
    return std::ranges::adjacent_find(serials) == serials.end();
}

bool sound_request(const FirRequest& r) {
    return within(r.QUADRUPLETS.rows, 0, max_fir_bands) && within(r.shape.rows, 0, max_shape_points) &&
           within(r.filter_length, 0, max_fir_taps) && within(r.design_method, 1, 2) && within(r.fir_type, 0, 3) &&
           within(r.specification_type, 0, 2) && within(r.filter_type, 0, 4) &&
           within(r.window_type, 0, fir_window_count);
}

// Bands that can be searched: ascending, below half the sampling frequency, of positive weights.
bool sound_bands(const FirRequest& r) {
    FirTask task;
    if (take_task(r, task) != nullptr) return false;
    const BandTable& bands = task.BANDS;
    bool good = bands.EDGE(1) >= 0 && bands.EDGE(2 * bands.NBANDS) <= 0.5 && all_finite(bands.FX);
    for (int b = 1; b <= bands.NBANDS; ++b) good = good && bands.WTX(b) > 0 && std::isfinite(bands.WTX(b));
    return good;
}

// The edges of a band are searched from its middle on.
bool sound_window(const FirRequest& r) {
    const auto inside = [&](double f) { return f >= 0 && f <= r.sampling_frequency; };
    const bool band = r.filter_type == FirFilterType::band_pass || r.filter_type == FirFilterType::band_reject;
    return r.window_type != FirWindow::unchosen && r.filter_type != FirFilterType::unchosen &&
           r.sampling_frequency > 0 && (!band || (inside(r.lower_frequency) && inside(r.upper_frequency)));
}

bool sound_design(const FirFilter& filter) {
    switch (filter.origin) {
        case FirOrigin::equal_ripple: return sound_bands(filter.request);
        case FirOrigin::windowed: return sound_window(filter.request);
        case FirOrigin::given: break;
    }
    return true;
}

bool sound(const FirFilter& filter, const Columns& c) {
    const FirFactors& f = filter.factors;
    const FirRequest& r = filter.request;
    const bool choices = within(filter.NFCNS, 0, fir_store) && within(filter.NODD, 0, 1) && within(filter.NEG, 0, 1) &&
                         within(filter.origin, 0, 2);
    const bool finite = all_finite(filter.COEF, filter.X, filter.sampling_frequency, filter.deviation, f.A1, f.A2,
                                   f.multiplier, f.gain, c.gain, r.QUADRUPLETS.cells, r.shape.cells, r.lower_frequency,
                                   r.upper_frequency, r.sampling_frequency, r.slope, r.parameter, filter.WINDOW);
    return choices && finite && filter.sampling_frequency > 0 && sound_functions(filter, c) &&
           sound_factors(f, c, filter.functions) && sound_request(r) && sound_design(filter);
}

}  // namespace

}  // namespace kavrel
