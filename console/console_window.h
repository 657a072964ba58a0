// The window layer of a script: forms, boxes and selectors are answered by the script's next lines, and where the next
// line is no answer, by defaults.
#pragma once

#include <string>
#include <vector>

#include "console/script.h"
#include "console/stop_signals.h"
#include "console/transcript.h"
#include "shell/plot.h"
#include "shell/window_layer.h"

namespace kavrel {

// A line that failed, and why.
struct LineFailure {
    Failure failure;
    std::string where;  // "FILE:LINE"
    std::string text;
};

class ConsoleWindow : public WindowLayer {
public:
    // Where it is given signals, these end the work and the script.
    ConsoleWindow(ConsoleScript& script, Transcript transcript, const StopSignals* signals = nullptr)
        : script_(script), transcript_(transcript), signals_(signals) {}

    void show_line(std::string_view line) override;
    Answer message(std::string_view text, std::string_view caption, Buttons buttons) override;
    int choose(const ChoiceBox& box) override;
    bool edit_form(FormSheet& sheet) override;
    std::string choose_file(const FileQuery& query) override;
    void set_menu(std::span<const MenuItem> menu, std::string_view title) override;
    void set_toolbar(std::span<const ToolbarItem>) override {}
    void show_plot(const PlotWindow& plot) override;
    PrintOutcome print_page(const PrintPage& page) override;
    // Its printer is a text file.
    PrintOutcome print_plot(const PlotWindow&) override { return PrintOutcome::failed; }
    void copy_text() override {}
    void view_text(std::string_view name, std::string_view text) override;
    void close_text_view() override {}
    bool open_help(std::string_view page) override;
    std::string date_and_time() override;
    bool progress(std::string_view work, int done, int total) override;
    bool own_event(int item_id) override;

    // The next line of the script, echoed; none at its end or when it is to end.
    [[nodiscard]] std::optional<ScriptLine> take_line();

    // Notes that the line just executed failed.
    void fail(Failure failure, std::string text);
    // Reports the failures since the last call on the error stream. Whether the script is to go on.
    bool settle();

    [[nodiscard]] int exit_status() const { return static_cast<int>(first_failure_); }
    [[nodiscard]] bool closed() const { return closed_; }
    // Whether a signal has come that ends what is under way.
    [[nodiscard]] bool interrupted() const { return signals_ != nullptr && signals_->caught() != 0; }
    void close() { closed_ = true; }
    [[nodiscard]] Transcript& transcript() { return transcript_; }
    [[nodiscard]] const PlotWindow* plot() const { return has_plot_ ? &plot_ : nullptr; }
    void set_manual_folders(std::vector<std::string> folders) { manual_folders_ = std::move(folders); }

protected:
    // Makes a line the one that is executed, and shows it.
    void echo(const ScriptLine& line);
    // The lines of the file that an `include` names come next; false when it fails.
    [[nodiscard]] bool include(const ScriptLine& line);
    void set_current(const ScriptLine& line) { current_ = line.where(); }
    [[nodiscard]] ConsoleScript& script() { return script_; }
    // A failed line has ended the script, but not the conversation.
    void resume() { ended_ = false; }
    [[nodiscard]] const StopSignals* signals() const { return signals_; }

private:
    // Echoes a line and says what is wrong with it as a line.
    void begin(const ScriptLine& line);
    // The next line, the lines of included files among them, taken from the script.
    [[nodiscard]] std::optional<ScriptLine> next_line();
    // The next line if it is an answer with this verb; otherwise it stays the next one.
    [[nodiscard]] std::optional<ScriptLine> take_answer(std::string_view verb);
    void show_box(std::string_view text, std::string_view caption);

    ConsoleScript& script_;
    Transcript transcript_;
    const StopSignals* signals_;
    std::string current_;                // "FILE:LINE" of the line that is executed
    std::vector<LineFailure> failures_;  // of that line, not yet reported
    Failure first_failure_ = Failure::none;
    bool ended_ = false;   // a line failed and the script does not go on
    bool closed_ = false;  // the main window was closed
    bool has_plot_ = false;
    PlotWindow plot_;
    std::vector<std::string> manual_folders_;
};

}  // namespace kavrel
