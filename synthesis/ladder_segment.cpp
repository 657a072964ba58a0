#include "synthesis/ladder_segment.h"

#include "synthesis/synthesis_report.h"

namespace kavrel {

namespace {

void show_result(LadderDesk& desk);
[[nodiscard]] SynthesisOutcome synthesise_design(LadderDesk& desk);

// In the order in which they are looked up; most of them are not built yet.
constexpr CommandTable commands({Command<LadderDesk>{"in  "},
                                 {"es  "},
                                 {"os  "},
                                 {"ed  "},
                                 {"od  "},
                                 {"ue  "},
                                 {"pri", show_result},
                                 {"nout"},
                                 {"imp "},
                                 {"d   "},
                                 {"p   "},
                                 {"z   "},
                                 {"i   "},
                                 {"adm "},
                                 {"s   "},
                                 {"c   "}});

}  // namespace

CommandWords ladder_words() { return commands.words(); }

void ladderSegment(LadderDesk& desk) {
    int& entry = desk.session.entry(SegmentId::ladder);
    CommandKeyword& cell = desk.session.word(SegmentId::ladder);
    if (entry == ladder_entry::designed) {
        entry = ladder_entry::ordinary_command;
        desk.work.outcome = synthesise_design(desk);
        cell = {};
    } else {
        commands.run(desk, cell);
    }
}

namespace {

void report(LadderDesk& desk, const std::vector<std::string>& lines) {
    for (const std::string& line : lines) desk.reporter.report_line(line);
}

void show_result(LadderDesk& desk) {
    if (desk.work.outcome == SynthesisOutcome::done) {
        report(desk, result_report(desk.session.TITLE.text(), desk.work.state));
    }
}

SynthesisOutcome synthesise_design(LadderDesk& desk) {
    LadderWork& work = desk.work;
    describe_design(desk.design.x_plane, desk.design.worked, work.form);
    if (!run_form(SYNTHESIS_DLG, &work.form, desk.session.units, desk.reporter)) return SynthesisOutcome::cancelled;
    if (work.form.form != FormChoice::ladder || work.form.configuration != AutoChoice::automatic) {
        return SynthesisOutcome::unbuilt;
    }
    const std::string title = desk.session.TITLE.text();
    if (work.form.print_polynomials) report(desk, polynomial_report(title, desk.design.x_plane, desk.design.worked));
    SynthesisState state;
    WindowWatcher watcher(desk.reporter.window(), "Ladder search");
    const SynthesisVerdict verdict =
        synthesise(desk.design.x_plane, desk.design.worked, request_of(work.form), watcher, state, work.circuit);
    if (!verdict.good()) {
        report(desk, failure_report(verdict, state));
        return SynthesisOutcome::failed;
    }
    work.state = state;
    report(desk, result_report(title, work.state));
    return SynthesisOutcome::done;
}

}  // namespace

}  // namespace kavrel
