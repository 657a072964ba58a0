#include "iir/form_commands.h"

#include "iir/allpass_form.h"
#include "iir/command_tools.h"
#include "iir/direct_form.h"
#include "iir/iir_report.h"
#include "iir/lattice_form.h"
#include "iir/parallel_form.h"
#include "shell/edited.h"

namespace kavrel {

namespace {

constexpr std::string_view parallel_exists = " Parallel form already exists";
constexpr std::string_view direct_exists = " Direct form already exists";
constexpr std::string_view lattice_exists = " Lattice form already exists";
constexpr std::string_view allpass_exists = " Allpass form already exists";

void report_form(IirDesk& desk, const Lines& table);
Lines failure_lines(LatticeVerdict verdict);

}  // namespace

void make_parallel_form(IirDesk& desk) {
    if (const auto why = needs_filter(desk); !why.empty()) return refuse(desk, why);
    if (is_there(desk.filter.parallel)) return desk.reporter.report_line(parallel_exists);
    if (const Refusal wrong = makeParallel(desk.filter); !wrong.empty()) return refuse(desk, wrong);
    report_form(desk, parallel_table(desk.filter.parallel, desk.command.display_format));
}

void make_direct_form(IirDesk& desk) {
    if (const auto why = cannot_make_direct(desk); !why.empty()) return refuse(desk, why);
    if (is_there(desk.filter.direct)) return desk.reporter.report_line(direct_exists);
    if (const Refusal wrong = makeDirect(desk.filter); !wrong.empty()) return refuse(desk, wrong);
    report_form(desk, direct_table(desk.filter.direct, desk.command.display_format));
}

void make_lattice_form(IirDesk& desk) {
    if (const auto why = cannot_make_lattice(desk); !why.empty()) return refuse(desk, why);
    if (is_there(desk.filter.lattice)) return desk.reporter.report_line(lattice_exists);
    const LatticeVerdict verdict = makeLattice(desk.filter);
    if (verdict.outcome != LatticeOutcome::made) return report_lines(desk, failure_lines(verdict));
    report_form(desk, lattice_table(desk.filter.lattice, desk.command.display_format));
}

void make_allpass_form(IirDesk& desk) {
    if (const auto why = cannot_make_allpass(desk); !why.empty()) return refuse(desk, why);
    if (is_there(desk.filter.allpass)) return desk.reporter.report_line(allpass_exists);
    if (const Refusal wrong = makeAllpass(desk.filter); !wrong.empty()) return refuse(desk, wrong);
    report_form(desk, allpass_table(desk.filter.allpass, desk.command.display_format));
}

std::string_view cannot_make_direct(const IirDesk& desk) {
    if (const auto why = needs_filter(desk); !why.empty()) return why;
    return desk.filter.roots.NZ + desk.filter.roots.NP > 0 ? "" : no_natural_modes;
}

std::string_view cannot_make_lattice(const IirDesk& desk) {
    if (const auto why = needs_filter(desk); !why.empty()) return why;
    return desk.filter.kind == DigitalKind::delay ? no_lattice_of_delay : "";
}

std::string_view cannot_make_allpass(const IirDesk& desk) {
    if (const auto why = needs_filter(desk); !why.empty()) return why;
    return desk.filter.allpass.ALLPASS_OK || is_there(desk.filter.allpass) ? "" : not_symmetrical;
}

namespace {

void report_form(IirDesk& desk, const Lines& table) {
    report_lines(desk, header_lines(desk.filter, desk.session.units));
    report_lines(desk, table);
}

Lines failure_lines(LatticeVerdict verdict) {
    Lines lines;
    if (verdict.outcome == LatticeOutcome::unstable) {
        lines.push_back(edited<"(' Unstable design. n = ',I3)">(verdict.stage));
    } else if (verdict.outcome == LatticeOutcome::lost) {
        lines.push_back(edited<"(' No convergence. n = ',I3)">(verdict.stage));
    }
    lines.emplace_back(" ** Numerical problems, lattice is unavailable **");
    return lines;
}

}  // namespace

}  // namespace kavrel
