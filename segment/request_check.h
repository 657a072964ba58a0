// What was asked of a filter beside what it reaches: rows, their texts, and the one word "met". What a row is about,
// and how it is found, is known to the floors that own requests and responses.
#pragma once

#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace kavrel {

inline constexpr double check_tolerance = 1e-6;  // dB, or of the value asked: within it a row is met

// Frequencies in Hz from `from` to `to`, which may be infinite; both 0: the row has no band.
struct CheckBand {
    double from = 0;
    double to = 0;

    [[nodiscard]] constexpr bool is_given() const { return from != 0 || to != 0; }
};

struct CheckRow {
    std::string_view what;  // "pass band", "stopband", ...
    CheckBand band{};
    double asked = 0;  // NaN where nothing was asked of it: such a row is met
    double reached = 0;
    double margin = 0;  // how far within what was asked, in the unit; negative: missed by so much
    std::string_view unit = "dB";
    bool met = false;
    bool spare = false;        // a margin is to spare: the request would have done with less
    std::string_view of = {};  // what is judged where there are several: "cascade", "parallel", ...
};

// Rows as they come in the report: largest and least values allowed, or a value to be had.
[[nodiscard]] CheckRow at_most(std::string_view what, CheckBand band, double asked, double reached);
[[nodiscard]] CheckRow at_least(std::string_view what, CheckBand band, double asked, double reached);
// How far beyond the value asked a row in dB is still met.
[[nodiscard]] double tolerance_in_decibel(double asked);
[[nodiscard]] CheckRow equal_to(std::string_view what, double asked, double reached);
// A value that is shown beside the others; nothing was asked of it.
[[nodiscard]] CheckRow shown_value(std::string_view what, CheckBand band, double reached);

struct RequestCheck {
    std::vector<CheckRow> rows{};
    bool stopped = false;  // before it was done; there are no rows then

    // Nothing was asked of what is shown: it was not designed here, or by a function that was given.
    [[nodiscard]] bool has_request() const { return !rows.empty(); }
    [[nodiscard]] int missed() const;
    [[nodiscard]] bool met() const { return has_request() && missed() == 0; }
};

inline constexpr std::string_view no_request = "no request";
inline constexpr std::string_view check_work = "Request check";  // as a window layer shows its progress
inline constexpr std::string_view check_stopped = "check of the request stopped";

// In one line: "meets the request (+12.1 dB)", by the least margin to spare; "2 of 4 not met", with what misses it
// where several are judged: "2 of 8 not met (cascade, direct)"; "no request"; "check of the request stopped".
[[nodiscard]] std::string check_summary(const RequestCheck& check);

// A line for each row that is missed:
//     "  *** stopband 2400.000 Hz up: 60.00 dB asked, 58.02 dB reached ***"
// led by what is judged where there are several ("  *** cascade: stopband 2400.000 Hz up: ..."), and one for a check
// that was stopped.
[[nodiscard]] std::vector<std::string> missed_lines(const RequestCheck& check);

// The whole list as a table, the summary below it.
[[nodiscard]] std::vector<std::string> check_table(const RequestCheck& check);

}  // namespace kavrel
