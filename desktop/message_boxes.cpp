#include "desktop/message_boxes.h"

#include <QAbstractButton>
#include <QGridLayout>
#include <QPushButton>
#include <algorithm>

#include "desktop/mnemonics.h"
#include "desktop/text.h"
#include "desktop/window_fit.h"
#include "shell/fixed_text.h"

namespace kavrel {

namespace {

void furnish(QMessageBox& box, std::string_view text, std::string_view caption);
void make_room_for_caption(QMessageBox& box);

}  // namespace

QMessageBox::Icon icon_of(std::string_view caption) {
    if (is_of_failure(trim(caption))) return QMessageBox::Critical;
    if (trim(caption) == "Warning") return QMessageBox::Warning;
    return trim(caption) == "Question" ? QMessageBox::Question : QMessageBox::Information;
}

Answer show_message(std::string_view text, std::string_view caption, Buttons buttons, QWidget* parent) {
    QMessageBox box(parent);
    furnish(box, text, caption);
    if (buttons == Buttons::ok) {
        box.setStandardButtons(QMessageBox::Ok);
        make_room_for_caption(box);
        box.exec();
        return Answer::ok;
    }
    box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
    // Nothing is overwritten or ended by a hasty Enter.
    box.setDefaultButton(icon_of(caption) == QMessageBox::Question ? QMessageBox::Yes : QMessageBox::No);
    box.setEscapeButton(QMessageBox::No);
    make_room_for_caption(box);
    return box.exec() == QMessageBox::Yes ? Answer::yes : Answer::no;
}

int show_choices(const ChoiceBox& choices, QWidget* parent) {
    QMessageBox box(parent);
    furnish(box, choices.text, choices.caption);
    Mnemonics mnemonics("c");
    QList<QAbstractButton*> buttons;
    for (const auto choice : choices.choices) {
        const QString label = qt_text(trim(choice));
        buttons.append(box.addButton(with_mnemonic(label, mnemonics.take(label)), QMessageBox::ActionRole));
    }
    box.setEscapeButton(box.addButton(QObject::tr("&Cancel"), QMessageBox::RejectRole));
    if (!buttons.isEmpty()) box.setDefaultButton(static_cast<QPushButton*>(buttons.first()));
    make_room_for_caption(box);
    box.exec();
    return static_cast<int>(buttons.indexOf(box.clickedButton())) + 1;
}

namespace {

void furnish(QMessageBox& box, std::string_view text, std::string_view caption) {
    box.setObjectName("box");
    box.setIcon(icon_of(caption));
    box.setWindowTitle(qt_text(trim(caption)));
    box.setTextFormat(Qt::PlainText);
    box.setText(qt_text(text));
    box.setWindowModality(Qt::WindowModal);
}

// A box is as wide as its text and buttons: this makes it wide enough for its caption, too.
void make_room_for_caption(QMessageBox& box) {
    auto* grid = qobject_cast<QGridLayout*>(box.layout());
    if (grid == nullptr) return;
    auto* room = new QSpacerItem(title_bar_width(box), 0, QSizePolicy::Minimum, QSizePolicy::Fixed);
    grid->addItem(room, grid->rowCount(), 0, 1, grid->columnCount());
}

}  // namespace

}  // namespace kavrel
