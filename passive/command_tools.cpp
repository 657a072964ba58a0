#include "passive/command_tools.h"

#include <algorithm>

#include "circuit/drawing.h"
#include "shell/utf8.h"

namespace kavrel {

namespace {

std::string fitted(std::string_view row);

}  // namespace

void report_done(PassiveDesk& desk) {
    if (desk.state.suppress) {
        desk.reporter.report_line(command_done);
    } else {
        report_done(static_cast<Desk&>(desk));
    }
}

KeptFilter<PassiveFilter> kept(PassiveDesk& desk) { return {desk, desk.state.kept, desk.filter, circuit_keeping}; }

void show_circuit(PassiveDesk& desk) {
    for (const std::string& row : showCircuit(desk.filter.circuit, desk.state.lastBranch, desk.session.units)) {
        desk.reporter.report_line(fitted(row));
    }
    desk.state.lastBranch = 1;
}

bool wishes_original(PassiveDesk& desk, std::string_view what) {
    return desk.filter.mod == 0.0F || wishes_original(static_cast<Desk&>(desk), what);
}

namespace {

// A row of lines may hold a value, a resonance and an impedance of their equivalent, more than the report takes: then
// blanks give way, the widest gap behind the drawing first, so that no number loses its end. The label of the impedance
// stays whole.
std::string fitted(std::string_view row) {
    constexpr std::size_t drawing_width = 18;
    if (utf8_length(trim_right(row)) <= Reporter::line_limit) return std::string(row);
    std::string text(trim_right(row));
    const std::size_t from = utf8_head(text, drawing_width).size();
    while (utf8_length(text) > Reporter::line_limit) {
        std::size_t widest = 1, place = 0;
        for (std::size_t i = from; i < text.size();) {
            const std::size_t end = text.find_first_not_of(' ', i);
            if (end - i > widest && text[end] != 'z') {
                widest = end - i;
                place = i;
            }
            i = std::min(text.find(' ', end), text.size());
        }
        if (place == 0) break;
        text.erase(place, 1);
    }
    return text;
}

}  // namespace

}  // namespace kavrel
