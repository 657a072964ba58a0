#include "desktop/field_editor.h"

#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
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

constexpr int entry_width = 100;  // of number boxes, so that those of a form line up

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

// The entry of a number or, where something is wrong with it, what; the box is red then.
void mark(QWidget& box, const QString& wrong) {
    box.setToolTip(wrong);
    QPalette colours = box.parentWidget()->palette();
    if (!wrong.isEmpty()) colours.setColor(QPalette::Base, alarm_paper(colours));
    box.setPalette(colours);
}

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
            set_wrong({});
            box_->setText(short_number(parse_number(shown).value_or(0.0)));
        }
    }

private:
    void take(const QString& typed) {
        QString wrong = enter(typed_number(typed));
        if (typed.contains(',')) wrong.replace(qt_text(typed_number(typed)), typed.trimmed());  // named as it was typed
        set_wrong(wrong);
        shown_ = sheet_.shown(field_);
        emit changed();
    }

    void set_wrong(const QString& wrong) {
        wrong_ = wrong;
        mark(*box_, wrong);
    }

    QLineEdit* box_;
    std::string shown_;
    QString wrong_;
};

// A spinner whose arrows keep to a range; what is typed stays as it is, for the form to judge.
class Spinner final : public QSpinBox {
public:
    Spinner(int low, int high, QWidget* parent) : QSpinBox(parent), low_(low), high_(high) {
        setRange(-most_typed, most_typed);
    }
    void stepBy(int steps) override { setValue(std::clamp(value() + steps, low_, high_)); }
    using QSpinBox::lineEdit;

protected:
    StepEnabled stepEnabled() const override {
        return (value() > low_ ? StepDownEnabled : StepNone) | (value() < high_ ? StepUpEnabled : StepNone);
    }

private:
    static constexpr int most_typed = 999'999'999;

    int low_, high_;
};

class IntegerEditor final : public FieldEditor {
public:
    IntegerEditor(FormSheet& sheet, std::size_t field, QWidget* parent)
        : FieldEditor(sheet, field, parent), box_(new Spinner(this->field().low, this->field().high, parent)) {
        box_->setAlignment(Qt::AlignRight);
        box_->setFixedWidth(entry_width);
        connect(box_->lineEdit(), &QLineEdit::textEdited, this, &IntegerEditor::take);
        connect(box_, &QSpinBox::valueChanged, this, [this] { take(box_->text()); });
        // A box that is left while it is blank shows its number again.
        connect(box_, &QSpinBox::editingFinished, this, [this] {
            if (!wrong_.isEmpty()) take(box_->text());
        });
    }
    QWidget* widget() const override { return box_; }
    QString wrong() const override { return wrong_; }

    void refresh() override {
        const QSignalBlocker silent(box_);
        box_->setEnabled(is_on());
        if (!is_on()) set_wrong({});
        const int value = parse_integer(sheet_.shown(field_)).value_or(0);
        if (box_->value() != value && wrong_.isEmpty()) box_->setValue(value);
    }

private:
    void take(const QString& typed) {
        set_wrong(enter(utf8_text(typed)));
        emit changed();
    }

    void set_wrong(const QString& wrong) {
        wrong_ = wrong;
        mark(*box_, wrong);
    }

    Spinner* box_;
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

    // The chosen one, or the first where that is off or nothing is chosen.
    QWidget* focus_widget() const override {
        QAbstractButton* chosen = buttons_->checkedButton();
        if (chosen != nullptr && chosen->isEnabledTo(box_)) return chosen;
        for (QAbstractButton* button : buttons_->buttons()) {
            if (button->isEnabledTo(box_)) return button;
        }
        return box_;
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

// The choices of a list to drop down. Letters choose the one that reads so, and only if none does the next that begins
// with them: "l" is "l", not "lc".
class ChoiceList final : public QListView {
public:
    using QListView::QListView;

    void keyboardSearch(const QString& typed) override {
        if (since_last_.isValid() && since_last_.elapsed() > QApplication::keyboardInputInterval()) so_far_.clear();
        since_last_.start();
        so_far_ += typed;
        if (!choose(so_far_, Qt::MatchFixedString)) QListView::keyboardSearch(typed);
    }

private:
    bool choose(const QString& label, Qt::MatchFlags flags) {
        for (const QModelIndex& found : model()->match(model()->index(0, 0), Qt::DisplayRole, label, 1, flags)) {
            if (!(found.flags() & Qt::ItemIsEnabled)) continue;
            setCurrentIndex(found);
            return true;
        }
        return false;
    }

    QString so_far_;
    QElapsedTimer since_last_;
};

class ChoiceEditor final : public FieldEditor {
public:
    ChoiceEditor(FormSheet& sheet, std::size_t field, QWidget* parent)
        : FieldEditor(sheet, field, parent), box_(new QComboBox(parent)) {
        box_->setView(new ChoiceList(box_));
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
            if (shown_ != trim_right(utf8_text(typed))) keep_what_fits();
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
    // Typing ends where the record does.
    void keep_what_fits() {
        const int place = box_->cursorPosition();
        box_->setText(qt_text(shown_));
        box_->setCursorPosition(place);
    }

    QLineEdit* box_;
    std::string shown_;
};

class ButtonEditor final : public FieldEditor {
public:
    ButtonEditor(FormSheet& sheet, std::size_t field, QWidget* parent)
        : FieldEditor(sheet, field, parent), button_(new QPushButton(parent)) {
        button_->setAutoDefault(true);  // the return key presses it where it has the focus
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

QString FieldEditor::echo() const { return qt_text(sheet_.echo(field_)); }

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
