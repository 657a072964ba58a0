// Menus: every item of every table by pointer, by its access keys and by its accelerator.
#include <QLabel>
#include <QMenuBar>
#include <QPainter>
#include <QStatusBar>
#include <QToolBar>
#include <QToolTip>
#include <algorithm>
#include <map>
#include <set>

#include "desktop/icons.h"
#include "desktop/mnemonics.h"
#include "shell/analysis_plot.h"
#include "tests/desktop/script_hands.h"
#include "tests/support/golden.h"
#include "workbench/events.h"
#include "workbench/state_json.h"

namespace kavrel {
namespace {

class Menus : public testing::TestWithParam<std::size_t> {
protected:
    Menus() {
        QObject::connect(&window, &MainWindow::item_chosen, &window, [this](int id) { chosen.push_back(id); });
        window.set_menu(items, "Kavrel");
        window.show();
        EXPECT_TRUE(wait_for(window));
    }

    std::span<const MenuItem> items = room_of(static_cast<SegmentId>(GetParam())).menu;
    WindowSettings settings;
    MainWindow window{settings};
    std::vector<int> chosen;
};

TEST(AccessKeys, AreFirstLettersOfWordsThenAnyUntilAllAreGone) {
    Mnemonics keys("x");
    for (const char* marked : {"&Save as x", "Save &as x", "Sa&ve as x", "Sav&e as x", "Save as x"}) {
        EXPECT_EQ(utf8_text(with_mnemonic("Save as x", keys.take("Save as x"))), marked);
    }
}

// As they were looked at and approved.
TEST(Icons, LookAsTheyDid) {
    std::string all;
    const auto add = [&](const QIcon& icon, int pixels) {
        QImage paper(pixels, pixels, QImage::Format_RGB32);
        paper.fill(Qt::white);
        QPainter(&paper).drawPixmap(0, 0, icon.pixmap(pixels));
        all += in_letters(paper);
    };
    for (const int id : {129, 130, 166, 143, 0}) add(toolbar_icon(id, Qt::black), 24);
    add(program_icon(), 32);
    expect_golden(TEST_DATA "/desktop/icons.txt", all);
}

TEST_P(Menus, EveryItemIsWhereTheTableSaysAndSendsItsEvent) {
    for (const MenuItem& item : items) {
        QAction* action = action_of(window.menuBar()->actions(), item.id);
        ASSERT_NE(action, nullptr) << item.path;
        std::string path = utf8_text(action->text());
        for (auto* menu = qobject_cast<QMenu*>(action->parent()); menu != nullptr;
             menu = qobject_cast<QMenu*>(menu->parentWidget())) {
            path = utf8_text(menu->title()) + " > " + path;
        }
        EXPECT_EQ(path, item.path);
        EXPECT_EQ(utf8_text(action->statusTip()), item.hint);
        chosen.clear();
        action->trigger();
        EXPECT_EQ(chosen, std::vector<int>{item.id}) << item.path;
    }
}

TEST_P(Menus, AcceleratorsSendTheFirstItemThatHasThem) {
    for (const MenuItem& item : items) {
        if (item.accelerator.empty()) continue;
        const auto keys = QKeySequence::fromString(qt_text(item.accelerator))[0];
        chosen.clear();
        press(window, keys.key(), keys.keyboardModifiers());
        const int owner = accelerator_owner(items, item.accelerator)->id;
        EXPECT_EQ(chosen, std::vector<int>{owner}) << item.path << ' ' << item.accelerator;
    }
}

char key_of(std::string_view label) {
    const auto at = label.find('&');
    return at == std::string_view::npos ? '\0' : static_cast<char>(std::toupper(label[at + 1]));
}

TEST_P(Menus, AccessKeysLeadToTheItemThatAloneHasThem) {
    std::map<std::string, std::set<std::string>> places;  // keys from the menu bar on to the labels that they lead to
    const auto lead = [&](const MenuItem& item, const auto& visit) {
        std::string keys, labels;
        for (int level = 0; level < path_depth(item.path); ++level) {
            keys += key_of(path_label(item.path, level));
            labels += path_label(item.path, level);
            visit(keys, labels);
        }
    };
    for (const MenuItem& item : items) lead(item, [&](auto& keys, auto& labels) { places[keys].insert(labels); });
    std::size_t walked = 0;
    for (const MenuItem& item : items) {
        bool alone = accelerator_owner(items, std::string("alt+") + key_of(item.path)) == nullptr;
        lead(item, [&](auto& keys, auto&) { alone = alone && keys.back() != '\0' && places[keys].size() == 1; });
        if (!alone) continue;
        chosen.clear();
        press(window, key_of(item.path), Qt::AltModifier);
        if (&item == &items.front()) {
            EXPECT_EQ(utf8_text(window.statusBar()->currentMessage()), item.hint) << "under the cursor";
        }
        for (int level = 1; level < path_depth(item.path); ++level) {
            QWidget* menu = QApplication::activePopupWidget();
            ASSERT_NE(menu, nullptr) << item.path;
            press(*menu, key_of(path_label(item.path, level)));
        }
        EXPECT_EQ(chosen, std::vector<int>{item.id}) << item.path;
        ++walked;
    }
    EXPECT_GT(walked, items.size() / 2);
}

INSTANTIATE_TEST_SUITE_P(All, Menus, testing::Range(std::size_t{0}, segment_count), [](const auto& test) {
    return std::string(room_of(static_cast<SegmentId>(test.param)).name);
});

TEST(MainWindow, OwnKeysYieldToTheMenus) {
    WindowSettings settings;
    MainWindow window(settings);
    const auto keys_of = [&](const QString& text) {
        for (QAction* menu : window.menuBar()->actions()) {
            if (menu->menu() == nullptr) continue;
            for (QAction* action : menu->menu()->actions()) {
                if (action->text().remove('&') == text) return action->shortcuts();
            }
        }
        return QList<QKeySequence>{};
    };
    window.set_menu(main_menu, "Kavrel");
    EXPECT_EQ(keys_of("Find...").size(), 2);
    window.set_menu(fir_menu, "Kavrel");
    EXPECT_EQ(keys_of("Find..."), QList<QKeySequence>{QKeySequence("Ctrl+Shift+F")}) << "Ctrl+F is the analysis";
    EXPECT_EQ(window.menuBar()->actions().size(), 8) << "the former menus are gone, the window's own is there once";
}

TEST(MainWindow, ToolbarSendsItsItemsAndCarriesItsTips) {
    DesktopRun run;
    auto* toolbar = run.window.main().findChild<QToolBar*>();
    ASSERT_EQ(toolbar->actions().size(), 6);
    EXPECT_EQ(toolbar->actions()[2]->toolTip(), "About Kavrel " KAVREL_VERSION);
    run.hands.then([](QDialog& box) {
        EXPECT_EQ(box.windowTitle(), "Advice");
        box.accept();
    });
    toolbar->actions()[2]->trigger();
    EXPECT_TRUE(run.hands.are_done());
}

TEST(MainWindow, TitleStatusAndExit) {
    DesktopRun run;
    EXPECT_EQ(run.window.main().windowTitle(), "Kavrel - MAIN MENU");
    enter_segment(run.bench(), SegmentId::fir);
    EXPECT_EQ(run.window.main().windowTitle(), "Kavrel - FIR DIGITAL MENU");
    const auto labels = run.window.main().statusBar()->findChildren<QLabel*>();
    EXPECT_TRUE(std::ranges::any_of(labels, [](QLabel* one) { return one->text() == "FIR DIGITAL MENU"; }));
    run.window.main().close();
    EXPECT_FALSE(run.window.main().isVisible()) << "nothing is unsaved, nothing is asked";
    EXPECT_TRUE(run.bench().session.stopped);
}

// Answers the question about what is not saved, and sees that it names it.
Hands::Step unsaved(const char* text, int key) {
    return [=](QDialog& box) {
        EXPECT_EQ(box.windowTitle(), "Warning");
        EXPECT_STREQ(static_cast<QMessageBox&>(box).text().toUtf8(), text);
        press(box, key, Qt::AltModifier);
    };
}

TEST(MainWindow, WhatIsNotSavedIsNotGivenUpUnasked) {
    DesktopRun run;
    ScriptHands(run, read_text(TEST_DATA "/desktop/low_pass.kav")).work();
    const auto cancel = [](QDialog& form) { form.reject(); };
    run.hands.always({});
    run.hands.then(cancel);
    run.program->send(524);
    EXPECT_TRUE(run.hands.are_done()) << "it has just been saved";
    run.hands.then([](QDialog& form) {
        ScriptHands::set(form, "title", "Another one");
        form.accept();
    });
    run.program->send(340);
    run.hands.then(
        unsaved("The circuit of lowpass.qfp is not saved.\nDo you want to go on without saving it?", Qt::Key_N));
    run.program->send(166);
    run.hands.then([](QDialog& box) { box.accept(); });
    run.program->send(329);
    const Circuit saved = run.bench().passive.circuit;
    const std::string title = run.bench().session.TITLE.text();
    run.hands.then([](QDialog& form) {
        ScriptHands::set(form, "branch", "3");
        ScriptHands::set(form, "value1", "50");
        form.accept();
    });
    run.program->send(354);
    EXPECT_NE(run.bench().passive.circuit, saved);
    run.hands.then(
        unsaved("The circuit of lowpass.qfp is not saved.\nDo you want to go on without saving it?", Qt::Key_N));
    run.program->send(166);
    run.hands.then(
        unsaved("The circuit of lowpass.qfp is not saved.\nDo you want to leave without saving it?", Qt::Key_N));
    run.window.main().close();
    EXPECT_TRUE(run.window.main().isVisible());
    run.program->send(477);
    EXPECT_EQ(run.bench().passive.circuit, saved) << "by undo it is what was saved";
    const auto accept = [](QDialog& form) { form.accept(); };
    run.hands
        .then([](QDialog& form) {
            ScriptHands::set(form, "upper_stop_loss", "30");
            form.accept();
        })
        .then(accept);
    run.program->send(524);
    EXPECT_NE(run.bench().passive.circuit, saved);
    run.program->send(477);
    EXPECT_EQ(run.bench().passive.circuit, saved) << "a design is undone";
    EXPECT_EQ(run.bench().session.TITLE.text(), title);
    run.program->send(517);
    run.hands.then(
        unsaved("The circuit <New Filter> is not saved.\nDo you want to leave without saving it?", Qt::Key_Y));
    run.program->send(335);
    EXPECT_TRUE(run.bench().session.stopped);
    EXPECT_TRUE(run.hands.are_done());
}

TEST(MainWindow, ItemsThatCannotActAreGreyWithTheReason) {
    int grey = 0;
    for (const char* script :
         {"", EXAMPLES "/lowpass.kav", EXAMPLES "/typed_circuit.kav", EXAMPLES "/fir_lowpass.kav"}) {
        DesktopRun run;
        if (*script != '\0') ScriptHands(run, read_text(script)).work();
        QMenuBar& bar = *run.window.main().menuBar();
        for (const QAction* action : items_of(bar)) {
            if (!action->data().isValid()) continue;
            const QString why = qt_text(hindrance(run.bench(), action->data().toInt()));
            EXPECT_EQ(action->isEnabled(), why.isEmpty()) << utf8_text(action->text());
            if (action->isEnabled()) continue;
            EXPECT_EQ(action->toolTip(), why);
            auto* menu = qobject_cast<QMenu*>(action->parent());
            menu->popup({0, 0});
            const QPoint at = menu->actionGeometry(const_cast<QAction*>(action)).center();
            QHelpEvent help(QEvent::ToolTip, at, menu->mapToGlobal(at));
            QApplication::sendEvent(menu, &help);
            EXPECT_EQ(QToolTip::text(), why);
            menu->close();
            ++grey;
        }
        // Designs and analyses begin in every work area.
        for (const int id : {166, 167, 1031, 149}) EXPECT_NE(action_of(bar.actions(), id), nullptr) << script;
        EXPECT_TRUE(wait_for(run.window.main()));
        press(run.window.main(), Qt::Key_F10);
        ASSERT_NE(QApplication::activePopupWidget(), nullptr);
        press(*QApplication::activePopupWidget(), Qt::Key_Escape);
    }
    EXPECT_GT(grey, 40);
}

TEST(MainWindow, ResultsAndStateAreWrittenAndLinesHaveHeads) {
    DesktopRun run;
    ScriptHands(run, read_text(EXAMPLES "/lowpass.kav")).work();
    run.hands.always({});
    const auto write = [&](const char* item, const char* name) {
        run.hands.then([=](QDialog& selector) { pick_file(selector, name); });
        for (QAction* action : items_of(*run.window.main().menuBar())) {
            if (action->text().remove('&') == item) action->trigger();
        }
        EXPECT_TRUE(run.hands.are_done()) << item;
        return read_text(name);
    };
    EXPECT_EQ(write("Results as CSV...", "results.csv"), write_table_csv(run.bench().results));
    EXPECT_EQ(write("State as JSON...", "state.json"), state_json(run.bench()));
    const QString shown = run.window.main().report().toPlainText();
    EXPECT_TRUE(shown.startsWith("Design > Filter > New\n")) << "the command that made the lines";
    EXPECT_EQ(run.report().find("Design > Filter"), std::string::npos) << "the report has none";
}

TEST(MainWindow, FitsTheScreenWhateverWasKept) {
    WindowSettings settings;
    QWidget large;
    large.setGeometry(500, 400, 3000, 2000);
    settings.keep("large", large);
    QWidget window;
    EXPECT_TRUE(settings.restore("large", window));
    EXPECT_TRUE(window.screen()->availableGeometry().contains(window.geometry()));
}

TEST(MainWindow, ExitOfTheMainMenuAsksNothing) {
    DesktopRun run;
    action_of(run.window.main().menuBar()->actions(), close_window_event)->trigger();
    EXPECT_FALSE(run.window.main().isVisible());
}

}  // namespace
}  // namespace kavrel
