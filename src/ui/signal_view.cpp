#include "ui/signal_view.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

#include "ui/look.h"
#include "ui/text_keys.h"

namespace Corvetape {

namespace {

constexpr int BeatMs = 100;
constexpr double Pitch = 3;  // from bar to bar
constexpr double BarWidth = 1.8;
constexpr double TopSpace = 24;  // for the words above the signal
constexpr double LowSpace = 20;  // and for those below

/// Quiet parts would be a flat line at a true scale.
double HeightOf(int32_t level) {
    return std::pow(std::min(level, FullScale) / static_cast<double>(FullScale), 0.6);
}

/// A line to both sides of the middle. Plain rectangles: some five hundred of them are drawn ten times a
/// second, and round ends that nobody sees would cost four times as much.
void PaintBar(QPainter& painter, const QRectF& bar, const QColor& ink, double part) {
    QColor colour = ink;
    colour.setAlphaF(static_cast<float>(ink.alphaF() * part));
    painter.fillRect(bar, colour);
}

}  // namespace

SignalView::SignalView(const UiParts& parts) : Parts(parts) {
    setObjectName("picSignal");
    setAccessibleName(Parts.Say(Key::SignalName));
    setMinimumHeight(14 * Grid);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    Beat.setInterval(BeatMs);
    connect(&Beat, &QTimer::timeout, this, [this] {
        Parts.Trace.Follow();
        update();
    });
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

/// The right edge is now; two minutes fill the width.
double SignalView::PlaceOf(uint64_t column) const {
    const uint64_t end = Parts.Trace.FirstNumber() + Parts.Trace.Columns().size();
    const double ago = static_cast<double>(end) - static_cast<double>(column);
    return width() * (1 - ago / SignalTrace::Capacity);
}

SignalView::Bar SignalView::BarOf(uint64_t first, uint64_t end) const {
    const auto& columns = Parts.Trace.Columns();
    const uint64_t oldest = Parts.Trace.FirstNumber();
    const auto& begins = Parts.Trace.SongBegins();
    Bar bar;
    int64_t sum = 0;
    int64_t count = 0;
    bar.Kept = Parts.Flags.RecordCurrentSong && (begins.empty() || first >= begins.back());
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

void SignalView::PaintBars(QPainter& painter) const {
    const Look& look = PresentLook();
    // A bar stands for the same columns for as long as it is seen, so that the picture moves and never boils.
    const auto perBar = static_cast<uint64_t>(
        std::max(1.0, std::round(SignalTrace::Capacity * Pitch / std::max(width(), 1))));
    const uint64_t oldest = Parts.Trace.FirstNumber();
    const uint64_t end = oldest + Parts.Trace.Columns().size();
    const double middle = (TopSpace + height() - LowSpace) / 2;
    const double room = (height() - TopSpace - LowSpace) / 2;
    painter.setPen(Qt::NoPen);
    for (uint64_t first = oldest / perBar * perBar; first < end; first += perBar) {
        const Bar bar = BarOf(first, first + perBar);
        const double left = PlaceOf(first);
        const double peak = std::max(0.8, HeightOf(bar.Peak) * room);
        const double mean = std::max(0.8, HeightOf(bar.Mean) * room * 0.9);
        QColor ink = bar.Lost ? look.Warning : (bar.Kept ? look.Accent : look.Wave);
        if (bar.Silent) ink.setAlphaF(0.45F);
        PaintBar(painter, QRectF(left, middle - peak, BarWidth, 2 * peak), ink, 0.42);
        PaintBar(painter, QRectF(left, middle - mean, BarWidth, 2 * mean), ink, 1);
        if (bar.Lost) painter.drawRect(QRectF(left - 1, TopSpace, Pitch, 3));
        if (bar.TitleChange) {
            painter.setBrush(look.Dim);
            painter.drawEllipse(QPointF(left + 1, height() - LowSpace + 3), 2, 2);
        }
    }
}

void SignalView::PaintSongBegins(QPainter& painter) const {
    const Look& look = PresentLook();
    painter.setFont(ScaledFont(0.85));
    for (const uint64_t begin : Parts.Trace.SongBegins()) {
        const double place = std::round(PlaceOf(begin)) - 1.5;
        const bool newest = begin == Parts.Trace.SongBegins().back();
        const QColor ink = newest && Parts.Flags.RecordCurrentSong ? look.Accent : look.Dim;
        painter.setPen(QPen(ink, 1));
        painter.drawLine(QPointF(place, 8), QPointF(place, height() - LowSpace + 4));
        const QString text = Parts.Say(newest ? Key::SongBegins : Key::Cut);
        const double wide = painter.fontMetrics().horizontalAdvance(text);
        const bool atRight = place + 6 + wide < width() - 6 * Grid;
        painter.setPen(look.Dim);
        painter.drawText(QPointF(atRight ? place + 6 : place - 6 - wide, 18), text);
    }
}

void SignalView::PaintScale(QPainter& painter) const {
    painter.setFont(ScaledFont(0.85));
    painter.setPen(PresentLook().Dim);
    const QRectF line(12, height() - LowSpace, width() - 24, LowSpace - 4);
    painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter, Parts.Say(Key::TwoMinutesAgo));
    painter.drawText(line, Qt::AlignHCenter | Qt::AlignVCenter, Parts.Say(Key::OneMinuteAgo));
    painter.drawText(line, Qt::AlignRight | Qt::AlignVCenter, Parts.Say(Key::Now));
}

void SignalView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath frame;
    frame.addRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Grid, Grid);
    painter.setPen(QPen(PresentLook().Line, 1));
    painter.setBrush(PresentLook().Panel);
    painter.drawPath(frame);
    painter.setClipRect(rect().adjusted(1, 1, -1, -1));  // the bars keep away from the corners
    PaintBars(painter);
    PaintSongBegins(painter);
    PaintScale(painter);
}

}  // namespace Corvetape
