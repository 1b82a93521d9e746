#include "ui/cover_view.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

#include "ui/look.h"
#include "ui/text_keys.h"

namespace Corvetape {

namespace {

constexpr int Side = 19 * Grid;
constexpr size_t Bars = 15;
constexpr size_t ColumnsPerBar = 2;

}  // namespace

QString CoverNameOf(const STATIONANDSONGDATA& media) {
    return QString::fromStdString(media.Artist + "/" + media.Album);
}

void PaintCover(QPainter& painter, const QRectF& place, const QString& name, double radius) {
    const NameColours colours = ColoursOf(name);
    QLinearGradient gradient(place.topLeft(), place.bottomRight());
    gradient.setColorAt(0, colours.From);
    gradient.setColorAt(0.6, colours.Through);
    gradient.setColorAt(1, colours.To);
    painter.setPen(Qt::NoPen);
    painter.setBrush(gradient);
    painter.drawRoundedRect(place, radius, radius);
}

CoverView::CoverView(const UiParts& parts) : Parts(parts) {
    setObjectName("picCover");
    setFixedSize(Side, Side);
    setAccessibleName(Parts.Say(Key::CoverName));
}

void CoverView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool named = !Parts.Media.CurrentMedia.Song.empty();
    QColor ink(255, 255, 255, 170);
    if (named) {
        PaintCover(painter, QRectF(rect()), CoverNameOf(Parts.Media.CurrentMedia), Grid);
    } else {
        painter.setPen(QPen(PresentLook().Line, 1));
        painter.setBrush(PresentLook().Panel);
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Grid, Grid);
        ink = PresentLook().Wave;
    }
    const auto& columns = Parts.Trace.Columns();
    const double pitch = (Side - 4.0 * Grid) / Bars;
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink);
    for (size_t bar = 0; bar < Bars; ++bar) {
        const size_t ago = (Bars - bar) * ColumnsPerBar;
        int32_t level = 0;
        for (size_t i = 0; ago <= columns.size() && i < ColumnsPerBar; ++i) {
            level = std::max(level, columns[columns.size() - ago + i].Level);
        }
        const double half = 1.5 + 20 * std::pow(level / static_cast<double>(FullScale), 0.8);
        const double left = 2 * Grid + pitch * static_cast<double>(bar) + pitch * 0.25;
        const double middle = named ? Side - 5.0 * Grid : Side / 2.0;
        painter.drawRoundedRect(QRectF(left, middle - half, pitch * 0.5, 2 * half), 2, 2);
    }
}

}  // namespace Corvetape
