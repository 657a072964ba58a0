// What the windows remember from run to run: sizes, places, font, palette. Kept by the platform's own mechanism, apart
// from the settings of the logic.
#pragma once

#include <QFont>
#include <QSettings>
#include <QString>
#include <QWidget>

#include "desktop/palettes.h"

namespace kavrel {

class WindowSettings {
public:
    [[nodiscard]] Shade shade() const;
    void set_shade(Shade shade);

    // The family is blank for the usual one; the size in points.
    [[nodiscard]] QString report_family() const;
    [[nodiscard]] int report_points() const;
    void set_report_font(const QString& family, int points);

    // Place and size of a window by its name; `restore` moves a window only to where a screen still is.
    void keep(const QString& name, const QWidget& window);
    [[nodiscard]] bool restore(const QString& name, QWidget& window) const;

private:
    QSettings settings_{QStringLiteral("Kavrel"), QStringLiteral("kavrel")};
};

inline constexpr int smallest_report_points = 6;
inline constexpr int usual_report_points = 10;
inline constexpr int largest_report_points = 28;

// The font that reports, lists of text and printed pages are set in: the wanted family, if there is one, before those
// whose box drawing joins.
[[nodiscard]] QFont report_font(const QString& family, int points);

}  // namespace kavrel
