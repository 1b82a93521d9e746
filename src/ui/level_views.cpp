#include "ui/level_views.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QToolTip>
#include <algorithm>
#include <array>
#include <cmath>

#include "ui/look.h"

namespace Corvetape {

namespace {

constexpr double MeterScale = 19;  // of the places of its bars

/// The colours of the level display stand on white. On a dark ground the white would blind, and the blue and
/// the black could not be seen; the others keep their meaning on both.
QColor Shown(const Colour& ink) {
    const Look& look = PresentLook();
    if (look.Dark && ink == LevelColour::White) return look.Window;
    if (look.Dark && ink == LevelColour::LightGrey) return look.Line;
    if (look.Dark && ink == LevelColour::Blue) return {104, 140, 255};
    if (look.Dark && ink == LevelColour::Black) return look.Text;
    return {ink.Red, ink.Green, ink.Blue};
}

QColor Ground() {
    return Shown(LevelColour::White);
}

/// Stretches from the bottom of a place to its top.
void PaintLines(QPainter& painter, const QRectF& place, const LevelLines& lines) {
    for (const LevelLine& line : lines) {
        const double top = place.bottom() - place.height() * line.To / FullScale;
        const double bottom = place.bottom() - place.height() * line.From / FullScale;
        painter.fillRect(QRectF(place.left(), top, place.width(), bottom - top), Shown(line.Ink));
    }
}

constexpr int ScaleWidth = 6 * Grid;
constexpr int PictureHeight = 18 * Grid;

/// Decibels below full scale at the right of a picture of levels, as far as they stand apart.
void PaintScale(QPainter& painter, const QRectF& place) {
    painter.setPen(PresentLook().Dim);
    painter.setFont(ScaledFont(0.85));
    const double line = QFontMetricsF(painter.font()).height();
    double above = place.top() - line;
    for (const int decibels : {0, -3, -6, -12, -20}) {
        const double y = place.bottom() - place.height() * std::pow(10, decibels / 20.0);
        if (y - above < line || y + line / 2 > place.bottom() + line / 2) continue;
        above = y;
        painter.drawText(QRectF(place.right() + 6, y - line / 2, ScaleWidth, line),
                         Qt::AlignLeft | Qt::AlignVCenter, QString::number(decibels) + " dB");
    }
}

/// The edge of a picture, where its ground is that of the card.
void PaintFrame(QPainter& painter, const QRectF& place) {
    painter.setPen(QPen(PresentLook().Line, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(place.adjusted(-0.5, -0.5, 0.5, 0.5));
}

template <typename View>
void UpdateWhenDrawn(const UiParts& parts, View* view) {
    parts.Levels.Drawn.Connect([kept = QPointer<View>(view)] {
        if (kept) kept->update();
    });
}

}  // namespace

MeterView::MeterView(const UiParts& parts) : Parts(parts) {
    setObjectName(QString::fromStdString(Parts.Form.picVUMeter.Name()));
    setAccessibleName(QString::fromStdString(Parts.Form.fraVUMeter.Caption()));
    setFixedSize(12 * Grid, PictureHeight);
    UpdateWhenDrawn(Parts, this);
}

void MeterView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const QRectF place(1, 6, 6.0 * Grid, height() - 12);
    painter.fillRect(place, Ground());
    for (const MeterBar& bar : Parts.Levels.Meter()) {
        const double left = place.left() + place.width() * bar.Left / MeterScale;
        const double right = place.left() + place.width() * bar.Right / MeterScale;
        PaintLines(painter, QRectF(left, place.top(), right - left, place.height()), bar.Lines);
        const double held = place.bottom() - place.height() * bar.Held / FullScale;
        if (bar.Held > 0) painter.fillRect(QRectF(left, held, right - left, 2), PresentLook().Text);
    }
    PaintFrame(painter, place);
    PaintScale(painter, place);
}

HistogramView::HistogramView(const UiParts& parts) : Parts(parts) {
    setObjectName(QString::fromStdString(Parts.Form.picHistogram.Name()));
    setAccessibleName(QString::fromStdString(Parts.Form.fraHistogram.Caption()));
    setMinimumWidth(HistogramPicture::Width + ScaleWidth);
    setFixedHeight(PictureHeight);
    setMouseTracking(true);
    UpdateWhenDrawn(Parts, this);
}

void HistogramView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const QRectF place(1, 6, PictureWidth(), height() - 12);
    painter.fillRect(place, Ground());
    const double wide = place.width() / static_cast<double>(HistogramPicture::Width);
    for (size_t column = 0; column < HistogramPicture::Width; ++column) {
        PaintLines(painter,
                   QRectF(wide * static_cast<double>(column), place.top(), wide + 0.5, place.height()),
                   Parts.Levels.Histogram().Columns[column]);
    }
    PaintFrame(painter, place);
    PaintScale(painter, place);
}

int HistogramView::PictureWidth() const {
    return std::max(width() - ScaleWidth - 2, 1);
}

void HistogramView::mousePressEvent(QMouseEvent* /*event*/) {
    Parts.Form.picHistogram.Press();
}

void HistogramView::mouseMoveEvent(QMouseEvent* event) {
    const double part = (event->position().x() - 1) / PictureWidth();
    Parts.Form.picHistogram.MouseMove.Raise(
        static_cast<int32_t>(std::max(part, 0.0) * HistogramPicture::Width));
    setToolTip(QString::fromStdString(Parts.Form.picHistogram.ToolTip()));
}

}  // namespace Corvetape
