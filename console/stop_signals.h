// The signals that ask a program to end: Ctrl-C, SIGTERM and SIGHUP. While a StopSignals lives they raise a flag and
// interrupt what waits; the work, and whoever reads the script, ask for the flag and end in good order.
#pragma once

#include <array>
#include <csignal>

namespace kavrel {

class StopSignals {
public:
    enum class Second { waits, ends };

    // Where nobody sits before the program a second signal of a kind ends it at once, whatever it does. A signal that
    // is ignored (nohup, a job in the background) stays so.
    explicit StopSignals(Second second);
    ~StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    // The signal that came, 0 for none.
    [[nodiscard]] int caught() const;

    // What came until now stops nothing.
    void forget() const;

    // Waits until a descriptor has something to read, or has ended; false when a signal came before that.
    [[nodiscard]] bool wait_to_read(int descriptor) const;

private:
    static constexpr std::array<int, 3> numbers = {SIGINT, SIGTERM, SIGHUP};
    std::array<struct sigaction, numbers.size()> before_{};
};

// Ends the program as a signal does that nobody caught, so that whoever started it learns of it.
[[noreturn]] void end_by_signal(int number);

}  // namespace kavrel
