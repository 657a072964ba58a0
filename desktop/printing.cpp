#include "desktop/printing.h"

#include <QDir>
#include <QFileInfo>
#include <QFontMetricsF>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QTemporaryFile>
#include <algorithm>

#include "desktop/box_drawing.h"
#include "desktop/painter_surface.h"
#include "desktop/palettes.h"
#include "desktop/text.h"
#include "desktop/window_settings.h"
#include "shell/whole_file.h"

namespace kavrel {

namespace {

constexpr int characters_across = 80;  // of a page
constexpr int page_points = 10;        // of its text, unless that is too large for 80 characters
constexpr double page_margin = 15.0;   // millimetres

bool print_lines(QPrinter& printer, const QStringList& lines);
QRectF page_box(const QPrinter& printer);
void furnish(QPrinter& printer);
void offer_file(QPrinter& printer);
PrintOutcome outcome_of(bool printed) { return printed ? PrintOutcome::printed : PrintOutcome::failed; }

}  // namespace

Printing::Printing() = default;
Printing::~Printing() = default;

PrintOutcome Printing::print_page(const PrintPage& page, QWidget* parent) {
    if (!is_ready(parent)) return PrintOutcome::cancelled;
    printer_->setDocName(qt_text(page.job));
    next_file();
    QStringList lines;
    for (const auto& line : page.lines) lines.append(qt_text(line));
    return outcome_of(print_lines(*printer_, lines));
}

PrintOutcome Printing::print_plot(const PlotWindow& plot, QWidget* parent) {
    if (!is_ready(parent)) return PrintOutcome::cancelled;
    printer_->setDocName(qt_text(plot_window_title));
    const auto orientation = printer_->pageLayout().orientation();
    printer_->setPageOrientation(QPageLayout::Landscape);
    next_file();
    bool printed = false;
    QPainter painter;
    if (painter.begin(printer_.get())) {
        PainterSurface surface(painter, page_box(*printer_), plot_colours(Shade::light));
        printed = print_plot_clipped(surface, plot) && painter.end();
    }
    printer_->setPageOrientation(orientation);
    return outcome_of(printed);
}

bool Printing::print_report(const QStringList& lines, QWidget* parent) {
    QPrinter printer(QPrinter::HighResolution);
    furnish(printer);
    offer_file(printer);
    QPrintDialog dialog(&printer, parent);
    return dialog.exec() == QDialog::Accepted && print_lines(printer, lines);
}

bool Printing::report_to_pdf(const QStringList& lines, const QString& name) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    QTemporaryFile pdf;  // the printer writes into the file that has the name, and that may be an old report
    if (!pdf.open()) return false;
    printer.setOutputFileName(pdf.fileName());
    furnish(printer);
    if (!print_lines(printer, lines)) return false;
    QFile printed(pdf.fileName());
    if (!printed.open(QIODevice::ReadOnly)) return false;
    const QByteArray bytes = printed.readAll();
    return write_whole(utf8_text(name), {bytes.constData(), static_cast<std::size_t>(bytes.size())}).has_value();
}

void Printing::use_pdf(const QString& stem) {
    printer_ = std::make_unique<QPrinter>(QPrinter::HighResolution);
    printer_->setOutputFormat(QPrinter::PdfFormat);
    furnish(*printer_);
    pdf_file_ = stem + ".pdf";
    pdf_pages_ = 0;
    ready_ = true;
}

bool Printing::is_ready(QWidget* parent) {
    if (ready_) return true;
    printer_ = std::make_unique<QPrinter>(QPrinter::HighResolution);
    furnish(*printer_);
    offer_file(*printer_);
    QPrintDialog dialog(printer_.get(), parent);
    if (dialog.exec() != QDialog::Accepted) return false;
    pdf_file_ = printer_->outputFileName();
    ready_ = true;
    return true;
}

// Whether the file that was named may take another's place, the dialog has asked; any other name passes over those that
// are there.
void Printing::next_file() {
    if (pdf_file_.isEmpty()) return;
    const QString stem = pdf_file_.endsWith(".pdf", Qt::CaseInsensitive) ? pdf_file_.chopped(4) : pdf_file_;
    const auto name = [&] { return pdf_pages_ == 1 ? stem + ".pdf" : QString("%1-%2.pdf").arg(stem).arg(pdf_pages_); };
    ++pdf_pages_;
    while (name() != pdf_file_ && QFileInfo::exists(name())) ++pdf_pages_;
    printer_->setOutputFileName(name());
}

namespace {

// Text lines on a page, each character in a cell of its own.
class PageText {
public:
    PageText(QPainter& painter, const QRectF& page) : painter_(painter), page_(page) {
        font_ = report_font({}, page_points);
        QFontMetricsF metrics(font_, painter.device());
        const double wanted = characters_across * metrics.horizontalAdvance('0');
        if (wanted > page.width()) {
            font_.setPointSizeF(page_points * page.width() / wanted);
            metrics = QFontMetricsF(font_, painter.device());
        }
        cell_ = {metrics.horizontalAdvance('0'), metrics.lineSpacing()};
        ascent_ = metrics.ascent();
        painter_.setFont(font_);
    }

    [[nodiscard]] int lines_of_page() const { return std::max(1, static_cast<int>(page_.height() / cell_.height())); }

    void draw(int row, const QString& line) {
        const double top = page_.top() + row * cell_.height();
        QString letters = line;
        for (qsizetype i = 0; i < line.size(); ++i) {
            if (!is_box_line(line[i])) continue;
            letters[i] = ' ';
            const int left = qRound(page_.left() + static_cast<double>(i) * cell_.width());
            const int right = qRound(page_.left() + static_cast<double>(i + 1) * cell_.width());
            const QRect cell(QPoint(left, qRound(top)), QPoint(right - 1, qRound(top + cell_.height()) - 1));
            draw_box_line(painter_, cell, line[i], Qt::black, Qt::transparent);
        }
        painter_.drawText(QPointF(page_.left(), top + ascent_), letters);
    }

private:
    QPainter& painter_;
    QRectF page_;
    QFont font_;
    QSizeF cell_;
    double ascent_ = 0.0;
};

bool print_lines(QPrinter& printer, const QStringList& lines) {
    QPainter painter;
    if (!painter.begin(&printer)) return false;
    PageText page(painter, page_box(printer));
    int row = 0;
    for (const QString& line : lines) {
        if (row == page.lines_of_page()) {
            if (!printer.newPage()) return false;
            row = 0;
        }
        page.draw(row++, line);
    }
    return painter.end();
}

QRectF page_box(const QPrinter& printer) {
    return QRectF(QPointF(0, 0), printer.pageLayout().paintRectPixels(printer.resolution()).size());
}

void furnish(QPrinter& printer) {
    printer.setPageMargins(QMarginsF(page_margin, page_margin, page_margin, page_margin), QPageLayout::Millimeter);
}

// Where there is no printer the dialog offers a file beside the others of the work.
void offer_file(QPrinter& printer) {
    if (QPrinterInfo::availablePrinterNames().isEmpty())
        printer.setOutputFileName(QDir::current().filePath("kavrel.pdf"));
}

}  // namespace

}  // namespace kavrel
