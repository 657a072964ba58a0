#include "workbench/events.h"

#include <algorithm>

#include <fmt/format.h>

#include "forms/units_form.h"
#include "shell/within_memory.h"
#include "workbench/analysis_road.h"
#include "workbench/delay_road.h"
#include "workbench/design_input.h"
#include "workbench/filter_road.h"
#include "workbench/fir_road.h"
#include "workbench/rooms.h"

namespace kavrel {

namespace {

constexpr int first_menu_id = 129;
constexpr int last_menu_id = 1199;

// An item and the Segment that it belongs to.
struct Place {
    const Room* room = nullptr;
    const MenuItem* item = nullptr;
};

Place place_of(int item_id);
const ActionRow* action_of(const Place& place);
bool perform_within_memory(Workbench& bench, const Room& room, const MenuItem& item);
bool may_give_up(Workbench& bench, std::string_view doing);
void help(Workbench& bench);

}  // namespace

int dispatch_event(Workbench& bench, int item_id) {
    take_units(bench.session.units, bench.session);  // a change of units takes effect with the next event
    const Place place = place_of(item_id);
    const bool performed = place.item != nullptr && perform_within_memory(bench, *place.room, *place.item);
    look_again(bench);
    if (performed) return -1;
    if (item_id == help_event) {
        help(bench);
        return -1;
    }
    if (item_id == close_window_event && !may_give_up(bench, "leave")) return -1;
    const bool of_menus = item_id >= first_menu_id && item_id <= last_menu_id;
    if (!of_menus && bench.window.own_event(item_id)) return 0;
    not_implemented(bench);
    return -1;
}

const MenuItem* item_of(int item_id) { return place_of(item_id).item; }

std::string_view hindrance(Workbench& bench, int item_id) {
    const Place place = place_of(item_id);
    if (place.item == nullptr || item_id == close_window_event) return {};
    const ActionRow* action = action_of(place);
    const CommandKeyword word(place.item->command);
    const bool built = action != nullptr ? action->built : place.room->commands().performs(word);
    if (place.item->command.empty() && action == nullptr) return not_implemented_text;
    if (!built) return not_implemented_text;
    const bool has_command = !place.item->command.empty() && place.room->hindrance != nullptr;
    return has_command ? place.room->hindrance(bench, word) : std::string_view{};
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

namespace {

void view_text_file(Workbench& bench) {
    const std::string name = bench.window.choose_file(
        {.caption = "Select a file name", .description = "Text files", .filter = "*.txt;*.tab;*.ckt;*.*"});
    if (!name.empty()) bench.reporter.view_file(name);
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

// Ends the program at once: the question is the only guard.
void stop(Workbench& bench) {
    const bool sure = bench.session.guards_unsaved
                          ? may_give_up(bench, "leave")
                          : bench.reporter.message("Are you sure?", "Warning", Buttons::yes_no) == Answer::yes;
    if (sure) bench.session.stopped = true;
}

// What items do that have no command, in whatever menu they are.
constexpr ActionRow actions[] = {
    {MenuAction::view_text, view_text_file},
    {MenuAction::close_text_view, close_text_view},
    {MenuAction::recall_filter, recall_stored_filter, Effect::gives_filter_up},
    {MenuAction::choose_units, units},
    {MenuAction::new_filter_design, new_filter_design, Effect::gives_filter_up},
    {MenuAction::recall_filter_design, recall_filter_design, Effect::gives_filter_up},
    {MenuAction::new_delay_design, new_delay_design, Effect::keeps_filter, false},
    {MenuAction::recall_delay_design, recall_delay_design, Effect::keeps_filter, false},
    {MenuAction::new_fir_design, new_fir_design, Effect::gives_filter_up},
    {MenuAction::recall_fir_design, recall_fir_design, Effect::gives_filter_up},
    {MenuAction::new_analysis, new_analysis, Effect::gives_filter_up},
    {MenuAction::recall_analysis, recall_analysis, Effect::gives_filter_up},
    {MenuAction::new_fir_analysis, new_fir_analysis, Effect::gives_filter_up},
    {MenuAction::recall_fir_analysis, recall_fir_analysis, Effect::gives_filter_up},
    {MenuAction::new_design, new_design, Effect::gives_filter_up},
    {MenuAction::copy, copy},
    {MenuAction::stop, stop},
    {MenuAction::help, help},
    {MenuAction::help_on_help, help_on_help},
    {MenuAction::about, about},
};

Place place_of(int item_id) {
    for (std::size_t i = 0; i < segment_count; ++i) {
        const Room& room = room_of(static_cast<SegmentId>(i));
        for (const auto items : {room.menu, room.window_items}) {
            if (const MenuItem* item = find_item(items, item_id)) return {&room, item};
        }
    }
    return {};
}

// In the Segment or, failing that, in all of them; null for an item without action.
const ActionRow* action_of(const Place& place) {
    const ActionRow* own = find_action(place.room->actions, place.item->action);
    return own != nullptr ? own : find_action(actions, place.item->action);
}

// Whether what is not saved may be lost; where nobody is to be asked it may.
bool may_give_up(Workbench& bench, std::string_view doing) {
    const std::string unsaved = bench.session.guards_unsaved ? unsaved_text(bench) : "";
    if (unsaved.empty()) return true;
    return bench.reporter.message(fmt::format("{}\nDo you want to {} without saving it?", unsaved, doing), "Warning",
                                  Buttons::yes_no) == Answer::yes;
}

bool perform(Workbench& bench, const Room& room, const MenuItem& item);

// Memory that runs out ends the command, not the program.
bool perform_within_memory(Workbench& bench, const Room& room, const MenuItem& item) {
    bool performed = true;
    if (!within_memory([&] { performed = perform(bench, room, item); }))
        bench.reporter.message("Out of memory", "Error");
    return performed;
}

// By the item's action, in the Segment or in all of them, else by its command. False for an item with neither.
bool perform(Workbench& bench, const Room& room, const MenuItem& item) {
    if (const ActionRow* row = action_of({&room, &item})) {
        if (row->effect == Effect::keeps_filter || may_give_up(bench, "go on")) row->perform(bench);
        return true;
    }
    if (item.command.empty()) return false;
    send_command(bench, room, item.command, item.form);
    return true;
}

}  // namespace

}  // namespace kavrel
