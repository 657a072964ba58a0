// The verbs of a script outside of forms.
#pragma once

#include "console/console_window.h"
#include "console/script.h"
#include "shell/within_memory.h"
#include "workbench/workbench.h"

namespace kavrel {

class Runner {
public:
    Runner(Workbench& bench, ConsoleWindow& window) : bench_(bench), window_(window) {}

    // Runs the script to its end, to its first failure, or to the end of the program.
    void run();

    // Whether a line may begin with this verb, `include` among them.
    [[nodiscard]] static bool knows(std::string_view verb);

    // Does a piece of work; memory that runs out ends it and fails its line, and leaves the run as it is.
    template <class Work>
    void attempt(const Work& work) {
        if (!within_memory(work)) window_.fail(Failure::line, "out of memory");
    }

    // Performs one line and notes what failed.
    void perform(const ScriptLine& line);

    // Chooses the item with these labels in the current Segment's menu or, failing that, in the main menu.
    void choose(const std::vector<std::string>& labels);

    [[nodiscard]] bool is_over() const { return bench_.session.stopped || window_.closed(); }

    // Writes the state to a file, `-` for the screen.
    void dump(const std::string& file);

private:
    struct Verb {
        std::string_view name;
        void (Runner::*perform)(const ScriptLine& line);
        bool has_words;  // takes something behind the verb
    };
    static const Verb verbs[];
    static const Verb* find(std::string_view verb);

    void choose_line(const ScriptLine& line);
    void do_line(const ScriptLine& line);
    void dump_line(const ScriptLine& line) { dump(line.rest()); }
    void table_line(const ScriptLine& line);
    void plot_line(const ScriptLine& line);
    void save_report_line(const ScriptLine& line);
    void expect_line(const ScriptLine& line);
    void expect_met();
    void check_line(const ScriptLine&);
    void echo_line(const ScriptLine& line);
    void quit_line(const ScriptLine&) { window_.close(); }

    void write_file(const std::string& name, const std::string& text);
    void mark_journal();

    Workbench& bench_;
    ConsoleWindow& window_;
    std::size_t first_line_ = 0;  // of the journal since the last `choose` or `do`
    std::size_t first_box_ = 0;
};

}  // namespace kavrel
