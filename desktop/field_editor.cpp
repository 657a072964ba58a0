#include "desktop/field_editor.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QStandardItemModel>

#include "desktop/list_editor.h"
#include "desktop/mnemonics.h"
#include "desktop/number_entry.h"
#include "desktop/palettes.h"
#include "desktop/text.h"
#include "shell/fixed_text.h"
#include "shell/number_text.h"

namespace kavrel {

namespace {

constexpr int entry_width = 112;  // of number boxes, so that those of a form line up

QString choice_label(const FormSheet& sheet, const Choice& choice) { return qt_text(trim(sheet.choice_label(choice))); }

// A line to type into. A letter with Alt is an access key, never text, also where no field has that key.
class EntryLine final : public QLineEdit {
public:
    using QLineEdit::QLineEdit;

protected:
    void keyPressEvent(QKeyEvent* event) override {
        const bool is_access_key = event->modifiers() == Qt::AltModifier && !event->text().isEmpty();
        is_access_key ? event->ignore() : QLineEdit::keyPressEvent(event);
    }
};

class NumberEditor final : public FieldEditor {
public:
    NumberEditor(FormSheet& sheet, std::size_t field, QWidget* parent)
        : FieldEditor(sheet, field, parent), box_(new EntryLine(parent)) {
        box_->setAlignment(Qt::AlignRight);
        box_->setFixedWidth(entry_width);
        connect(box_, &QLineEdit::textEdited, this, &NumberEditor::take);
    }
    QWidget* widget() const override { return box_; }
    QString wrong() const override { return wrong_; }

    void refresh() override {
        box_->setEnabled(is_on());
        const std::string shown = sheet_.shown(field_);
        if (shown != shown_ || (!is_on() && !wrong_.isEmpty())) {
            shown_ = shown;
            mark({});
            box_->setText(short_number(parse_number(shown).value_or(0.0)));
        }
    }

private:
    void take(const QString& typed) {
        QString wrong = enter(typed_number(typed));
        if (typed.contains(',')) wrong.replace(qt_text(typed_number(typed)), typed.trimmed());  // named as it was typed
        mark(wrong);
        shown_ = sheet_.shown(field_);
        emit changed();
    }

    void mark(const QString& wrong) {
        wrong_ = wrong;
        box_->setToolTip(wrong);
        QPalette colours = box_->parentWidget()->palette();
        if (!wrong.isEmpty()) colours.setColor(QPalette::Base, alarm_paper(colours));
        box_->setPalette(colours);
    }

    QLineEdit* box_;
    std::string shown_;
    QString wrong_;
};

class IntegerEditor final : public FieldEditor {
public:
    IntegerEditor(FormSheet& sheet, std::size_t field, QWidget* parent)
        : FieldEditor(sheet, field, parent), box_(new QSpinBox(parent)) {
        const int value = parse_integer(sheet.shown(field)).value_or(0);
        // A value from elsewhere that lies outside is shown as it is.
        box_->setRange(std::min(this->field().low, value), std::max(this->field().high, value));
        box_->setAlignment(Qt::AlignRight);
        box_->setFixedWidth(entry_width);
        connect(box_, &QSpinBox::valueChanged, this, [this](int number) {
            wrong_ = enter(std::to_string(number));
            emit changed();
        });
    }
    QWidget* widget() const override { return box_; }
    QString wrong() const override { return wrong_; }

