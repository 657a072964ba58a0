// A window layer for tests: keeps what it was shown and answers from lists.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "shell/form.h"
#include "shell/window_layer.h"

namespace kavrel {

struct FakeWindow : WindowLayer {
    std::vector<std::string> lines;
    std::vector<std::string> boxes;  // "caption: text"
    std::vector<std::vector<std::string>> pages;
    std::vector<std::string> titles;
    std::span<const MenuItem> menu;
    std::span<const ToolbarItem> toolbar;
    std::deque<Answer> answers;                         // to boxes; then OK or No
    std::deque<int> choices;                            // from choice boxes; then cancel
    std::deque<std::string> files;                      // to selectors; then none
    std::deque<std::function<bool(FormSheet&)>> forms;  // fill in a form; then cancel
    int stop_at = -1;                                   // progress count at which the user stops, or -1
    bool knows_events = false;
    PrintOutcome printer = PrintOutcome::printed;
    int plots_shown = 0;
    int plots_printed = 0;

    void show_line(std::string_view line) override { lines.emplace_back(line); }
    Answer message(std::string_view text, std::string_view caption, Buttons buttons) override {
        boxes.push_back(std::string(caption) + ": " + std::string(text));
        if (buttons == Buttons::ok) return Answer::ok;
        return take(answers, Answer::no);
    }
    int choose(const ChoiceBox& box) override {
        boxes.push_back(std::string(box.caption) + ": " + std::string(box.text));
        return take(choices, 0);
    }
    bool edit_form(FormSheet& sheet) override {
        if (forms.empty() || sheet.work_failed()) return false;
        const auto fill = forms.front();
        forms.pop_front();
        return fill(sheet);
    }
    std::string choose_file(const FileQuery&) override { return take(files, std::string{}); }
    void set_menu(std::span<const MenuItem> items, std::string_view title) override {
        menu = items;
        titles.emplace_back(title);
    }
    void set_toolbar(std::span<const ToolbarItem> items) override { toolbar = items; }
    void show_plot(const PlotWindow&) override { ++plots_shown; }
    PrintOutcome print_plot(const PlotWindow&) override {
        if (printer == PrintOutcome::printed) ++plots_printed;
        return printer;
    }
    PrintOutcome print_page(const PrintPage& page) override {
        if (printer == PrintOutcome::printed) pages.emplace_back(page.lines.begin(), page.lines.end());
        return printer;
    }
    void copy_text() override {}
    void view_text(std::string_view, std::string_view text) override { lines.emplace_back(text); }
    void close_text_view() override {}
    bool open_help(std::string_view) override { return false; }
    std::string date_and_time() override { return "2026-01-01"; }
    bool progress(std::string_view, int done, int) override { return stop_at < 0 || done < stop_at; }
    bool own_event(int) override { return knows_events; }

private:
    template <class T>
    static T take(std::deque<T>& list, T otherwise) {
        if (list.empty()) return otherwise;
        T value = list.front();
        list.pop_front();
        return value;
    }
};

}  // namespace kavrel
