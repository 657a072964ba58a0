#include "passive/stored_circuit.h"

#include <cstdint>
#include <cstring>

#include "passive/circuit_records.h"
#include "passive/circuit_text.h"

namespace kavrel {

namespace {

FilePlace place_of(std::string_view name);
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
    const FilePlace place = place_of(name);
    const bool text = place.slot == ExtSlot::transfer_text;
    return save(place, text ? circuit_text(filter, title) : stored_circuit_bytes(filter, title));
}

FileStatus read_circuit(std::string_view name, PassiveFilter& filter, FixedText<80>& title) {
    std::string bytes;
    const FileStatus status = file_operation(FileOperation::input, place_of(name), bytes);
    if (status != FileStatus::done) return status;
    return read_stored_circuit(bytes, filter, title) ? FileStatus::done : FileStatus::damaged;
}

namespace {

FilePlace place_of(std::string_view name) {
    const bool text = trim(name).ends_with(EXT(static_cast<int>(ExtSlot::transfer_text)));
    return {.stem = name, .slot = text ? ExtSlot::transfer_text : ExtSlot::passive_circuit};
}

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
