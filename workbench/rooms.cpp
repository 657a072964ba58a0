#include "workbench/rooms.h"

#include <algorithm>
#include <memory>

#include "fir/fir_segment.h"
#include "passive/passive_segment.h"
#include "passive/stored_circuit.h"
#include "synthesis/ladder_segment.h"
#include "workbench/menus.h"
#include "workbench/segment_words.h"

namespace kavrel {

namespace {

// What every Segment that analyses works on.
Desk desk(Workbench& bench) {
    return {.session = bench.session,
            .reporter = bench.reporter,
            .window = bench.window,
            .results = bench.results,
            .plot = bench.plot};
}

void run_fir(Workbench& bench) {
    FirDesk desk = fir_desk(bench);
    firSegment(desk);
}

void* fir_command_request(Workbench& bench) { return &bench.fir_command; }

void run_passive(Workbench& bench) {
    PassiveDesk desk = passive_desk(bench);
    passiveSegment(desk);
}

// Read for a trial, before the Segment is entered and gives up what it has.
std::string_view passive_file_refusal(std::string_view name) {
    const auto filter = std::make_unique<PassiveFilter>();
    FixedText<80> title;
    return message_of(read_filter(name, circuit_forms, *filter, title));
}

void run_ladder(Workbench& bench) {
    LadderDesk desk = ladder_desk(bench);
    ladderSegment(desk);
}

void* passive_command_request(Workbench& bench) { return &bench.passive_command; }

constexpr Room rooms[] = {
    {.id = SegmentId::main, .name = "main", .title = "Kavrel - MAIN MENU", .file_letter = ' ', .menu = main_menu},
    {.id = SegmentId::passive,
     .name = "passive",
     .title = "Kavrel - PASSIVE LC/MICROWAVE MENU",
     .file_letter = 'p',
     .menu = passive_menu,
     .words = passive_words,
     .command_request = passive_command_request,
     .run = run_passive,
     .recall_entry = passive_entry::stored_circuit,
     .file_refusal = passive_file_refusal},
    {.id = SegmentId::active,
     .name = "active",
     .title = "Kavrel - ACTIVE RC MENU",
     .file_letter = 'a',
     .menu = active_menu,
     .words = active_words},
    {.id = SegmentId::iir,
     .name = "iir",
     .title = "Kavrel - IIR DIGITAL MENU",
     .file_letter = 'd',
     .menu = iir_menu,
     .words = iir_words},
    {.id = SegmentId::fir,
     .name = "fir",
     .title = "Kavrel - FIR DIGITAL MENU",
     .file_letter = 'f',
     .menu = fir_menu,
     .words = fir_words,
     .command_request = fir_command_request,
     .run = run_fir},
    {.id = SegmentId::ladder,
     .name = "ladder",
     .title = "Kavrel - LADDER SYNTHESIS MENU",
     .file_letter = ' ',
     .menu = ladder_menu,
     .words = ladder_words,
     .run = run_ladder},
    {.id = SegmentId::lattice,
     .name = "lattice",
     .title = "Kavrel - LATTICE MENU",
     .file_letter = 'x',
     .menu = lattice_menu,
     .words = lattice_words},
};

static_assert(std::size(rooms) == segment_count);

}  // namespace

const Room& room_of(SegmentId id) { return rooms[static_cast<std::size_t>(id)]; }

const Room* room_of_file(char letter) {
    const auto found = std::ranges::find(rooms, letter, &Room::file_letter);
    return letter == ' ' || found == std::end(rooms) ? nullptr : &*found;
}

void enter_segment(Workbench& bench, SegmentId id) {
    bench.session.segment = id;
    bench.window.set_menu(room_of(id).menu, room_of(id).title);
    if (room_of(id).run != nullptr) room_of(id).run(bench);
}

void send_command(Workbench& bench, const Room& room, std::string_view word, const Form* form) {
    if (!room.commands().performs(CommandKeyword(word))) {
        not_implemented(bench);
        return;
    }
    if (form != nullptr && !run_form(*form, room.command_request(bench), bench.session.units, bench.reporter)) return;
    bench.session.word(room.id) = word;
    room.run(bench);
}

FirDesk fir_desk(Workbench& bench) { return {desk(bench), bench.fir_request, bench.fir, bench.fir_command}; }

PassiveDesk passive_desk(Workbench& bench) {
    return {desk(bench), bench.passive, bench.passive_state, bench.passive_command};
}

LadderDesk ladder_desk(Workbench& bench) {
    return {.session = bench.session, .design = bench.filter, .work = bench.ladder, .reporter = bench.reporter};
}

void not_implemented(Workbench& bench) { bench.reporter.message("Command not implemented", "Default"); }

}  // namespace kavrel
