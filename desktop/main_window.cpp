#include "desktop/main_window.h"

#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QFontDialog>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QShortcutEvent>
#include <QStatusBar>
#include <QToolBar>
#include <QToolTip>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/check_badge.h"
#include "desktop/find_bar.h"
#include "desktop/icons.h"
#include "desktop/mnemonics.h"
#include "desktop/report_view.h"
#include "desktop/text.h"
#include "desktop/window_fit.h"
#include "shell/window_layer.h"
#include "workbench/events.h"

namespace kavrel {

namespace {

constexpr QSize usual_size(980, 720);

}  // namespace

MainWindow::MainWindow(WindowSettings& settings)
    : settings_(settings),
      report_(new ReportView),
      find_bar_(new FindBar(*report_, this)),
      toolbar_(addToolBar(tr("Toolbar"))),
      badge_(new CheckBadge(this)),
      segment_(new QLabel),
      units_(new QLabel),
      file_(new QLabel),
      work_(new QLabel),
      bar_(new QProgressBar),
      stop_(new QPushButton(tr("Stop"))),
      own_menu_(new QMenu(tr("&Window"), this)) {
    setObjectName("main");
    auto* centre = new QWidget(this);
    auto* layout = new QVBoxLayout(centre);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(report_, 1);
    layout->addWidget(find_bar_);
    setCentralWidget(centre);
    report_->setObjectName("report");
    report_->set_font(settings.report_family(), settings.report_points());
    connect(report_, &ReportView::zoom_wanted, this,
            [this](int steps) { set_report_points(report_->points() + steps); });
    report_->setFocus();

    toolbar_->setMovable(false);
    toolbar_->setIconSize(QSize(24, 24));
    toolbar_->setContextMenuPolicy(Qt::PreventContextMenu);

    bar_->setMaximumWidth(220);
    bar_->setMaximumHeight(16);
    stop_->setObjectName("stop");
    connect(stop_, &QPushButton::clicked, this, &MainWindow::stop_wanted);
    for (QWidget* one : {static_cast<QWidget*>(work_), static_cast<QWidget*>(bar_), static_cast<QWidget*>(stop_)}) {
        statusBar()->addPermanentWidget(one);
        one->hide();
    }
    statusBar()->addWidget(badge_);
    connect(badge_, &QPushButton::clicked, this, &MainWindow::check_wanted);
    for (QLabel* one : {segment_, units_, file_}) {
        one->setContentsMargins(6, 0, 6, 0);
        one->setTextFormat(Qt::PlainText);
        statusBar()->addPermanentWidget(one);
    }
    make_own_actions();
    qApp->installEventFilter(this);
    if (!settings_.restore("main", *this)) resize(usual_size.boundedTo(most_of_screen(*this)));
}

MainWindow::~MainWindow() { settings_.keep("main", *this); }

void MainWindow::set_menu(std::span<const MenuItem> table, const QString& title, std::span<const MenuItem> others) {
    table_ = table;
    setWindowTitle(title);
    segment_->setText(title.section(" - ", 1));  // "PASSIVE LC/MICROWAVE MENU" of "Kavrel - PASSIVE LC/MICROWAVE MENU"
    // The menu that is left may be the one whose item was chosen: it goes when all is done.
    const auto former = menuBar()->actions();
    menuBar()->removeAction(own_menu_->menuAction());
    for (QAction* action : former) {
        if (action->menu() == own_menu_) continue;
        menuBar()->removeAction(action);
        if (action->menu() != nullptr) action->menu()->deleteLater();
    }
    accelerators_ = fill_menu_bar(*menuBar(), table, [this](int id) { emit item_chosen(id); });
    add_menus(others);
    place_own_menu();
}

// Before the last menu, "Help". Their access keys are those that the menu has left.
void MainWindow::add_menus(std::span<const MenuItem> others) {
    const QList<QAction*> own = menuBar()->actions();
    QString taken = "w";
    for (const QAction* menu : own) taken += menu->text().section('&', 1).left(1);
    for (const QKeySequence& keys : accelerators_.keys()) {
        if (keys[0].keyboardModifiers() == Qt::AltModifier) taken += QChar(keys[0].key());
    }
    Mnemonics mnemonics(taken);
    static_cast<void>(fill_menu_bar(*menuBar(), others, [this](int id) { emit item_chosen(id); }));
    const QList<QAction*> all = menuBar()->actions();
    for (QAction* added : all.mid(own.size())) {
        const QString label = added->text().remove('&');
        added->setText(with_mnemonic(label, mnemonics.take(label)));
        menuBar()->insertAction(own.isEmpty() ? nullptr : own.last(), added);
    }
}

void MainWindow::mark_items(const Hindrance& hindrance) {
    const auto mark = [&](QAction* action, const QString& hint) {
        const QString why = hindrance(action->data().toInt());
        action->setEnabled(why.isEmpty());
        action->setToolTip(why.isEmpty() ? hint : why);
        action->setStatusTip(why.isEmpty() ? hint : why);
    };
    for (QAction* action : items_of(*menuBar())) {
        const MenuItem* item = item_of(action->data().toInt());
        if (item != nullptr) mark(action, qt_text(item->hint));
    }
    for (std::size_t i = 0; i < buttons_.size(); ++i) mark(toolbar_->actions()[qsizetype(i)], qt_text(buttons_[i].tip));
}

void MainWindow::mark_table(const QString& why) {
    table_action_->setEnabled(why.isEmpty());
    table_action_->setToolTip(why);
}

void MainWindow::set_toolbar(std::span<const ToolbarItem> toolbar) {
    buttons_ = toolbar;
    toolbar_->clear();
    for (const ToolbarItem& item : toolbar) {
        QAction* action =
            toolbar_->addAction(toolbar_icon(item.id, palette().color(QPalette::WindowText)), qt_text(item.tip));
        action->setToolTip(qt_text(item.tip));
        action->setStatusTip(qt_text(item.tip));
        action->setData(item.id);
        connect(action, &QAction::triggered, this, [this, id = item.id] { emit item_chosen(id); });
    }
}

void MainWindow::set_status(const QString& units, const QString& file) {
    units_->setText(units);
    file_->setText(file);
    file_->setVisible(!file.isEmpty());
}

void MainWindow::show_progress(const QString& work, int done, int total) {
    work_->setText(total > 0 || done <= 0 ? work : tr("%1, step %2").arg(work).arg(done));
    bar_->setRange(0, total);
    bar_->setValue(done);
    bar_->setTextVisible(total > 0);
    for (QWidget* one : {static_cast<QWidget*>(work_), static_cast<QWidget*>(bar_), static_cast<QWidget*>(stop_)}) {
        one->show();
    }
    menuBar()->setEnabled(false);
    toolbar_->setEnabled(false);
}

void MainWindow::end_progress() {
    for (QWidget* one : {static_cast<QWidget*>(work_), static_cast<QWidget*>(bar_), static_cast<QWidget*>(stop_)}) {
        one->hide();
    }
    menuBar()->setEnabled(true);
    toolbar_->setEnabled(true);
}

int MainWindow::item_labelled(std::string_view label) const {
    const auto found = std::ranges::find_if(table_, [&](const MenuItem& item) {
        return same_label(path_label(item.path, path_depth(item.path) - 1), label);
    });
    return found == table_.end() ? 0 : found->id;
}

void MainWindow::close_now() {
    closing_ = true;
    close();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (closing_) {
        event->accept();
        return;
    }
    emit close_wanted();
    event->setAccepted(closing_);
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    // An accelerator goes before the access key of a menu that has the same keys.
    if (event->type() == QEvent::Shortcut) {
        const auto* shortcut = static_cast<QShortcutEvent*>(event);
        QAction* action = accelerators_.value(shortcut->key());
        if (shortcut->isAmbiguous() && action != nullptr && menuBar()->isEnabled()) {
            action->trigger();
            return true;
        }
    }
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_F1) {
        auto* menu = qobject_cast<QMenu*>(watched);
        QAction* action = menu == nullptr ? nullptr : menu->activeAction();
        if (action != nullptr && action->data().isValid()) {
            for (QWidget* popup = QApplication::activePopupWidget(); popup != nullptr;
                 popup = QApplication::activePopupWidget()) {
                popup->close();
            }
            emit item_help_wanted(action->data().toInt());
            return true;
        }
    }
    // Why an item is grey.
    if (event->type() == QEvent::ToolTip) {
        const auto* help = static_cast<QHelpEvent*>(event);
        auto* menu = qobject_cast<QMenu*>(watched);
        QAction* action = menu == nullptr ? nullptr : menu->actionAt(help->pos());
        if (action != nullptr && !action->isEnabled()) {
            QToolTip::showText(help->globalPos(), action->toolTip(), menu, menu->actionGeometry(action));
            return true;
        }
    }
    if (event->type() == QEvent::PaletteChange && watched == this) {
        set_toolbar(buttons_);
        badge_->colour();
    }
    return QMainWindow::eventFilter(watched, event);
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && stop_->isVisible()) {
        emit stop_wanted();
    } else {
        QMainWindow::keyPressEvent(event);
    }
}

