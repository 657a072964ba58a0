#include "iir/truncation_command.h"

#include "iir/command_tools.h"
#include "iir/least_words.h"
#include "iir/truncation.h"
#include "shell/edited.h"

namespace kavrel {

namespace {

constexpr std::string_view least_words_work = "Least words";

void truncate_to_least_word(IirDesk& desk);
Lines lines_of_no_word(const std::vector<LeastWord>& words, NumberForm number_form);

}  // namespace

void truncate(IirDesk& desk) {
    if (const auto why = needs_filter(desk); !why.empty()) return refuse(desk, why);
    desk.command.truncated_to.bits == 0 ? truncate_to_least_word(desk) : make_edit(desk, truncateFilter);
}

namespace {

// What is found is kept as that of the filter that the command leaves.
void truncate_to_least_word(IirDesk& desk) {
    const IirRequest& asked = desk.command;
    if (desk.filter.asked.count == 0) {
        return refuse(desk, Refusal("There is no request that a word could meet: enter a number of bits", "bits"));
    }
    WindowWatcher watcher(desk.window, least_words_work);
    const LossAllowances allowances{asked.passband_allowance, asked.stopband_allowance};
    const auto words = least_words(desk.filter, asked.truncated_to.method, allowances, watcher);
    if (watcher.stopped()) return desk.reporter.report_line(stopped_line);
    report_lines(desk, least_word_lines(words));
    const auto word = word_for_all_forms(words, asked.truncated_to.number_form);
    if (!word) {
        report_lines(desk, lines_of_no_word(words, asked.truncated_to.number_form));
    } else {
        IirRequest found = asked;
        found.truncated_to = *word;
        IirFilter filter = desk.filter;
        Lines lines;
        if (const Refusal wrong = truncateFilter(filter, found, desk.session.units, lines); !wrong.empty()) {
            return refuse(desk, wrong);
        }
        take_edited(desk, filter, lines);
    }
    desk.state.words.word_lengths = {words, fingerprint(desk.filter)};
}

Lines lines_of_no_word(const std::vector<LeastWord>& words, NumberForm number_form) {
    Lines lines = {" The filter is not truncated: in some form no word meets the request"};
    for (const Implementation form : forms_without_word(words, number_form)) {
        lines.push_back(edited<"(4X,A,2X,A)">(form_name(form), name_of(number_form)));
    }
    return lines;
}

}  // namespace

}  // namespace kavrel
