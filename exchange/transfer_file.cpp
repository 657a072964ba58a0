#include "exchange/transfer_file.h"

#include <algorithm>
#include <numbers>

#include "exchange/pcfilt_list.h"
#include "exchange/rf_netlist.h"
#include "exchange/s_parameters.h"
#include "exchange/spice_netlist.h"
#include "exchange/sstar_netlist.h"
#include "exchange/transfer_polynomials.h"

namespace kavrel {

namespace {

constexpr int default_points = 100;

const TransferTypeRow* row_of(int file_type);
bool in_modern_dialect(const TransferTypeRow& row, const TransferRequest& request);
Sweep sweep_of(std::span<const double> frequencies);
TransferVerdict write_lines(const TransferInput& input, const TransferRequest& request,
                            std::span<const double> frequencies, std::vector<std::string>& lines);
bool overflows(std::string_view line, std::string_view title);
std::string_view without_mark(std::string_view line);

}  // namespace

std::string_view message_of(TransferVerdict verdict) {
    const auto found = std::ranges::find(transfer_messages, verdict, &TransferMessage::verdict);
    return found == transfer_messages.end() ? std::string_view{} : found->text;
}

bool has_lattices(const Circuit& circuit) {
    for (int k = 1; k <= std::min(circuit.klast, max_branches); ++k) {
        if (!branchExists(circuit, k)) continue;
        const BranchId id = unpackBranch(circuit, k).id;
        if (branch_kinds.has(id) && branch_kinds[id].structure == Structure::lattice) return true;
    }
    return false;
}

TransferVerdict transfer_refusal(const TransferInput& input, const TransferRequest& request) {
    const TransferTypeRow* row = row_of(request.file_type);
    if (row == nullptr) return TransferVerdict::no_such_type;
    if (request.file_type == TransferFileType::matlab) {
        const bool known = input.transfer != nullptr && input.transfer->poleCount > 0;
        return known ? TransferVerdict::written : TransferVerdict::no_data;
    }
    const bool knows_lines = row->microwave || in_modern_dialect(*row, request);
    const bool wave_digital = input.circuit.kind == CircuitKind::wave_digital;
    if (wave_digital || (input.circuit.kind == CircuitKind::microwave && !knows_lines)) {
        return TransferVerdict::microwave_refused;
    }
    return input.circuit.klast == 0 ? TransferVerdict::no_data : TransferVerdict::written;
}

std::string transfer_file_name(std::string_view stem, const TransferRequest& request) {
    const TransferTypeRow* row = row_of(request.file_type);
    if (row == nullptr) return {};
    if (row->file_type != TransferFileType::spice && in_modern_dialect(*row, request)) {
        return std::string(file_stem(trim(stem))) + ".s2p";
    }
    return file_name(stem, row->slot);
}

std::vector<double> frequencies_in_hertz(const FrequencyGrid& grid) {
    const double per_hertz = grid.radians ? 2 * std::numbers::pi : 1;
    std::vector<double> frequencies;
    for (const double frequency : grid.values()) frequencies.push_back(frequency / per_hertz);
    return frequencies;
}

std::vector<double> default_frequencies(const Circuit& circuit) {
    const double edge = std::max({circuit.fa, circuit.fb, circuit.fnorm});
    const double high = circuit.kind != CircuitKind::lumped ? circuit.fs / 2 : edge > 0 ? 2 * edge : 1;
    std::vector<double> frequencies;
    for (int i = 1; i <= default_points; ++i) frequencies.push_back(high * i / default_points);
    return frequencies;
}

TransferVerdict write_transfer_file(const TransferInput& input, const TransferRequest& request, std::string& text) {
    if (const auto refusal = transfer_refusal(input, request); refusal != TransferVerdict::written) return refusal;
    std::vector<double> defaults;
    if (input.frequencies.empty()) defaults = default_frequencies(input.circuit);
    std::vector<std::string> lines;
    const auto verdict = write_lines(
        input, request, input.frequencies.empty() ? std::span<const double>(defaults) : input.frequencies, lines);
    if (verdict != TransferVerdict::written) return verdict;
    const auto bad = [&](const std::string& line) { return overflows(line, input.title); };
    if (std::ranges::any_of(lines, bad)) return TransferVerdict::internal_error;
    text.clear();
    for (const std::string& line : lines) {
        text += line;
        text += '\n';
    }
    return TransferVerdict::written;
}

namespace {

const TransferTypeRow* row_of(int file_type) {
    const auto found = std::ranges::find(transfer_types, file_type, &TransferTypeRow::file_type);
    return found == transfer_types.end() ? nullptr : &*found;
}

bool in_modern_dialect(const TransferTypeRow& row, const TransferRequest& request) {
    return request.dialect == TransferDialect::modern && !row.modern.empty();
}

Sweep sweep_of(std::span<const double> frequencies) {
    return {frequencies.front(), frequencies.back(), static_cast<int>(frequencies.size())};
}

TransferVerdict write_lines(const TransferInput& input, const TransferRequest& request,
                            std::span<const double> frequencies, std::vector<std::string>& lines) {
    const Circuit& circuit = input.circuit;
    const Sweep sweep = sweep_of(frequencies);
    const bool modern = in_modern_dialect(*row_of(request.file_type), request);
    const auto verdict_of = [](bool written) {
        return written ? TransferVerdict::written : TransferVerdict::internal_error;
    };
    switch (request.file_type) {
        case TransferFileType::spice:
            return verdict_of(modern ? ngspice_netlist(circuit, input.title, request.half_lattices, sweep, lines)
                                     : spice_netlist(circuit, request.half_lattices, sweep, lines));
        case TransferFileType::sstar: return verdict_of(sstar_netlist(circuit, request.half_lattices, sweep, lines));
        case TransferFileType::pcfilt: return verdict_of(pcfilt_list(circuit, lines));
        case TransferFileType::matlab: {
            const bool warped = circuit.kind != CircuitKind::lumped;
            lines = matlab_lines(transfer_polynomials(*input.transfer, warped), input.title);
            return TransferVerdict::written;
        }
        default: break;
    }
    if (modern) return verdict_of(s_parameter_lines(circuit, input.loss, input.title, frequencies, lines));
    const bool touchstone = request.file_type == TransferFileType::touchstone;
    const RfNetlistRequest rf{.program = touchstone ? RfProgram::touchstone : RfProgram::scompact,
                              .title = input.title,
                              .half_lattices = request.half_lattices,
                              .variable_block = request.variable_block,
                              .sweep = sweep};
    switch (rf_netlist(circuit, rf, lines)) {
        case RfNetlistVerdict::written: return TransferVerdict::written;
        case RfNetlistVerdict::too_many_lattices: return TransferVerdict::too_many_lattices;
        case RfNetlistVerdict::no_circuit: break;
    }
    return TransferVerdict::internal_error;
}

// A field that its number does not fit into is full of asterisks; the line of the title may have some of its own.
bool overflows(std::string_view line, std::string_view title) {
    const std::string words = trimmed_title(title);
    if (!words.empty() && without_mark(line) == words) return false;
    return line.find("**") != std::string_view::npos;
}

// What stands behind the mark of a comment line.
std::string_view without_mark(std::string_view line) {
    for (const std::string_view mark : {"! ", "* ", " %"}) {
        if (line.starts_with(mark)) return trim(line.substr(mark.size()));
    }
    return {};
}

}  // namespace

}  // namespace kavrel
