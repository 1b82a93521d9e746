#include "desktop/qt_desktop.h"

#include <QApplication>
#include <QDesktopServices>
#include <QLocale>
#include <QUrl>

#include "forms/frm_main.h"
#include "ui/main_window.h"

namespace Corvetape {

QtDesktop::QtDesktop(const std::string& instanceFolder)
    : Instance([this] { ComeForward(); }, instanceFolder) {}

void QtDesktop::ComeForward() {
    if (Window != nullptr) Window->ComeForward();
}

void QtDesktop::Over(MainWindow& window, frmMain& form) {
    Window = &window;
    Form = &form;
    window.HideWhenMinimised([this] { return Tray && Tray->Present(); });
}

void QtDesktop::LetGo() {
    Tray.reset();
    Window = nullptr;
}

std::string QtDesktop::Language() {
    return QLocale::languageToString(QLocale::system().language()).toLower().toStdString();
}

void QtDesktop::ShowBusy(bool busy) {
    if (busy == (QApplication::overrideCursor() != nullptr)) return;
    if (busy) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
    } else {
        QApplication::restoreOverrideCursor();
    }
}

bool QtDesktop::Open(const std::string& addressOrFolder) {
    return QDesktopServices::openUrl(QUrl::fromUserInput(QString::fromStdString(addressOrFolder)));
}

void QtDesktop::AddTrayIcon() {
    Form->mnuTaskbarItem[15].Enabled(false);  // there is no bar of quick buttons yet
    Form->mnuTaskbarItem[10].Click.Connect([this] { ComeForward(); });
    Form->mnuTaskbarItem[20].Click.Connect([form = Form] { form->cmdQuickRecord.Press(); });
    Form->mnuTaskbarItem[90].Click.Connect([window = Window] {
        QMetaObject::invokeMethod(
            window, [window] { window->close(); }, Qt::QueuedConnection);
    });
    Tray = std::make_unique<TrayIcon>(*Form, [this] { ComeForward(); });
}

void QtDesktop::ShowTrayTip(const std::string& tip) {
    if (Tray) Tray->ShowTip(tip);
}

void QtDesktop::ShowTrayState(TrayState state) {
    if (Tray) Tray->ShowState(static_cast<int32_t>(state));
}

}  // namespace Corvetape
