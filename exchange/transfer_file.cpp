#include "exchange/transfer_file.h"

#include <algorithm>
#include <numbers>

#include "exchange/text_parts.h"

namespace kavrel {

namespace {

constexpr int default_points = 100;

const TransferText& text_of(const TransferTypeRow& row, TransferDialect dialect);
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
    if (row->of_function) {
        const bool known = input.transfer != nullptr && input.transfer->poleCount > 0;
        return known ? TransferVerdict::written : TransferVerdict::no_data;
    }
    const bool knows_lines = text_of(*row, request.dialect).lines;
    const bool wave_digital = input.circuit.kind == CircuitKind::wave_digital;
    if (wave_digital || (input.circuit.kind == CircuitKind::microwave && !knows_lines)) {
        return TransferVerdict::microwave_refused;
    }
    return input.circuit.klast == 0 ? TransferVerdict::no_data : TransferVerdict::written;
}

std::string transfer_file_name(std::string_view stem, const TransferRequest& request) {
    const TransferTypeRow* row = row_of(request.file_type);
    if (row == nullptr) return {};
    const std::string_view extension = text_of(*row, request.dialect).extension;
    if (extension.empty()) return file_name(stem, row->slot);
    return std::string(file_stem(trim(stem))) + std::string(extension);
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
    TransferInput complete = input;
    if (input.frequencies.empty()) complete.frequencies = defaults = default_frequencies(input.circuit);
    std::vector<std::string> lines;
    const TransferWriter write = text_of(*row_of(request.file_type), request.dialect).write;
    if (const auto verdict = write(complete, request, lines); verdict != TransferVerdict::written) return verdict;
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

const TransferText& text_of(const TransferTypeRow& row, TransferDialect dialect) {
    const auto found = std::ranges::find(row.texts, dialect, &TransferText::dialect);
    return found == row.texts.end() ? row.texts.front() : *found;
}

// A field that its number does not fit into is full of asterisks; the line of the title may have some of its own.
bool overflows(std::string_view line, std::string_view title) {
    const std::string words = trimmed_title(title);
    if (!words.empty() && without_mark(line) == words) return false;
    return line.find("**") != std::string_view::npos;
}

// What follows the mark of a comment line.
std::string_view without_mark(std::string_view line) {
    for (const std::string_view mark : {"! ", "* ", " %"}) {
        if (line.starts_with(mark)) return trim(line.substr(mark.size()));
    }
    return {};
}

constexpr bool types_are_whole() {
    int type = 0;
    return std::all_of(transfer_types.begin(), transfer_types.end(), [&](const TransferTypeRow& row) {
        return static_cast<int>(row.file_type) == ++type && row.texts[0].dialect == TransferDialect::classic;
    });
}
static_assert(types_are_whole());

}  // namespace

}  // namespace kavrel
