#include "workbench/start_up.h"

#include <string>

#include "shell/fixed_text.h"
#include "shell/known_files.h"
#include "shell/settings.h"
#include "workbench/events.h"
#include "workbench/menus.h"
#include "workbench/rooms.h"

namespace kavrel {

namespace {

[[nodiscard]] SettingsStatus take_settings(Session& session);
std::string_view folder_of(std::string_view path);

}  // namespace

void main_program(Workbench& bench, std::string_view command_line, std::string_view executable) {
    Session& session = bench.session;
    session.command_line.assign(command_line);
    bench.temporaries.take_folder();
    session.program_directory.assign(folder_of(executable));
    const SettingsStatus settings = take_settings(session);
    bench.window.set_toolbar(main_toolbar);
    enter_segment(bench, SegmentId::main);
    if (settings == SettingsStatus::damaged) {
        const std::string trouble =
            complaint_of(read_whole(settings_file).fault, "Settings file q_qxz is damaged", "Settings file q_qxz");
        bench.reporter.message(trouble + ", units are Hz, H, F, sec", "Warning");
    }
    const std::string argument(trim(command_line));  // whole, also where the session's copy is cut
    if (names_stored_filter(argument)) {
        session.filter_file.assign(argument);
        session.recall_from_command_line = true;
        dispatch_event(bench, recall_filter_event);
        bench.reporter.report_line(argument);
    }
    session.command_line = {};
}

bool names_stored_filter(std::string_view name) { return name.size() > 4 && name.substr(name.size() - 4, 3) == ".qf"; }

std::vector<std::string> manual_folders(std::string_view executable) {
    const std::string folder(folder_of(executable));
    return {folder + "../share/doc/kavrel", folder + "../../docs"};
}

namespace {

// The units of the settings file, which is made when there is none.
SettingsStatus take_settings(Session& session) {
    if (!session.keeps_settings) return SettingsStatus::read;
    FileMark mark;
    const SettingsStatus status = read_settings(settings_file, session.units, &mark);
    if (status != SettingsStatus::missing) {
        note_known(session, settings_file, mark);
    } else if (const auto written = write_settings(settings_file, session.units)) {
        note_written(session, settings_file, *written);
    }
    // A folder that cannot be written to is no reason not to start: the units form reports when its choice cannot be
    // kept.
    return status;
}

std::string_view folder_of(std::string_view path) { return path.substr(0, path.find_last_of('/') + 1); }

}  // namespace

}  // namespace kavrel
