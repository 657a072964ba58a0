// The table of a frequency analysis.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "circuit/chain_analysis.h"

namespace kavrel {

// "Voltage ", "Transd. " or "Current ", and "impedance" or "admittance": of a table's or a plot's labels.
[[nodiscard]] std::string_view loss_label(LossClass loss_class);
[[nodiscard]] std::string_view immittance_label(bool admittance);

// How the head of a table names the immittance: "Output impedance", or "Impedance" alone.
enum class ImmittanceHead { output, bare };

// Frequency, loss, phase, delay, immittance and (doubly terminated) return loss of each row, with a head before every
// page of rows. A step of less than 0.001 takes one more digit of frequency.
[[nodiscard]] std::vector<std::string> performance_lines(const Performance& performance, std::string_view title,
                                                         ImmittanceHead immittance_head = ImmittanceHead::output);

}  // namespace kavrel
