// Paper: pages of report lines and plots, to a printer or to a PDF file.
#pragma once

#include <QStringList>
#include <functional>
#include <memory>
#include <span>
#include <string>

#include "shell/plot.h"
#include "shell/window_layer.h"

class QPrinter;
class QWidget;

namespace kavrel {

class Printing {
public:
    Printing();
    ~Printing();

    // A page of report lines. The first page of a run asks for the printer; false when there is none.
    [[nodiscard]] PrintOutcome print_page(const PrintPage& page, QWidget* parent);

    // The plot, drawn light, on a page of its own.
    [[nodiscard]] PrintOutcome print_plot(const PlotWindow& plot, QWidget* parent);

    // The whole report, as many pages as it takes. False when nothing was printed.
    bool print_report(const QStringList& lines, QWidget* parent);
    [[nodiscard]] bool report_to_pdf(const QStringList& lines, const QString& name);

    // Pages go to files of this stem, "stem.pdf", "stem-2.pdf", ...; the first alone takes another's place.
    void use_pdf(const QString& stem);

private:
    [[nodiscard]] bool is_ready(QWidget* parent);
    void next_file();

    std::unique_ptr<QPrinter> printer_;
    bool ready_ = false;
    QString pdf_file_;  // the first that pages go to, or blank
    int pdf_pages_ = 0;
};

}  // namespace kavrel
