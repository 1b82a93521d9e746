#include "ui/cover_view.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPointer>
#include <algorithm>
#include <cmath>

#include "ui/cover_pictures.h"
#include "ui/look.h"
#include "ui/text_keys.h"

namespace Corvetape {

namespace {

constexpr int Side = 19 * Grid;
constexpr size_t Bars = 19;
constexpr size_t ColumnsPerBar = 2;

}  // namespace

QImage PictureOf(const UiParts& parts) {
    return parts.Media.CurrentMedia.Song.empty() ? QImage() : parts.Covers.Present();
}

QString CoverNameOf(const STATIONANDSONGDATA& media) {
    return QString::fromStdString(media.Artist + "/" + media.Album);
}

void PaintCover(QPainter& painter, const QRectF& place, const QString& name, double radius) {
    const NameColours colours = ColoursOf(name);
    QLinearGradient gradient(place.topLeft(), place.bottomRight());
    gradient.setColorAt(0, colours.From);
    gradient.setColorAt(0.56, colours.Through);
    gradient.setColorAt(1, colours.To);
    painter.setPen(Qt::NoPen);
    painter.setBrush(gradient);
    painter.drawRoundedRect(place, radius, radius);
}

void PaintPicture(QPainter& painter, const QRectF& place, const QImage& picture, double radius) {
    painter.save();
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    QPainterPath frame;
    frame.addRoundedRect(place, radius, radius);
    painter.setClipPath(frame);
    const double shown = std::min(picture.width(), picture.height());
    const QRectF part((picture.width() - shown) / 2, (picture.height() - shown) / 2, shown, shown);
    painter.drawImage(place, picture, part);
    painter.restore();
}

CoverView::CoverView(const UiParts& parts) : Parts(parts) {
    setObjectName("picCover");
    setFixedSize(Side, Side);
    setAccessibleName(Parts.Say(Key::CoverName));
    Parts.Covers.Changed.Connect([kept = QPointer<CoverView>(this)] {
        if (kept) kept->update();
    });
}

void CoverView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF place(rect());
    if (const QImage picture = PictureOf(Parts); !picture.isNull()) {
        return PaintPicture(painter, place, picture, Grid);
    }
    const bool named = !Parts.Media.CurrentMedia.Song.empty();
    if (named) {
        PaintCover(painter, place, CoverNameOf(Parts.Media.CurrentMedia), Grid);
    } else {
        painter.setPen(QPen(PresentLook().Line, 1));
        painter.setBrush(PresentLook().Panel);
        painter.drawRoundedRect(place.adjusted(0.5, 0.5, -0.5, -0.5), Grid, Grid);
    }
    PaintLevel(painter, named);
}

/// The last two seconds, so that somebody sees at a glance that there is sound.
void CoverView::PaintLevel(QPainter& painter, bool named) const {
    const auto& columns = Parts.Trace.Columns();
    const double pitch = (Side - 4.0 * Grid) / Bars;
    painter.setPen(Qt::NoPen);
    painter.setBrush(named ? QColor(255, 255, 255, 190) : PresentLook().Wave);
    for (size_t bar = 0; bar < Bars; ++bar) {
        const size_t ago = (Bars - bar) * ColumnsPerBar;
        int32_t level = 0;
        for (size_t i = 0; ago <= columns.size() && i < ColumnsPerBar; ++i) {
            level = std::max(level, columns[columns.size() - ago + i].Level);
        }
        const double half = 1 + 18 * std::pow(level / static_cast<double>(FullScale), 1.2);
        const double left = 2 * Grid + pitch * static_cast<double>(bar) + pitch * 0.32;
        const double middle = named ? Side - 4.5 * Grid : Side / 2.0;
        painter.drawRoundedRect(QRectF(left, middle - half, pitch * 0.36, 2 * half), 1, 1);
    }
}

}  // namespace Corvetape
