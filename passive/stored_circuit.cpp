#include "passive/stored_circuit.h"

#include <cstdint>
#include <cstring>

#include "passive/circuit_records.h"
#include "passive/circuit_text.h"

namespace kavrel {

namespace {

FileStatus save(const FilePlace& place, std::string bytes);
bool begins_with_records(std::string_view bytes);

}  // namespace

std::string stored_circuit_bytes(const PassiveFilter& filter, const FixedText<80>& title) {
    return circuit_records(filter, title, CircuitRecords::stored_file);
}

bool read_stored_circuit(std::string_view bytes, PassiveFilter& filter, FixedText<80>& title) {
    return begins_with_records(bytes) ? read_circuit_records(bytes, filter, title, CircuitRecords::stored_file)
                                      : read_circuit_text(bytes, filter, title);
}

FileStatus save_circuit(std::string_view name, const PassiveFilter& filter, const FixedText<80>& title) {
    return save({.stem = name, .slot = ExtSlot::passive_circuit}, stored_circuit_bytes(filter, title));
}

FileStatus save_circuit_text(std::string_view name, const PassiveFilter& filter, const FixedText<80>& title) {
    return save({.stem = name, .slot = ExtSlot::transfer_text}, circuit_text(filter, title));
}

FileStatus read_circuit(std::string_view name, PassiveFilter& filter, FixedText<80>& title) {
    const bool text = trim(name).ends_with(EXT(static_cast<int>(ExtSlot::transfer_text)));
    const FilePlace place{.stem = name, .slot = text ? ExtSlot::transfer_text : ExtSlot::passive_circuit};
    std::string bytes;
    const FileStatus status = file_operation(FileOperation::input, place, bytes);
    if (status != FileStatus::done) return status;
    return read_stored_circuit(bytes, filter, title) ? FileStatus::done : FileStatus::damaged;
}

namespace {

// A good file is not given up for one that cannot be read.
FileStatus save(const FilePlace& place, std::string bytes) {
    PassiveFilter again;
    FixedText<80> title;
    return read_stored_circuit(bytes, again, title) ? file_operation(FileOperation::output, place, bytes)
                                                    : FileStatus::not_written;
}

// The length of the first record; no text has its two zero bytes.
bool begins_with_records(std::string_view bytes) {
    constexpr std::uint32_t first_length = sizeof Circuit::VALUE;
    return bytes.size() >= sizeof first_length && std::memcmp(bytes.data(), &first_length, sizeof first_length) == 0;
}

}  // namespace

}  // namespace kavrel
