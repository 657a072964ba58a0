// Boxes, selectors, printing, long work.
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <algorithm>
#include <chrono>

#include "desktop/file_selector.h"
#include "desktop/message_boxes.h"
#include "desktop/window_fit.h"
#include "tests/desktop/script_hands.h"

namespace kavrel {
namespace {

TEST(Boxes, CaptionsSetTheIcons) {
    EXPECT_EQ(icon_of("Error"), QMessageBox::Critical);
    EXPECT_EQ(icon_of("Default"), QMessageBox::Critical);
    EXPECT_EQ(icon_of("Plot data Error"), QMessageBox::Critical);
    EXPECT_EQ(icon_of("Warning"), QMessageBox::Warning);
    EXPECT_EQ(icon_of("Question"), QMessageBox::Question);
    EXPECT_EQ(icon_of("Advice"), QMessageBox::Information);
    EXPECT_EQ(icon_of("Success"), QMessageBox::Information);
}

TEST(Boxes, AnswersByKeys) {
    DesktopRun run;
    const auto ask = [&](std::string_view caption, Buttons buttons, int key, Qt::KeyboardModifiers modifiers = {}) {
        run.hands.then([=](QDialog& box) {
            EXPECT_EQ(utf8_text(box.windowTitle()), caption);
            EXPECT_EQ(static_cast<QMessageBox&>(box).text(), "<b>Tabulate?");
            press(box, key, modifiers);
        });
        return run.window.message("<b>Tabulate?", caption, buttons);
    };
    EXPECT_EQ(ask("Success", Buttons::ok, Qt::Key_Return), Answer::ok);
    EXPECT_EQ(ask("Error", Buttons::ok, Qt::Key_Escape), Answer::ok);
    EXPECT_EQ(ask("Question", Buttons::yes_no, Qt::Key_Return), Answer::yes);
    EXPECT_EQ(ask("Warning", Buttons::yes_no, Qt::Key_Return), Answer::no) << "a hasty Enter overwrites nothing";
    EXPECT_EQ(ask("Warning", Buttons::yes_no, Qt::Key_Y, Qt::AltModifier), Answer::yes);
    EXPECT_EQ(ask("Question", Buttons::yes_no, Qt::Key_Escape), Answer::no);
}

TEST(Boxes, CaptionsAndTitlesFitTheirWindows) {
    DesktopRun run;
    for (const auto buttons : {Buttons::ok, Buttons::yes_no}) {
        run.hands.then([](QDialog& box) {
            EXPECT_GE(box.width(), title_bar_width(box));
            box.accept();
        });
        static_cast<void>(run.window.message("!", "Plot data Error", buttons));
    }
    for (const int id : {143, 166, 1031}) {
        run.hands.then([](QDialog& form) {
            EXPECT_GE(form.width(), std::min(title_bar_width(form), most_of_screen(form).width()));
            form.reject();
        });
        run.program->send(id);
    }
}

TEST(Boxes, ChoicesAreButtons) {
    DesktopRun run;
    constexpr std::string_view labels[] = {"Series", "Shunt", "Skip"};
    const ChoiceBox box{.text = "Which branch?", .caption = "Question", .choices = labels};
    const auto choose = [&](int key, Qt::KeyboardModifiers modifiers) {
        run.hands.then([=](QDialog& dialog) { press(dialog, key, modifiers); });
        return run.window.choose(box);
    };
    EXPECT_EQ(choose(Qt::Key_S, Qt::AltModifier), 1);
    EXPECT_EQ(choose(Qt::Key_H, Qt::AltModifier), 2) << "S is taken";
    EXPECT_EQ(choose(Qt::Key_K, Qt::AltModifier), 3);
    EXPECT_EQ(choose(Qt::Key_C, Qt::AltModifier), 0);
    EXPECT_EQ(choose(Qt::Key_Escape, Qt::NoModifier), 0);
}

TEST(FileSelector, CaptionsFiltersAndNames) {
    DesktopRun run;
    std::filesystem::create_directory("sub");
    write_text("old.qfp", "");
    write_text("sub/other.qfp", "");
    const FileQuery open{
        .caption = "Recall a saved filter file", .description = "Storage files", .filter = "*.qfp;*.qfa"};
    const auto select = [&](const FileQuery& query, const QString& name) {
        run.hands.then([=](QDialog& dialog) {
            auto& selector = static_cast<QFileDialog&>(dialog);
            EXPECT_EQ(utf8_text(selector.windowTitle()), query.caption);
            EXPECT_EQ(selector.nameFilters().first(), selector_filter(query));
            name.isEmpty() ? selector.reject() : pick_file(selector, name);
        });
        return run.window.choose_file(query);
    };
    EXPECT_EQ(selector_filter(open), "Storage files (*.qfp *.qfa)");
    EXPECT_EQ(select(open, "old.qfp"), "old.qfp");
    EXPECT_EQ(select(open, "sub/other.qfp"), "sub/other.qfp");
    EXPECT_EQ(select(open, ""), "");
    const FileQuery save{
        .caption = "Select a file name", .description = "Text files", .filter = "*.txt", .to_write = true};
    EXPECT_EQ(select(save, "new"), "new.txt");
    EXPECT_EQ(select(save, "/tmp/elsewhere.dat"), "/tmp/elsewhere.dat");
}

TEST(Printing, PagesKeepTheirLinesAndGoToTheFileNamed) {
    DesktopRun run;
    run.window.printing().use_pdf("pages");
    write_text("pages-2.pdf", "of another day");
    const std::vector<std::string> lines{" ┌──┐", " │R1│ 50.0", " └──┘"};
    const PrintPage page{.job = "Printing", .quality = 1024, .font = "MS LineDraw", .lines = lines};
    EXPECT_EQ(run.window.print_page(page), PrintOutcome::printed);
    EXPECT_EQ(run.window.print_page(page), PrintOutcome::printed);
    EXPECT_EQ(read_text("pages-2.pdf"), "of another day");
    for (const char* name : {"pages.pdf", "pages-3.pdf"}) {
        const std::string pdf = read_text(name);
        EXPECT_TRUE(pdf.starts_with("%PDF")) << name;
        EXPECT_NE(pdf.find("DejaVuSansMono"), std::string::npos) << "the font is embedded";
    }
    run.hands.then([](QDialog& dialog) {
        dialog.findChild<QLineEdit*>("filename")->setText(QDir::current().filePath("pages.v2"));
        dialog.accept();
    });
    EXPECT_EQ(DesktopWindow({}).print_page(page), PrintOutcome::printed);
    EXPECT_TRUE(read_text("pages.v2.pdf").starts_with("%PDF")) << "no other file's name";
    run.hands.then([](QDialog& dialog) { dialog.reject(); });
    EXPECT_EQ(DesktopWindow({}).print_plot({}), PrintOutcome::cancelled);
    run.hands.then([](QDialog& dialog) { dialog.reject(); });
    EXPECT_EQ(DesktopWindow({}).print_page(page), PrintOutcome::cancelled);
    run.window.printing().use_pdf("missing/pages");
    EXPECT_EQ(run.window.print_page(page), PrintOutcome::failed);
}

TEST(LongWork, LinesAppearAsTheyAreWrittenAndTheUserCanStop) {
    DesktopRun run;
    auto* stop = run.window.main().findChild<QPushButton*>("stop");
    auto* bar = run.window.main().findChild<QProgressBar*>();
    run.window.begin_work();
    int done = 0;
    bool shown = false;
    const auto started = std::chrono::steady_clock::now();
    while (run.window.progress("Searching", done, 1000000)) {
        ++done;
        if (std::chrono::steady_clock::now() - started > std::chrono::seconds(30)) break;
        if (!stop->isVisible()) continue;
        shown = true;
        EXPECT_EQ(bar->maximum(), 1000000);
        EXPECT_FALSE(run.window.main().menuBar()->isEnabled()) << "one event at a time";
        QTimer::singleShot(0, stop, [stop] { stop->click(); });
    }
    EXPECT_TRUE(shown);
    EXPECT_TRUE(QTest::qWaitFor([&] {
        static_cast<void>(run.window.progress("Searching", 7, 0));
        const auto labels = run.window.main().findChildren<QLabel*>();
        return std::ranges::any_of(labels, [](QLabel* label) { return label->text() == "Searching, step 7"; });
    }));
    EXPECT_TRUE(stop->isVisible());
    run.hands.then([&](QDialog& box) {
        EXPECT_FALSE(stop->isVisible()) << "the work waits for an answer";
        box.accept();
    });
    static_cast<void>(run.window.message("Which one?", "Question", Buttons::ok));
    run.window.end_work();
    EXPECT_FALSE(stop->isVisible());
    EXPECT_TRUE(run.window.main().menuBar()->isEnabled());
    run.window.begin_work();
    EXPECT_TRUE(run.window.progress("Searching", 1, 0)) << "what was pressed stops no later work";
}

TEST(LongWork, AStoppedDesignLeavesTheStateAsItWas) {
    DesktopRun run;
    ScriptHands(run, read_text(EXAMPLES "/fir_five_bands.kav")).work();
    const std::string before = run.report();
    run.hands.then([](QDialog& unsaved) { press(unsaved, Qt::Key_Y, Qt::AltModifier); })
        .then([&](QDialog& form) {
            form.accept();
            emit run.window.main().stop_wanted();
        })
        .then([](QDialog& form) {
            EXPECT_EQ(form.findChild<QLabel*>("refusal")->text(), "Design discontinued: the report says why");
            form.reject();
        });
    run.program->send(1031);
    EXPECT_EQ(run.bench().design, DesignOutcome::discontinued);
    EXPECT_EQ(run.bench().session.segment, SegmentId::fir);
    EXPECT_EQ(run.report(), before + " **** design discontinued ****\n");
}

TEST(Start, OfAFileThatCannotBeOpenedABoxComesUpAndTheWindowIsUsable) {
    for (const auto& [name, bytes] :
         {std::pair{"damaged.qfp", "no records"}, {"missing.qff", ""}, {"strange.qfz", "?"}}) {
        DesktopRun run(false);
        if (*bytes != '\0') write_text(name, bytes);
        int boxes = 0;
        run.hands.always([&](QDialog& box) {
            ++boxes;
            EXPECT_NE(box.windowTitle(), "Select preferred units");
            run.program->send(143);  // that form does not open: the start goes on
            box.accept();
        });
        run.start(name);
        EXPECT_GT(boxes, 0);
        EXPECT_TRUE(run.window.main().isVisible());
        EXPECT_NE(run.report().find(name), std::string::npos);
        run.hands.then([&](QDialog& form) {
            EXPECT_EQ(form.windowTitle(), "Select preferred units");
            form.reject();
        });
        run.program->send(143);
        EXPECT_TRUE(run.hands.are_done());
    }
}

TEST(Start, AFolderThatCannotBeWrittenToIsReportedWhenItMatters) {
    DesktopRun run(false);
    std::filesystem::current_path("/proc");  // not even by root
    run.start({});
    EXPECT_TRUE(run.window.main().isVisible());
    run.hands.then([](QDialog& form) { form.accept(); }).then([](QDialog& form) {
        EXPECT_EQ(form.findChild<QLabel*>("refusal")->text(), "File could not be written");
        form.reject();
    });
    run.program->send(143);
    EXPECT_TRUE(run.hands.are_done());
}

}  // namespace
}  // namespace kavrel
