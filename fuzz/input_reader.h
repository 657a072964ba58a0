// What every reader of stored input data is held to: whatever the bytes, a file is taken whole or leaves the request as
// it was, and what was taken is saved, read and saved again as the same bytes.
#pragma once

#include <cstdlib>
#include <string>
#include <string_view>

namespace kavrel {

// `read(bytes, record)` and `save(record)` of one kind of file, over a record that holds all that is stored.
template <class Record, class Read, class Save>
void read_and_save(std::string_view bytes, const Read& read, const Save& save) {
    Record record;
    const std::string fresh = save(record);
    if (!read(bytes, record)) {
        if (save(record) != fresh) std::abort();
        return;
    }
    const std::string stored = save(record);
    if (!read(std::string_view(stored), record)) std::abort();
    if (save(record) != stored) std::abort();
}

}  // namespace kavrel
