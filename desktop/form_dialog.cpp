#include "desktop/form_dialog.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QShortcut>
#include <QStyle>
#include <QToolTip>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/mnemonics.h"
#include "desktop/text.h"
#include "desktop/window_fit.h"
#include "desktop/window_settings.h"

namespace kavrel {

namespace {

constexpr int field_margin = 12;  // kept in sight around the field that has the focus

// The fields of a form. Where the screen is too small for all of them they can be scrolled, and the field that has the
// focus is in sight.
class FormBody final : public QScrollArea {
public:
    explicit FormBody(QWidget* parent) : QScrollArea(parent) {
        setFrameShape(QFrame::NoFrame);
        setFocusPolicy(Qt::NoFocus);
        setWidgetResizable(true);
        connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
            if (now != nullptr && widget() != nullptr && widget()->isAncestorOf(now)) bring_into_sight(*now);
        });
    }
    QSize sizeHint() const override { return widget()->sizeHint().expandedTo(widget()->minimumSizeHint()); }
    QSize minimumSizeHint() const override { return sizeHint().boundedTo({240, 120}); }

private:
    // All of the field, not only the place of its text cursor.
    void bring_into_sight(const QWidget& field) {
        const QPoint middle = field.mapTo(widget(), field.rect().center());
        const QSize margins = (field.size() / 2 + QSize(field_margin, field_margin)).boundedTo(viewport()->size() / 2);
        ensureVisible(middle.x(), middle.y(), margins.width(), margins.height());
    }
};

}  // namespace

FormDialog::FormDialog(FormSheet& sheet, WindowSettings& settings, QWidget* parent)
    : QDialog(parent), sheet_(sheet), settings_(settings) {
    const QString name = qt_text(sheet.form().name);
    setObjectName(name);
    setWindowTitle(qt_text(sheet.form().title));
    setWindowModality(Qt::WindowModal);  // the manual stays open beside it

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 12, 12, 12);
    layout->setSpacing(12);
    auto* body = new QWidget;
    std::vector<FieldEditor*> editors;
    for (std::size_t i = 0; i < sheet.size(); ++i) {
        editors.push_back(make_field_editor(sheet, i, body));
        if (editors.back() != nullptr) connect(editors.back(), &FieldEditor::changed, this, &FormDialog::refresh);
    }
    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(tr("&OK"), QDialogButtonBox::AcceptRole)->setDefault(true);
    buttons->addButton(tr("&Cancel"), QDialogButtonBox::RejectRole)->setAutoDefault(false);
    buttons->addButton(tr("&Help"), QDialogButtonBox::HelpRole)->setAutoDefault(false);
    connect(buttons, &QDialogButtonBox::accepted, this, &FormDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &FormDialog::reject);
    connect(buttons, &QDialogButtonBox::helpRequested, this, [this, name] { emit help_wanted(name); });
    connect(new QShortcut(QKeySequence(Qt::Key_F1), this), &QShortcut::activated, this,
            [this, name] { emit help_wanted(name); });
    for (const auto key : {Qt::Key_Return, Qt::Key_Enter}) {
        connect(new QShortcut(QKeySequence(Qt::CTRL | key), this), &QShortcut::activated, this, &FormDialog::accept);
    }
    Mnemonics mnemonics("och");
    fields_ = lay_out_form(sheet, editors, mnemonics, *body);
    auto* area = new FormBody(this);
    area->setWidget(body);
    layout->addWidget(area, 1);
    layout->addWidget(buttons);
    order_tabs();
    refresh();
    static_cast<void>(settings_.restore(name, *this));
    fit_screen();
    focus_field(settings_.form_field(name));
}

FormDialog::~FormDialog() {
    settings_.keep(objectName(), *this);
    hide();  // a cell that is still being typed into is left now, while its form is whole
}

void FormDialog::accept() {
    keep_field();
    // A cell that is still being typed into counts.
    if (QWidget* here = focusWidget()) here->clearFocus();
    if (!show_wrong_entry()) QDialog::accept();
}

void FormDialog::reject() {
    keep_field();
    QDialog::reject();
}

void FormDialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    activateWindow();
}

// As large as its fields, or as it was left, but no larger than the screen.
void FormDialog::fit_screen() {
    const QSize most = most_of_screen(*this);
    QSize wanted = size().expandedTo(sizeHint());
    wanted.setWidth(std::max(wanted.width(), title_bar_width(*this)));
    const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    if (sizeHint().height() > most.height()) wanted.rwidth() = std::max(wanted.width(), sizeHint().width() + bar);
    resize(wanted.boundedTo(most));
}

void FormDialog::refresh() {
    if (refreshing_) return;
    refreshing_ = true;
    for (const PlacedField& field : fields_) {
        field.editor->refresh();
        if (field.label == nullptr) continue;
        field.label->setText(with_mnemonic(field.editor->label(), field.key));
        field.label->setEnabled(field.editor->is_on());
    }
    for (std::size_t i = 0; i < sheet_.size(); ++i) {
        if (sheet_.field(i).kind != FieldKind::heading) continue;
        auto* heading = findChild<QGroupBox*>(qt_text(sheet_.field(i).name));
        heading->setEnabled(sheet_.is_on(i));
        heading->setTitle(with_mnemonic(qt_text(sheet_.label(i)), {}));
    }
    refreshing_ = false;
}

void FormDialog::order_tabs() {
    QWidget* before = nullptr;
    for (const PlacedField& field : fields_) {
        QWidget* here = field.editor->focus_widget();
        if (before != nullptr) setTabOrder(before, here);
        before = here;
    }
}

void FormDialog::focus_field(const QString& name) {
    const PlacedField* first = nullptr;
    for (const PlacedField& field : fields_) {
        if (!field.editor->is_on()) continue;
        if (first == nullptr) first = &field;
        if (field.editor->widget()->objectName() == name) {
            first = &field;
            break;
        }
    }
    if (first != nullptr) first->editor->focus_widget()->setFocus();
}

void FormDialog::keep_field() {
    for (const QWidget* at = focusWidget(); at != nullptr && at != this; at = at->parentWidget()) {
        for (const PlacedField& field : fields_) {
            if (field.editor->widget() == at) settings_.keep_form_field(objectName(), at->objectName());
        }
    }
}

bool FormDialog::show_wrong_entry() {
    for (const PlacedField& field : fields_) {
        const QString wrong = field.editor->wrong();
        if (wrong.isEmpty() || !field.editor->is_on()) continue;
        QWidget* at = field.editor->focus_widget();
        at->setFocus();
        QToolTip::showText(at->mapToGlobal(QPoint(0, at->height())), wrong, at);
        return true;
    }
    return false;
}

}  // namespace kavrel
