#include "ui/signal_view.h"

#include <QPaintEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "ui/look.h"
#include "ui/text_keys.h"

namespace Corvetape {

namespace {

constexpr int BeatMs = 100;
constexpr double Pitch = 3;       // from bar to bar
constexpr double BarShare = 0.6;  // of it is the bar, the rest is the gap
constexpr int TopSpace = 24;      // for the words above the signal
constexpr int LowSpace = 22;      // and for those below
constexpr int ScaleSpace = 18;    // what of it the words themselves take

/// Quiet parts would be a flat line at a true scale.
double HeightOf(int32_t level) {
    return std::pow(std::min(level, FullScale) / static_cast<double>(FullScale), 0.6);
}

/// What `ink` looks like on `ground` if it covers it in part. Bars are painted opaque: translucent ones take
/// several times as long.
QColor Mixed(const QColor& ink, const QColor& ground, float part) {
    const auto mix = [part](float one, float other) { return one * part + other * (1 - part); };
    return QColor::fromRgbF(mix(ink.redF(), ground.redF()), mix(ink.greenF(), ground.greenF()),
                            mix(ink.blueF(), ground.blueF()));
}

}  // namespace

/// The picture in pixels of the screen. Bars are at whole pixels and move by whole pixels: each keeps its
/// columns and its place beside its neighbours for as long as it is seen, so that the picture moves and never
/// boils.
struct SignalView::Scale {
    int Width = 1;
    int BarPitch = 1;
    double ColumnsPerPixel = 1;
    int64_t Newest = 0;  ///< the pixel of the newest column, counted from the first one that there ever was

    int64_t PixelOf(uint64_t column) const {
        return static_cast<int64_t>(static_cast<double>(column) / ColumnsPerPixel);
    }
    /// From the left edge of the view.
    int64_t PlaceOf(int64_t pixel) const { return pixel - Newest + Width; }
    /// The first column of a bar; the bar ends where the next one begins.
    uint64_t FirstOf(int64_t bar) const {
        return static_cast<uint64_t>(std::ceil(static_cast<double>(bar * BarPitch) * ColumnsPerPixel));
    }
};

SignalView::SignalView(const UiParts& parts) : Parts(parts) {
    setObjectName("picSignal");
    setAccessibleName(Parts.Say(Key::SignalName));
    setMinimumHeight(14 * Grid);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    // It paints all of its place itself, so that nothing below it has to be painted ten times a second.
    setAttribute(Qt::WA_OpaquePaintEvent);
    Beat.setInterval(BeatMs);
    connect(&Beat, &QTimer::timeout, this, [this] { Move(); });
}

QSize SignalView::sizeHint() const {
    return {60 * Grid, 15 * Grid};
}

void SignalView::showEvent(QShowEvent* event) {
    Beat.start();
    QWidget::showEvent(event);
}

void SignalView::hideEvent(QHideEvent* event) {
    Beat.stop();
    QWidget::hideEvent(event);
}

/// Only what moves is painted, and only when it has moved by a pixel or looks otherwise.
void SignalView::Move() {
    Parts.Trace.Follow();
    const Picture now{PresentScale().Newest, IsKept(), Parts.Trace.SongBegins()};
    if (now == Shown) return;
    Shown = now;
    update(MovingPart());
}

/// What is within the frame, without the words below the signal. It does not reach the round corners.
QRect SignalView::MovingPart() const {
    return rect().adjusted(1, Grid, -1, -ScaleSpace);
}

/// The right edge is now; two minutes fill the width.
SignalView::Scale SignalView::PresentScale() const {
    const double ratio = devicePixelRatioF();
    Scale scale;
    scale.Width = std::max(1, qRound(width() * ratio));
    scale.BarPitch = std::max(1, qRound(Pitch * ratio));
    scale.ColumnsPerPixel = static_cast<double>(SignalTrace::Capacity) / scale.Width;
    scale.Newest = scale.PixelOf(Parts.Trace.FirstNumber() + Parts.Trace.Columns().size());
    return scale;
}

SignalView::Bar SignalView::BarOf(uint64_t first, uint64_t end) const {
    const auto& columns = Parts.Trace.Columns();
    const uint64_t oldest = Parts.Trace.FirstNumber();
    const auto& begins = Parts.Trace.SongBegins();
    Bar bar;
    int64_t sum = 0;
    int64_t count = 0;
    const bool present = begins.empty() || first >= begins.back();
    bar.Kept = present ? IsKept() : Parts.Trace.IsOfKeptSong(first);
    for (uint64_t number = std::max(first, oldest); number < end && number - oldest < columns.size();
         ++number) {
        const TraceColumn& column = columns[number - oldest];
        bar.Peak = std::max(bar.Peak, column.Level);
        sum += column.Level;
        ++count;
        bar.Silent = bar.Silent && column.Silent;
        bar.TitleChange = bar.TitleChange || column.TitleChange;
        bar.Lost = bar.Lost || column.Lost;
    }
    bar.Mean = static_cast<int32_t>(sum / std::max<int64_t>(count, 1));
    return bar;
}

/// In pixels of the screen, without rounding of edges: some five hundred rectangles a picture cost nothing
/// this way.
void SignalView::PaintBars(QPainter& painter, const Scale& scale) const {
    const Look& look = PresentLook();
    const double ratio = devicePixelRatioF();
    const int middle = qRound((TopSpace + height() - LowSpace) * ratio / 2);
    const double room = (height() - TopSpace - LowSpace) * ratio / 2;
    const int wide = std::max(1, qRound(scale.BarPitch * BarShare));
    const uint64_t oldest = Parts.Trace.FirstNumber();
    const uint64_t end = oldest + Parts.Trace.Columns().size();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.scale(1 / ratio, 1 / ratio);
    for (int64_t number = scale.PixelOf(oldest) / scale.BarPitch; scale.FirstOf(number) < end; ++number) {
        const Bar bar = BarOf(scale.FirstOf(number), scale.FirstOf(number + 1));
        const auto left = static_cast<int>(scale.PlaceOf(number * scale.BarPitch));
        const QColor& whole = bar.Lost ? look.Warning : (bar.Kept ? look.Accent : look.Wave);
        const QColor ink = bar.Silent ? Mixed(whole, look.Panel, 0.45F) : whole;
        const auto paint = [&](double share, const QColor& colour) {
            const int half = std::max(1, qRound(share * room));
            painter.fillRect(QRect(left, middle - half, wide, 2 * half), colour);
        };
        paint(HeightOf(bar.Peak), Mixed(ink, look.Panel, 0.42F));
        paint(HeightOf(bar.Mean) * 0.9, ink);
        if (bar.Lost) painter.fillRect(QRect(left, qRound(TopSpace * ratio), wide, qRound(3 * ratio)), whole);
        if (bar.TitleChange) PaintDot(painter, left, look.Dim);
    }
    painter.restore();
}

/// A change of title, below the bar at `left`.
void SignalView::PaintDot(QPainter& painter, int left, const QColor& ink) const {
    const double ratio = devicePixelRatioF();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink);
    painter.drawEllipse(QPointF(left + ratio, (height() - LowSpace + 1.5) * ratio), 2 * ratio, 2 * ratio);
    painter.setRenderHint(QPainter::Antialiasing, false);
}

