#include "ui/cover_bar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPointer>
#include <QToolButton>
#include <QVBoxLayout>
#include <array>

#include "ui/binders.h"
#include "ui/binding.h"
#include "ui/cover_view.h"
#include "ui/icons.h"
#include "ui/look.h"
#include "ui/make.h"
#include "ui/menu_items.h"

namespace Corvetape {

namespace {

constexpr double Radius = 10;

/// Text and buttons stand on a dark strip, whatever the picture is.
const QColor Veil(16, 16, 18, 176);

/// One line of the song; the surface behind it takes the pointer.
QLabel* Line(Label& control, QFont::Weight weight) {
    QLabel* const label = BoundToElided(control);
    label->setFont(ScaledFont(0.8, weight));
    label->setAttribute(Qt::WA_TransparentForMouseEvents);
    return label;
}

/// A strip that follows the visibility of a control.
QWidget* Strip(Control& control) {
    auto* const strip = Make<QWidget>();
    strip->setMouseTracking(true);
    Follow(control, strip, [](const Control& /*from*/, QWidget& /*to*/) {});  // it is seen as its control is
    return strip;
}

}  // namespace

QToolButton* BoundToPicture(Picture& control, const QString& icon, const QColor& ink) {
    auto* const widget = Make<QToolButton>();
    widget->setIcon(DrawnIcon(icon, ink));
    widget->setIconSize({16, 16});
    widget->setAutoRaise(true);
    QObject::connect(widget, &QToolButton::clicked, [&control] { control.Press(); });
    Follow(control, widget,
           [](const Picture& /*from*/, QToolButton& to) { to.setAccessibleName(to.toolTip()); });
    return widget;
}

CoverBarWindow::CoverBarWindow(const UiParts& parts, frmCoverButtons& form, BarStyle style)
    : BarWindow(parts, form, style), Form(form) {
    setMouseTracking(true);
    auto* const lines = Make<QVBoxLayout>(this);
    lines->setContentsMargins(0, 0, 0, 0);
    lines->setSpacing(0);
    lines->addWidget(Texts());
    lines->addStretch(1);
    lines->addWidget(Buttons());
    Parts.Covers.Changed.Connect([kept = QPointer<CoverBarWindow>(this)] {
        if (kept) kept->update();
    });
    form.lblSong.Changed.Connect([kept = QPointer<CoverBarWindow>(this)] {
        if (kept) kept->update();
    });
}

QWidget* CoverBarWindow::Texts() {
    QWidget* const strip = Strip(Form.shpTop);
    auto* const lines = Make<QVBoxLayout>(strip);
    lines->setContentsMargins(Grid, 5, Grid, 5);
    lines->setSpacing(0);
    lines->addWidget(Line(Form.lblSong, QFont::DemiBold));
    lines->addWidget(Line(Form.lblArtist, QFont::Normal));
    strip->setAttribute(Qt::WA_TransparentForMouseEvents);
    return strip;
}

QWidget* CoverBarWindow::Buttons() {
    QWidget* const strip = Strip(Form.picButtons);
    auto* const row = Make<QHBoxLayout>(strip);
    row->setContentsMargins(Grid / 2, 2, Grid / 2, 2);
    row->setSpacing(0);
    const QColor ink(Qt::white);
    const std::array buttons{BoundToPicture(Form.imgStart, "record", BarLook().Accent),
                             BoundToPicture(Form.imgStop, "stop", BarLook().Accent),
                             BoundToPicture(Form.imgSkip[1], "skip", ink),
                             BoundToPicture(Form.imgSkip[0], "skip", BarLook().Wave),
                             BoundToPicture(Form.imgStartStop, "quick", ink)};
    for (QToolButton* button : buttons) row->addWidget(button, 1);
    return strip;
}

/// A picture that reaches the size of the bar fills it, whatever its proportions; a smaller one stands in the
/// middle as it is.
void CoverBarWindow::PaintImage(QPainter& painter) {
    const QImage picture = PictureOf(Parts);
    const QRectF box(Form.CoverBoxLeft, Form.CoverBoxTop, Form.CoverBoxWidth, Form.CoverBoxHeight);
    const bool fills = picture.width() >= box.width() || picture.height() >= box.height();
    if (!picture.isNull() && fills) return painter.drawImage(box, picture);
    PaintCover(painter, QRectF(rect()), CoverNameOf(Parts.Media.CurrentMedia), 0);
    if (picture.isNull()) return;
    painter.drawImage(QPoint((width() - picture.width()) / 2, (height() - picture.height()) / 2), picture);
}

void CoverBarWindow::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const bool shaped = Style == BarStyle::Composited;
    QPainterPath outline;
    outline.addRoundedRect(QRectF(rect()), shaped ? Radius : 0, shaped ? Radius : 0);
    painter.setClipPath(outline);
    PaintImage(painter);
    for (const int strip : {0, 2}) {
        const QLayoutItem* const item = layout()->itemAt(strip);
        if (item->widget()->isVisible()) painter.fillRect(item->geometry(), Veil);
    }
}

void CoverBarWindow::mousePressEvent(QMouseEvent* event) {
    Parts.Bars.PointerPressed();
    BarWindow::mousePressEvent(event);
}

void CoverBarWindow::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons() == Qt::NoButton) Parts.Bars.PointerMoved();
    BarWindow::mouseMoveEvent(event);
}

void CoverBarWindow::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::RightButton || event->modifiers() != Qt::NoModifier) return;
    // Not waited for: the bar may go while its menu is open.
    auto* const menu = Make<QMenu>(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setObjectName(QString::fromStdString(Form.mnuContext.Name()));
    FillMenu(*menu, Form.mnuContextItem);
    menu->popup(event->globalPosition().toPoint());
}

void CoverBarWindow::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) Parts.Bars.FlipMainWindow();
}

}  // namespace Corvetape
