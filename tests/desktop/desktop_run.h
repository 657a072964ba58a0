// The desktop program in this process, in a folder of its own.
#pragma once

#include <memory>

#include "desktop/form_dialog.h"
#include "desktop/program.h"
#include "desktop/report_view.h"
#include "desktop/text.h"
#include "tests/desktop/hands.h"
#include "tests/support/scratch_folder.h"
#include "workbench/all_forms.h"
#include "workbench/menus.h"
#include "workbench/rooms.h"

namespace kavrel {

inline constexpr const char* fixed_date = "2026-01-01";

struct DesktopRun {
    ScratchFolder folder;
    DesktopWindow window{{TEST_DATA "/../../docs"}};
    std::unique_ptr<Program> program = std::make_unique<Program>(window);
    Hands hands;

    explicit DesktopRun(bool started = true) {
        window.set_date(fixed_date);
        if (started) start({});
    }

    void start(const std::string& argument) {
        program->start(argument, "/usr/bin/kavrel");
        window.main().activateWindow();
        EXPECT_TRUE(wait_for(window.main()));
        QApplication::processEvents();
    }

    [[nodiscard]] std::string report() { return utf8_text(window.main().report().report_text()); }
    [[nodiscard]] Workbench& bench() { return program->bench(); }
};

// A form on the screen, over its record of the run.
struct FormRun : DesktopRun {
    WindowSettings settings;
    std::unique_ptr<FormSheet> sheet;
    std::unique_ptr<FormDialog> dialog;

    void take(const Form& form) {
        dialog.reset();
        sheet = std::make_unique<FormSheet>(form, record_of(form, bench()), bench().session.units, bench().reporter);
    }
    void open() {
        dialog = std::make_unique<FormDialog>(*sheet, settings, &window.main());
        dialog->show();
        EXPECT_TRUE(wait_for(*dialog));
    }
    void open(const Form& form) {
        take(form);
        open();
    }
};

// The action behind an item of the main window's menus, by its id.
inline QAction* action_of(const QList<QAction*>& actions, int id) {
    for (QAction* action : actions) {
        if (action->menu() == nullptr && action->data().isValid() && action->data().toInt() == id) return action;
        QAction* inside = action->menu() == nullptr ? nullptr : action_of(action->menu()->actions(), id);
        if (inside != nullptr) return inside;
    }
    return nullptr;
}

// A picture in letters, dark to light.
inline std::string in_letters(const QImage& picture) {
    std::string all;
    for (int y = 0; y < picture.height(); ++y, all += '\n')
        for (int x = 0; x < picture.width(); ++x) all += "@#*+-."[qGray(picture.pixel(x, y)) * 6 / 256];
    return all;
}

}  // namespace kavrel
