#include "desktop/message_boxes.h"

#include <QAbstractButton>
#include <QPushButton>
#include <algorithm>

#include "desktop/mnemonics.h"
#include "desktop/text.h"
#include "shell/fixed_text.h"

namespace kavrel {

namespace {

struct CaptionIcon {
    std::string_view caption;
    QMessageBox::Icon icon;
};

// Any other caption tells of something that went wrong.
constexpr CaptionIcon icons[] = {{"Warning", QMessageBox::Warning},
                                 {"Question", QMessageBox::Question},
                                 {"Advice", QMessageBox::Information},
                                 {"Success", QMessageBox::Information}};

void furnish(QMessageBox& box, std::string_view text, std::string_view caption) {
    box.setObjectName("box");
    box.setIcon(icon_of(caption));
    box.setWindowTitle(qt_text(trim(caption)));
    box.setTextFormat(Qt::PlainText);
    box.setText(qt_text(text));
    box.setWindowModality(Qt::WindowModal);
}

}  // namespace

QMessageBox::Icon icon_of(std::string_view caption) {
    const auto found = std::ranges::find(icons, trim(caption), &CaptionIcon::caption);
    return found == std::end(icons) ? QMessageBox::Critical : found->icon;
}

Answer show_message(std::string_view text, std::string_view caption, Buttons buttons, QWidget* parent) {
    QMessageBox box(parent);
    furnish(box, text, caption);
    if (buttons == Buttons::ok) {
        box.setStandardButtons(QMessageBox::Ok);
        box.exec();
        return Answer::ok;
    }
    box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
    // Nothing is overwritten or ended by a hasty Enter.
    box.setDefaultButton(icon_of(caption) == QMessageBox::Question ? QMessageBox::Yes : QMessageBox::No);
    box.setEscapeButton(QMessageBox::No);
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
    box.exec();
    return static_cast<int>(buttons.indexOf(box.clickedButton())) + 1;
}

}  // namespace kavrel
