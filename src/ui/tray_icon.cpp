#include "ui/tray_icon.h"

#include <QAction>
#include <QPointer>
#include <utility>

#include "ui/icons.h"

namespace Corvetape {

namespace {

constexpr int LookEveryMs = 10'000;

/// The ground that an icon stands on is not known, so its colours are neither light nor dark.
QIcon PictureOf(int32_t state) {
    if (state == 1) return DrawnIcon("recording", QColor("#e5533b"));
    if (state == 2) return DrawnIcon("waiting", QColor("#d0912a"));
    return DrawnIcon("listening", QColor("#8c8c8c"));
}

}  // namespace

QString PlainTip(const std::string& tip) {
    return QString::fromStdString(tip).replace("&&&", "&");
}

TrayIcon::TrayIcon(frmMain& form, std::function<void()> restore) {
    AddItems(form);
    Icon.setContextMenu(&Menu);
    ShowState(0);
    connect(&Icon, &QSystemTrayIcon::activated, this,
            [restore = std::move(restore)](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::DoubleClick) restore();
            });
    // The area may come later than the program.
    Look.setInterval(LookEveryMs);
    connect(&Look, &QTimer::timeout, this, [this] { LookForHost(); });
    Look.start();
    LookForHost();
}

void TrayIcon::AddItems(frmMain& form) {
    for (MenuItem& item : form.mnuTaskbarItem) {
        if (item.IsSeparator()) {
            Menu.addSeparator();
            continue;
        }
        QAction* const action = Menu.addAction(QString());
        connect(action, &QAction::triggered, this, [&item] { item.Press(); });
        const auto show = [&item, kept = QPointer<QAction>(action)] {
            if (!kept) return;
            kept->setText(QString::fromStdString(item.Caption()));
            kept->setEnabled(item.Enabled());
        };
        show();
        item.Changed.Connect(show);
    }
}

void TrayIcon::LookForHost() {
    if (!QSystemTrayIcon::isSystemTrayAvailable()) return;
    Icon.show();
    Look.stop();
}

void TrayIcon::ShowState(int32_t state) {
    Icon.setIcon(PictureOf(state));
}

void TrayIcon::ShowTip(const std::string& tip) {
    Icon.setToolTip(PlainTip(tip));
}

}  // namespace Corvetape
