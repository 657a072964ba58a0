// The windows as they were looked at and approved: each part that is seen, where it is and what it shows.
#include <QAction>
#include <QFontInfo>
#include <QLineEdit>

#include <fmt/format.h>

#include "desktop/find_bar.h"
#include "desktop/help_viewer.h"
#include "desktop/number_table.h"
#include "desktop/plot_view.h"
#include "desktop/plot_viewer.h"
#include "tests/desktop/script_hands.h"
#include "tests/support/golden.h"

namespace kavrel {
namespace {

// Those that a part may have, each with what is not worth a word.
const char* const traits =
    "enabled=true text title statusTip toolTip shortcut placeholderText checked=false checkable=false wordWrap=false "
    "alternatingRowColors=false default=false clearButtonEnabled=false readOnly=false movable=true textVisible=true "
    "highlightSections=false spacing=0 margin=0 cursorWidth=1 focusPolicy=NoFocus frameShape=NoFrame "
    "alignment=AlignLeading|AlignVCenter textFormat=AutoText editTriggers iconSize=16x16 minimumSize lineWrapMode "
    "horizontalScrollBarPolicy";

std::string traits_of(const QObject& part) {
    QString all;
    for (const QString& row : QString(traits).split(' ')) {
        const QString trait = row.section('=', 0, 0);
        const QVariant value = part.property(trait.toLatin1());
        const QSize size = value.toSize();
        const QString shown = value.typeId() != QMetaType::QSize ? value.toString().simplified()
                              : size.isNull()                    ? QString()
                                              : QString("%1x%2").arg(size.width()).arg(size.height());
        if (!shown.isEmpty() && shown != row.section('=', 1)) all += ' ' + trait + '=' + shown;
    }
    return utf8_text(all) + '\n';
}

std::string looks_of(const QWidget& window) {
    std::string all = fmt::format("{} {}x{}\n", utf8_text(window.objectName()), window.width(), window.height());
    for (const auto* part : window.findChildren<QWidget*>()) {
        if (!part->isVisible() || part->isWindow()) continue;
        const QPoint at = part->mapTo(&window, QPoint());
        all += fmt::format("  {} {},{} {}x{}", part->metaObject()->className(), at.x(), at.y(), part->width(),
                           part->height());
        all += traits_of(*part);
    }
    for (const auto* action : window.findChildren<QAction*>()) {
        if (!action->data().isValid() && action->menu() == nullptr) all += "  action" + traits_of(*action);
    }
    return all;
}

TEST(Windows, LookAsTheyDid) {
    if (QApplication::platformName() != "offscreen" || QFontInfo(QFont()).family() != "DejaVu Sans" ||
        QLatin1String(qVersion()).left(3) != QLatin1String("6.4"))
        GTEST_SKIP() << "of Qt 6.4 with DejaVu Sans, without a screen";
    QSettings("Kavrel", "kavrel").clear();
    DesktopRun run;
    std::string all;
    const auto look = [&](QWidget& window) {
        window.activateWindow();
        EXPECT_TRUE(wait_for(window));
        QApplication::processEvents();
        all += looks_of(window);
    };
    ScriptHands(run, read_text(TEST_DATA "/desktop/low_pass.kav")).work();
    run.window.main().activateWindow();
    ASSERT_TRUE(wait_for(run.window.main()));
    press(run.window.main(), Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
    look(run.window.main());
    PlotView& plot = run.window.plot().view();
    for (const Shade shade : {Shade::light, Shade::dark}) {
        run.window.plot().set_shade(shade);
        look(run.window.plot());
        plot.step_cursor(100);
        plot.mark_here();
        plot.step_cursor(60);
        const QImage seen = plot.grab().toImage();
        all += in_letters(seen.scaled(120, 60, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    }
    HelpViewer& help = run.window.help();
    help.show_place({.page = "fir_design", .heading = "the form"});
    help.findChild<QLineEdit*>("help_words")->setText("wheel");
    look(help);
    const auto look_and_leave = [&](QDialog& form) {
        look(form);
        form.reject();
    };
    for (const int id : {166, 1031, 143}) {
        run.hands.then(look_and_leave);
        run.program->send(id);
    }
    run.hands.then([](QDialog& form) { click(form, "Details"), form.reject(); }).then(look_and_leave);
    run.program->send(1031);
    run.hands.then(look_and_leave);
    static_cast<void>(run.window.message("Which one?", "Question", Buttons::yes_no));
    expect_golden(TEST_DATA "/desktop/looks.txt", all);
}

}  // namespace
}  // namespace kavrel
