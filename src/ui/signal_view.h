#pragma once

#include <QTimer>
#include <QWidget>

#include "ui/ui_parts.h"

namespace Corvetape {

/// The signal of the last two minutes as a picture, the newest sound at the right, with the places where
/// songs began, where titles changed and where sound was lost. What belongs to the song that is kept has the
/// accent. It is drawn ten times a second at most, and not at all while nobody can see it.
class SignalView : public QWidget {
 public:
    explicit SignalView(const UiParts& parts);

    QSize sizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

 private:
    struct Bar {
        int32_t Peak = 0;
        int32_t Mean = 0;
        bool Kept = false;
        bool Silent = true;
        bool TitleChange = false;
        bool Lost = false;
    };
    Bar BarOf(uint64_t first, uint64_t end) const;
    double PlaceOf(uint64_t column) const;
    void PaintBars(QPainter& painter) const;
    void PaintSongBegins(QPainter& painter) const;
    void PaintScale(QPainter& painter) const;

    const UiParts& Parts;
    QTimer Beat;
};

}  // namespace Corvetape
