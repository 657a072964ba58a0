// The manual's pictures: script/screenshots runs this on a screen of its own, with the folder to put them in.
#include <QTableWidget>

#include "desktop/help_viewer.h"
#include "desktop/plot_view.h"
#include "desktop/plot_viewer.h"
#include "tests/desktop/script_hands.h"

namespace kavrel {
namespace {

const char* const low_pass = R"(
choose File > Global units
  set "Frequency unit" KHz
ok
choose Design > Filter > New
  set filter_type "Low pass"
  set upper_passband 4
  set passband_type "Equal ripple"
  set band_edge_loss 0.1
  set stopband_type "Equal min"
  set upper_stopband 5
  set upper_stop_loss 50
  set r1 600
  set r2 600
ok
ok
choose View > Frequency
  set start 0
  set end 8
  set increment 0.02
ok
answer no
choose View > Plot > Frequency
  set y1 Loss
  set y2 Delay
ok
choose File > Save
file lowpass.qfp
)";

const char* const fir_low_pass = R"(
choose Design > FIR Filter > New
  set filter_length 61
  button Details
    row 0   8   1  0.1
    row 10  24  0  60
  ok
ok
choose View > Show
ok
)";

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
    ScriptHands(run, low_pass).work();
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

    ScriptHands(run, fir_low_pass).work();
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
