#include "circuit/performance_table.h"

#include "shell/edit.h"
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
    Line words = line().a("Frequency", 11).x(2).a(loss_label(performance.loss_class)).a(" loss  Phase").a("Delay", 10);
    words.x(before).a(immittance);
    Line units = line().x(2).a(performance.radians ? "  rad/sec " : "   in Hz  ").a("in dB", 11).a("in deg", 10);
    units.a("in sec", 10).a("real", 11).a("imaginary", 14);
    if (performance.doubly_terminated) {
        words.a("Ret. loss", behind);
        units.a("in dB", 10);
    }
    lines.emplace_back(words);
    lines.emplace_back(units);
}

std::string immittance_text(bool admittance, ImmittanceHead head) {
    std::string text(immittance_label(admittance));
    if (head == ImmittanceHead::output) return "Output " + text;
    text.front() = admittance ? 'A' : 'I';
    return text;
}

// (1x,1p,d12.5,2x,0p,f9.4,2x,f7.2,1p,d12.4,1p,2d13.5,1x,0p,f8.4), or (1x,1p,d13.6,1x, ...
std::string row_text(const PerformanceRow& row, bool fine, bool return_loss) {
    Line text = line().x(1);
    if (fine) {
        text.pd(row.frequency, 13, 6).x(1);
    } else {
        text.pd(row.frequency, 12, 5).x(2);
    }
    text.f(row.loss, 9, 4).x(2).f(row.phase, 7, 2).pd(row.delay, 12, 4).pd(row.real, 13, 5).pd(row.imaginary, 13, 5);
    if (return_loss) text.x(1).f(row.return_loss, 8, 4);
    return text;
}

}  // namespace

}  // namespace kavrel
