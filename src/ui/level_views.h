#pragma once

#include <QWidget>

#include "ui/ui_parts.h"

namespace Corvetape {

/// The two bars of the recording level with the peaks of the last two seconds, and decibels beside them.
class MeterView : public QWidget {
 public:
    explicit MeterView(const UiParts& parts);

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    const UiParts& Parts;
};

/// The statistic of the last ten seconds, with decibels beside it. A click freezes it; while it is frozen the
/// pointer reads levels.
class HistogramView : public QWidget {
 public:
    explicit HistogramView(const UiParts& parts);

 protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

 private:
    int PictureWidth() const;

    const UiParts& Parts;
};

}  // namespace Corvetape
