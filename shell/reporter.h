// The writer of all output: report lines, and the boxes that stop for an answer.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "shell/journal.h"
#include "shell/refusal.h"
#include "shell/window_layer.h"

namespace kavrel {

enum class PrintMode { screen = 0, printer = 1, file = 2 };

// Where report lines go beside the screen.
struct PrintState {
    PrintMode print_mode = PrintMode::screen;
    std::string file_name;          // of the text file that lines are appended to in mode `file`
    std::vector<std::string> page;  // lines waiting for the printer, at most `page_full`, 80 characters each
};

class Reporter {
public:
    static constexpr std::size_t line_limit = 81;  // characters of a line on the screen
    static constexpr std::size_t page_width = 80;  // characters of a line on paper
    static constexpr std::size_t page_full = 57;   // lines of a printed page

    Reporter(WindowLayer& window, Journal& journal, PrintState& print)
        : window_(window), journal_(journal), print_(print) {}

    // Text to the report, cut at each line feed; each piece is shown, and printed or written as the print mode says.
    void report_line(std::string_view text);
    void report_lines(std::span<const std::string> lines);

    // A modal box. The journal keeps its answer.
    Answer message(std::string_view text, std::string_view caption, Buttons buttons = Buttons::ok);

    // The box of a refusal, with the field of the command's form that it is about.
    void refuse(const Refusal& refusal);

    // Does the work that a form was filled in for. What made it fail, or nothing: the last box of something that went
    // wrong, or what `fail` was told.
    [[nodiscard]] Refusal failure_of(const std::function<void()>& work);
    // Notes that the work has failed, where no box says so.
    void fail(std::string_view text);

    // A choice box: the number of the choice from 1, or 0 for its cancel.
    [[nodiscard]] int choose(const ChoiceBox& box);

    // Shows a file of text, or the box that says why it cannot be read.
    void view_file(const std::string& name);

    // Changes the print mode at once. Pages that wait for the printer leave with the next line.
    void set_print_mode(PrintMode mode, std::string_view file_name = {});

    [[nodiscard]] WindowLayer& window() { return window_; }

private:
    Answer show_message(std::string_view text, std::string_view caption, Buttons buttons, std::string_view field);
    void print_line(std::string_view piece);
    void send_page();

    WindowLayer& window_;
    Journal& journal_;
    PrintState& print_;
    Refusal* failure_ = nullptr;  // of the work under way that a form was filled in for
};

}  // namespace kavrel
