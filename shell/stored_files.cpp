#include "shell/stored_files.h"

#include <algorithm>
#include <bit>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "shell/fixed_text.h"

namespace kavrel {

namespace {

static_assert(std::endian::native == std::endian::little, "stored files are little-endian");

constexpr std::size_t marker_size = sizeof(std::uint32_t);

constexpr std::string_view extensions[] = {".dat", ".f90", ".qfa", ".qff", ".qfd", ".qfm", ".qfp", ".ckt", ".tab",
                                           ".trf", ".dbg", ".qfx", ".ckt", ".txt", ".swc", ".txt", ".txt", ".req",
                                           ".m  ", ".pz ", ".dzn", "    ", "    ", "    ", "    "};
constexpr std::string_view further_extensions[] = {".qfi", ".qai", ".wbt", ".s2p", ".svg", ".csv"};

std::uint32_t marker_at(std::string_view bytes);
bool write_stream(const std::string& path, std::string_view bytes);

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

bool write_whole(const std::string& path, std::string_view bytes) {
    std::error_code unknown;
    const auto status = std::filesystem::status(path, unknown);
    // A device, a pipe or the like has no contents to be kept.
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
        return !std::filesystem::is_directory(status) && write_stream(path, bytes);
    }
    // A link stays one: what it points to is replaced.
    const std::string target =
        std::filesystem::is_symlink(path, unknown) ? std::filesystem::canonical(path, unknown).string() : path;
    const std::string beside = name_beside(target);
    std::remove(beside.c_str());  // what it may be a link to stays
    if (write_stream(beside, bytes)) {
        if (std::filesystem::exists(status)) std::filesystem::permissions(beside, status.permissions(), unknown);
        if (std::rename(beside.c_str(), target.c_str()) == 0) return true;
    }
    std::remove(beside.c_str());
    return false;
}

std::string name_beside(std::string_view path) {
    const std::size_t name = path.find_last_of('/') + 1;
    return std::string(path.substr(0, name)) + '~' + std::string(path.substr(name)) + ".tmp";
}

std::optional<std::string> read_whole(const std::string& path) {
    std::error_code unknown;
    std::ifstream file(path, std::ios::binary);
    if (!file || std::filesystem::is_directory(path, unknown)) return std::nullopt;
    std::ostringstream bytes;
    bytes << file.rdbuf();
    if (file.bad() || (bytes.fail() && !bytes.str().empty())) return std::nullopt;
    return std::move(bytes).str();
}

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

bool write_stream(const std::string& path, std::string_view bytes) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    return static_cast<bool>(file);
}

}  // namespace

}  // namespace kavrel
