#pragma once

#include <QFrame>

#include "ui/ui_parts.h"

class QToolButton;

namespace Corvetape {

/// The line at the lower edge of the window: the input, the latest message, what is known of the song, and
/// the button of the floating bar.
class StatusLine : public QFrame {
 public:
    explicit StatusLine(const UiParts& parts);

    /// Draws its icon in the colour of the present look.
    void Refresh();

 private:
    QWidget* InputName();
    QWidget* BarButton();

    const UiParts& Parts;
    QToolButton* Bar = nullptr;
};

}  // namespace Corvetape
