#include "shell/stored_files.h"

#include <algorithm>
#include <bit>

#include "shell/fixed_text.h"

namespace kavrel {

namespace {

static_assert(std::endian::native == std::endian::little, "stored files are little-endian");

constexpr std::size_t marker_size = sizeof(std::uint32_t);

constexpr std::string_view extensions[] = {".dat", ".f90", ".qfa", ".qff", ".qfd", ".qfm", ".qfp", ".ckt", ".tab",
                                           ".trf", ".dbg", ".qfx", ".ckt", ".txt", ".swc", ".txt", ".txt", ".req",
                                           ".m  ", ".pz ", ".dzn", "    ", "    ", "    ", "    "};
constexpr std::string_view further_extensions[] = {".qfi", ".qai", ".wbt", ".s2p", ".svg", ".csv", ".c", ".h", ".sos"};

std::uint32_t marker_at(std::string_view bytes);

}  // namespace

std::string_view EXT(int slot) { return extensions[((slot - 1) % 25 + 25) % 25]; }

std::string file_name(std::string_view stem, ExtSlot slot) {
    return std::string(file_stem(trim(stem))) + std::string(trim_right(EXT(static_cast<int>(slot))));
}

std::string_view file_stem(std::string_view name) {
    const auto ends_name = [&](std::string_view extension) {
        return !trim_right(extension).empty() && name.ends_with(trim_right(extension));
    };
    const auto dot = name.find_last_of('.');
    const bool cuts = std::ranges::any_of(extensions, ends_name) || std::ranges::any_of(further_extensions, ends_name);
    return cuts ? name.substr(0, dot) : name;
}

bool extension_swapped(std::string_view typed, std::string_view name) { return !name.starts_with(trim(typed)); }

void RecordWriter::end() {
    const auto marker = static_cast<std::uint32_t>(payload_.size());
    const auto append_marker = [&] { bytes_.append(reinterpret_cast<const char*>(&marker), marker_size); };
    append_marker();
    bytes_ += payload_;
    append_marker();
}

void RecordReader::begin() {
    good_ = good_ && rest_.size() >= 2 * marker_size;
    if (!good_) return;
    const std::uint32_t size = marker_at(rest_);
    good_ = rest_.size() - 2 * marker_size >= size && marker_at(rest_.substr(marker_size + size)) == size;
    if (!good_) return;
    payload_ = rest_.substr(marker_size, size);
    rest_.remove_prefix(size + 2 * marker_size);
}

namespace {

std::uint32_t marker_at(std::string_view bytes) {
    std::uint32_t marker = 0;
    std::memcpy(&marker, bytes.data(), marker_size);
    return marker;
}

}  // namespace

}  // namespace kavrel
