// Impulse and step response of a lumped transfer function,
//
//     H(s) = level prod (s - zero)/prod (s - pole).
//
// The level is relative to the pass band: the largest |H(jw)| of all frequencies is 1, whatever the constants of the
// function are (a flat loss, as of unequal terminations, has no share). So the step response of a low-pass ends at its
// gain for direct current, 1 or, of an even equal ripple, 10^(-ripple/20); that of a filter which stops direct current
// ends at 0. A filter that transmits direct current does so with a positive sign, also where real zeros would give the
// product a negative one.
//
// Nothing is summed over residues, which for close poles are large numbers of alternating signs, and do not exist for
// coinciding ones. H is built as a chain of sections of one or two poles, each with the zeros that lie nearest; the
// chain's state equations x' = A x + B u are solved by the exponential of A, which needs no difference of poles.
#pragma once

#include <array>
#include <span>
#include <string_view>

#include "approximation/filter_spec.h"
#include "shell/watcher.h"

namespace kavrel {

enum class TimeVerdict {
    done,
    no_modes,   // the function has no poles
    bad_times,  // the times do not ascend, or are not finite; or the columns differ in length
    improper,   // more zeros than poles: a step would be answered by impulses
    unpaired,   // a complex root without its conjugate, or a root that is not finite
    stopped,    // by the watcher
};

struct TimeMessage {
    TimeVerdict verdict;
    std::string_view text;
};

inline constexpr std::array<TimeMessage, 6> time_messages = {{
    {TimeVerdict::done, ""},
    {TimeVerdict::no_modes, "Natural modes are unavailable"},
    {TimeVerdict::bad_times, "Incorrect time specification"},
    {TimeVerdict::improper, "Transfer function has more zeros than poles"},
    {TimeVerdict::unpaired, "Natural modes are not conjugate"},
    {TimeVerdict::stopped, stopped_line},
}};

[[nodiscard]] std::string_view message_of(TimeVerdict verdict);

// The responses at `times` in seconds, ascending: `impulse` in 1/sec, `step` as a number; both are 0 before t = 0. With
// as many zeros as poles the impulse response begins with an impulse of the weight H(infinity), which has no place
// among the values: `impulse` is what remains of it, at t = 0 its limit from the right, while `step` begins with
// H(infinity). Good to some 1e-14 of the largest value. Asks the watcher at each time. On any verdict but done
// and stopped nothing is written.
// Source: the exponential of a bidiagonal matrix holds the divided differences of exp at its diagonal (G. Opitz,
// "Steigungsmatrizen", ZAMM 44, 1964); scaling and squaring after C. Moler and C. Van Loan, "Nineteen Dubious Ways to
// Compute the Exponential of a Matrix", SIAM Review 20 (1978).
[[nodiscard]] TimeVerdict time_response(const TransferFunction& transfer, std::span<const double> times,
                                        Watcher& watcher, std::span<double> impulse, std::span<double> step);

}  // namespace kavrel
