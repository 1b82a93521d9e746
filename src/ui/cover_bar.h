#pragma once

#include "forms/frm_cover_buttons.h"
#include "ui/bar_window.h"

class QLabel;
class QToolButton;

namespace Corvetape {

/// The floating bar that is the cover of the song, with its title and the buttons over it while the pointer
/// is there.
class CoverBarWindow : public BarWindow {
 public:
    CoverBarWindow(const UiParts& parts, frmCoverButtons& form, BarStyle style);

 protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
    QWidget* Texts();
    QWidget* Buttons();
    void PaintImage(QPainter& painter);

    frmCoverButtons& Form;
};

/// A picture that serves as a button. Shows the icon in one colour.
QToolButton* BoundToPicture(Picture& control, const QString& icon, const QColor& ink);

}  // namespace Corvetape
