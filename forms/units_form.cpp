#include "forms/units_form.h"

#include "shell/field_table.h"
#include "shell/known_files.h"
#include "shell/reporter.h"
#include "shell/settings.h"

namespace kavrel {

namespace {

using R = UnitSet;

constexpr Choice frequencies[] = {{" Hz", 1}, {"KHz", 2}, {"MHz", 3}, {"GHz", 4}};
constexpr Choice inductors[] = {{" H", 1}, {"mH", 2}, {"uH", 3}, {"nH", 4}, {"pH", 5}};
constexpr Choice capacitors[] = {{" F", 1}, {"mF", 2}, {"uF", 3}, {"nF", 4}, {"pF", 5}};
constexpr Choice times[] = {{" sec", 1}, {"msec", 2}, {"usec", 3}, {"nsec", 4}, {"psec", 5}};

constexpr Field fields[] = {
    choice<&R::frequency_index>("frequency_index", "Frequency unit", frequencies),
    heading("additional_items", "Additional items"),
    choice<&R::inductor_index>("inductor_index", "Inductor unit", inductors),
    choice<&R::capacitor_index>("capacitor_index", "Capacitor unit", capacitors),
    choice<&R::time_index>("time_index", "Time unit", times),
};

[[nodiscard]] bool keep_settings(const UnitSet& units, Session& session, Reporter& reporter);

}  // namespace

constexpr Form MENU2_DLG = form_of<R>("MENU2_DLG", "Select preferred units", fields);

void choose_units(Session& session, Reporter& reporter) {
    UnitSet chosen = session.units;
    run_form(MENU2_DLG, &chosen, session.units, reporter, [&] {
        UnitSet settled = chosen;
        settle_units(settled);
        if (!session.keeps_settings || keep_settings(settled, session, reporter)) session.units = settled;
    });
}

namespace {

bool keep_settings(const UnitSet& units, Session& session, Reporter& reporter) {
    if (!may_write(session, reporter, settings_file, settings_file)) return false;
    const auto mark = write_settings(settings_file, units);
    mark ? note_written(session, settings_file, *mark) : void(reporter.message("File could not be written", "Error"));
    return mark.has_value();
}

}  // namespace

}  // namespace kavrel