void SignalView::PaintSongBegins(QPainter& painter, const Scale& scale) const {
    const Look& look = PresentLook();
    painter.setFont(ScaledFont(0.85));
    const auto& begins = Parts.Trace.SongBegins();
    double room = width() - 6 * Grid;  // up to the words of the next one
    for (auto each = begins.rbegin(); each != begins.rend(); ++each) {
        const uint64_t begin = *each;
        const double left = static_cast<double>(scale.PlaceOf(scale.PixelOf(begin))) / devicePixelRatioF();
        const double place = std::round(left) - 1.5;
        const bool newest = begin == begins.back();
        const QColor ink = newest && IsKept() ? look.Accent : look.Dim;
        painter.setPen(QPen(ink, 1));
        painter.drawLine(QPointF(place, Grid), QPointF(place, height() - ScaleSpace));
        const QString text = Parts.Say(newest ? Key::SongBegins : Key::Cut);
        const double wide = painter.fontMetrics().horizontalAdvance(text);
        const double from = newest && place + 6 + wide >= room ? place - 6 - wide : place + 6;
        if (from + wide < room || newest) {
            painter.setPen(look.Dim);
            painter.drawText(QPointF(from, 18), text);
        }
        room = std::min(place, from) - 6;
    }
}

void SignalView::PaintScale(QPainter& painter) const {
    painter.setFont(ScaledFont(0.85));
    painter.setPen(PresentLook().Dim);
    const QRectF line(12, height() - ScaleSpace, width() - 24, ScaleSpace - 3);
    painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter, Parts.Say(Key::TwoMinutesAgo));
    painter.drawText(line, Qt::AlignHCenter | Qt::AlignVCenter, Parts.Say(Key::OneMinuteAgo));
    painter.drawText(line, Qt::AlignRight | Qt::AlignVCenter, Parts.Say(Key::Now));
}

void SignalView::PaintFrame(QPainter& painter) const {
    painter.fillRect(rect(), PresentLook().Window);
    painter.setPen(QPen(PresentLook().Line, 1));
    painter.setBrush(PresentLook().Panel);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Grid, Grid);
}

void SignalView::paintEvent(QPaintEvent* event) {
    const Scale scale = PresentScale();
    Shown = {scale.Newest, IsKept(), Parts.Trace.SongBegins()};
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (MovingPart().contains(event->rect())) {
        painter.fillRect(MovingPart(), PresentLook().Panel);
    } else {
        PaintFrame(painter);
        PaintScale(painter);
    }
    painter.setClipRect(MovingPart());
    PaintBars(painter, scale);
    PaintSongBegins(painter, scale);
}

}  // namespace Corvetape
