#include "passive/circuit_records.h"

#include <cmath>
#include <numbers>

#include "circuit/branch_kinds.h"
#include "passive/circuit_check.h"
#include "passive/record_items.h"
#include "shell/stored_files.h"

namespace kavrel {

namespace {

constexpr FixedText<8> mark = "Kavrel 1";

// The two directions, alike to those that name the items.
class Storing {
public:
    void begin() { file_.begin(); }
    void end() { file_.end(); }
    template <class... Items>
    void operator()(const Items&... items) {
        (put(items), ...);
    }
    [[nodiscard]] const std::string& bytes() const { return file_.bytes(); }

private:
    template <class T>
    void put(const T& item) {
        file_.put(item);
    }
    void put(bool item) { file_.put(std::int32_t{item}); }

    RecordWriter file_;
};

class Taking {
public:
    explicit Taking(std::string_view bytes) : file_(bytes) {}
    void begin() { file_.begin(); }
    void end() { file_.end(); }
    template <class... Items>
    void operator()(Items&... items) {
        (take(items), ...);
    }
    [[nodiscard]] bool finished() const { return logicals_good_ && file_.finished(); }

private:
    template <class T>
    void take(T& item) {
        file_.take(item);
    }
    void take(bool& item) {
        std::int32_t logical = 0;
        file_.take(logical);
        logicals_good_ = logicals_good_ && (logical == 0 || logical == 1);
        item = logical == 1;
    }

    RecordReader file_;
    bool logicals_good_ = true;
};

template <class File, class... Items>
void record(File& file, Items&... items) {
    file.begin();
    file(items...);
    file.end();
}

// `Quadruplets` is the table of a circuit, const or not.
template <class File, class Quadruplets>
void first_quadruplet_record(File& file, Quadruplets& quadruplets) {
    file.begin();
    for (auto& q : quadruplets) file(q.XK.cells);
    for (auto& q : quadruplets) file(q.XC.cells);
    for (auto& q : quadruplets) file(q.YK);
    for (auto& q : quadruplets) file(q.YC);
    for (auto& q : quadruplets) file(q.FRES);
    file.end();
}

template <class File, class Quadruplets, class Count>
void second_quadruplet_record(File& file, Quadruplets& quadruplets, Count& count) {
    file.begin();
    for (auto& q : quadruplets) file(q.M.cells);
    file(count);
    file.end();
}

// Records 1 to 8. `Filter` is a PassiveFilter, const or not.
template <class File, class Filter>
void store_records(File& file, Filter& filter, CircuitRecords kind) {
    auto& circuit = filter.circuit;
    record(file, circuit.VALUE);
    record(file, circuit.INDX1);
    first_quadruplet_record(file, circuit.QUADRUPLETS);
    second_quadruplet_record(file, circuit.QUADRUPLETS, circuit.quadruplet_count);
    record(file, circuit.klast);
    record(file, circuit.ilast);
    record(file, circuit.kind);
    record(file, kind == CircuitRecords::stored_file ? circuit.fs : circuit.fnorm);
}

// Records 9 to 17.
template <class File, class Filter, class Mark, class Title>
void further_records(File& file, Filter& filter, Mark& told_mark, Title& title, CircuitRecords kind) {
    auto& [c, designed, spec, transfer, background, mod] = filter;
    record(file, told_mark);
    record(file, title);
    record(file, c.R1, c.R2, c.termination_ratio, c.fa, c.fb, kind == CircuitRecords::stored_file ? c.fnorm : c.fs);
    record(file, c.mode_count, c.MODE_RE, c.MODE_IM);
    record(file, designed, mod);
    file.begin();
    items_of(spec, file);
    file.end();
    file.begin();
    items_of(transfer, file);
    file.end();
    file.begin();
    items_of(background.request, file);
    file.end();
    file.begin();
    items_of(background.notes, file);
    file(background.worked_lower_edge, background.worked_upper_edge);
    file.end();
}

// The quarter-wave frequency of lines. Else where the reactances of coils and capacitors are, in the geometric mean,
// the resistance of the load: within the pass band of most filters, or near it.
double norm_frequency(const Circuit& circuit) {
    if (circuit.kind != CircuitKind::lumped) return circuit.fs / 2;
    double logarithms = 0;
    int elements = 0;
    for (int k = 2; k <= circuit.klast; ++k) {
        if (!branchExists(circuit, k)) continue;
        const Branch branch = unpackBranch(circuit, k);
        const auto values = branch_values(circuit, branch);
        for (std::size_t i = 0; i < values.size(); ++i) {
            const char letter = branch_kinds[branch.id].cells[i];
            if (letter != 'L' && letter != 'C') continue;
            const double omega = letter == 'L' ? circuit.R1 / values[i] : 1 / (circuit.R1 * values[i]);
            if (omega == 0 || !std::isfinite(omega)) continue;
            logarithms += std::log(std::fabs(omega));
            ++elements;
        }
    }
    return elements == 0 ? 1 : std::exp(logarithms / elements) / (2 * std::numbers::pi);
}

// The terminations of a sound store, and a frequency at which it is worth looking.
void take_band(Circuit& circuit) {
    if (circuit.klast == 0) return;
    circuit.R1 = branch_values(circuit, unpackBranch(circuit, 1)).front();
    const Branch last = unpackBranch(circuit, circuit.klast);
    if (circuit.klast > 1 && last.id == 0) circuit.R2 = branch_values(circuit, last).front();
    if (circuit.R1 != 0) circuit.termination_ratio = circuit.R2 / circuit.R1;
    if (circuit.fnorm == 0) circuit.fnorm = norm_frequency(circuit);
}

}  // namespace

std::string circuit_records(const PassiveFilter& filter, const FixedText<80>& title, CircuitRecords kind) {
    Storing file;
    store_records(file, filter, kind);
    further_records(file, filter, mark, title, kind);
    return file.bytes();
}

bool read_circuit_records(std::string_view bytes, PassiveFilter& filter, FixedText<80>& title, CircuitRecords kind) {
    PassiveFilter found;
    FixedText<80> found_title;
    Taking file(bytes);
    store_records(file, found, kind);
    const bool ends_early = kind == CircuitRecords::stored_file && file.finished();
    if (!ends_early) {
        FixedText<8> found_mark;
        further_records(file, found, found_mark, found_title, kind);
        if (!file.finished() || found_mark.bytes != mark.bytes) return false;
    }
    if (!sound_store(found.circuit) || !sound_design(found)) return false;
    if (kind == CircuitRecords::stored_file && !all_finite(found)) return false;
    if (ends_early) take_band(found.circuit);
    filter = found;
    title = found_title;
    return true;
}

}  // namespace kavrel
