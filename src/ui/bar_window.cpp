#include "ui/bar_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMouseEvent>
#include <QMoveEvent>
#include <QPointer>
#include <QScreen>
#include <QTimer>
#include <QWindow>
#include <algorithm>

#include "ui/look.h"
#include "ui/make.h"
#include "ui/window_keys.h"
#include "ui/words.h"

namespace Corvetape {

namespace {

/// A window manager takes a few milliseconds.
constexpr int FramedAfterMs = 200;

}  // namespace

BarWindow::BarWindow(const UiParts& parts, Form& form, BarStyle style)
    : Parts(parts), Style(style), Own(form) {
    setObjectName(QString::fromStdString(form.Name()));
    Qt::WindowFlags flags = Qt::Tool | Qt::WindowStaysOnTopHint;
    if (Style == BarStyle::Composited) flags |= Qt::FramelessWindowHint;
    setWindowFlags(flags);
    setAttribute(Qt::WA_TranslucentBackground, Style == BarStyle::Composited);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowIcon(QIcon(":/ui/icons/corvetape.svg"));
    DressAsBar(*this);
    const WindowPlace& place = form.Place();
    setFixedSize(place.Width / ScreenTwipsPerPixel, place.Height / ScreenTwipsPerPixel);
    Make<WindowKeys>(*this, Parts.Keys, form, nullptr)->setParent(this);
    form.Changed.Connect([kept = QPointer<BarWindow>(this)] {
        if (kept) kept->FollowForm();
    });
    FollowForm();
}

void BarWindow::FollowForm() {
    const bool before = std::exchange(Following, true);
    setWindowTitle(TitleOf(QString::fromStdString(Own.Caption())));
    if (Own.Visible() && !isVisible()) ComeOntoTheScreen();
    const QPoint at(Own.Place().Left / ScreenTwipsPerPixel, Own.Place().Top / ScreenTwipsPerPixel);
    if (pos() != at) move(at);
    if (isVisible() != Own.Visible()) setVisible(Own.Visible());
    update();
    Following = before;
}

/// It appears where the other bar was, and may be wider than what is left of the screen there.
void BarWindow::ComeOntoTheScreen() {
    WindowPlace place = Own.Place();
    const QRect room = screen()->virtualGeometry();
    const auto within = [](int32_t at, int32_t size, int first, int length) {
        const int32_t last = (first + length) * ScreenTwipsPerPixel - size;
        return std::max(std::min(at, last), first * ScreenTwipsPerPixel);
    };
    place.Left = within(place.Left, place.Width, room.left(), room.width());
    place.Top = within(place.Top, place.Height, room.top(), room.height());
    Own.Place(place);
}

/// A window manager frames a plain bar once it is there, and what is framed may stick out of the screen.
void BarWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (Style == BarStyle::Plain) QTimer::singleShot(FramedAfterMs, this, [this] { KeepFrameOnTheScreen(); });
}

void BarWindow::KeepFrameOnTheScreen() {
    const QRect room = screen()->virtualGeometry();
    const QRect framed = frameGeometry();
    const int left = std::max(room.left(), std::min(framed.left(), room.right() + 1 - framed.width()));
    const int top = std::max(room.top(), std::min(framed.top(), room.bottom() + 1 - framed.height()));
    if (framed.topLeft() != QPoint(left, top)) move(left, top);
}

void BarWindow::moveEvent(QMoveEvent* event) {
    QWidget::moveEvent(event);
    if (Following) return;
    WindowPlace place = Own.Place();
    place.Left = x() * ScreenTwipsPerPixel;
    place.Top = y() * ScreenTwipsPerPixel;
    Own.Place(place);
}

void BarWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    Parts.Bars.CloseBox();
}

void BarWindow::mousePressEvent(QMouseEvent* event) {
    PressedAt = event->globalPosition().toPoint();
}

/// The desktop moves the window, so that a drag is no click.
void BarWindow::mouseMoveEvent(QMouseEvent* event) {
    const QPoint way = event->globalPosition().toPoint() - PressedAt;
    const bool dragged = way.manhattanLength() >= QApplication::startDragDistance();
    if ((event->buttons() & Qt::LeftButton) && dragged && windowHandle()) windowHandle()->startSystemMove();
}

}  // namespace Corvetape
