#pragma once

#include <QColor>
#include <QFont>
#include <QString>

class QWidget;

namespace Corvetape {

/// Everything stands on this grid; docs/design.md explains it.
inline constexpr int Grid = 8;

/// The colours of the window, light or dark.
struct Look {
    bool Dark = false;
    QColor Window;
    QColor Panel;
    QColor Navigation;
    QColor Line;
    QColor Text;
    QColor Dim;
    QColor Accent;
    QColor OnAccent;  ///< text on the accent
    QColor Soft;      ///< the accent as a background
    QColor Good;
    QColor Warning;
    QColor Wave;  ///< the signal of songs that are not kept
};

/// The one that fits the palette of the desktop: dark where its windows are.
const Look& PresentLook();

/// That of the floating bars, which stand on whatever is below them: always the dark one.
const Look& BarLook();

/// Gives a floating bar its look.
void DressAsBar(QWidget& bar);

/// Gives a top-level window the present look, and the other one whenever the palette of the desktop changes.
void Dress(QWidget& window);

/// A font of the application, `scale` times as large.
QFont ScaledFont(double scale, QFont::Weight weight = QFont::Normal);

/// A quiet picture for something that has none: three colours that depend on a name alone, so that a song
/// looks the same wherever it is shown.
struct NameColours {
    QColor From;
    QColor Through;
    QColor To;
};

/// The same name has the same colours in every run.
NameColours ColoursOf(const QString& name);

}  // namespace Corvetape
