#include "workbench/units_form.h"

#include "shell/reporter.h"
#include "shell/settings.h"

namespace kavrel {

namespace {

constexpr Choice frequencies[] = {{" Hz", 1}, {"KHz", 2}, {"MHz", 3}, {"GHz", 4}};
constexpr Choice inductors[] = {{" H", 1}, {"mH", 2}, {"uH", 3}, {"nH", 4}, {"pH", 5}};
constexpr Choice capacitors[] = {{" F", 1}, {"mF", 2}, {"uF", 3}, {"nF", 4}, {"pF", 5}};
constexpr Choice times[] = {{" sec", 1}, {"msec", 2}, {"usec", 3}, {"nsec", 4}, {"psec", 5}};

constexpr Field fields[] = {
    {.name = "frequency_index",
     .label = "Frequency unit",
     .kind = FieldKind::choice,
     .choices = frequencies,
     .cell = cell_of<&UnitSet::frequency_index>},
    {.name = "additional_items", .label = "Additional items", .kind = FieldKind::heading},
    {.name = "inductor_index",
     .label = "Inductor unit",
     .kind = FieldKind::choice,
     .choices = inductors,
     .cell = cell_of<&UnitSet::inductor_index>},
    {.name = "capacitor_index",
     .label = "Capacitor unit",
     .kind = FieldKind::choice,
     .choices = capacitors,
     .cell = cell_of<&UnitSet::capacitor_index>},
    {.name = "time_index",
     .label = "Time unit",
     .kind = FieldKind::choice,
     .choices = times,
     .cell = cell_of<&UnitSet::time_index>},
};

}  // namespace

constexpr Form MENU2_DLG = form_of<UnitSet>("MENU2_DLG", "Select preferred units", fields);

void choose_units(Session& session, Reporter& reporter) {
    UnitSet chosen = session.units;
    if (!run_form(MENU2_DLG, &chosen, session.units, reporter)) return;
    settle_units(chosen);
    if (!write_settings(settings_file, chosen)) {
        reporter.message("File could not be written", "Error");
        return;
    }
    session.units = chosen;
}

}  // namespace kavrel
