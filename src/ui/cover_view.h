#pragma once

#include <QWidget>

#include "ui/ui_parts.h"

namespace Corvetape {

/// The picture of the song. Without one, its own two colours and the level of the last seconds.
class CoverView : public QWidget {
 public:
    explicit CoverView(const UiParts& parts);

    /// Shows what plays now.
    void Refresh() { update(); }

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    const UiParts& Parts;
};

/// What the colours of a song depend on: the artist and the album, so that an album has one look.
QString CoverNameOf(const STATIONANDSONGDATA& media);

/// A song's colours in a rounded square.
void PaintCover(QPainter& painter, const QRectF& place, const QString& name, double radius);

}  // namespace Corvetape
