// The rows of the request check that a FilterSpec asks of a loss: of a circuit's, or of the transfer function's own.
#pragma once

#include <functional>
#include <span>

#include "approximation/filter_spec.h"
#include "segment/request_check.h"
#include "shell/watcher.h"

namespace kavrel {

// A loss in dB at a frequency in Hz; NaN where there is none, as on the pole of a stub.
using LossOfFrequency = std::function<double(double hertz)>;

// What is judged, and what it was designed for.
struct JudgedLoss {
    LossOfFrequency loss;
    const FilterSpec& request;         // as the approximation was asked
    const FilterSpec& found;           // with what it found: a shifted band-pass is one here alone
    const TransferFunction& transfer;  // of the design
    Watcher& watcher;                  // asked at each frequency
    double used_q = 0;                 // that the loss has and the design allowed for; 0: lossless
    bool open_level = false;           // the loss has no level of its own: a single termination
    std::span<const double> places{};  // Hz where the loss may have narrow extremes beside those of the design
};

// Adds, in this order: the pass band, the largest loss in it with its edges (a sloping one: the least loss above the
// flat loss asked for, and the strip about the slope that all losses lie in); then the lower and the upper stopband,
// the least loss in each. Losses count from the flat loss that belongs to the design: the least one that its transfer
// function has in the pass band, from unequal terminations or predistortion; with an open level, from the least one of
// the pass band itself. A given function has no losses that were asked for, unless it is that of a
// shifted band-pass whose low-pass had them. What is added after the watcher stopped it is of no use.
void add_loss_rows(const JudgedLoss& judged, RequestCheck& check);

// Of a sloping pass band, whose losses lie in a strip above the flat loss asked for: the least one may be anywhere in
// it.
[[nodiscard]] CheckRow flat_loss_row(CheckBand band, double asked, double strip, double least);

// The rows of a design without a circuit: those of its transfer function.
[[nodiscard]] RequestCheck check_function(const FilterSpec& request, const FilterSpec& found,
                                          const TransferFunction& transfer, double used_q, Watcher& watcher);

// dB that elements of the Q used cost a predistorted design: the least loss of its function in the pass band; under a
// single termination, where the level is open, less its loss there without losses.
[[nodiscard]] double flat_loss_of_predistortion(const FilterSpec& request, const FilterSpec& found,
                                                const TransferFunction& transfer, double used_q);

// dB that losses of a design without losses in its elements count from: the least one of its function in the pass band.
[[nodiscard]] double least_loss_of_function(const FilterSpec& request, const FilterSpec& found,
                                            const TransferFunction& transfer);

// The request of a filter whose frequencies were all multiplied by a factor.
[[nodiscard]] FilterSpec scaled_request(const FilterSpec& request, double factor);

}  // namespace kavrel