    void refresh() override {
        const QSignalBlocker silent(box_);
        box_->setEnabled(is_on());
        const int value = parse_integer(sheet_.shown(field_)).value_or(0);
        if (box_->value() != value && wrong_.isEmpty()) box_->setValue(value);
    }

private:
    QSpinBox* box_;
    QString wrong_;
};

class RadioEditor final : public FieldEditor {
public:
    RadioEditor(FormSheet& sheet, std::size_t field, QWidget* parent)
        : FieldEditor(sheet, field, parent), box_(new QGroupBox(parent)), buttons_(new QButtonGroup(this)) {
        auto* grid = new QGridLayout(box_);
        grid->setContentsMargins(10, 4, 10, 6);
        grid->setHorizontalSpacing(14);
        grid->setVerticalSpacing(2);
        const auto choices = this->field().choices;
        const int columns = column_count(choices);
        const int rows = (static_cast<int>(choices.size()) + columns - 1) / columns;
        for (std::size_t k = 0; k < choices.size(); ++k) {
            auto* button = new QRadioButton(with_mnemonic(choice_label(sheet_, choices[k]), {}), box_);
            button->setObjectName(qt_text(this->field().name) + '=' + QString::number(choices[k].value));
            buttons_->addButton(button, choices[k].value);
            const int place = static_cast<int>(k);
            // Few choices read across, many read down.
            if (rows == 1) {
                grid->addWidget(button, 0, place);
            } else {
                grid->addWidget(button, place % rows, place / rows);
            }
            button->installEventFilter(this);
            connect(button, &QRadioButton::clicked, this, [this, value = choices[k].value] {
                static_cast<void>(enter(std::to_string(value)));
                emit changed();
            });
        }
        grid->setColumnStretch(columns, 1);
    }
    QWidget* widget() const override { return box_; }
    bool wants_label() const override { return false; }
    void set_mnemonic(QChar key) override { key_ = key; }

    QWidget* focus_widget() const override {
        if (auto* checked = buttons_->checkedButton()) return checked;
        return buttons_->buttons().isEmpty() ? box_ : static_cast<QWidget*>(buttons_->buttons().first());
    }

    void refresh() override {
        box_->setTitle(with_mnemonic(label(), key_));
        box_->setEnabled(is_on());
        const std::string shown = sheet_.shown(field_);
        for (const Choice& choice : field().choices) {
            QAbstractButton* button = buttons_->button(choice.value);
            button->setEnabled(sheet_.choice_is_on(field_, choice.value));
            if (sheet_.choice_label(choice) == shown) button->setChecked(true);
        }
        // The tab key comes to the chosen one, or to the first where that is off or nothing is chosen.
        const auto buttons = buttons_->buttons();
        const QAbstractButton* chosen = buttons_->checkedButton();
        const bool has_choice = chosen != nullptr && chosen->isEnabled();
        bool wanted = !has_choice;
        for (QAbstractButton* button : buttons) {
            const bool takes_tab = has_choice ? button == chosen : wanted && button->isEnabled();
            button->setFocusPolicy(takes_tab ? Qt::StrongFocus : Qt::ClickFocus);
            if (takes_tab) wanted = false;
        }
    }

protected:
    // Arrow keys go through the choices in their order, however they are laid out.
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::KeyPress) return false;
        const int key = static_cast<QKeyEvent*>(event)->key();
        const bool forwards = key == Qt::Key_Down || key == Qt::Key_Right;
        if (!forwards && key != Qt::Key_Up && key != Qt::Key_Left) return false;
        const auto buttons = buttons_->buttons();
        const qsizetype step = forwards ? 1 : -1;
        for (qsizetype k = buttons.indexOf(watched) + step; k >= 0 && k < buttons.size(); k += step) {
            if (!buttons[k]->isEnabled()) continue;
            buttons[k]->setFocus();
            buttons[k]->click();
            break;
        }
        return true;
    }

private:
    static int column_count(std::span<const Choice> choices) {
        std::size_t letters = 0;
        for (const Choice& choice : choices) letters += choice.label.size() + 4;
        if (letters <= 42) return static_cast<int>(choices.size());
        return choices.size() <= 6 ? 2 : 3;
    }

    QGroupBox* box_;
    QButtonGroup* buttons_;
    QChar key_;
};

class ChoiceEditor final : public FieldEditor {
public:
    ChoiceEditor(FormSheet& sheet, std::size_t field, QWidget* parent)
        : FieldEditor(sheet, field, parent), box_(new QComboBox(parent)) {
        for (const Choice& choice : this->field().choices) box_->addItem(choice_label(sheet_, choice), choice.value);
        box_->setMinimumWidth(entry_width);
        connect(box_, &QComboBox::currentIndexChanged, this, [this] {
            static_cast<void>(enter(std::to_string(box_->currentData().toInt())));
            emit changed();
        });
    }
    QWidget* widget() const override { return box_; }

