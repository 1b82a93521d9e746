#pragma once

#include <QImage>
#include <QWidget>

#include "ui/ui_parts.h"

namespace Corvetape {

/// The picture of the song. Without one, its own colours and the level of the last seconds.
class CoverView : public QWidget {
 public:
    explicit CoverView(const UiParts& parts);

    /// Shows what plays now.
    void Refresh() { update(); }

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    void PaintLevel(QPainter& painter, bool named) const;

    const UiParts& Parts;
};

/// The picture of the song that plays. Null if it has none, or nothing plays: the one that was fetched last
/// is then of a song that is over.
QImage PictureOf(const UiParts& parts);

/// What the colours of a song depend on: the artist and the album, so that an album has one look.
QString CoverNameOf(const STATIONANDSONGDATA& media);

/// A song's colours in a rounded square.
void PaintCover(QPainter& painter, const QRectF& place, const QString& name, double radius);

/// A picture in a rounded square that it fills; what is too long of it is left out at both ends alike.
void PaintPicture(QPainter& painter, const QRectF& place, const QImage& picture, double radius);

}  // namespace Corvetape
