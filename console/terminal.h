// The window layer of a person at a terminal: menus are shown, boxes ask, forms are gone through field by field. While
// a script that the person has included has lines left, these answer instead.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "console/console_window.h"
#include "console/runner.h"

namespace kavrel {

class Terminal final : public ConsoleWindow {
public:
    Terminal(ConsoleScript& script, Transcript transcript, const StopSignals& signals)
        : ConsoleWindow(script, transcript, &signals) {}

    Answer message(std::string_view text, std::string_view caption, Buttons buttons) override;
    int choose(const ChoiceBox& box) override;
    bool edit_form(FormSheet& sheet) override;
    std::string choose_file(const FileQuery& query) override;
    void set_menu(std::span<const MenuItem> menu, std::string_view title) override;
    bool progress(std::string_view work, int done, int total) override;
    void show_line(std::string_view line) override;

    // Asks for menu items and verbs until the program ends.
    void converse(Workbench& bench, Runner& runner);

private:
    // A typed line, edited and kept in the history; none at the end of the input. Ctrl-C drops what was typed so far.
    [[nodiscard]] std::optional<std::string> ask(const std::string& prompt);

    // How the user left a field.
    enum class FieldStep { next, back, accept, cancel };
    [[nodiscard]] FieldStep ask_field(FormSheet& sheet, std::size_t i);
    [[nodiscard]] FieldStep ask_rows(FormSheet& sheet, std::size_t i);
    [[nodiscard]] FieldStep ask_end(FormSheet& sheet);

    // Whether a signal ends the conversation: Ctrl-C only ends the work.
    [[nodiscard]] bool dismissed() const;
    void clear_progress();
    void show_menu();
    [[nodiscard]] std::vector<std::string> labels_here() const;
    void follow(const std::string& typed, Runner& runner);
    void perform_typed(const ScriptLine& line, Runner& runner);

    std::span<const MenuItem> menu_;
    std::string title_;
    std::vector<std::string> open_;  // labels of the submenus that are open
    bool progress_shown_ = false;
    std::chrono::steady_clock::time_point last_breath_;  // when a line was asked for, or progress was shown
    bool scripted_ = false;                              // an included script answers
};

}  // namespace kavrel
