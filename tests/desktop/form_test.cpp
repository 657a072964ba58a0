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

#include <fmt/format.h>

#include "desktop/number_entry.h"
#include "desktop/palettes.h"
#include "desktop/window_fit.h"
#include "forms/filter_form.h"
#include "forms/fir_form.h"
#include "shell/number_text.h"
#include "synthesis/synthesis_form.h"
#include "tests/desktop/desktop_run.h"

namespace kavrel {
namespace {

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

struct Forms : testing::Test, FormRun {
    Forms() {
        SynthesisForm& synthesis = bench().ladder.form;  // an immittance can be chosen from all polynomials
        synthesis.has_es = synthesis.has_os = synthesis.has_ed = synthesis.has_od = true;
    }

    template <class Widget = QWidget>
    Widget* find(std::string_view name) {
        return dialog->findChild<Widget*>(qt_text(name));
    }
    // Whether fields and choices are on and off by the form's rules.
    bool follows_rules() {
        for (std::size_t i = 0; i < sheet->size(); ++i) {
            const Field& field = sheet->field(i);
            const QWidget* here = find(field.name);
            if (here != nullptr && here->isEnabledTo(dialog.get()) != sheet->is_on(i)) return false;
            for (const Choice& choice : field.choices) {
                const auto* radio = find<QRadioButton>(fmt::format("{}={}", field.name, choice.value));
                if (radio != nullptr && radio->isEnabledTo(here) != sheet->choice_is_on(i, choice.value)) return false;
            }
        }
        return true;
    }
    // The text at a field's widget, with its access key.
    QString label_of(QWidget* widget) {
        if (const auto* box = qobject_cast<QGroupBox*>(widget)) return box->title();
        if (const auto* button = qobject_cast<QAbstractButton*>(widget)) return button->text().remove("...");
        for (const auto* label : dialog->findChildren<QLabel*>()) {
            if (label->buddy() == widget) return label->text();
        }
        return {};
    }
};

TEST_F(Forms, EveryFieldCanBeSetByKeysAndArrivesInTheRecord) {
    int set = 0;
    for (const Form* form : all_forms()) {
        take(*form);
        for (std::size_t i = 0; i < sheet->size(); ++i) {
            const FieldKind kind = sheet->field(i).kind;
            if (kind == FieldKind::heading || kind == FieldKind::button) continue;
            ASSERT_TRUE(turn_on(*sheet, i)) << form->name << ' ' << sheet->field(i).name;
            open();
            const std::string expected = set_by_keys(*dialog, *sheet, i);
            EXPECT_EQ(sheet->shown(i), expected) << form->name << ' ' << sheet->field(i).name;
            ++set;
        }
    }
    EXPECT_GT(set, 50);
}

TEST_F(Forms, EveryFieldIsLabelledAndHasAnAccessKeyOfItsOwn) {
    for (const Form* form : all_forms()) {
        open(*form);
        EXPECT_TRUE(follows_rules()) << form->name;
        QSet<QChar> keys;
        for (std::size_t i = 0; i < sheet->size(); ++i) {
            if (sheet->field(i).kind == FieldKind::heading) continue;
            QString label = label_of(find(sheet->field(i).name));
            for (qsizetype at = 0; (at = label.indexOf('&', at)) >= 0; ++at) {
                label.remove(at, 1);  // a doubled one leaves one
                if (label.mid(at, 1) == "&") continue;
                EXPECT_FALSE(keys.contains(label[at].toLower()))
                    << form->name << ": a key twice at " << utf8_text(label);
                keys.insert(label[at].toLower());
            }
            EXPECT_EQ(utf8_text(label), sheet->label(i)) << form->name;
        }
    }
}

TEST_F(Forms, RulesTurnFieldsOnAndOffWhileTheUserWorks) {
    open(DESIGN_FILTER_DLG);
    const auto is_on = [&](const char* name) { return find(name)->isEnabled(); };
    EXPECT_FALSE(is_on("lower_passband")) << "of a low-pass";
    find<QRadioButton>("filter_type=3")->click();
    EXPECT_TRUE(is_on("lower_passband") && is_on("passband_type=4"));
    find<QRadioButton>("passband_type=3")->click();
    EXPECT_FALSE(is_on("band_edge_loss") || is_on("stopband_type"));
    EXPECT_TRUE(follows_rules());
    find<QRadioButton>("filter_kind=4")->click();
    EXPECT_EQ(label_of(find("fq_or_fs")).remove('&'), "Sampling frequency ( Hz)");
    EXPECT_TRUE(follows_rules());
}

TEST_F(Forms, EntriesThatAreNoNumbersKeepTheFormOpen) {
    open(DESIGN_FILTER_DLG);
    const double& number = bench().filter_request.upper_passband;
    auto* box = find<QLineEdit>("upper_passband");
    type_over(*box, "12,5x");
    dialog->accept();
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(box->text(), "12,5x");
    EXPECT_EQ(box->toolTip(), "'12,5x' is not a number") << "as it was typed";
    EXPECT_EQ(number, 12.5) << "the last that was a number";
    type_over(*box, "1,5 ");
    EXPECT_EQ(number, 1.5) << "a decimal comma";
    type_over(*box, "4k");
    press(*box, Qt::Key_S, Qt::AltModifier);  // the access key of a field that is off is no text
    EXPECT_EQ(box->text(), "4k");
    dialog->accept();
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(Forms, TheFieldThatHasTheFocusIsInSightOnASmallScreen) {
    take(DESIGN_FILTER_DLG);
    dialog = std::make_unique<FormDialog>(*sheet, settings, &window.main());
    EXPECT_EQ(dialog->size(), dialog->size().boundedTo(most_of_screen(*dialog)));
    dialog->resize(420, 300);
    hands.then([](QDialog&) {});  // stays open
    dialog->show();
    ASSERT_TRUE(wait_for(*dialog));
    EXPECT_EQ(dialog->size(), QSize(420, 300));
    QWidget* first = find("filter_kind=1");
    QWidget* last = find("center_frequency");
    for (QWidget* field : {last, first, last}) {
        field->setFocus();
        EXPECT_EQ(field->visibleRegion().boundingRect(), field->rect()) << utf8_text(field->objectName());
    }
    EXPECT_FALSE(button_of(*dialog, "OK")->visibleRegion().isEmpty());
    dialog->resize(dialog->sizeHint());
    QApplication::processEvents();
    EXPECT_FALSE(first->visibleRegion().isEmpty() || last->visibleRegion().isEmpty()) << "room for all";
}

TEST_F(Forms, ARefusedFormSaysWhyAndComesBackWithWhatWasEntered) {
    hands
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
    program->send(166);
    EXPECT_TRUE(hands.are_done());
    EXPECT_EQ(bench().filter_request.upper_passband, 0.0) << "cancelled";
}

TEST_F(Forms, AButtonOpensAFurtherFormOnTheSameRecord) {
    hands
        .then([](QDialog& form) {
            click(form, "Details");
            EXPECT_TRUE(form.isVisible());
            press(form, Qt::Key_Escape);
        })
        .then([](QDialog& list) {
            EXPECT_EQ(list.objectName(), "FIR_QUADS_DLG");
            type_cells(*list.findChild<QTableWidget*>(), {"0", "1k", "1", "0.1"});
            press(list, Qt::Key_Return, Qt::ControlModifier);
        });
    take(FIR_DESIGN_DLG);
    EXPECT_FALSE(window.edit_form(*sheet));
    EXPECT_TRUE(hands.are_done());
    EXPECT_EQ(bench().fir_request.QUADRUPLETS.rows, 1);
    EXPECT_EQ(bench().fir_request.QUADRUPLETS(1, 2), 1000.0);
}

TEST(NumberEntry, ShownNumbersReadBackAsTheSame) {
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

TEST(Palettes, WhatIsToBeTickedIsSeenOnADarkWindow) {
    QRadioButton radio;
    QCheckBox flag;
    for (QAbstractButton* button : {static_cast<QAbstractButton*>(&radio), static_cast<QAbstractButton*>(&flag)}) {
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

TEST(Palettes, TheFieldInFocusHasAnOutlineOfItsOwn) {
    QWidget window;
    auto *first = new QLineEdit(&window), *second = new QLineEdit(&window);
    window.setPalette(window_palette(Shade::dark));
    second->move(0, 60);
    window.show();
    ASSERT_TRUE(wait_for(window));
    for (QLineEdit* field : {first, second}) {
        field->setFocus();
        for (QLineEdit* shown : {first, second}) {
            const QColor outline = shown->grab().toImage().pixelColor(shown->width() / 2, 0);
            const auto role = shown == field ? QPalette::Highlight : QPalette::Mid;
            EXPECT_EQ(outline, window.palette().color(QPalette::Active, role));
        }
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
