#include "iir/stored_iir.h"

#include <cstring>

namespace kavrel {

namespace {

// Placeholder layout until the records are laid out.
std::string all_bytes(const IirFilter& filter, const FixedText<80>& title) {
    std::string bytes(sizeof filter + sizeof title, '\0');
    std::memcpy(bytes.data(), &filter, sizeof filter);
    std::memcpy(bytes.data() + sizeof filter, &title, sizeof title);
    return bytes;
}

bool take_bytes(std::string_view bytes, IirFilter& filter, FixedText<80>& title) {
    if (bytes.size() != sizeof filter + sizeof title) return false;
    std::memcpy(&filter, bytes.data(), sizeof filter);
    std::memcpy(&title, bytes.data() + sizeof filter, sizeof title);
    return true;
}

constexpr Layout<IirFilter> layout{.bytes = all_bytes, .take = take_bytes};

}  // namespace

constexpr std::array<StoredForm<IirFilter>, 1> iir_files = {{{.slot = ExtSlot::iir_filter, .layout = layout}}};

constexpr Keeping<IirFilter> iir_keeping{.snapshot = layout,
                                         .forms = iir_files,
                                         .is_empty = [](const IirFilter& filter) { return !has_filter(filter); },
                                         .open_caption = "Open a stored filter text file",
                                         .overwrite_warning = "Current filter will be overwritten!"};

Fingerprint fingerprint(const IirFilter& filter) { return fingerprint(iir_keeping.snapshot, filter); }

}  // namespace kavrel
