// Hands that work from a console script: menu items are chosen in the menu bar, forms filled in by keys, boxes and
// selectors answered, where the console would take the lines.
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QGroupBox>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <algorithm>
#include <sstream>

#include "console/form_verbs.h"
#include "console/script.h"
#include "desktop/form_dialog.h"
#include "shell/menu.h"
#include "tests/desktop/desktop_run.h"
#include "workbench/shown.h"

namespace kavrel {

class ScriptHands {
public:
    ScriptHands(DesktopRun& run, const std::string& script) : run_(run) {
        script_.push("script", std::make_unique<std::istringstream>(script));
        run_.hands.always([this](QDialog& dialog) { answer(dialog); });
    }

    void work() {
        while (const auto line = script_.next()) {
            if (line->verb() == "choose") {
                choose(*line);
            } else if (line->verb() == "do") {
                send(line->rest());
            } else if (line->verb() == "expect" && line->rest() == "met" && !line->words[1].quoted) {
                EXPECT_TRUE(shown_check(run_.bench()).met());
            } else if (line->verb() == "expect") {
                EXPECT_TRUE(was_shown(line->rest())) << line->text;
            } else {
                static constexpr std::string_view only_of_the_console[] = {"dump", "plot", "table", "echo", "check"};
                EXPECT_NE(std::ranges::find(only_of_the_console, line->verb()), std::end(only_of_the_console));
            }
        }
    }

    static void set(QDialog& form, const std::string& name, const std::string& value) {
        QWidget* widget = widget_of(form, name);
        if (widget == nullptr || !widget->isEnabled()) return;  // what is off keeps its value, which does not count
        if (auto* group = qobject_cast<QGroupBox*>(widget)) {
            for (auto* radio : group->findChildren<QRadioButton*>()) {
                const bool is_number = radio->objectName().section('=', 1) == qt_text(value);
                if (!is_number && !same_label(utf8_text(radio->text()), value)) continue;
                radio->setFocus();
                return press(*radio, Qt::Key_Space);
            }
            ADD_FAILURE() << name << " has no choice " << value;
        } else if (auto* choices = qobject_cast<QComboBox*>(widget)) {
            for (int i = 0; i < choices->count(); ++i) {
                if (same_label(utf8_text(choices->itemText(i)), value)) choices->setCurrentIndex(i);
            }
        } else if (auto* flag = qobject_cast<QCheckBox*>(widget)) {
            flag->setFocus();
            if (flag->isChecked() != (value == "yes")) press(*flag, Qt::Key_Space);
        } else {
            type_over(*widget, qt_text(value));
        }
    }

private:
    // The item of the Segment with this word.
    void send(const std::string& word) {
        const auto& menu = room_of(run_.bench().session.segment).menu;
        const auto item = std::ranges::find(menu, CommandKeyword(word),
                                            [](const MenuItem& row) { return CommandKeyword(row.command); });
        ASSERT_NE(item, menu.end()) << word;
        run_.program->send(item->id);
    }
    // The next line if it begins with one of these verbs; else it stays the next one.
    std::optional<ScriptLine> take(std::initializer_list<std::string_view> verbs) {
        auto line = script_.next();
        if (!line || std::ranges::find(verbs, line->verb()) != verbs.end()) return line;
        script_.hand_back(std::move(*line));
        return std::nullopt;
    }
    [[nodiscard]] bool next_is_of_form() {
        auto line = script_.next();
        const bool is_of_form = line && is_form_verb(line->verb());
        if (line) script_.hand_back(std::move(*line));
        return is_of_form;
    }
    [[nodiscard]] bool was_shown(const std::string& text) const {
        const auto holds = [&](const JournalBox& box) { return box.text.find(text) != std::string::npos; };
        return run_.report().find(text) != std::string::npos || std::ranges::any_of(run_.bench().journal.boxes, holds);
    }

    void choose(const ScriptLine& line) {
        const std::string& id = line.words[1].text;
        if (id.starts_with('#')) return run_.program->send(std::stoi(id.substr(1)));
        if (const MenuItem* own = find_item(room_of(run_.bench().session.segment).menu, path_of(line))) {
            action_of(run_.window.main().menuBar()->actions(), own->id)->trigger();
        } else {
            const MenuItem* of_main = find_item(main_menu, path_of(line));
            ASSERT_NE(of_main, nullptr) << line.text;
            run_.program->send(of_main->id);
        }
    }

    void answer(QDialog& dialog) {
        if (auto* form = dynamic_cast<FormDialog*>(&dialog)) {
            fill_in(*form);
        } else if (auto* box = qobject_cast<QMessageBox*>(&dialog)) {
            answer_box(*box);
        } else if (const auto name = take({"file"})) {
            pick_file(dialog, qt_text(name->rest()));
        } else {
            dialog.reject();
        }
    }

    void answer_box(QMessageBox& box) {
        if (const auto line = take({"answer"})) {
            for (auto* button : box.buttons()) {
                if (same_label(utf8_text(button->text()), line->rest())) return button->click();
            }
            ADD_FAILURE() << line->text << ": no answer to " << utf8_text(box.text());
        }
        if (box.buttons().size() == 1) return box.accept();
        if (box.text().endsWith("without saving it?")) return click(box, "Yes");  // the console does not ask
        click(box, box.windowTitle() == "Question" ? "Yes" : "No");
    }

    void fill_in(FormDialog& form) {
        QString list;
        const bool refused = !form.findChild<QLabel*>("refusal")->text().isEmpty();
        if (refused && !next_is_of_form()) return click(form, "Cancel");
        while (const auto line = take({"set", "button", "list", "row", "clear", "ok", "cancel"})) {
            if (line->verb() == "ok") break;
            if (line->verb() == "cancel") return click(form, "Cancel");
            if (line->verb() == "set") {
                set(form, line->words[1].text, line->rest(2));
            } else if (line->verb() == "button") {
                click(form, qt_text(line->rest()));
            } else if (line->verb() == "list") {
                list = widget_of(form, line->rest())->objectName();
            } else {
                work_on_rows(form, list, *line);
            }
        }
        click(form, "OK");
    }

    // The widget of a field by its name or its label.
    static QWidget* widget_of(QDialog& form, const std::string& name) {
        if (auto* named = form.findChild<QWidget*>(qt_text(name))) return named;
        const auto bare = [](const QString& text) { return utf8_text(text.section(" (", 0, 0)); };
        for (auto* label : form.findChildren<QLabel*>()) {
            if (label->buddy() != nullptr && same_label(bare(label->text()), bare(qt_text(name))))
                return label->buddy();
        }
        ADD_FAILURE() << "no field " << name;
        return nullptr;
    }

    static void work_on_rows(FormDialog& form, const QString& list, const ScriptLine& line) {
        auto* table = form.findChild<QTableWidget*>(list.isEmpty() ? QString() : list + ".table");
        ASSERT_NE(table, nullptr);
        table->setFocus();
        if (line.verb() == "clear") {
            table->selectAll();
            return press(*table, Qt::Key_Delete);
        }
        int row = 0;
        while (table->item(row, 0) != nullptr && !table->item(row, 0)->text().isEmpty()) ++row;
        table->setCurrentCell(row, 0);
        type_cells(*table, qt_text(line.rest()).split(' '));
    }

    DesktopRun& run_;
    ConsoleScript script_;
};

}  // namespace kavrel
