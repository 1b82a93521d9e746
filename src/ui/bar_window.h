#pragma once

#include <QPoint>
#include <QWidget>

#include "recording/floating_bars.h"
#include "ui/ui_parts.h"

namespace Corvetape {

/// How much of a desktop there is for a floating bar.
enum class BarStyle {
    Composited,  ///< something puts the windows together: translucent, and of any shape
    Plain,       ///< a window with a frame
};

/// A floating bar: above all other windows, moved by its surface, where its form says and seen when it says.
class BarWindow : public QWidget {
 public:
    /// All of it outlives it.
    BarWindow(const UiParts& parts, Form& form, BarStyle style);

 protected:
    void showEvent(QShowEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

    const UiParts& Parts;
    const BarStyle Style;

 private:
    void FollowForm();
    void ComeOntoTheScreen();
    void KeepFrameOnTheScreen();

    Form& Own;
    QPoint PressedAt;
    bool Following = false;
};

}  // namespace Corvetape
