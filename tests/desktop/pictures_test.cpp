// The manual's pictures: script/screenshots runs this on a screen of its own, with the folder to put them in.
#include <QTableWidget>

#include "desktop/help_viewer.h"
#include "desktop/plot_view.h"
#include "desktop/plot_viewer.h"
#include "tests/desktop/script_hands.h"

namespace kavrel {
namespace {

class Pictures : public testing::Test {
protected:
    void SetUp() override {
        if (qEnvironmentVariableIsEmpty("KAVREL_PICTURES")) GTEST_SKIP() << "script/screenshots makes the pictures";
        folder_ = qEnvironmentVariable("KAVREL_PICTURES");
    }

    void keep(QWidget& window, const char* name) {
        window.activateWindow();
        EXPECT_TRUE(wait_for(window));
        QTest::qWait(200);
        QImage picture = window.grab().toImage();
        EXPECT_TRUE(picture.save(folder_ + '/' + name + ".png")) << name;
    }

    QString folder_;
};

TEST_F(Pictures, MainWindowFormsPlotAndHelp) {
    DesktopRun run;
    run.window.main().resize(980, 720);
    ScriptHands(run, read_text(TEST_DATA "/desktop/low_pass.kav")).work();
    keep(run.window.main(), "main_window");

    PlotViewer& viewer = run.window.plot();
    viewer.resize(900, 640);
    PlotView& view = viewer.view();
    view.step_cursor(200);
    view.mark_here();
    view.step_cursor(60);
    keep(viewer, "plot");

    run.hands.then([&](QDialog& form) {
        keep(form, "filter_form");
        form.reject();
    });
    run.program->send(166);

    ScriptHands(run, read_text(TEST_DATA "/desktop/fir_low_pass.kav")).work();
    run.hands
        .then([&](QDialog& form) {
            click(form, "Details");
            form.reject();
        })
        .then([&](QDialog& list) {
            auto* table = list.findChild<QTableWidget*>();
            table->setFocus();
            table->setCurrentCell(1, 1);
            keep(list, "list_form");
            list.reject();
        });
    run.program->send(1031);
    run.window.help().resize(980, 720);
    run.window.help().show_place({.page = "fir_design", .heading = "The form"});
    keep(run.window.help(), "help");
}

}  // namespace
}  // namespace kavrel
