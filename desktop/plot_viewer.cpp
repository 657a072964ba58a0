#include "desktop/plot_viewer.h"

#include <QApplication>
#include <QBuffer>
#include <QClipboard>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMenuBar>
#include <QMimeData>
#include <QStatusBar>
#include <QToolBar>

#include "desktop/icons.h"
#include "desktop/message_boxes.h"
#include "desktop/plot_view.h"
#include "desktop/text.h"
#include "shell/whole_file.h"

namespace kavrel {

namespace {

constexpr int picture_scale = 2;  // pixels of a picture for one of the window

}  // namespace

PlotViewer::PlotViewer(WindowSettings& settings)
    : settings_(settings),
      view_(new PlotView(this)),
      cursor_(new QLabel(this)),
      difference_(new QLabel(this)),
      menu_(new QMenu(this)) {
    setWindowTitle(qt_text(plot_window_title));
    setWindowIcon(program_icon());
    setObjectName("plot_window");
    setCentralWidget(view_);
    QAction* print = menuBar()->addAction(tr("&Print"));
    print->setStatusTip("Print current filter plot");
    connect(print, &QAction::triggered, this, [this] { emit print_wanted(print_id_); });
    make_toolbar();
    auto* title = new QLabel(qt_text(cursor_box_title) + ':', this);
    title->setContentsMargins(6, 0, 0, 0);
    statusBar()->addWidget(title);
    statusBar()->addWidget(cursor_);
    statusBar()->addPermanentWidget(difference_);
    cursor_->setObjectName("cursor");
    connect(view_, &PlotView::cursor_moved, this, &PlotViewer::show_cursor);
    connect(view_, &PlotView::menu_wanted, this, [this](const QPoint& at) { menu_->popup(at); });
    set_shade(settings.shade());
    if (!settings_.restore("plot", *this)) adjustSize();
}

PlotViewer::~PlotViewer() { settings_.keep("plot", *this); }

void PlotViewer::show_plot(const PlotWindow& plot) {
    print_id_ = plot.print_id;
    view_->show_plot(plot);
    show();
    raise();
    view_->setFocus();
}

void PlotViewer::mark_earlier(bool earlier) { view_->mark_earlier(earlier); }

void PlotViewer::set_shade(Shade shade) { view_->set_shade(shade); }

bool PlotViewer::save_picture(const QString& name) const {
    if (name.endsWith(".svg", Qt::CaseInsensitive)) return write_whole(utf8_text(name), view_->svg()).has_value();
    const QByteArray format = QFileInfo(name).suffix().toLatin1();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    return !format.isEmpty() && view_->picture(view_->size() * picture_scale).save(&buffer, format.constData()) &&
           write_whole(utf8_text(name), {bytes.constData(), static_cast<std::size_t>(bytes.size())});
}

void PlotViewer::copy_picture() const {
    auto* copied = new QMimeData;
    copied->setImageData(view_->picture(view_->size() * picture_scale));
    copied->setData("image/svg+xml", QByteArray::fromStdString(view_->svg()));
    QApplication::clipboard()->setMimeData(copied);
}

void PlotViewer::make_toolbar() {
    QToolBar* bar = addToolBar(tr("Plot"));
    bar->setMovable(false);
    bar->setToolButtonStyle(Qt::ToolButtonTextOnly);
    const auto add = [&](const QString& text, const QString& tip, const QKeySequence& keys, auto work) {
        QAction* action = bar->addAction(text);
        action->setToolTip(tip);
        action->setStatusTip(tip);
        if (!keys.isEmpty()) action->setShortcut(keys);
        connect(action, &QAction::triggered, this, work);
        menu_->addAction(action);
        return action;
    };
    const auto separate = [&] {
        bar->addSeparator();
        menu_->addSeparator();
    };
    add(tr("Show all"), tr("The whole plot (0)"), {}, [this] { view_->show_all(); });
    add(tr("Closer"), tr("Zoom in (+, or the wheel, or a rubber band with the right button)"), {},
        [this] { view_->zoom_in(); });
    add(tr("Farther"), tr("Zoom out (-)"), {}, [this] { view_->zoom_out(); });
    separate();
    add(tr("Set mark"), tr("Differences from this point (M, or a double click)"), {}, [this] { view_->mark_here(); });
    add(tr("Clear mark"), tr("No differences (Esc)"), {}, [this] { view_->clear_mark(); });
    separate();
    add(tr("Copy"), tr("Copy the plot as a picture (Ctrl+C)"), QKeySequence::Copy, [this] { copy_picture(); });
    add(tr("Save..."), tr("Save the plot as PNG or SVG (Ctrl+S)"), QKeySequence::Save,
        [this] { choose_picture_file(); });
}

void PlotViewer::choose_picture_file() {
    QFileDialog dialog(this, tr("Save plot"), QDir::currentPath(), tr("PNG picture (*.png);;SVG drawing (*.svg)"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix("png");
    connect(&dialog, &QFileDialog::filterSelected, &dialog,
            [&](const QString& filter) { dialog.setDefaultSuffix(filter.contains("svg") ? "svg" : "png"); });
    if (dialog.exec() != QDialog::Accepted) return;
    if (!save_picture(dialog.selectedFiles().first())) {
        static_cast<void>(show_message("File could not be written", "Error", Buttons::ok, this));
    }
}

void PlotViewer::show_cursor() {
    cursor_->setText(view_->cursor_text());
    difference_->setText(view_->difference_text());
}

}  // namespace kavrel
