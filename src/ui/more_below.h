#pragma once

#include <QWidget>

class QScrollArea;

namespace Corvetape {

/// A page that goes on below the edge of the window fades there, with an arrow, so that nobody misses its
/// last group. A click on the arrow scrolls on.
class MoreBelow : public QWidget {
 public:
    /// Stands at the lower edge of `area`, and goes with it.
    explicit MoreBelow(QScrollArea* area);

    bool eventFilter(QObject* watched, QEvent* event) override;

 protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

 private:
    void Place();

    QScrollArea& Area;
};

}  // namespace Corvetape
