#include "desktop/qt_desktop.h"

#include <QApplication>
#include <QLocale>
#include <QScreen>
#include <QWindow>
#include <vector>

#include "app/state.h"
#include "platform/linux/desktop/compositor.h"

namespace Corvetape {

QtDesktop::QtDesktop(const std::string& instanceFolder)
    : Instance([this] { ComeForward(); }, instanceFolder) {}

void QtDesktop::ComeForward() {
    if (Window != nullptr) Window->ComeForward();
}

void QtDesktop::Over(MainWindow& window, const UiParts& parts, State& state) {
    Window = &window;
    Parts = &parts;
    Forms = &state;
}

void QtDesktop::LetGo() {
    CloseBars();
    RemoveTrayIcon();
    Window = nullptr;
}

std::string QtDesktop::Language() {
    return QLocale::languageToString(QLocale::system().language()).toLower().toStdString();
}

void QtDesktop::ShowPointer(MousePointer pointer) {
    const bool busy = pointer == MousePointer::Busy;
    if (busy == (QApplication::overrideCursor() != nullptr)) return;
    if (busy) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
    } else {
        QApplication::restoreOverrideCursor();
    }
}

/// The stored place may be on a screen that is there no more.
void QtDesktop::MoveWindow(int32_t left, int32_t top) {
    std::vector<WindowPlace> screens;
    for (const QScreen* screen : QGuiApplication::screens()) {  // the primary one is the first
        const QRect room = screen->availableGeometry();
        screens.push_back({room.left() * ScreenTwipsPerPixel, room.top() * ScreenTwipsPerPixel,
                           room.width() * ScreenTwipsPerPixel, room.height() * ScreenTwipsPerPixel});
    }
    const WindowPosition at =
        WithinReach({left, top}, Window->frameGeometry().width() * ScreenTwipsPerPixel, screens);
    Window->move(at.Left / ScreenTwipsPerPixel, at.Top / ScreenTwipsPerPixel);
}

void QtDesktop::MinimizeWindow() {
    Window->showMinimized();
}

/// A start that hides the window hides it where an icon brings it back, and leaves it minimised elsewhere.
void QtDesktop::ShowWindow() {
    if (!Window->isMinimized()) return Window->show();
    if (AnswerTo(WindowState::Minimised, IconIsThere(), false) != WindowAnswer::HideToTray) return;
    Window->setWindowState(Qt::WindowNoState);  // first, or it would be put back on the screen
    Window->hide();
}

bool QtDesktop::IsExposed() const {
    return Window != nullptr && Window->windowHandle() != nullptr && Window->windowHandle()->isExposed();
}

void QtDesktop::ReportPlace() {
    Forms->Form.Place({Window->x() * ScreenTwipsPerPixel, Window->y() * ScreenTwipsPerPixel,
                       Window->width() * ScreenTwipsPerPixel, Window->height() * ScreenTwipsPerPixel});
}

void QtDesktop::ReportWindow() {
    const WindowState upright = Window->isMaximized() ? WindowState::Maximised : WindowState::Normal;
    Forms->Form.State(Window->isMinimized() ? WindowState::Minimised : upright);
    // A window that no desktop has ever placed has no place to come back to.
    if (!WindowPlaced && !IsExposed()) return Forms->Form.Place({});
    ReportPlace();
}

void QtDesktop::LoadBars() {
    const QSize screen = QGuiApplication::primaryScreen()->size() * ScreenTwipsPerPixel;
    const QSize all = QGuiApplication::primaryScreen()->virtualSize() * ScreenTwipsPerPixel;
    ReportPlace();
    FloatingBars& bars = Parts->Bars;
    bars.IconIsThere(IconIsThere());
    bars.Load({screen.width(), screen.height()}, {all.width(), all.height()});
    const bool wayland = QGuiApplication::platformName().startsWith("wayland");
    const BarStyle style = wayland || CompositorRuns() ? BarStyle::Composited : BarStyle::Plain;
    PlainBar = std::make_unique<QuickBarWindow>(*Parts, Forms->PlainBar, style);
    CoverBar = std::make_unique<CoverBarWindow>(*Parts, Forms->CoverBar, style);
    Forms->Form.tmr1Second.Timer.Connect([this, &bars] {
        bars.IconIsThere(IconIsThere());
        SeeWindowPlaced();
    });
}

/// A desktop places a new window some time after the program has shown it.
void QtDesktop::SeeWindowPlaced() {
    if (WindowPlaced || !IsExposed()) return;
    WindowPlaced = true;
    ReportPlace();
    Parts->Bars.MainWindowPlaced();
}

void QtDesktop::CloseBars() {
    PlainBar.reset();
    CoverBar.reset();
}

void QtDesktop::AddTrayIcon() {
    frmMain& form = Forms->Form;
    form.mnuTaskbarItem[10].Click.Connect([this] { ComeForward(); });
    form.mnuTaskbarItem[20].Click.Connect([&form] { form.cmdQuickRecord.Press(); });
    form.mnuTaskbarItem[90].Click.Connect([window = Window] {
        QMetaObject::invokeMethod(
            window, [window] { window->close(); }, Qt::QueuedConnection);
    });
    Tray = std::make_unique<TrayIcon>(form);
    Tray->Restore.Connect([this] { ComeForward(); });
    const bool onDisplay = QGuiApplication::platformName() == "xcb";
    Hosts = std::make_unique<TrayHosts>(onDisplay ? TrayHosts::Where::BusAndDisplay : TrayHosts::Where::Bus);
    QObject::connect(Hosts.get(), &TrayHosts::Changed, Tray.get(),
                     [this] { Tray->HostIs(Hosts->Present()); });
    Tray->HostIs(Hosts->Present());
    Window->Follow(Tray.get());
}

void QtDesktop::RemoveTrayIcon() {
    if (Window != nullptr) Window->Follow(nullptr);
    Tray.reset();
    Hosts.reset();
}

void QtDesktop::ShowTrayTip(const std::string& tip) {
    if (Tray) Tray->ShowTip(tip);
}

void QtDesktop::ShowTrayState(TrayState state) {
    if (Tray) Tray->ShowState(static_cast<int32_t>(state));
    Window->setWindowIcon(StateIcon(static_cast<int32_t>(state)));
}

}  // namespace Corvetape
