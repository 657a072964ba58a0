// Why commands of the passive Segment cannot act on what there is, in the words of their refusals; blank when they can.
// The commands refuse by them, and what shows the menu.
#pragma once

#include "passive/passive_desk.h"

namespace kavrel {

inline constexpr std::string_view no_analysis_data = "No analysis data";

inline constexpr std::string_view no_branch_of_number = message_of(CircuitVerdict::no_branch);
inline constexpr std::string_view unfit_branches = message_of(CircuitVerdict::unfit_kind);
inline constexpr std::string_view no_such_branch = "Incorrect branch selected";
inline constexpr std::string_view no_listed_branch = "A branch does not exist";
inline constexpr std::string_view no_resonance = "Incorrect branch(es) specified";

// Of what works on branches, in its own words.
template <const std::string_view& why>
[[nodiscard]] std::string_view needs_branches(const PassiveDesk& desk) {
    return desk.filter.circuit.klast > 0 ? std::string_view{} : why;
}

[[nodiscard]] std::string_view needs_coupled_section(const PassiveDesk& desk);
[[nodiscard]] std::string_view cannot_turn_around(const PassiveDesk& desk);
[[nodiscard]] std::string_view cannot_prefer(const PassiveDesk& desk);
[[nodiscard]] std::string_view cannot_reject_band(const PassiveDesk& desk);
[[nodiscard]] std::string_view cannot_make_lattice(const PassiveDesk& desk);
[[nodiscard]] std::string_view cannot_transfer(const PassiveDesk& desk);
[[nodiscard]] std::string_view needs_circuit(const PassiveDesk& desk);
[[nodiscard]] std::string_view needs_design(const PassiveDesk& desk);
[[nodiscard]] std::string_view needs_frequency_results(const PassiveDesk& desk);
[[nodiscard]] std::string_view needs_frequency_table(const PassiveDesk& desk);
[[nodiscard]] std::string_view needs_time_results(const PassiveDesk& desk);
[[nodiscard]] std::string_view needs_phase(const PassiveDesk& desk);
[[nodiscard]] std::string_view cannot_analyse_frequency(const PassiveDesk& desk);
[[nodiscard]] std::string_view cannot_analyse_time(const PassiveDesk& desk);
[[nodiscard]] std::string_view cannot_stop_macro(const PassiveDesk& desk);
[[nodiscard]] std::string_view cannot_save_circuit(const PassiveDesk& desk);

}  // namespace kavrel
