#pragma once

#include <QElapsedTimer>
#include <QMenu>
#include <QSystemTrayIcon>
#include <QTimer>
#include <functional>
#include <string>

#include "forms/frm_main.h"

namespace Corvetape {

/// The icon in the notification area and its menu. Where there is no such area it waits for one.
class TrayIcon : public QObject {
 public:
    /// `restore` brings the window back: by a double click. The form outlives the icon.
    TrayIcon(frmMain& form, std::function<void()> restore);

    /// 0 idle, 1 recording, 2 waiting: pictures that differ in shape as well as in colour.
    void ShowState(int32_t state);

    /// `tip` as a host wants it that strips every first ampersand of three; these hosts strip none.
    void ShowTip(const std::string& tip);

    /// True while the icon can be seen, so that a hidden window can be found again.
    bool Present() const { return Icon.isVisible() && QSystemTrayIcon::isSystemTrayAvailable(); }

 private:
    void LookForHost();

    /// Some hosts report single clicks only: two of them soon after each other are a double click.
    bool IsSecondClick(QSystemTrayIcon::ActivationReason reason);

    QMenu Menu;
    QSystemTrayIcon Icon{this};
    QTimer Look;
    QElapsedTimer SinceClick;
};

/// The picture of a state: 0 a ring, 1 a ring with a dot, 2 a broken ring with the hands of a clock. The
/// ground that it stands on is not known, so its colours are neither light nor dark.
QIcon StateIcon(int32_t state);

/// A tip for people, without the ampersands that are meant for other hosts.
QString PlainTip(const std::string& tip);

}  // namespace Corvetape
