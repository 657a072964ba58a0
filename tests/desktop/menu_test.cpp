// Menus: every item of every table by pointer, by its access keys and by its accelerator.
#include <QLabel>
#include <QMenuBar>
#include <QPainter>
#include <QStatusBar>
#include <QToolBar>
#include <algorithm>
#include <map>
#include <set>

#include "desktop/icons.h"
#include "desktop/mnemonics.h"
#include "tests/desktop/desktop_run.h"
#include "tests/support/golden.h"

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
    EXPECT_EQ(toolbar->actions()[2]->toolTip(), "Kavrel for Windows V. 1.70");
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
    run.hands.then([](QDialog& box) {
        EXPECT_EQ(box.windowTitle(), "Warning");
        press(box, Qt::Key_Escape);
    });
    run.window.main().close();
    EXPECT_TRUE(run.window.main().isVisible()) << "not sure";
    run.hands.then([](QDialog& box) { press(box, Qt::Key_Y, Qt::AltModifier); });
    run.window.main().close();
    EXPECT_FALSE(run.window.main().isVisible());
    EXPECT_TRUE(run.bench().session.stopped);
}

TEST(MainWindow, ExitOfTheMainMenuAsksNothing) {
    DesktopRun run;
    action_of(run.window.main().menuBar()->actions(), close_window_event)->trigger();
    EXPECT_FALSE(run.window.main().isVisible());
}

}  // namespace
}  // namespace kavrel
