#include "ui/tray_icon.h"

#include <QApplication>
#include <utility>

#include "core/version.h"
#include "ui/icons.h"
#include "ui/menu_items.h"

namespace Corvetape {

namespace {

constexpr int LookEveryMs = 10'000;

}  // namespace

QIcon StateIcon(int32_t state) {
    if (state == 1) return DrawnIcon("tray-1", QColor("#e5533b"));
    if (state == 2) return DrawnIcon("tray-2", QColor("#d0912a"));
    return DrawnIcon("tray-0", QColor("#8c8c8c"));
}

QString PlainTip(const std::string& tip) {
    return QString::fromStdString(tip).replace("&&&", "&");
}

TrayIcon::TrayIcon(frmMain& form, std::function<void()> restore) {
    FillMenu(Menu, form.mnuTaskbarItem);
    Icon.setContextMenu(&Menu);
    ShowState(0);
    ShowTip(ProgramTitle);
    connect(&Icon, &QSystemTrayIcon::activated, this,
            [this, restore = std::move(restore)](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::DoubleClick || IsSecondClick(reason)) restore();
            });
    // The area may come later than the program.
    Look.setInterval(LookEveryMs);
    connect(&Look, &QTimer::timeout, this, [this] { LookForHost(); });
    Look.start();
    LookForHost();
}

bool TrayIcon::IsSecondClick(QSystemTrayIcon::ActivationReason reason) {
    if (reason != QSystemTrayIcon::Trigger) return false;
    const bool second = SinceClick.isValid() && SinceClick.elapsed() < QApplication::doubleClickInterval();
    if (second) {
        SinceClick.invalidate();  // a third click is the first of the next two
    } else {
        SinceClick.start();
    }
    return second;
}

void TrayIcon::LookForHost() {
    if (!QSystemTrayIcon::isSystemTrayAvailable()) return;
    Icon.show();
    Look.stop();
}

void TrayIcon::ShowState(int32_t state) {
    Icon.setIcon(StateIcon(state));
}

void TrayIcon::ShowTip(const std::string& tip) {
    Icon.setToolTip(PlainTip(tip));
}

}  // namespace Corvetape
