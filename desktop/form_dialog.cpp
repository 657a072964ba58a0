#include "desktop/form_dialog.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QShortcut>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/mnemonics.h"
#include "desktop/palettes.h"
#include "desktop/text.h"
#include "desktop/window_fit.h"
#include "desktop/window_settings.h"

namespace kavrel {

namespace {

constexpr int field_margin = 12;     // kept in sight around the field that has the focus
constexpr int longest_refusal = 60;  // characters

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
    : QDialog(parent),
      sheet_(sheet),
      settings_(settings),
      refusal_(new QLabel(this)),
      buttons_(new QDialogButtonBox(this)) {
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
        if (editors.back() != nullptr) connect(editors.back(), &FieldEditor::changed, this, &FormDialog::take_change);
    }
    buttons_->addButton(tr("&OK"), QDialogButtonBox::AcceptRole)->setDefault(true);
    buttons_->addButton(tr("&Cancel"), QDialogButtonBox::RejectRole)->setAutoDefault(false);
    buttons_->addButton(tr("&Help"), QDialogButtonBox::HelpRole)->setAutoDefault(false);
    connect(buttons_, &QDialogButtonBox::accepted, this, &FormDialog::accept);
    connect(buttons_, &QDialogButtonBox::rejected, this, &FormDialog::reject);
    connect(buttons_, &QDialogButtonBox::helpRequested, this, [this, name] { emit help_wanted(name); });
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
    refusal_->setObjectName("refusal");
    refusal_->setTextFormat(Qt::PlainText);
    refusal_->setWordWrap(true);
    QPalette colours = refusal_->palette();
    colours.setColor(QPalette::WindowText, alarm_text(colours));
    refusal_->setPalette(colours);
    const int width = std::max(area->sizeHint().width(), buttons_->sizeHint().width());
    const QFontMetrics type(refusal_->font());
    refusal_->setFixedHeight(type.lineSpacing() * (type.averageCharWidth() * longest_refusal > width ? 2 : 1));
    layout->addWidget(refusal_);
    layout->addWidget(buttons_);
    refresh();
    static_cast<void>(settings_.restore(name, *this));
    fit_screen();
    show_refusal(qt_text(sheet.refusal().text));
    focus_field(sheet.refusal().field);
}

FormDialog::~FormDialog() {
    settings_.keep(objectName(), *this);
    hide();  // a cell that is still being typed into is left now, while its form is whole
}

void FormDialog::accept() {
    if (show_wrong_entry()) return;
    // A cell that is still being typed into counts.
    if (QWidget* here = focusWidget()) here->clearFocus();
    if (show_wrong_entry()) return;
    if (sheet_.passes()) return QDialog::accept();
    show_refusal(qt_text(sheet_.refusal().text));
    focus_field(sheet_.refusal().field);
}

void FormDialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    setAttribute(Qt::WA_KeyboardFocusChange);  // a radio shows that it has the focus, before the first Tab, too
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

// What the form says of an entry goes as soon as the entry is mended.
void FormDialog::take_change() {
    refresh();
    const PlacedField* wrong = wrong_entry();
    if (!refusal_->text().isEmpty()) show_refusal(wrong == nullptr ? QString() : wrong->editor->wrong());
}

void FormDialog::refresh() {
    if (refreshing_) return;
    refreshing_ = true;
    for (const PlacedField& field : fields_) {
        field.editor->refresh();
        if (field.echo != nullptr) {
            const bool holds = field.editor->is_on() && field.editor->wrong().isEmpty();
            field.echo->setText(holds ? field.editor->echo() : QString());
        }
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

std::vector<FormDialog::Stop> FormDialog::stops() const {
    std::vector<Stop> stops;
    for (const PlacedField& field : fields_) {
        if (!field.editor->is_on()) continue;
        const QList<QWidget*> further = field.editor->further_stops();
        QWidget* focus = field.editor->focus_widget();
        stops.push_back({further.isEmpty() ? field.editor->widget() : focus, focus});
        for (QWidget* one : further) stops.push_back({one, one});
    }
    for (QAbstractButton* button : buttons_->buttons()) stops.push_back({button, button});
    return stops;
}

bool FormDialog::focusNextPrevChild(bool next) {
    const std::vector<Stop> all = stops();
    const QWidget* here = focusWidget();
    const auto at = std::ranges::find_if(
        all, [&](const Stop& stop) { return stop.part == here || (here != nullptr && stop.part->isAncestorOf(here)); });
    const auto place = static_cast<std::size_t>(at - all.begin());
    std::size_t wanted = next ? 0 : all.size() - 1;
    if (at != all.end()) wanted = (place + (next ? 1 : all.size() - 1)) % all.size();
    all[wanted].focus->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

// The field of this name or, where that is off or there is none, the first one.
void FormDialog::focus_field(std::string_view name) {
    const PlacedField* wanted = nullptr;
    for (const PlacedField& field : fields_) {
        if (field.editor->is_on() && (wanted == nullptr || field.editor->field().name == name)) wanted = &field;
    }
    if (wanted != nullptr) wanted->editor->focus_widget()->setFocus(Qt::TabFocusReason);
}

const PlacedField* FormDialog::wrong_entry() const {
    const auto found = std::ranges::find_if(
        fields_, [](const PlacedField& field) { return field.editor->is_on() && !field.editor->wrong().isEmpty(); });
    return found == fields_.end() ? nullptr : &*found;
}

bool FormDialog::show_wrong_entry() {
    const PlacedField* wrong = wrong_entry();
    if (wrong == nullptr) return false;
    show_refusal(wrong->editor->wrong());
    wrong->editor->go_to_wrong();  // all of it marked: what is typed replaces it
    return true;
}

void FormDialog::show_refusal(const QString& text) {
    refusal_->setText(text.simplified());  // a box's lines go on in one
    refusal_->setToolTip(refusal_->text());
}

}  // namespace kavrel
