#include "desktop/palettes.h"

namespace kavrel {

bool is_dark(const QPalette& palette) { return palette.color(QPalette::Base).lightness() < 128; }

QPalette window_palette(Shade shade) {
    const bool dark = shade == Shade::dark;
    const QColor window(dark ? 0x2a2d32 : 0xf0f1f3);
    const QColor base(dark ? 0x1b1d20 : 0xffffff);
    const QColor text(dark ? 0xdfe2e6 : 0x1a1d21);
    const QColor faint(dark ? 0x7c828a : 0x9299a2);
    const QColor accent(dark ? 0x3f7cc0 : 0x2264b0);

    QPalette palette(QColor(dark ? 0x33373c : 0xe6e8eb), window);
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        const bool off = group == QPalette::Disabled;
        palette.setColor(group, QPalette::Window, window);
        palette.setColor(group, QPalette::Base, off ? window : base);
        palette.setColor(group, QPalette::AlternateBase, QColor(dark ? 0x212428 : 0xf6f7f9));
        if (dark) palette.setColor(group, QPalette::Mid, QColor(off ? 0x4a4f55 : 0x7d848c));
        palette.setColor(group, QPalette::ToolTipBase, QColor(dark ? 0x33373c : 0xfffbe6));
        palette.setColor(group, QPalette::ToolTipText, text);
        palette.setColor(group, QPalette::PlaceholderText, faint);
        palette.setColor(group, QPalette::Highlight, off ? faint : accent);
        palette.setColor(group, QPalette::HighlightedText, Qt::white);
        palette.setColor(group, QPalette::Link, QColor(dark ? 0x6ea8e8 : 0x1b5fa8));
        for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
            palette.setColor(group, role, off ? faint : text);
        }
    }
    return palette;
}

PlotColours plot_colours(Shade shade) {
    if (shade == Shade::dark) {
        return {.paper = QColor(0x1b1d20),
                .text = QColor(0xdfe2e6),
                .frame = QColor(0xb4bac1),
                .tick = QColor(0x8c939b),
                .grid = QColor(0x3a3f45),
                .y1 = QColor(0x6cb2ff),
                .y2 = QColor(0xff8f70),
                .cursor = QColor(0xf2c14e)};
    }
    return {.paper = QColor(0xffffff),
            .text = QColor(0x1f2328),
            .frame = QColor(0x2b3137),
            .tick = QColor(0x5c6670),
            .grid = QColor(0xd4d8dd),
            .y1 = QColor(0x1b5fa8),
            .y2 = QColor(0xc0341d),
            .cursor = QColor(0x7a5200)};
}

QColor alarm_paper(const QPalette& palette) { return QColor(is_dark(palette) ? 0x5a2326 : 0xffd9d6); }

QColor alarm_text(const QPalette& palette) { return QColor(is_dark(palette) ? 0xff9a90 : 0xb3261e); }

QColor good_paper(const QPalette& palette) { return QColor(is_dark(palette) ? 0x1f4a2c : 0xd3efd9); }

QColor good_text(const QPalette& palette) { return QColor(is_dark(palette) ? 0x9fe0b0 : 0x17602f); }

}  // namespace kavrel
