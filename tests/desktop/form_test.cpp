// Forms: whatever their table says is on the screen, is reached and set by keys, and arrives in the record.
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTableWidget>
#include <algorithm>
#include <bit>
#include <cmath>
#include <random>

#include "desktop/form_dialog.h"
#include "desktop/number_entry.h"
#include "desktop/palettes.h"
#include "desktop/window_fit.h"
#include "shell/number_text.h"
#include "synthesis/synthesis_form.h"
#include "tests/desktop/desktop_run.h"
#include "workbench/all_forms.h"
#include "workbench/filter_form.h"
#include "workbench/fir_form.h"

namespace kavrel {
namespace {

// An immittance can be chosen from all polynomials.
void describe_whole_design(Workbench& bench) {
    SynthesisForm& synthesis = bench.ladder.form;
    synthesis.has_es = synthesis.has_os = synthesis.has_ed = synthesis.has_od = true;
}

// Brings a field on by choices of the form's other fields; false when none of many tries does.
bool turn_on(FormSheet& sheet, std::size_t wanted) {
    std::mt19937 random(20260101);
    for (int tries = 0; tries < 4000 && !sheet.is_on(wanted); ++tries) {
        for (std::size_t i = 0; i < sheet.size(); ++i) {
            const Field& field = sheet.field(i);
            if (i == wanted) continue;
            if (!field.choices.empty()) {
                const auto k = random() % field.choices.size();
                static_cast<void>(sheet.enter(i, std::to_string(field.choices[k].value)));
            } else if (field.kind == FieldKind::real) {
                static_cast<void>(sheet.enter(i, random() % 2 == 0 ? "0" : "120"));
            } else if (field.kind == FieldKind::flag) {
                static_cast<void>(sheet.enter(i, random() % 2 == 0 ? "no" : "yes"));
            }
        }
    }
    return sheet.is_on(wanted);
}

// Goes to a field with the tab key alone; out of a list by its last cell.
bool tab_to(QDialog& dialog, const QWidget& target) {
    for (int i = 0; i < 400; ++i) {
        QWidget* here = QApplication::focusWidget();
        if (here == &target || target.isAncestorOf(here)) return true;
        if (auto* table = qobject_cast<QTableWidget*>(here)) {
            table->setCurrentCell(table->rowCount() - 1, table->columnCount() - 1);
        }
        press(*here, Qt::Key_Tab);
    }
    ADD_FAILURE() << "the tab key stays at " << utf8_text(dialog.focusWidget()->objectName());
    return false;
}

// Sets the field to something it does not hold, with keys; what the form should show of it then.
std::string set_by_keys(QDialog& dialog, FormSheet& sheet, std::size_t i) {
    const Field& field = sheet.field(i);
    auto* widget = dialog.findChild<QWidget*>(qt_text(field.name));
    EXPECT_NE(widget, nullptr) << field.name;
    EXPECT_TRUE(widget->isEnabled()) << field.name;
    EXPECT_TRUE(tab_to(dialog, *widget)) << field.name;
    QWidget* focus = QApplication::focusWidget();
    switch (field.kind) {
        case FieldKind::real: type_over(*focus, "4.7k"); return "4.700000E+03";
        case FieldKind::integer: {
            const int value = sheet.shown(i) == std::to_string(field.high) ? field.low : field.high;
            type_over(*focus, QString::number(value));
            return std::to_string(value);
        }
        case FieldKind::radio:
        case FieldKind::choice: {
            std::vector<const Choice*> open;
            for (const Choice& choice : field.choices) {
                if (sheet.choice_is_on(i, choice.value)) open.push_back(&choice);
            }
            const auto at = std::ranges::find_if(open, [&](auto* choice) { return choice->label == sheet.shown(i); });
            const bool forwards = at == open.end() || at + 1 != open.end();
            press(*focus, forwards ? Qt::Key_Down : Qt::Key_Up);
            if (at == open.end()) return sheet.shown(i);
            return std::string((forwards ? *(at + 1) : *(at - 1))->label);
        }
        case FieldKind::flag: {
            const bool was = sheet.shown(i) == "yes";
            press(*focus, Qt::Key_Space);
            return was ? "no" : "yes";
        }
        case FieldKind::text: type_over(*focus, "A title"); return "A title";
        case FieldKind::list: {
            const int columns = sheet.list(i).columns;
            auto* table = dialog.findChild<QTableWidget*>(qt_text(field.name) + ".table");
            table->setCurrentCell(0, 0);
            QStringList cells;
            for (int column = 0; column < columns; ++column) cells.append(QString::number(column + 2));
            type_cells(*table, cells);
            const ListView list = sheet.list(i);
            for (int column = 1; column <= columns; ++column) EXPECT_EQ(list(1, column), column + 1) << field.name;
            return sheet.shown(i);
        }
        case FieldKind::button:
        case FieldKind::heading: break;
    }
    return sheet.shown(i);
}

TEST(Forms, EveryFieldCanBeSetByKeysAndArrivesInTheRecord) {
    DesktopRun run;
    WindowSettings settings;
    int set = 0;
    describe_whole_design(run.bench());
    for (const Form* form : all_forms()) {
        FormSheet sheet(*form, record_of(*form, run.bench()), run.bench().session.units, run.bench().reporter);
        for (std::size_t i = 0; i < sheet.size(); ++i) {
            const FieldKind kind = sheet.field(i).kind;
            if (kind == FieldKind::heading || kind == FieldKind::button) continue;
            ASSERT_TRUE(turn_on(sheet, i)) << form->name << ' ' << sheet.field(i).name;
            FormDialog dialog(sheet, settings, &run.window.main());
            dialog.show();
            ASSERT_TRUE(wait_for(dialog));
            const std::string expected = set_by_keys(dialog, sheet, i);
            EXPECT_EQ(sheet.shown(i), expected) << form->name << ' ' << sheet.field(i).name;
            ++set;
        }
    }
    EXPECT_GT(set, 50);
}

TEST(Forms, EveryFieldIsLabelledAndReachedByItsAccessKey) {
    DesktopRun run;
    WindowSettings settings;
    describe_whole_design(run.bench());
    for (const Form* form : all_forms()) {
        FormSheet sheet(*form, record_of(*form, run.bench()), run.bench().session.units, run.bench().reporter);
        FormDialog dialog(sheet, settings, &run.window.main());
        dialog.show();
        ASSERT_TRUE(wait_for(dialog));
        QSet<QChar> keys;
        const auto check_key = [&](const QString& text, const std::string& expected) {
            QString plain = text;
            for (qsizetype at = 0; (at = plain.indexOf('&', at)) >= 0;) {
                plain.remove(at, 1);  // a doubled one leaves one
                if (at < plain.size() && plain[at] == '&') {
                    ++at;
                    continue;
                }
                const QChar key = plain[at].toLower();
                EXPECT_FALSE(keys.contains(key)) << form->name << ": two fields have Alt+" << key.toLatin1();
                keys.insert(key);
            }
            EXPECT_EQ(utf8_text(plain), expected) << form->name;
        };
        for (std::size_t i = 0; i < sheet.size(); ++i) {
            const Field& field = sheet.field(i);
            auto* widget = dialog.findChild<QWidget*>(qt_text(field.name));
            if (field.kind == FieldKind::heading) continue;
            ASSERT_NE(widget, nullptr) << field.name;
            EXPECT_EQ(widget->isEnabledTo(&dialog), sheet.is_on(i)) << field.name;
            if (auto* box = qobject_cast<QGroupBox*>(widget)) {
                check_key(box->title(), sheet.label(i));
            } else if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
                check_key(button->text().remove("..."), sheet.label(i));
            } else {
                const auto labels = dialog.findChildren<QLabel*>();
                const auto label = std::ranges::find_if(labels, [&](QLabel* l) { return l->buddy() == widget; });
                ASSERT_NE(label, labels.end()) << field.name;
                check_key((*label)->text(), sheet.label(i));
            }
        }
    }
}

TEST(Forms, RulesTurnFieldsOnAndOffWhileTheUserWorks) {
    DesktopRun run;
    WindowSettings settings;
    FormSheet sheet(DESIGN_FILTER_DLG, &run.bench().filter_request, run.bench().session.units, run.bench().reporter);
    FormDialog dialog(sheet, settings, &run.window.main());
    dialog.show();
    ASSERT_TRUE(wait_for(dialog));
    const auto widget = [&](const char* name) { return dialog.findChild<QWidget*>(name); };
    const auto choose = [&](const char* name) { dialog.findChild<QRadioButton*>(name)->click(); };
    const auto matches_rules = [&] {
        for (std::size_t i = 0; i < sheet.size(); ++i) {
            QWidget* here = widget(std::string(sheet.field(i).name).c_str());
            if (here != nullptr && here->isEnabledTo(&dialog) != sheet.is_on(i)) return false;
            for (const Choice& choice : sheet.field(i).choices) {
                auto* radio =
                    dialog.findChild<QRadioButton*>(qt_text(sheet.field(i).name) + '=' + QString::number(choice.value));
                if (radio->isEnabledTo(here) != sheet.choice_is_on(i, choice.value)) return false;
            }
        }
        return true;
    };
    EXPECT_TRUE(matches_rules());
    EXPECT_FALSE(widget("lower_passband")->isEnabled()) << "of a low-pass";
    choose("filter_type=3");
    EXPECT_TRUE(widget("lower_passband")->isEnabled());
    EXPECT_TRUE(dialog.findChild<QRadioButton*>("passband_type=4")->isEnabled()) << "Sloping";
    choose("passband_type=3");
    EXPECT_FALSE(widget("band_edge_loss")->isEnabled());
    EXPECT_FALSE(widget("stopband_type")->isEnabled());
    EXPECT_TRUE(matches_rules());
    choose("filter_kind=4");
    const auto labels = dialog.findChildren<QLabel*>();
    EXPECT_TRUE(
        std::ranges::any_of(labels, [](QLabel* l) { return l->text().remove('&') == "Sampling frequency ( Hz)"; }));
    EXPECT_TRUE(matches_rules());
}

TEST(Forms, EntriesThatAreNoNumbersKeepTheFormOpen) {
    DesktopRun run;
    WindowSettings settings;
    FormSheet sheet(DESIGN_FILTER_DLG, &run.bench().filter_request, run.bench().session.units, run.bench().reporter);
    FormDialog dialog(sheet, settings, &run.window.main());
    dialog.show();
    ASSERT_TRUE(wait_for(dialog));
    auto* box = dialog.findChild<QLineEdit*>("upper_passband");
    type_over(*box, "12x");
    dialog.accept();
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(box->text(), "12x");
    EXPECT_EQ(box->toolTip(), "'12x' is not a number");
    EXPECT_EQ(run.bench().filter_request.upper_passband, 12.0) << "the last that was a number";
    type_over(*box, "1,5 ");
    EXPECT_EQ(run.bench().filter_request.upper_passband, 1.5) << "a decimal comma";
    dialog.accept();
    EXPECT_FALSE(dialog.isVisible());
}

TEST(Forms, ALetterWithAltIsNeverText) {
    DesktopRun run;
    WindowSettings settings;
    FormSheet sheet(DESIGN_FILTER_DLG, &run.bench().filter_request, run.bench().session.units, run.bench().reporter);
    FormDialog dialog(sheet, settings, &run.window.main());
    dialog.show();
    ASSERT_TRUE(wait_for(dialog));
    auto* box = dialog.findChild<QLineEdit*>("upper_passband");
    type_over(*box, "4k");
    press(*box, Qt::Key_S, Qt::AltModifier);  // the key of a field that is off
    EXPECT_EQ(box->text(), "4k");
    type_over(*box, "2,5x");
    EXPECT_EQ(box->toolTip(), "'2,5x' is not a number") << "as it was typed";
}

TEST(Forms, TheFieldThatHasTheKeysIsInSightOnASmallScreen) {
    DesktopRun run;
    WindowSettings settings;
    FormSheet sheet(DESIGN_FILTER_DLG, &run.bench().filter_request, run.bench().session.units, run.bench().reporter);
    FormDialog dialog(sheet, settings, &run.window.main());
    EXPECT_EQ(dialog.size(), dialog.size().boundedTo(most_of_screen(dialog)));
    dialog.resize(420, 300);
    run.hands.then([](QDialog&) {});  // stays open
    dialog.show();
    ASSERT_TRUE(wait_for(dialog));
    EXPECT_EQ(dialog.size(), QSize(420, 300));
    auto* first = dialog.findChild<QWidget*>("filter_kind=1");
    auto* last = dialog.findChild<QWidget*>("center_frequency");
    for (QWidget* field : {last, first, last}) {
        field->setFocus();
        EXPECT_EQ(field->visibleRegion().boundingRect(), field->rect()) << utf8_text(field->objectName());
    }
    auto* ok = button_of(dialog, "OK");
    EXPECT_FALSE(ok->visibleRegion().isEmpty());
    dialog.resize(dialog.sizeHint());
    QApplication::processEvents();
    EXPECT_FALSE(first->visibleRegion().isEmpty() || last->visibleRegion().isEmpty()) << "room for all";
}

TEST(Forms, ARefusedFormTellsWhyAndComesBackWithWhatWasEntered) {
    DesktopRun run;
    run.hands
        .then([](QDialog& form) {
            type_over(*form.findChild<QLineEdit*>("upper_passband"), "2.5k");
            press(form, Qt::Key_Return);
        })
        .then([](QDialog& box) {
            EXPECT_EQ(box.windowTitle(), "Error");
            EXPECT_EQ(static_cast<QMessageBox&>(box).text(), "Stopband not specified or incorrect");
            press(box, Qt::Key_Return);
        })
        .then([](QDialog& form) {
            EXPECT_EQ(form.findChild<QLineEdit*>("upper_passband")->text(), "2500");
            EXPECT_EQ(form.focusWidget()->objectName(), "upper_passband") << "where the user was";
            press(form, Qt::Key_Escape);
        });
    run.program->send(166);
    EXPECT_TRUE(run.hands.are_done());
    EXPECT_EQ(run.bench().filter_request.upper_passband, 0.0) << "cancelled";
}

TEST(Forms, AButtonOpensAFurtherFormOnTheSameRecord) {
    DesktopRun run;
    run.hands
        .then([](QDialog& form) {
            click(form, "Details");
            EXPECT_TRUE(form.isVisible());
            press(form, Qt::Key_Escape);
        })
        .then([](QDialog& list) {
            EXPECT_EQ(list.objectName(), "FIR_QUADS_DLG");
            auto* table = list.findChild<QTableWidget*>();
            type_cells(*table, {"0", "1k", "1", "0.1"});
            press(list, Qt::Key_Return, Qt::ControlModifier);
        });
    FirRequest& request = run.bench().fir_request;
    FormSheet sheet(FIR_DESIGN_DLG, &request, run.bench().session.units, run.bench().reporter);
    EXPECT_FALSE(run.window.edit_form(sheet));
    EXPECT_TRUE(run.hands.are_done());
    EXPECT_EQ(request.QUADRUPLETS.rows, 1);
    EXPECT_EQ(request.QUADRUPLETS(1, 2), 1000.0);
}

TEST(Forms, NumbersReadBackAsTheSameNumbers) {
    std::mt19937_64 random(7);
    for (int i = 0; i < 20000; ++i) {
        const double value = std::bit_cast<double>(random());
        if (!std::isfinite(value)) continue;
        EXPECT_EQ(parse_number(typed_number(short_number(value))), value);
    }
    EXPECT_EQ(short_number(600.0), "600");
    EXPECT_EQ(short_number(0.1), "0.1");
    EXPECT_EQ(short_number(1e-8), "10n");
    EXPECT_EQ(short_number(-4.7e6), "-4.7M");
    EXPECT_EQ(short_number(0.0), "0");
}

TEST(Palettes, WhatIsToBeTickedStandsOutFromADarkWindow) {
    for (QAbstractButton* made :
         {static_cast<QAbstractButton*>(new QRadioButton), static_cast<QAbstractButton*>(new QCheckBox)}) {
        const std::unique_ptr<QAbstractButton> button(made);
        button->setPalette(window_palette(Shade::dark));
        button->resize(40, 24);
        const QImage drawn = button->grab().toImage();
        int lightest = 0;
        for (int x = 0; x < drawn.width(); ++x) {
            for (int y = 0; y < drawn.height(); ++y) lightest = std::max(lightest, drawn.pixelColor(x, y).lightness());
        }
        const int paper = drawn.pixelColor(drawn.width() - 1, 0).lightness();
        EXPECT_GT(lightest, paper + 60) << button->metaObject()->className();
    }
}

TEST(FormLayout, ColumnsAreAsEvenAsTheBlocksAllow) {
    EXPECT_EQ(column_breaks({100, 100, 100, 100}, 2), std::vector<std::size_t>{2});
    EXPECT_EQ(column_breaks({300, 50, 50, 50, 50, 100}, 2), std::vector<std::size_t>{1});
    EXPECT_EQ(column_breaks({90, 90, 90}, 3), (std::vector<std::size_t>{1, 2}));
    EXPECT_TRUE(column_breaks({90, 90}, 1).empty());
}

}  // namespace
}  // namespace kavrel
