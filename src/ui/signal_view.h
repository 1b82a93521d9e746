#pragma once

#include <QTimer>
#include <QWidget>
#include <cstdint>
#include <deque>

#include "ui/ui_parts.h"

namespace Corvetape {

/// The signal of the last two minutes as a picture, the newest sound at the right, with the places where
/// songs began, where titles changed and where sound was lost. What belongs to a song that is kept, or was,
/// has the accent. It is drawn ten times a second at most, and not at all while nobody can see it.
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
    struct Scale;
    /// What a picture depends on.
    struct Picture {
        int64_t Newest = -1;
        bool Kept = false;
        std::deque<uint64_t> Begins;

        bool operator==(const Picture&) const = default;
    };
    void Move();
    /// The song that plays is kept. After an error it is wanted still, and nothing is recorded.
    bool IsKept() const { return Parts.Flags.RecordCurrentSong && Parts.Flags.RecordingEnabled; }
    QRect MovingPart() const;
    Scale PresentScale() const;
    Bar BarOf(uint64_t first, uint64_t end) const;
    void PaintBars(QPainter& painter, const Scale& scale) const;
    void PaintDot(QPainter& painter, int left, const QColor& ink) const;
    void PaintSongBegins(QPainter& painter, const Scale& scale) const;
    void PaintScale(QPainter& painter) const;
    void PaintFrame(QPainter& painter) const;

    const UiParts& Parts;
    Picture Shown;
    QTimer Beat;
};

}  // namespace Corvetape
