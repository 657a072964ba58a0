#include "workbench/rooms.h"

#include <algorithm>
#include <memory>

#include <fmt/format.h>

#include "fir/command_tools.h"
#include "fir/factor_commands.h"
#include "fir/file_commands.h"
#include "fir/fir_forms.h"
#include "fir/fir_segment.h"
#include "iir/command_tools.h"
#include "iir/file_commands.h"
#include "iir/iir_segment.h"
#include "passive/command_tools.h"
#include "passive/file_commands.h"
#include "passive/macro_file.h"
#include "passive/passive_segment.h"
#include "passive/stored_circuit.h"
#include "synthesis/ladder_segment.h"
#include "workbench/all_forms.h"
#include "workbench/menus.h"
#include "workbench/segment_words.h"

namespace kavrel {

namespace {

Desk desk(Workbench& bench);
std::string_view passive_file_refusal(std::string_view name);
std::string_view iir_file_refusal(std::string_view name);
std::string_view fir_file_refusal(std::string_view name);
bool circuit_is_unsaved(Workbench& bench);
bool iir_is_unsaved(Workbench& bench);
bool fir_is_unsaved(Workbench& bench);
void multiply_after_form(Workbench& bench);

// A routine of a Segment, at its desk.
template <auto desk_of, auto routine>
void at_desk(Workbench& bench) {
    auto desk = desk_of(bench);
    routine(desk);
}

template <auto desk_of, auto hindrance>
std::string_view hindrance_at(Workbench& bench, const CommandKeyword& word) {
    return hindrance(desk_of(bench), word);
}

constexpr ActionRow passive_actions[] = {{MenuAction::save_as, at_desk<passive_desk, save_circuit_as>},
                                         {MenuAction::play_macro, at_desk<passive_desk, play_macro>}};

constexpr ActionRow iir_actions[] = {{MenuAction::save_as, at_desk<iir_desk, save_iir_as>}};

constexpr WordForm fir_word_forms[] = {{"sqr ", &FIR_FUNCTION_DLG}};
constexpr ActionRow fir_actions[] = {{MenuAction::save_as, at_desk<fir_desk, save_fir_as>},
                                     {MenuAction::multiply_selected, multiply_after_form}};

constexpr Room rooms[] = {
    {.id = SegmentId::main,
     .name = "main",
     .title = "Kavrel - MAIN MENU",
     .file_letter = ' ',
     .menu = main_menu,
     .window_items = main_window_items,
     .shown = shown_function,
     .check = check_of_function},
    {.id = SegmentId::passive,
     .name = "passive",
     .title = "Kavrel - PASSIVE LC/MICROWAVE MENU",
     .file_letter = 'p',
     .menu = passive_menu,
     .window_items = passive_window_items,
     .actions = passive_actions,
     .words = passive_words,
     .hindrance = hindrance_at<passive_desk, passive_hindrance>,
     .run = at_desk<passive_desk, passiveSegment>,
     .recall_entry = passive_entry::stored_circuit,
     .shows = [](const Workbench& bench, Fingerprint source) { return fingerprint(bench.passive) == source; },
     .file_refusal = passive_file_refusal,
     .noun = "circuit",
     .unsaved = circuit_is_unsaved,
     .shown = shown_circuit,
     .check = check_of_circuit},
    {.id = SegmentId::active,
     .name = "active",
     .title = "Kavrel - ACTIVE RC MENU",
     .file_letter = 'a',
     .menu = active_menu,
     .window_items = active_window_items,
     .words = active_words},
    {.id = SegmentId::iir,
     .name = "iir",
     .title = "Kavrel - IIR DIGITAL MENU",
     .file_letter = 'd',
     .menu = iir_menu,
     .window_items = iir_window_items,
     .actions = iir_actions,
     .words = iir_words,
     .hindrance = hindrance_at<iir_desk, iir_hindrance>,
     .run = at_desk<iir_desk, iirSegment>,
     .recall_entry = iir_entry::stored_filter,
     .shows = [](const Workbench& bench, Fingerprint source) { return fingerprint(bench.iir) == source; },
     .file_refusal = iir_file_refusal,
     .unsaved = iir_is_unsaved,
     .shown = shown_iir,
     .check = check_of_iir},
    {.id = SegmentId::fir,
     .name = "fir",
     .title = "Kavrel - FIR DIGITAL MENU",
     .file_letter = 'f',
     .menu = fir_menu,
     .window_items = fir_window_items,
     .actions = fir_actions,
     .words = fir_words,
     .word_forms = fir_word_forms,
     .hindrance = hindrance_at<fir_desk, fir_hindrance>,
     .run = at_desk<fir_desk, firSegment>,
     .recall_entry = fir_entry::stored_filter,
     .shows = [](const Workbench& bench, Fingerprint source) { return is_of_filter(bench.fir, source); },
     .file_refusal = fir_file_refusal,
     .unsaved = fir_is_unsaved,
     .check = check_of_fir},
    {.id = SegmentId::ladder,
     .name = "ladder",
     .title = "Kavrel - LADDER SYNTHESIS MENU",
     .file_letter = ' ',
     .menu = ladder_menu,
     .words = ladder_words,
     .run = at_desk<ladder_desk, ladderSegment>},
    {.id = SegmentId::lattice,
     .name = "lattice",
     .title = "Kavrel - LATTICE MENU",
     .file_letter = 'x',
     .menu = lattice_menu,
     .window_items = lattice_window_items,
     .words = lattice_words},
};

static_assert(std::size(rooms) == segment_count);

}  // namespace

const Room& room_of(SegmentId id) { return rooms[static_cast<std::size_t>(id)]; }

const Room* room_of_file(char letter) {
    const auto found = std::ranges::find(rooms, letter, &Room::file_letter);
    return letter == ' ' || found == std::end(rooms) ? nullptr : &*found;
}

const Form* form_of_word(const Room& room, const CommandKeyword& word) {
    const auto found = std::ranges::find_if(
        room.word_forms, [&](const WordForm& row) { return CommandKeyword(row.word).padded() == word.padded(); });
    return found == room.word_forms.end() ? nullptr : found->form;
}

const ActionRow* find_action(std::span<const ActionRow> actions, MenuAction action) {
    const auto found = std::ranges::find(actions, action, &ActionRow::action);
    return found == actions.end() ? nullptr : &*found;
}

void enter_segment(Workbench& bench, SegmentId id) {
    bench.session.segment = id;
    bench.window.set_menu(room_of(id).menu, room_of(id).title);
    if (room_of(id).run != nullptr) room_of(id).run(bench);
}

std::string unsaved_text(Workbench& bench) {
    const auto unsaved = [&](const Room& room) { return room.unsaved != nullptr && room.unsaved(bench); };
    const Session& session = bench.session;
    const Room& shown = room_of(session.segment);
    const bool is_shown = unsaved(shown);
    const auto room = is_shown ? &shown : std::ranges::find_if(rooms, unsaved);
    if (room == std::end(rooms)) return {};
    const std::string_view file = session.filter_file.trimmed();
    std::string name;
    if (is_shown && !file.empty()) name = " of " + std::string(file);
    if (is_shown && file.empty() && !session.TITLE.is_blank()) name = ' ' + std::string(session.TITLE.trimmed());
    return fmt::format("The {}{} is not saved.", room->noun, name);
}

void send_command(Workbench& bench, const Room& room, std::string_view word, const Form* form) {
    if (!room.commands().performs(CommandKeyword(word))) {
        not_implemented(bench);
        return;
    }
    const auto perform = [&] {
        bench.session.word(room.id) = word;
        room.run(bench);
        look_again(bench);
    };
    if (form == nullptr) return perform();
    run_form(*form, record_of(*form, bench), bench.session.units, bench.reporter, perform);
}

void look_again(Workbench& bench) {
    bench.check.reset();
    bench.plot.earlier = is_earlier(bench, bench.plot.source);
}

bool is_earlier(const Workbench& bench, Fingerprint source) {
    const auto shows = room_of(bench.session.segment).shows;
    return source != 0 && shows != nullptr && !shows(bench, source);
}

FirDesk fir_desk(Workbench& bench) {
    return {desk(bench), bench.fir_request, bench.fir, bench.fir_state, bench.fir_command};
}

IirDesk iir_desk(Workbench& bench) { return {desk(bench), bench.iir, bench.iir_state, bench.iir_command}; }

PassiveDesk passive_desk(Workbench& bench) {
    return {desk(bench), bench.passive, bench.passive_state, bench.passive_command};
}

LadderDesk ladder_desk(Workbench& bench) {
    return {.session = bench.session, .design = bench.drafted.design, .work = bench.ladder, .reporter = bench.reporter};
}

void not_implemented(Workbench& bench) { bench.reporter.message(not_implemented_text, "Default"); }

namespace {

// What every Segment that analyses works on.
Desk desk(Workbench& bench) {
    return {.session = bench.session,
            .reporter = bench.reporter,
            .window = bench.window,
            .results = bench.results,
            .plot = bench.plot,
            .temporaries = bench.temporaries};
}

bool circuit_is_unsaved(Workbench& bench) {
    PassiveDesk desk = passive_desk(bench);
    return is_unsaved(kept(desk));
}

bool iir_is_unsaved(Workbench& bench) {
    IirDesk desk = iir_desk(bench);
    return is_unsaved(kept(desk));
}

bool fir_is_unsaved(Workbench& bench) {
    FirDesk desk = fir_desk(bench);
    return is_unsaved(kept(desk));
}

void multiply_after_form(Workbench& bench) {
    run_form(FIR_SERIAL_DLG, record_of(FIR_SERIAL_DLG, bench), bench.session.units, bench.reporter, [&] {
        at_desk<fir_desk, multiply_selected>(bench);
        look_again(bench);
    });
}

// Read for a trial, before the Segment is entered and gives up what it has.
template <class Filter>
std::string_view refusal_of_file(std::string_view name, StoredForms<Filter> forms) {
    const auto filter = std::make_unique<Filter>();
    FixedText<80> title;
    FileMark mark;
    return message_of(read_filter(name, forms, *filter, title, mark));
}

std::string_view passive_file_refusal(std::string_view name) {
    return refusal_of_file<PassiveFilter>(name, circuit_forms);
}

std::string_view iir_file_refusal(std::string_view name) { return refusal_of_file<IirFilter>(name, iir_files); }

std::string_view fir_file_refusal(std::string_view name) { return refusal_of_file<FirFilter>(name, fir_files); }

}  // namespace

}  // namespace kavrel
