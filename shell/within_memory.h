// Work for which there may be too little memory.
#pragma once

#include <new>
#include <stdexcept>

namespace kavrel {

// Does the work; false when memory ran out, or a text or table was to be longer than any can be, and the work ended
// there.
template <class Work>
[[nodiscard]] bool within_memory(const Work& work) {
    try {
        work();
        return true;
    } catch (const std::bad_alloc&) {
    } catch (const std::length_error&) {
    }
    return false;
}

}  // namespace kavrel
