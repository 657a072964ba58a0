#include "workbench/events.h"

#include <algorithm>

#include <fmt/format.h>

#include "passive/file_commands.h"
#include "passive/macro_file.h"
#include "shell/stored_files.h"
#include "workbench/analysis_road.h"
#include "workbench/delay_road.h"
#include "workbench/filter_road.h"
#include "workbench/fir_road.h"
#include "workbench/rooms.h"
#include "workbench/units_form.h"

namespace kavrel {

namespace {

constexpr int first_menu_id = 129;
constexpr int last_menu_id = 1199;

void view_text_file(Workbench& bench) {
    const std::string name = bench.window.choose_file(
        {.caption = "Select a file name", .description = "Text files", .filter = "*.txt;*.tab;*.ckt;*.*"});
    if (name.empty()) return;
    if (const auto text = read_whole(name)) {
        bench.window.view_text(name, *text);
    } else {
        bench.reporter.message("File was not found", "Error");
    }
}

void close_text_view(Workbench& bench) { bench.window.close_text_view(); }

void recall_stored_filter(Workbench& bench) {
    if (bench.session.recall_from_command_line) {
        bench.session.recall_from_command_line = false;
        open_stored_filter(bench, bench.session.filter_file.text());
        return;
    }
    const std::string name = bench.window.choose_file(
        {.caption = "Recall a saved filter file", .description = "Storage files", .filter = "*.qfp;*.qfa;*.qfd;*.qff"});
    if (name.empty()) {
        bench.reporter.message("CANCEL", "Warning");
        return;
    }
    open_stored_filter(bench, name);
}

void units(Workbench& bench) { choose_units(bench.session, bench.reporter); }

void new_filter_design(Workbench& bench) { filter_design_road(bench, FormStart::last_values); }
void recall_filter_design(Workbench& bench) { filter_design_road(bench, FormStart::stored_data); }

void new_delay_design(Workbench& bench) { delay_design_road(bench, FormStart::last_values); }
void recall_delay_design(Workbench& bench) { delay_design_road(bench, FormStart::stored_data); }

// "New" of a Segment opens the form of the last design again.
void new_design(Workbench& bench) {
    if (bench.session.design_class.trimmed() == "delay") {
        new_delay_design(bench);
    } else {
        new_filter_design(bench);
    }
}

void new_fir_design(Workbench& bench) { fir_design_road(bench, FormStart::last_values); }
void recall_fir_design(Workbench& bench) { fir_design_road(bench, FormStart::stored_data); }

void new_analysis(Workbench& bench) { analysis_road(bench, FormStart::last_values); }
void recall_analysis(Workbench& bench) { analysis_road(bench, FormStart::stored_data); }
void new_fir_analysis(Workbench& bench) { fir_analysis_road(bench, FormStart::last_values); }
void recall_fir_analysis(Workbench& bench) { fir_analysis_road(bench, FormStart::stored_data); }

void open_help(Workbench& bench, std::string_view page) {
    if (!bench.window.open_help(page)) bench.reporter.message("Help file unavailable", "Warning");
}

void help(Workbench& bench) { open_help(bench, "index"); }
void help_on_help(Workbench& bench) { open_help(bench, "help"); }

void about(Workbench& bench) {
    bench.reporter.message(fmt::format("Kavrel {}\nWorkbench for the design of electronic filters", KAVREL_VERSION),
                           "Advice");
}

void copy(Workbench& bench) { bench.window.copy_text(); }

// Ends the program at once, unsaved work included: the question is the only guard.
void stop(Workbench& bench) {
    if (bench.reporter.message("Are you sure?", "Warning", Buttons::yes_no) == Answer::yes)
        bench.session.stopped = true;
}

void save_passive_as(Workbench& bench) {
    PassiveDesk desk = passive_desk(bench);
    save_circuit_as(desk);
}

void play_passive_macro(Workbench& bench) {
    PassiveDesk desk = passive_desk(bench);
    play_macro(desk);
}

struct Event {
    int id;
    void (*handle)(Workbench& bench);
};

// Items that no command word stands behind.
constexpr Event events[] = {
    // main menu
    {129, view_text_file},
    {recall_filter_event, recall_stored_filter},
    {131, close_text_view},
    {143, units},
    {166, new_filter_design},
    {167, recall_filter_design},
    {135, new_delay_design},
    {136, recall_delay_design},
    {1031, new_fir_design},
    {1032, recall_fir_design},
    {149, new_analysis},
    {169, recall_analysis},
    {152, new_fir_analysis},
    {170, recall_fir_analysis},
    {159, help},
    {141, help_on_help},
    {142, about},
    // passive
    {524, new_design},
    {330, save_passive_as},
    {521, play_passive_macro},
    {516, copy},
    {335, stop},
    {352, help},
    {351, help_on_help},
    {353, about},
    // active
    {841, new_design},
    {837, copy},
    {736, stop},
    {750, help},
    {749, help_on_help},
    {751, about},
    // IIR digital
    {651, new_design},
    {645, copy},
    {536, stop},
    {550, help},
    {549, help_on_help},
    {551, about},
    // lattice
    {914, copy},
    {881, stop},
    {894, help},
    {893, help_on_help},
    {895, about},
    // ladder synthesis
    {934, help},
    {933, help_on_help},
    {935, about},
    // FIR digital
    {1199, new_fir_design},
    {1194, copy},
    {1136, stop},
    {1153, help},
    {1152, help_on_help},
    {1154, about},
};

// What the plot window sends: an id for the Segment that opened it.
struct PlotEvent {
    int id;
    SegmentId segment;
    std::string_view command;
};
constexpr PlotEvent plot_events[] = {
    {160, SegmentId::passive, "plpr"}, {161, SegmentId::iir, "plpr"},     {162, SegmentId::fir, "plpr"},
    {163, SegmentId::active, "plpr"},  {168, SegmentId::lattice, "plpr"}, {154, SegmentId::passive, "nonp"},
};

// What every event starts from: the working copies of the settings.
void refresh(Session& session) {
    session.frequency_scale = session.units.frequency_multiplier;
    session.inductor_scale = session.units.inductor_multiplier;
    session.capacitor_scale = session.units.capacitor_multiplier;
    session.time_scale = session.units.time_multiplier;
}

bool send_plot_command(Workbench& bench, int item_id) {
    const auto event = std::ranges::find(plot_events, item_id, &PlotEvent::id);
    if (event == std::end(plot_events)) return false;
    send_command(bench, room_of(event->segment), event->command, nullptr);
    return true;
}

// The Segment and the item behind the id of a command.
bool send_menu_command(Workbench& bench, int item_id) {
    for (std::size_t i = 0; i < segment_count; ++i) {
        const Room& room = room_of(static_cast<SegmentId>(i));
        const MenuItem* item = find_item(room.menu, item_id);
        if (item == nullptr || item->command.empty()) continue;
        send_command(bench, room, item->command, item->form);
        return true;
    }
    return false;
}

}  // namespace

int dispatch_event(Workbench& bench, int item_id) {
    refresh(bench.session);
    if (item_id < first_menu_id || item_id > last_menu_id) {
        if (item_id == help_event) {
            help(bench);
        } else if (bench.window.own_event(item_id)) {
            return 0;
        } else {
            not_implemented(bench);
        }
        return -1;
    }
    const auto event = std::ranges::find(events, item_id, &Event::id);
    if (event != std::end(events)) {
        event->handle(bench);
    } else if (!send_menu_command(bench, item_id) && !send_plot_command(bench, item_id)) {
        not_implemented(bench);
    }
    return -1;
}

void open_stored_filter(Workbench& bench, std::string_view name) {
    const Room* room = name.empty() ? nullptr : room_of_file(name.back());
    if (room == nullptr) {
        bench.reporter.message("File is no stored filter", "Error");
        return;
    }
    if (!room->commands().performs("read")) {
        not_implemented(bench);
        return;
    }
    const auto kept = decltype(bench.session.filter_file)(name);
    const std::string_view refusal = room->file_refusal == nullptr ? "" : room->file_refusal(kept.trimmed());
    if (!refusal.empty()) {
        bench.reporter.message(refusal, "Error");
        return;
    }
    bench.session.filter_file = kept;
    enter_segment(bench, room->id);
    bench.session.entry(room->id) = room->recall_entry;
    send_command(bench, *room, "read", nullptr);
}

}  // namespace kavrel
