#pragma once

#include <QFrame>

#include "ui/ui_parts.h"

class QLabel;
class QToolButton;

namespace Corvetape {

/// The line at the lower edge of the window: the input, the latest message, what is known of the song, the
/// level and the room on the disk where there is space for them, and the button of the floating bar.
class StatusLine : public QFrame {
 public:
    explicit StatusLine(const UiParts& parts);

    /// Draws its icon in the colour of the present look.
    void Refresh();

 protected:
    void resizeEvent(QResizeEvent* event) override;

 private:
    QWidget* InputName();
    QWidget* LevelAndRoom();
    void ShowFigures();
    void GiveWay();
    int32_t Level() const;
    QString Room() const;
    QWidget* BarButton();

    const UiParts& Parts;
    QToolButton* Bar = nullptr;
    QLabel* Figures = nullptr;
    QString RoomShown;
    int Beats = 0;  ///< counts to the next question to the disk, which is due at 0
};

}  // namespace Corvetape
