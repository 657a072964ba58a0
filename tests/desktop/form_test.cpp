// Forms: whatever their table says is on the screen, is reached and set by keys, and arrives in the record.
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
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
#include "passive/passive_forms.h"
#include "shell/number_text.h"
#include "synthesis/synthesis_form.h"
#include "tests/desktop/script_hands.h"
#include "tests/workbench/form_cases.h"

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
            } else if (field.kind == FieldKind::integer) {
                static_cast<void>(sheet.enter(i, std::to_string(random() % 2 == 0 ? field.low : field.high)));
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
    // The stops of the tab key as the form's table has them: its fields that are on, a list with its buttons, and
    // the buttons of the dialog.
    std::vector<std::string> stops() {
        std::vector<std::string> names;
        for (std::size_t i = 0; i < sheet->size(); ++i) {
            const Field& field = sheet->field(i);
            if (field.kind == FieldKind::heading || !sheet->is_on(i)) continue;
            names.emplace_back(field.name);
            if (field.kind != FieldKind::list) continue;
            names.insert(names.end(), {"Insert row", "Delete rows"});
            if (sheet->form().reads_file) names.emplace_back("Read from file");
        }
        names.insert(names.end(), {"OK", "Cancel", "Help"});
        return names;
    }
    // The stop that has the focus.
    std::string stop_name() {
        const QWidget* here = QApplication::focusWidget();
        const auto* button = qobject_cast<const QPushButton*>(here);
        const std::string text = button == nullptr ? "" : utf8_text(button->text().remove('&'));
        for (std::size_t i = 0; i < sheet->size(); ++i) {
            if (sheet->field(i).kind == FieldKind::heading) continue;
            const QWidget* part = find(sheet->field(i).name);
            const bool inside = part == here || part->isAncestorOf(here);
            if (inside && (sheet->field(i).kind != FieldKind::list || button == nullptr))
                return std::string(sheet->field(i).name);
        }
        return text;
    }
    void expect_order(const std::string_view where) {
        const auto wanted = stops();
        find(wanted.front())->setFocus();
        for (const int key : {Qt::Key_Tab, Qt::Key_Backtab}) {
            std::vector<std::string> went;
            for (std::size_t i = 0; i < wanted.size(); ++i) {
                const bool forwards = key == Qt::Key_Tab;
                if (auto* table = qobject_cast<QTableWidget*>(QApplication::focusWidget()))
                    table->setCurrentCell(forwards ? table->rowCount() - 1 : 0,
                                          forwards ? table->columnCount() - 1 : 0);
                if (!forwards) press(*QApplication::focusWidget(), key, Qt::ShiftModifier);
                went.push_back(stop_name());
                if (forwards) press(*QApplication::focusWidget(), key);
            }
            if (key == Qt::Key_Backtab) std::ranges::reverse(went);
            EXPECT_EQ(went, wanted) << where << (key == Qt::Key_Tab ? "" : ", backwards");
        }
    }
    QString refusal() { return dialog->findChild<QLabel*>("refusal")->text(); }
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
    EXPECT_EQ(refusal(), "Stopband not specified or incorrect") << "of the number nothing more";
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

TEST_F(Forms, TheTabKeyGoesThroughTheFieldsInTheFormsOrderInBothDirections) {
    int walks = 0;
    for (const Form* form : all_forms()) {
        open(*form);
        EXPECT_EQ(stop_name(), stops().front()) << form->name << " opens at its first field";
        expect_order(form->name);
        for (std::size_t i = 0; i < sheet->size(); ++i) {
            if (sheet->field(i).kind != FieldKind::radio || !sheet->is_on(i)) continue;
            for (std::size_t k = 0; k < sheet->field(i).choices.size(); ++k, ++walks) {
                find(sheet->field(i).name)->setFocus();
                ASSERT_TRUE(tab_to(*dialog, *find(sheet->field(i).name)));
                press(*QApplication::focusWidget(), k == 0 ? Qt::Key_Up : Qt::Key_Down);
                expect_order(fmt::format("{}, {} {}", form->name, sheet->field(i).name, sheet->shown(i)));
            }
        }
    }
    EXPECT_GT(walks, 60);
}

TEST_F(Forms, SpinFieldsKeepWhatIsTypedAndRefuseWhatIsBeyond) {
    int typed = 0;
    for (const Form* form : all_forms()) {
        take(*form);
        for (std::size_t i = 0; i < sheet->size(); ++i) {
            const Field& field = sheet->field(i);
            if (field.kind != FieldKind::integer) continue;
            ASSERT_TRUE(turn_on(*sheet, i)) << form->name << ' ' << field.name;
            for (const int number : {200, field.high, field.high + 1, field.low - 1}) {
                open();
                auto* box = find<QSpinBox>(field.name);
                const std::string text = std::to_string(number), before = sheet->shown(i);
                type_over(*box, qt_text(text));
                const bool beyond = number < field.low || number > field.high;
                EXPECT_EQ(utf8_text(box->text()), text) << form->name << ' ' << field.name;
                EXPECT_EQ(box->palette() != dialog->palette(), beyond) << "red";
                if (!beyond) {
                    EXPECT_EQ(sheet->shown(i), text) << form->name << ' ' << field.name;
                    continue;
                }
                find(form->fields[0].name)->setFocus();
                dialog->accept();
                EXPECT_TRUE(dialog->isVisible()) << form->name << ' ' << field.name;
                EXPECT_EQ(utf8_text(refusal()), fmt::format("{} is outside {} to {}", text, field.low, field.high));
                EXPECT_TRUE(box->hasFocus());
                EXPECT_EQ(utf8_text(box->text()), text) << "not clipped";
                ++typed;
            }
        }
    }
    EXPECT_GT(typed, 30);
}

TEST_F(Forms, LettersChooseWhatReadsSo) {
    open(PASSIVE_INSERT_DLG);
    auto* box = find<QComboBox>("element");
    box->setFocus();
    hands.then([](QDialog&) {});  // stays open
    for (const char* letter : {"c", "l", "u", "l"}) {
        QTest::qWait(QApplication::keyboardInputInterval() + 50);
        QTest::keyClicks(box, letter);
    }
    EXPECT_EQ(sheet->shown(0), "l") << "not lc";
    QTest::keyClicks(box, "cc");
    EXPECT_EQ(sheet->shown(0), "lcc") << "typed in one go";
}

TEST_F(Forms, EveryRefusalStandsInTheFormAndTurnsToItsField) {
    int refusals = 0;
    for (const Form* form : all_forms()) {
        if (form->refusal == nullptr) continue;
        FormCases cases(*form, bench());
        for (const std::string& row : plan_rows(fmt::format("forms/{}.txt", form->name))) {
            if (cases.name_entries(row)) continue;
            cases.fill_in(row.substr(0, row.find('|')));
            const Refusal wanted = form->refusal(record_of(*form, bench()));
            if (wanted.empty()) continue;
            open(*form);
            const QRect place = button_of(*dialog, "OK")->geometry();
            press(*dialog, Qt::Key_Return, Qt::ControlModifier);
            EXPECT_TRUE(dialog->isVisible());
            EXPECT_EQ(utf8_text(refusal()), wanted.text) << row;
            EXPECT_EQ(button_of(*dialog, "OK")->geometry(), place) << "the line was there";
            EXPECT_EQ(stop_name(), wanted.field) << row;
            ++refusals;
        }
    }
    EXPECT_GT(refusals, 100);
}

TEST_F(Forms, ThereIsRoomForAllFieldsAndForWhatTheyAreInPlainUnits) {
    bench().session.units.frequency_index = bench().session.units.inductor_index = 2;
    settle_units(bench().session.units);
    for (const Form* form : all_forms()) {
        open(*form);
        const auto* area = dialog->findChild<QScrollArea*>();
        const QSize room = most_of_screen(*dialog) - (dialog->size() - area->viewport()->size());
        const QSize wanted = area->widget()->minimumSizeHint();
        const bool wide = wanted.width() > room.width(), high = wanted.height() > room.height();
        EXPECT_EQ(area->horizontalScrollBar()->maximum() > 0, wide) << form->name;
        EXPECT_TRUE(high || wide || area->verticalScrollBar()->maximum() == 0) << form->name;
        EXPECT_LE(dialog->sizeHint().width(), 1280 - 16) << form->name << " on a small screen";
        EXPECT_LE(dialog->sizeHint().height(), 720 - 48) << form->name;
    }
    open(DESIGN_FILTER_DLG);
    type_over(*find("upper_passband"), "1k");
    EXPECT_EQ(find<QLabel>("upper_passband.echo")->text(), "= 1 MHz");
    type_over(*find("upper_passband"), "47 nF");
    EXPECT_EQ(find("upper_passband")->toolTip(), "'47 nF' is no frequency");
    EXPECT_EQ(find<QLabel>("upper_passband.echo")->text(), "") << "of a number alone";
    type_over(*find("upper_passband"), "1 kHz");
    EXPECT_EQ(bench().filter_request.upper_passband, 1.0) << "a unit rules over the field's";
    EXPECT_EQ(find<QLabel>("upper_passband.echo")->text(), "= 1 kHz");
    open(PASSIVE_INSERT_DLG);
    find<QComboBox>("element")->setCurrentText("l");
    type_over(*find("value1"), "5");
    EXPECT_EQ(find<QLabel>("value1.echo")->text(), "= 5 mH") << "of what the rules make of it";
}

// A command that fails: its item, what is entered, what the form says when it comes back, and at which field.
struct Failing {
    int item;
    std::vector<std::pair<const char*, const char*>> entries;
    const char* text;
    const char* field;
};

TEST_F(Forms, AFormStaysUntilItsCommandHasSucceeded) {
    ScriptHands(*this, read_text(EXAMPLES "/typed_circuit.kav")).work();
    const Circuit before = bench().passive.circuit;
    const Failing cases[] = {
        {354, {{"branch", "0"}}, "Branch number is out of range", "branch"},
        {354, {{"element", "lc"}, {"branch", "3"}, {"value1", "1m"}}, "Zero value not permitted", "value2"},
        {354, {{"element", "ue"}, {"branch", "3"}}, "Not microwave, no unit element", "element"},
        {355, {{"branch", "77"}}, "Incorrect or nonexistent branch", "branch"},
        {356, {{"branch", "77"}}, "Incorrect branch selected", "branch"},
        {349, {{"branch", "77"}}, "Incorrect branch(es) specified", "branch"},
        {503, {{"y1", "None"}, {"y2", "None"}}, "No plot specified", "y1"},
    };
    for (const Failing& one : cases) {
        hands
            .then([&](QDialog& form) {
                for (const auto& [field, value] : one.entries) ScriptHands::set(form, field, value);
                press(form, Qt::Key_Return, Qt::ControlModifier);
            })
            .then([&](QDialog& form) {
                EXPECT_STREQ(form.findChild<QLabel*>("refusal")->text().toUtf8(), one.text);
                EXPECT_TRUE(form.findChild<QWidget*>(one.field)->isAncestorOf(form.focusWidget()) ||
                            form.focusWidget()->objectName() == one.field)
                    << one.field;
                press(form, Qt::Key_Escape);
            });
        program->send(one.item);
        EXPECT_TRUE(hands.are_done()) << one.text;
    }
    EXPECT_EQ(bench().passive.circuit, before);
}

TEST_F(Forms, ADesignThatFailsBringsTheFormBack) {
    hands
        .then([&](QDialog& form) {
            ScriptHands::set(form, "filter_type", "Low pass");
            for (const char* entry :
                 {"upper_passband=1k", "band_edge_loss=0.1", "upper_stopband=1.0001k", "upper_stop_loss=900"})
                type_over(*form.findChild<QWidget*>(QString(entry).section('=', 0, 0)), QString(entry).section('=', 1));
            press(form, Qt::Key_Return);
        })
        .then([&](QDialog& form) {
            EXPECT_EQ(form.objectName(), "DESIGN_FILTER_DLG");
            EXPECT_FALSE(form.findChild<QLabel*>("refusal")->text().isEmpty());
            EXPECT_EQ(form.findChild<QLineEdit*>("upper_stop_loss")->text(), "900");
            type_over(*form.findChild<QWidget*>("upper_stop_loss"), "30");
            type_over(*form.findChild<QWidget*>("upper_stopband"), "2k");
            press(form, Qt::Key_Return);
        })
        .then([](QDialog& form) {
            EXPECT_EQ(form.objectName(), "SYNTHESIS_DLG");
            form.accept();
        });
    program->send(166);
    EXPECT_TRUE(hands.are_done());
    EXPECT_EQ(bench().session.segment, SegmentId::passive);
}

// A whole design, only by keys: the menu by its access keys, the fields by the tab key, one way or the other.
TEST(KeysAlone, MakeAWholeDesign) {
    const std::pair<const char*, const char*> entries[] = {
        {"filter_kind", "LC"},       {"filter_type", "Low pass"},
        {"upper_passband", "1 kHz"}, {"passband_type", "Equal ripple"},
        {"band_edge_loss", "0.1"},   {"stopband_type", "Equal min"},
        {"upper_stopband", "1.5k"},  {"upper_stop_loss", "60 dB"},
        {"r1", "600 ohm"},           {"r2", "600"}};
    for (const int key : {Qt::Key_Tab, Qt::Key_Backtab}) {
        DesktopRun run;
        const auto fill_in = [&](QDialog& form, const char* name, const QString& value) {
            auto* field = form.findChild<QWidget*>(name);
            for (int i = 0; i < 60; ++i) {
                QWidget* here = QApplication::focusWidget();
                if (here == field || field->isAncestorOf(here)) break;
                press(*here, key, key == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier);
            }
            QWidget* here = QApplication::focusWidget();
            ASSERT_TRUE(here == field || field->isAncestorOf(here)) << name;
            if (qobject_cast<QLineEdit*>(field) != nullptr) return type_over(*field, value);
            for (const int arrow : {Qt::Key_Up, Qt::Key_Down}) {
                for (int i = 0; i < 4; ++i) {
                    auto* radio = qobject_cast<QRadioButton*>(QApplication::focusWidget());
                    if (radio->isChecked() && radio->text().remove('&') == value) return;
                    press(*radio, arrow);
                }
            }
        };
        run.hands
            .then([&](QDialog& form) {
                for (const auto& [name, value] : entries) fill_in(form, name, value);
                press(form, Qt::Key_Return);
            })
            .then([](QDialog& form) { press(form, Qt::Key_Return); });
        press(run.window.main(), Qt::Key_D, Qt::AltModifier);
        press(*QApplication::activePopupWidget(), Qt::Key_F);
        press(*QApplication::activePopupWidget(), Qt::Key_N);
        EXPECT_TRUE(run.hands.are_done());
        const std::string whole = read_text(TEST_DATA "/console/lowpass.txt");
        EXPECT_TRUE(!run.report().empty() && whole.starts_with(run.report())) << run.report();
    }
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
