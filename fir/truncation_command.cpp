#include "fir/truncation_command.h"

#include <algorithm>
#include <memory>

#include "fir/command_tools.h"
#include "fir/least_words.h"
#include "fir/truncation.h"

namespace kavrel {

namespace {

constexpr std::string_view least_words_work = "Least words";

void truncate_to_least_word(FirDesk& desk);

}  // namespace

void truncate(FirDesk& desk) {
    if (!has_function(desk, needs_function_to_truncate(desk))) return;
    desk.command.truncated_to.bits == 0 ? truncate_to_least_word(desk)
                                        : static_cast<void>(make_edit(desk, truncate_function));
}

namespace {

// What is found is kept as that of the function that the command leaves.
void truncate_to_least_word(FirDesk& desk) {
    FirCommandRequest found = desk.command;
    const int n = found.function_number;
    const WordLength asked = found.truncated_to;
    const double allowance = found.stopband_allowance > 0 ? found.stopband_allowance : 1;
    WindowWatcher watcher(desk.window, least_words_work);
    const std::vector<FoundWord> words = least_words(desk.filter, n, asked.method, allowance, watcher);
    if (watcher.stopped()) return desk.reporter.report_line(stopped_line);
    if (words.empty()) {
        return refuse(desk, Refusal("There is no request that a word could meet: enter a number of bits", "bits"));
    }
    report_lines(desk, least_word_lines(words, n, allowance));
    found.truncated_to =
        std::ranges::find(words, asked.number_form, [](const FoundWord& word) { return word.word.number_form; })->word;
    if (found.truncated_to.bits == 0) {
        desk.reporter.report_line(" The function is not truncated: no word keeps its deviations");
    } else {
        const auto filter = std::make_unique<FirFilter>(desk.filter);
        Lines lines;
        if (const Refusal wrong = truncate_function(*filter, found, lines); !wrong.empty()) return refuse(desk, wrong);
        take_edited(desk, *filter, lines);
    }
    desk.state.words = words;
    desk.state.words_of = fingerprint(desk.filter, n);
}

}  // namespace

}  // namespace kavrel
