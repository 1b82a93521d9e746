#include "ui/more_below.h"

#include <QEvent>
#include <QLinearGradient>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>

#include "ui/look.h"

namespace Corvetape {

namespace {

constexpr int Height = 6 * Grid;
constexpr double ArrowWidth = 12;
constexpr double ArrowHeight = 6;

}  // namespace

MoreBelow::MoreBelow(QScrollArea* area) : QWidget(area), Area(*area) {
    setObjectName("moreBelow");
    area->viewport()->installEventFilter(this);
    const QScrollBar* const bar = area->verticalScrollBar();
    connect(bar, &QScrollBar::valueChanged, this, [this] { Place(); });
    connect(bar, &QScrollBar::rangeChanged, this, [this] { Place(); });
    setCursor(Qt::PointingHandCursor);
    Place();
}

bool MoreBelow::eventFilter(QObject* /*watched*/, QEvent* event) {
    if (event->type() == QEvent::Resize) Place();
    return false;
}

void MoreBelow::Place() {
    const QRect seen = Area.viewport()->geometry();
    setGeometry(seen.left(), seen.bottom() + 1 - Height, seen.width(), Height);
    const QScrollBar& bar = *Area.verticalScrollBar();
    setVisible(bar.value() < bar.maximum());
    raise();
}

void MoreBelow::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Look& look = PresentLook();
    QColor clear = look.Window;
    clear.setAlpha(0);
    QLinearGradient fade(0, 0, 0, Height);
    fade.setColorAt(0, clear);
    fade.setColorAt(0.7, look.Window);
    painter.fillRect(rect(), fade);
    painter.setPen(QPen(look.Dim, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const double middle = width() / 2.0;
    const double tip = Height - Grid;
    painter.drawPolyline(QPolygonF({{middle - ArrowWidth / 2, tip - ArrowHeight},
                                    {middle, tip},
                                    {middle + ArrowWidth / 2, tip - ArrowHeight}}));
}

void MoreBelow::mousePressEvent(QMouseEvent* /*event*/) {
    QScrollBar& bar = *Area.verticalScrollBar();
    bar.setValue(bar.value() + bar.pageStep() - Height);
}

}  // namespace Corvetape
