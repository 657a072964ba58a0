#include "passive/circuit_records.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <type_traits>

#include "approximation/s_plane.h"
#include "circuit/branch_kinds.h"
#include "circuit/chain_analysis.h"
#include "passive/circuit_check.h"
#include "shell/stored_files.h"

namespace kavrel {

namespace {

constexpr FixedText<8> mark = "Kavrel 1";

// The two directions: `File` is a RecordWriter or a RecordReader, `Filter` a PassiveFilter, const or not accordingly.
template <class File, class Filter>
void store_records(File& file, Filter& filter, CircuitRecords kind);
template <class File, class Filter, class Mark, class Title>
void further_records(File& file, Filter& filter, Mark& stored_mark, Title& title, CircuitRecords kind);
void take_band(Circuit& circuit);
double level_given(const PassiveFilter& filter);

}  // namespace

std::string circuit_records(const PassiveFilter& filter, const FixedText<80>& title, CircuitRecords kind) {
    RecordWriter file;
    store_records(file, filter, kind);
    further_records(file, filter, mark, title, kind);
    const double level = filter.transfer.level;
    if (std::bit_cast<std::uint64_t>(level) != std::bit_cast<std::uint64_t>(level_given(filter))) file.record(level);
    return file.bytes();
}

bool read_circuit_records(std::string_view bytes, PassiveFilter& filter, FixedText<80>& title, CircuitRecords kind) {
    PassiveFilter found;
    FixedText<80> found_title;
    RecordReader file(bytes);
    store_records(file, found, kind);
    const bool ends_early = kind == CircuitRecords::stored_file && file.finished();
    bool has_level = false;
    if (!ends_early) {
        FixedText<8> found_mark;
        further_records(file, found, found_mark, found_title, kind);
        has_level = !file.finished();
        if (has_level) file.record(found.transfer.level);
        if (!file.finished() || found_mark.bytes != mark.bytes) return false;
    }
    if (!sound_store(found.circuit) || !sound_design(found)) return false;
    if (kind == CircuitRecords::stored_file && !all_finite(found)) return false;
    if (ends_early) take_band(found.circuit);
    if (!has_level) found.transfer.level = level_given(found);
    filter = found;
    title = found_title;
    return true;
}

namespace {

template <class File, class Quadruplets>
void first_quadruplet_record(File& file, Quadruplets& quadruplets);
template <class File, class Quadruplets, class Count>
void second_quadruplet_record(File& file, Quadruplets& quadruplets, Count& count);
template <class File, class Transfer>
void transfer_record(File& file, Transfer& transfer);
double norm_frequency(const Circuit& circuit);

// Records 1 to 8.
template <class File, class Filter>
void store_records(File& file, Filter& filter, CircuitRecords kind) {
    auto& circuit = filter.circuit;
    file.record(circuit.VALUE);
    Table words = marked_words(circuit);
    file.record(words);
    if constexpr (!std::is_const_v<Filter>) take_marked_words(words, circuit);
    first_quadruplet_record(file, circuit.QUADRUPLETS);
    second_quadruplet_record(file, circuit.QUADRUPLETS, circuit.quadruplet_count);
    file.record(circuit.klast);
    file.record(circuit.ilast);
    file.record(circuit.kind);
    file.record(kind == CircuitRecords::stored_file ? circuit.fs : circuit.fnorm);
}

// Records 9 to 17.
template <class File, class Filter, class Mark, class Title>
void further_records(File& file, Filter& filter, Mark& stored_mark, Title& title, CircuitRecords kind) {
    auto& [c, designed, spec, transfer, background, mod] = filter;
    file.record(stored_mark);
    file.record(title);
    file.record(c.R1, c.R2, c.termination_ratio, c.fa, c.fb, kind == CircuitRecords::stored_file ? c.fnorm : c.fs);
    file.record(c.mode_count, c.MODE_RE, c.MODE_IM);
    file.record(designed, mod);
    file.record(spec);
    transfer_record(file, transfer);
    auto& [request, notes, worked_lower_edge, worked_upper_edge] = background;
    file.record(request);
    file.record(notes, worked_lower_edge, worked_upper_edge);
}

template <class File, class Quadruplets>
void first_quadruplet_record(File& file, Quadruplets& quadruplets) {
    file.begin();
    for (auto& q : quadruplets) file.items(q.XK.cells);
    for (auto& q : quadruplets) file.items(q.XC.cells);
    for (auto& q : quadruplets) file.items(q.YK);
    for (auto& q : quadruplets) file.items(q.YC);
    for (auto& q : quadruplets) file.items(q.FRES);
    file.end();
}

template <class File, class Quadruplets, class Count>
void second_quadruplet_record(File& file, Quadruplets& quadruplets, Count& count) {
    file.begin();
    for (auto& q : quadruplets) file.items(q.M.cells);
    file.items(count);
    file.end();
}

template <class File, class Transfer>
void transfer_record(File& file, Transfer& transfer) {
    file.begin();
    fields_of(transfer, [&](std::string_view name, auto& field, auto...) {
        if (name != "level") file.items(field);
    });
    file.end();
}

// The terminations of a sound store, and a frequency at which it is worth looking.
void take_band(Circuit& circuit) {
    if (circuit.klast == 0) return;
    circuit.R1 = branch_values(circuit, unpackBranch(circuit, 1)).front();
    const Branch last = unpackBranch(circuit, circuit.klast);
    if (circuit.klast > 1 && last.id == BranchId::resistor) circuit.R2 = branch_values(circuit, last).front();
    if (circuit.R1 != 0) circuit.termination_ratio = circuit.R2 / circuit.R1;
    if (circuit.fnorm == 0) circuit.fnorm = norm_frequency(circuit);
}

// 0 where there is no function, or none with a level.
double level_given(const PassiveFilter& filter) {
    const TransferFunction& transfer = filter.transfer;
    if (!filter.designed || transfer.poleCount == 0) return 0;
    Wide loss = filter.spec.bandEdgeLoss;
    Chain chain;
    const bool as_designed = filter.mod == 0.0F && filter.spec.loadResistance != 0;
    if (as_designed && prepare_chain(filter.circuit, {}, chain) == ChainVerdict::done) {
        ChainPoint edge;
        if (analyze_point(chain, transfer.normFrequency, edge) == PointVerdict::computed) loss = edge.loss;
    }
    const double level = level_by_edge_loss(filter.spec, transfer, loss);
    return std::isfinite(level) ? level : 0;
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

}  // namespace

}  // namespace kavrel
