// The manual: every page opens, every form and item has its page, links and search lead somewhere.
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QScrollBar>
#include <QStatusBar>
#include <QTextBlock>
#include <QTextBrowser>
#include <algorithm>
#include <fstream>

#include "desktop/help_viewer.h"
#include "tests/desktop/desktop_run.h"
#include "workbench/all_forms.h"

namespace kavrel {
namespace {

const std::vector<std::string> docs{TEST_DATA "/../../docs"};

bool has_heading(const QString& page, const QString& heading) {
    const std::string text = read_text(docs.front() + "/" + utf8_text(page) + ".md");
    return text.find("# " + utf8_text(heading) + "\n") != std::string::npos;
}

TEST(Manual, PlacesOfItemsAndFormsAreOnTheirPages) {
    const Manual manual(docs);
    ASSERT_GT(manual.pages().size(), 5U);
    EXPECT_EQ(manual.pages().front().name, "index");
    for (const Form* form : all_forms()) {
        const ManualPlace place = manual.place_of(qt_text(form->name));
        EXPECT_TRUE(has_heading(place.page, place.heading)) << form->name;
    }
    std::ifstream index(docs.front() + "/help_index.txt");
    int headings = 0;
    for (std::string line; std::getline(index, line);) {
        const QStringList words = qt_text(line).split(' ', Qt::SkipEmptyParts);
        if (line.starts_with('#') || words.size() < 2) continue;
        EXPECT_TRUE(manual.has_page(words[1])) << line;
        if (words.size() == 2) continue;
        EXPECT_TRUE(has_heading(words[1], words.mid(2).join(' '))) << line;
        ++headings;
    }
    EXPECT_GT(headings, 0);
    EXPECT_EQ(manual.place_of(135).heading, "DELAY_DESIGN_DLG");
    EXPECT_EQ(manual.place_of(999999).page, "menus_and_forms");
    EXPECT_EQ(Manual({"/nowhere"}).pages().size(), 0U);
}

TEST(Help, OpensFromMenuFormAndKey) {
    DesktopRun run;
    ASSERT_TRUE(wait_for(run.window.main()));
    press(run.window.main(), Qt::Key_F1);
    EXPECT_EQ(run.window.help().shown_page(), "index");
    run.program->send(141);
    EXPECT_EQ(run.window.help().shown_page(), "help");
    run.hands.then([&](QDialog& form) {
        press(form, Qt::Key_F1);
        EXPECT_TRUE(run.window.help().isVisible());
        EXPECT_EQ(run.window.help().shown_page(), "fir_design") << "on the form's own";
        EXPECT_EQ(run.window.help().browser().textCursor().block().text(), "The form");
        press(form, Qt::Key_Escape);
    });
    run.program->send(1031);
    run.window.main().activateWindow();
    ASSERT_TRUE(wait_for(run.window.main()));
    press(run.window.main(), Qt::Key_F, Qt::AltModifier);
    QWidget* menu = QApplication::activePopupWidget();
    ASSERT_NE(menu, nullptr);
    press(*menu, Qt::Key_Down);
    press(*menu, Qt::Key_Down);
    EXPECT_EQ(run.window.main().statusBar()->currentMessage(), "Command not implemented") << "why it is grey";
    press(*menu, Qt::Key_Down);
    press(*menu, Qt::Key_F1);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    EXPECT_EQ(run.window.help().shown_page(), "units_and_files");
}

TEST(Help, UnderscoresOfCodeAreSeen) {
    for (int points = 7; points <= 16; ++points) {
        DesktopRun run;
        QTextBrowser& browser = run.window.help().browser();
        QFont font = browser.font();
        font.setPointSize(points);
        browser.setFont(font);
        run.window.help().show_place({.page = "console", .heading = {}});
        ASSERT_TRUE(wait_for(run.window.help()));
        QTextCursor at = browser.document()->find("set filter_length 61");
        ASSERT_FALSE(at.isNull());
        at.setPosition(at.selectionStart() + 10);  // before the underscore
        browser.setTextCursor(at);
        browser.verticalScrollBar()->setValue(browser.verticalScrollBar()->value() + 100);  // not at the edge
        const QRect cursor = browser.cursorRect(at);
        const QImage page = browser.viewport()->grab().toImage();
        // Below the letters' feet there is nothing but the underscore.
        int darkest = 255;
        for (int y = cursor.top() + cursor.height() * 3 / 4; y <= cursor.bottom(); ++y)
            darkest = std::min(darkest, page.pixelColor(cursor.left() + 4, y).lightness());
        EXPECT_LT(darkest, 200) << points;
    }
}

TEST(Help, SearchListsLinesAndOpensTheirPage) {
    DesktopRun run;
    HelpViewer& help = run.window.help();
    help.show_place({.page = "index", .heading = {}});
    auto* words = help.findChild<QLineEdit*>("help_words");
    auto* list = help.findChild<QListWidget*>();
    const int all = list->count();
    help.show_place({.page = "fir_design", .heading = {}});
    ASSERT_NE(list->currentItem(), nullptr);
    EXPECT_EQ(list->currentItem()->text(), "FIR filters");
    ASSERT_TRUE(wait_for(help));
    help.browser().setFocus();
    press(help, Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(words->hasFocus());
    QTest::keyClicks(words, "hilbert");
    ASSERT_GT(list->count(), 1);
    EXPECT_TRUE(list->item(1)->toolTip().contains("hilbert", Qt::CaseInsensitive));
    emit list->itemClicked(list->item(1));
    EXPECT_TRUE(help.browser().textCursor().selectedText().contains("hilbert", Qt::CaseInsensitive));
    words->setText("wheel");
    press(*words, Qt::Key_Return);
    const QString first = help.browser().textCursor().block().text();
    EXPECT_TRUE(first.contains("wheel", Qt::CaseInsensitive)) << "by keys alone";
    press(*words, Qt::Key_Return);
    EXPECT_NE(help.browser().textCursor().block().text(), first) << "from hit to hit";
    words->setText("xylophone");
    ASSERT_EQ(list->count(), 1);
    EXPECT_EQ(list->item(0)->text(), "Nothing found for \"xylophone\"");
    words->clear();
    EXPECT_EQ(list->count(), all);
    emit list->itemActivated(list->item(0));
    EXPECT_EQ(help.shown_page(), "index");
}

TEST(Help, EveryPageHasATextAndItsLinksLeadToPages) {
    DesktopRun run;
    const Manual manual(docs);
    for (const ManualPage& page : manual.pages()) {
        run.window.help().show_place({.page = page.name, .heading = {}});
        EXPECT_GT(run.window.help().browser().document()->characterCount(), 50) << utf8_text(page.name);
        for (QTextBlock block = run.window.help().browser().document()->begin(); block.isValid();
             block = block.next()) {
            for (auto at = block.begin(); !at.atEnd(); ++at) {
                const QString link = at.fragment().charFormat().anchorHref();
                if (!link.endsWith(".md")) continue;
                EXPECT_TRUE(manual.has_page(link.chopped(3))) << utf8_text(page.name + ": " + link);
            }
        }
    }
}

TEST(Help, PicturesAreNoWiderThanThePage) {
    DesktopRun run;
    HelpViewer& help = run.window.help();
    help.resize(700, 500);
    help.show_place({.page = "desktop", .heading = {}});
    EXPECT_LE(help.browser().document()->size().width(), help.browser().viewport()->width());
}

}  // namespace
}  // namespace kavrel
