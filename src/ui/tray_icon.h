#pragma once

#include <QElapsedTimer>
#include <QMenu>
#include <QSystemTrayIcon>
#include <memory>
#include <string>

#include "core/controls/event.h"
#include "forms/frm_main.h"

namespace Corvetape {

/// The icon in the notification area and its menu, once there is such an area.
class TrayIcon : public QObject {
 public:
    /// The form outlives the icon.
    explicit TrayIcon(frmMain& form);

    /// The window is wanted back: a double click.
    Event<> Restore;

    /// 0 idle, 1 recording, 2 waiting: pictures that differ in shape as well as in colour.
    void ShowState(int32_t state);

    /// `tip` as a host wants it that strips every first ampersand of three; these hosts strip none.
    void ShowTip(const std::string& tip);

    /// A panel that shows icons has come or gone.
    void HostIs(bool there);

    /// True while the icon can be seen, so that a hidden window can be found again.
    bool Present() const { return HostThere && Icon && Icon->isVisible(); }

 private:
    void MakeIcon();

    /// Some hosts report single clicks only: two of them soon after each other are a double click.
    bool IsSecondClick(QSystemTrayIcon::ActivationReason reason);

    QMenu Menu;
    /// Made for the first panel: the toolkit decides at the first icon, once and for all, how icons are
    /// shown.
    std::unique_ptr<QSystemTrayIcon> Icon;
    bool HostThere = false;
    int32_t State = 0;
    QString Tip;
    QElapsedTimer SinceClick;
};

/// The picture of a state: 0 a ring, 1 a ring with a dot, 2 a broken ring with the hands of a clock. The
/// ground that it stands on is not known, so its colours are neither light nor dark.
QIcon StateIcon(int32_t state);

/// A tip for people, without the ampersands that are meant for other hosts.
QString PlainTip(const std::string& tip);

}  // namespace Corvetape
