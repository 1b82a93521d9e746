#include "ui/tray_icon.h"

#include <QApplication>
#include <QTextDocument>

#include "core/version.h"
#include "ui/icons.h"
#include "ui/menu_items.h"

namespace Corvetape {

QIcon StateIcon(int32_t state) {
    if (state == 1) return DrawnIcon("tray-1", QColor("#e5533b"));
    if (state == 2) return DrawnIcon("tray-2", QColor("#d0912a"));
    return DrawnIcon("tray-0", QColor("#8c8c8c"));
}

QString PlainTip(const std::string& tip) {
    QString plain = QString::fromStdString(tip).replace("&&&", "&");
    // Markup of strangers would be obeyed by some hosts, and opens files; with a space of no width it is
    // none.
    constexpr QChar none(0x200B);
    if (Qt::mightBeRichText(plain)) plain.replace("<", QString("<") + none).replace("&", QString("&") + none);
    return plain;
}

TrayIcon::TrayIcon(frmMain& form) : Tip(PlainTip(ProgramTitle)) {
    FillMenu(Menu, form.mnuTaskbarItem);
}

void TrayIcon::HostIs(bool there) {
    HostThere = there;
    if (there && !Icon) MakeIcon();
}

void TrayIcon::MakeIcon() {
    Icon = std::make_unique<QSystemTrayIcon>(StateIcon(State), this);
    Icon->setContextMenu(&Menu);
    Icon->setToolTip(Tip);
    connect(Icon.get(), &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::DoubleClick || IsSecondClick(reason)) Restore.Raise();
    });
    Icon->show();
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

void TrayIcon::ShowState(int32_t state) {
    State = state;
    if (Icon) Icon->setIcon(StateIcon(state));
}

void TrayIcon::ShowTip(const std::string& tip) {
    Tip = PlainTip(tip);
    if (Icon) Icon->setToolTip(Tip);
}

}  // namespace Corvetape