    void refresh() override {
        const QSignalBlocker silent(box_);
        box_->setEnabled(is_on());
        const auto* model = qobject_cast<QStandardItemModel*>(box_->model());
        int current = -1;
        for (int k = 0; k < box_->count(); ++k) {
            const Choice& choice = field().choices[static_cast<std::size_t>(k)];
            if (model != nullptr) model->item(k)->setEnabled(sheet_.choice_is_on(field_, choice.value));
            if (sheet_.choice_label(choice) == sheet_.shown(field_)) current = k;
        }
        box_->setCurrentIndex(current);
    }

private:
    QComboBox* box_;
};

class FlagEditor final : public FieldEditor {
public:
    FlagEditor(FormSheet& sheet, std::size_t field, QWidget* parent)
        : FieldEditor(sheet, field, parent), box_(new QCheckBox(parent)) {
        connect(box_, &QCheckBox::clicked, this, [this](bool on) {
            static_cast<void>(enter(on ? "yes" : "no"));
            emit changed();
        });
    }
    QWidget* widget() const override { return box_; }
    bool wants_label() const override { return false; }
    void set_mnemonic(QChar key) override { key_ = key; }

    void refresh() override {
        box_->setText(with_mnemonic(label(), key_));
        box_->setEnabled(is_on());
        box_->setChecked(sheet_.shown(field_) == "yes");
    }

private:
    QCheckBox* box_;
    QChar key_;
};

class TextEditor final : public FieldEditor {
public:
    TextEditor(FormSheet& sheet, std::size_t field, QWidget* parent)
        : FieldEditor(sheet, field, parent), box_(new EntryLine(parent)) {
        box_->setMinimumWidth(3 * entry_width);
        connect(box_, &QLineEdit::textEdited, this, [this](const QString& typed) {
            static_cast<void>(enter(utf8_text(typed)));
            shown_ = sheet_.shown(field_);
            emit changed();
        });
    }
    QWidget* widget() const override { return box_; }

    void refresh() override {
        box_->setEnabled(is_on());
        const std::string shown = sheet_.shown(field_);
        if (!box_->text().isNull() && shown == shown_) return;
        shown_ = shown;
        box_->setText(qt_text(shown));
    }

private:
    QLineEdit* box_;
    std::string shown_;
};

class ButtonEditor final : public FieldEditor {
public:
    ButtonEditor(FormSheet& sheet, std::size_t field, QWidget* parent)
        : FieldEditor(sheet, field, parent), button_(new QPushButton(parent)) {
        button_->setAutoDefault(false);
        button_->setMinimumWidth(entry_width);  // those below each other line up
        connect(button_, &QPushButton::clicked, this, [this] {
            sheet_.press(field_);
            emit changed();
            button_->setFocus();
        });
    }
    QWidget* widget() const override { return button_; }
    bool wants_label() const override { return false; }
    void set_mnemonic(QChar key) override { key_ = key; }

    void refresh() override {
        const QString dots = label().endsWith('.') ? "" : "...";
        button_->setText(with_mnemonic(label() + dots, key_));
        button_->setEnabled(is_on());
    }

private:
    QPushButton* button_;
    QChar key_;
};

}  // namespace

QString FieldEditor::label() const { return qt_text(sheet_.label(field_)); }

QString FieldEditor::enter(const std::string& value) { return qt_text(sheet_.enter(field_, value)); }

FieldEditor* make_field_editor(FormSheet& sheet, std::size_t field, QWidget* parent) {
    FieldEditor* editor = nullptr;
    switch (sheet.field(field).kind) {
        case FieldKind::real: editor = new NumberEditor(sheet, field, parent); break;
        case FieldKind::integer: editor = new IntegerEditor(sheet, field, parent); break;
        case FieldKind::radio: editor = new RadioEditor(sheet, field, parent); break;
        case FieldKind::choice: editor = new ChoiceEditor(sheet, field, parent); break;
        case FieldKind::flag: editor = new FlagEditor(sheet, field, parent); break;
        case FieldKind::text: editor = new TextEditor(sheet, field, parent); break;
        case FieldKind::button: editor = new ButtonEditor(sheet, field, parent); break;
        case FieldKind::list: editor = new ListEditor(sheet, field, parent); break;
        case FieldKind::heading: return nullptr;
    }
    editor->widget()->setObjectName(qt_text(sheet.field(field).name));
    return editor;
}

}  // namespace kavrel
