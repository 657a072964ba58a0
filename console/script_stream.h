// A script's bytes as they come: from a file, a pipe, a terminal. A signal ends the stream, also while it waits.
#pragma once

#include <array>
#include <istream>
#include <memory>
#include <streambuf>
#include <string>

#include "console/stop_signals.h"

namespace kavrel {

class ScriptStream final : public std::istream {
public:
    // Of an open descriptor, which it closes if it `owns` it.
    ScriptStream(int descriptor, bool owns, const StopSignals& signals);

private:
    class Bytes final : public std::streambuf {
    public:
        Bytes(int descriptor, bool owns, const StopSignals& signals)
            : descriptor_(descriptor), owns_(owns), signals_(signals) {}
        ~Bytes() override;

    protected:
        int_type underflow() override;

    private:
        int descriptor_;
        bool owns_;
        const StopSignals& signals_;
        std::array<char, 8192> buffer_{};
    };
    Bytes bytes_;
};

// A script that was named, or null where it cannot be read; a folder is none.
[[nodiscard]] std::unique_ptr<std::istream> open_script(const std::string& name, const StopSignals& signals);

}  // namespace kavrel
