#include "desktop/window_settings.h"

#include <QByteArray>

#include "desktop/window_fit.h"

namespace kavrel {

Shade WindowSettings::shade() const {
    return settings_.value("palette").toString() == "dark" ? Shade::dark : Shade::light;
}

void WindowSettings::set_shade(Shade shade) { settings_.setValue("palette", shade == Shade::dark ? "dark" : "light"); }

QString WindowSettings::report_family() const { return settings_.value("report/family").toString(); }

int WindowSettings::report_points() const {
    return qBound(smallest_report_points, settings_.value("report/points", usual_report_points).toInt(),
                  largest_report_points);
}

void WindowSettings::set_report_font(const QString& family, int points) {
    settings_.setValue("report/family", family);
    settings_.setValue("report/points", points);
}

void WindowSettings::keep(const QString& name, const QWidget& window) {
    settings_.setValue("windows/" + name, window.saveGeometry());
}

bool WindowSettings::restore(const QString& name, QWidget& window) const {
    const QByteArray kept = settings_.value("windows/" + name).toByteArray();
    if (kept.isEmpty() || !window.restoreGeometry(kept)) return false;
    fit_to_screen(window);
    return true;
}

QFont report_font(const QString& family, int points) {
    QStringList families{"DejaVu Sans Mono", "Liberation Mono", "Noto Sans Mono", "monospace"};
    if (!family.isEmpty()) families.prepend(family);
    QFont font;
    font.setFamilies(families);
    font.setStyleHint(QFont::Monospace);
    font.setFixedPitch(true);
    font.setPointSize(points);
    return font;
}

}  // namespace kavrel