void MainWindow::make_own_actions() {
    const auto add = [this](const QString& text, const QString& hint, const QStringList& keys, auto work) {
        QAction* action = own_menu_->addAction(text);
        action->setStatusTip(hint);
        connect(action, &QAction::triggered, this, work);
        own_actions_.push_back({action, {}});
        for (const QString& one : keys) own_actions_.back().keys.push_back(QKeySequence::fromString(one));
        return action;
    };
    add(tr("&Find..."), tr("Look for a text in the report"), {"ctrl+shift+F", "ctrl+F"}, [this] { find_bar_->open(); });
    add(tr("Find &next"), tr("The next place of the text"), {"F3"}, [this] { find_bar_->find(false); });
    add(tr("Select &all"), tr("Mark the whole report"), {"ctrl+shift+A", "ctrl+A"}, [this] { report_->selectAll(); });
    own_menu_->addSeparator();
    add(tr("&Save report..."), tr("Write the report to a text file"), {"ctrl+shift+S"},
        [this] { emit save_report_wanted(); });
    add(tr("&Print report..."), tr("Print the report"), {"ctrl+shift+P"}, [this] { emit print_report_wanted(); });
    add(tr("Report as P&DF..."), tr("Write the report to a PDF file"), {}, [this] { emit pdf_report_wanted(); });
    own_menu_->addSeparator();
    table_action_ =
        add(tr("&Results as CSV..."), tr("Write the last analysis to a CSV file"), {}, [this] { emit table_wanted(); });
    add(tr("State as &JSON..."), tr("Write the whole state to a JSON file"), {}, [this] { emit state_wanted(); });
    own_menu_->addSeparator();
    add(tr("Zoom &in"), tr("Larger report text"), {"ctrl++", "ctrl+="},
        [this] { set_report_points(report_->points() + 1); });
    add(tr("Zoom &out"), tr("Smaller report text"), {"ctrl+-"}, [this] { set_report_points(report_->points() - 1); });
    add(tr("&Usual size"), tr("The usual size of the report text"), {"ctrl+0"},
        [this] { set_report_points(usual_report_points); });
    add(tr("Report fon&t..."), tr("Choose the typeface of the report"), {}, [this] { choose_font(); });
    own_menu_->addSeparator();
    // Where no item of the menu has F1.
    auto* help = new QAction(this);
    connect(help, &QAction::triggered, this, [this] { emit item_chosen(help_event); });
    addAction(help);
    own_actions_.push_back({help, {QKeySequence(Qt::Key_F1)}});
    auto* open_menu = new QAction(this);
    connect(open_menu, &QAction::triggered, this, [this] { menuBar()->setActiveAction(menuBar()->actions().first()); });
    addAction(open_menu);
    own_actions_.push_back({open_menu, {QKeySequence(Qt::Key_F10)}});
    auto* shades = new QActionGroup(this);
    for (const Shade shade : {Shade::light, Shade::dark}) {
        const bool dark = shade == Shade::dark;
        QAction* action = add(dark ? tr("Dar&k") : tr("&Light"),
                              dark ? tr("Light text on dark windows") : tr("Dark text on light windows"), {},
                              [this, shade] { emit shade_chosen(shade); });
        action->setCheckable(true);
        action->setChecked(settings_.shade() == shade);
        shades->addAction(action);
    }
}

void MainWindow::place_own_menu() {
    const auto menus = menuBar()->actions();
    menuBar()->insertMenu(menus.isEmpty() ? nullptr : menus.last(), own_menu_);
    for (const OwnAction& own : own_actions_) {
        QList<QKeySequence> free;
        for (const QKeySequence& keys : own.keys) {
            if (!accelerators_.contains(keys)) free.append(keys);
        }
        own.action->setShortcuts(free);
    }
}

void MainWindow::set_report_points(int points) {
    report_->set_font(report_->family(), points);
    settings_.set_report_font(report_->family(), report_->points());
}

void MainWindow::choose_font() {
    bool chosen = false;
    const QFont font = QFontDialog::getFont(&chosen, report_font(report_->family(), report_->points()), this,
                                            tr("Report font"), QFontDialog::MonospacedFonts);
    if (!chosen) return;
    report_->set_font(font.family(), font.pointSize());
    settings_.set_report_font(report_->family(), report_->points());
}

}  // namespace kavrel
