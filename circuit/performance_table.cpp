#include "circuit/performance_table.h"

#include "shell/edit.h"
#include "shell/edited.h"
#include "shell/fixed_text.h"
#include "shell/reporter.h"

namespace kavrel {

namespace {

constexpr double fine_step = 0.001;
constexpr std::size_t title_width = 68;  // 17 words of four characters

void add_head(const Performance& performance, std::string_view title, ImmittanceHead immittance_head,
              std::vector<std::string>& lines);
std::string immittance_text(bool admittance, ImmittanceHead head);
std::string row_text(const PerformanceRow& row, bool fine, bool return_loss);

}  // namespace

std::string_view loss_label(LossClass loss_class) {
    switch (loss_class) {
        case LossClass::voltage: return "Voltage ";
        case LossClass::transducer: return "Transd. ";
        case LossClass::current: return "Current ";
    }
    return {};
}

std::string_view immittance_label(bool admittance) { return admittance ? "admittance" : "impedance"; }

std::vector<std::string> performance_lines(const Performance& performance, std::string_view title,
                                           ImmittanceHead immittance_head) {
    std::vector<std::string> lines;
    for (int i = 1; i <= performance.count; ++i) {
        const bool page_begins = (i - 1) % static_cast<int>(Reporter::page_full) == 0;
        if (page_begins) add_head(performance, title, immittance_head, lines);
        lines.push_back(row_text(performance.rows(i), performance.step < fine_step, performance.doubly_terminated));
    }
    return lines;
}

namespace {

// Columns end at 13 (frequency), 24 (loss), 33 (phase), 45 (delay), 58 and 71 (immittance) and 80 (return loss).
void add_head(const Performance& performance, std::string_view title, ImmittanceHead immittance_head,
              std::vector<std::string>& lines) {
    lines.emplace_back("");
    lines.emplace_back(trim_right(head_of(title, title_width)));
    lines.emplace_back("");
    lines.emplace_back("******* Computed performance *******");
    lines.emplace_back("");
    constexpr int from_delay_to_end = 33;  // from the end of "Delay" to that of "Ret. loss"
    const std::string immittance = immittance_text(performance.admittance, immittance_head);
    const int before = immittance_head == ImmittanceHead::output ? 6 : 10;
    const int behind = from_delay_to_end - before - static_cast<int>(immittance.size());
    std::string words =
        edited<"(A11,2X,2A,A10)">("Frequency", loss_label(performance.loss_class), " loss  Phase", "Delay");
    words += edit_x(before) + immittance;
    std::string units = edited<"(2X,A,A11,2A10,A11,A14)">(performance.radians ? "  rad/sec " : "   in Hz  ", "in dB",
                                                          "in deg", "in sec", "real", "imaginary");
    if (performance.doubly_terminated) {
        words += edit_a("Ret. loss", behind);
        units += edited<"(A10)">("in dB");
    }
    lines.push_back(words);
    lines.push_back(units);
}

std::string immittance_text(bool admittance, ImmittanceHead head) {
    std::string text(immittance_label(admittance));
    if (head == ImmittanceHead::output) return "Output " + text;
    text.front() = admittance ? 'A' : 'I';
    return text;
}

std::string row_text(const PerformanceRow& row, bool fine, bool return_loss) {
    std::string text = fine ? edited<"(1X,1P,D13.6,1X)">(row.frequency) : edited<"(1X,1P,D12.5,2X)">(row.frequency);
    text += edited<"(F9.4,2X,F7.2,1P,D12.4,2D13.5)">(row.loss, row.phase, row.delay, row.real, row.imaginary);
    if (return_loss) text += edited<"(1X,F8.4)">(row.return_loss);
    return text;
}

}  // namespace

}  // namespace kavrel
