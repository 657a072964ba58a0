// Hands that work from a console script: menu items are chosen in the menu bar, forms filled in by keys, boxes and
// selectors answered, where the console would take the lines as they stand.
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
#include <cctype>
#include <sstream>
#include <string>
#include <vector>

#include "desktop/form_dialog.h"
#include "shell/menu.h"
#include "tests/desktop/desktop_run.h"

namespace kavrel {

using Words = std::vector<std::string>;

inline Words words_of(const std::string& line) {
    Words words;
    bool quoted = false;
    bool open = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (c == '"') {
            quoted = !quoted;
            if (!open) words.emplace_back();
            open = true;
        } else if (!quoted && c == '#' && !(i + 1 < line.size() && std::isdigit(line[i + 1]) != 0)) {
            break;
        } else if (!quoted && std::isspace(static_cast<unsigned char>(c)) != 0) {
            open = false;
        } else {
            if (!open) words.emplace_back();
            open = true;
            words.back() += c;
        }
    }
    return words;
}

class ScriptHands {
public:
    ScriptHands(DesktopRun& run, const std::string& script) : run_(run) {
        std::istringstream lines(script);
        for (std::string line; std::getline(lines, line);) {
            if (Words words = words_of(line); !words.empty()) lines_.push_back(std::move(words));
        }
        run_.hands.always([this](QDialog& dialog) { answer(dialog); });
    }

    void work() {
        while (at_ < lines_.size()) {
            const Words line = lines_[at_++];
            if (line[0] == "choose") {
                choose(line);
            } else if (line[0] == "expect") {
                EXPECT_TRUE(was_told(rest(line))) << rest(line);
            } else {
                // What only the console does: dump, plot, table, echo.
                EXPECT_TRUE(line[0] == "dump" || line[0] == "plot" || line[0] == "table" || line[0] == "echo")
                    << line[0];
            }
        }
    }

private:
    static std::string rest(const Words& line, std::size_t from = 1) {
        std::string text;
        for (std::size_t i = from; i < line.size(); ++i) text += (i == from ? "" : " ") + line[i];
        return text;
    }
    [[nodiscard]] bool was_told(const std::string& text) const {
        if (run_.report().find(text) != std::string::npos) return true;
        return std::ranges::any_of(run_.bench().journal.boxes,
                                   [&](const JournalBox& box) { return box.text.find(text) != std::string::npos; });
    }
    [[nodiscard]] bool next_is(const char* verb) const { return at_ < lines_.size() && lines_[at_][0] == verb; }

    void choose(const Words& line) {
        if (line[1].starts_with('#')) {
            run_.program->send(std::stoi(line[1].substr(1)));
            return;
        }
        std::vector<std::string> labels{""};
        for (std::size_t i = 1; i < line.size(); ++i) {
            if (line[i] == ">") {
                labels.emplace_back();
            } else {
                labels.back() += (labels.back().empty() ? "" : " ") + line[i];
            }
        }
        const MenuItem* own = find_item(room_of(run_.bench().session.segment).menu, labels);
        if (own != nullptr) {
            action_of(run_.window.main().menuBar()->actions(), own->id)->trigger();
            return;
        }
        const MenuItem* of_main = find_item(main_menu, labels);
        ASSERT_NE(of_main, nullptr) << rest(line);
        run_.program->send(of_main->id);
    }

    void answer(QDialog& dialog) {
        if (auto* form = dynamic_cast<FormDialog*>(&dialog)) {
            fill_in(*form);
        } else if (auto* box = qobject_cast<QMessageBox*>(&dialog)) {
            answer_box(*box);
        } else if (auto* selector = qobject_cast<QFileDialog*>(&dialog)) {
            if (!next_is("file")) return selector->reject();
            pick_file(*selector, qt_text(rest(lines_[at_++])));
        } else {
            ADD_FAILURE() << "an unknown dialog";
            dialog.reject();
        }
    }

    void answer_box(QMessageBox& box) {
        if (next_is("answer")) {
            const QString label = qt_text(rest(lines_[at_++]));
            const auto buttons = box.buttons();
            const auto wanted = std::ranges::find_if(
                buttons, [&](auto* one) { return one->text().remove('&').compare(label, Qt::CaseInsensitive) == 0; });
            if (wanted != buttons.end()) return (*wanted)->click();
            ADD_FAILURE() << utf8_text(label) << " is no answer to "
                          << utf8_text(box.windowTitle() + ": " + box.text());
            box.accept();
        } else if (box.buttons().size() == 1) {
            box.accept();
        } else {
            click(box, box.windowTitle() == "Question" ? "Yes" : "No");
        }
    }

    void fill_in(FormDialog& form) {
        QString list;
        while (at_ < lines_.size()) {
            const Words line = lines_[at_];
            if (line[0] == "set") {
                ++at_;
                set(form, line[1], rest(line, 2));
            } else if (line[0] == "button") {
                ++at_;
                click(form, qt_text(rest(line)));
            } else if (line[0] == "list") {
                ++at_;
                list = widget_of(form, line[1])->objectName();
            } else if (line[0] == "row" || line[0] == "clear") {
                ++at_;
                work_on_rows(form, list, line);
            } else if (line[0] == "ok" || line[0] == "cancel") {
                ++at_;
                return click(form, line[0] == "ok" ? "OK" : "Cancel");
            } else {
                break;
            }
        }
        click(form, "OK");
    }

    // The widget of a field by its name or its label.
    static QWidget* widget_of(FormDialog& form, const std::string& name) {
        if (auto* named = form.findChild<QWidget*>(qt_text(name))) return named;
        const auto bare = [](QString text) { return text.remove('&').section(" (", 0, 0).trimmed(); };
        for (auto* label : form.findChildren<QLabel*>()) {
            if (label->buddy() != nullptr &&
                bare(label->text()).compare(bare(qt_text(name)), Qt::CaseInsensitive) == 0) {
                return label->buddy();
            }
        }
        ADD_FAILURE() << "no field " << name;
        return nullptr;
    }

    static void set(FormDialog& form, const std::string& name, const std::string& value) {
        QWidget* widget = widget_of(form, name);
        if (widget == nullptr) return;
        if (!widget->isEnabled()) return;  // keeps its value, which does not count
        if (auto* group = qobject_cast<QGroupBox*>(widget)) {
            for (auto* radio : group->findChildren<QRadioButton*>()) {
                const bool is_number = radio->objectName().section('=', 1) == qt_text(value);
                if (!is_number && !same_label(utf8_text(radio->text()), value)) continue;
                radio->setFocus();
                press(*radio, Qt::Key_Space);
                return;
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

    static void work_on_rows(FormDialog& form, const QString& list, const Words& line) {
        QTableWidget* table = nullptr;
        for (auto* one : form.findChildren<QTableWidget*>()) {
            if (table == nullptr || one->objectName() == list + ".table") table = one;
        }
        ASSERT_NE(table, nullptr);
        table->setFocus();
        if (line[0] == "clear") {
            table->selectAll();
            press(*table, Qt::Key_Delete);
            return;
        }
        int row = 0;
        while (table->item(row, 0) != nullptr && !table->item(row, 0)->text().isEmpty()) ++row;
        table->setCurrentCell(row, 0);
        QStringList cells;
        for (std::size_t i = 1; i < line.size(); ++i) cells.append(qt_text(line[i]));
        type_cells(*table, cells);
    }

    DesktopRun& run_;
    std::vector<Words> lines_;
    std::size_t at_ = 0;
};

}  // namespace kavrel
