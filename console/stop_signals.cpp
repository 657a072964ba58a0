#include "console/stop_signals.h"

#include <cstdlib>
#include <poll.h>

namespace kavrel {

namespace {

// A handler is given no record to write to: this flag is the one variable of the program that lives outside of them.
volatile std::sig_atomic_t raised = 0;

extern "C" void raise_flag(int number) { raised = number; }

}  // namespace

StopSignals::StopSignals(Second second) {
    struct sigaction flag = {};
    flag.sa_handler = raise_flag;
    flag.sa_flags = second == Second::ends ? static_cast<int>(SA_RESETHAND) : 0;  // no SA_RESTART: what waits goes on
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        sigaction(numbers[i], nullptr, &before_[i]);
        if (before_[i].sa_handler != SIG_IGN) sigaction(numbers[i], &flag, nullptr);
    }
}

StopSignals::~StopSignals() {
    for (std::size_t i = 0; i < numbers.size(); ++i) sigaction(numbers[i], &before_[i], nullptr);
    forget();
}

int StopSignals::caught() const { return raised; }

void StopSignals::forget() const { raised = 0; }

bool StopSignals::wait_to_read(int descriptor) const {
    // Held back between the look at the flag and the wait, a signal is not missed.
    sigset_t held;
    sigset_t before;
    sigemptyset(&held);
    for (const int number : numbers) sigaddset(&held, number);
    sigprocmask(SIG_BLOCK, &held, &before);
    pollfd reader{.fd = descriptor, .events = POLLIN, .revents = 0};
    while (raised == 0 && ppoll(&reader, 1, nullptr, &before) < 0) {
    }
    sigprocmask(SIG_SETMASK, &before, nullptr);
    return raised == 0;
}

void end_by_signal(int number) {
    std::signal(number, SIG_DFL);
    std::raise(number);
    std::_Exit(128 + number);
}

}  // namespace kavrel
