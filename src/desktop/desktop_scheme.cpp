#include "desktop/desktop_scheme.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace Corvetape {

namespace {

constexpr const char* Service = "org.freedesktop.portal.Desktop";
constexpr const char* Path = "/org/freedesktop/portal/desktop";
constexpr const char* Interface = "org.freedesktop.portal.Settings";
constexpr const char* Space = "org.freedesktop.appearance";
constexpr const char* SchemeKey = "color-scheme";
constexpr uint PrefersDark = 1;

/// The value is wrapped in one or two variants, by the age of the portal.
uint NumberIn(QVariant value) {
    while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
    return value.toUInt();
}

}  // namespace

DesktopScheme::DesktopScheme(QDBusConnection bus) : Usual(QApplication::palette()) {
    if (!bus.isConnected()) return;
    // The slot is looked up by the names of its types, and this one is not known by name in each run.
    qRegisterMetaType<QDBusVariant>("QDBusVariant");
    // From whomever: a portal that starts anew is another one for the bus.
    bus.connect(QString(), Path, Interface, "SettingChanged", this,
                SLOT(SettingChanged(QString, QString, QDBusVariant)));
    QDBusMessage call = QDBusMessage::createMethodCall(Service, Path, Interface, "Read");
    call << QString(Space) << QString(SchemeKey);
    auto* const answer = std::make_unique<QDBusPendingCallWatcher>(bus.asyncCall(call), this).release();
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        const QDBusPendingReply<QDBusVariant> reply(*answer);
        if (reply.isValid()) Apply(NumberIn(reply.value().variant()));  // no portal, no wish
        answer->deleteLater();
    });
}

void DesktopScheme::SettingChanged(const QString& space, const QString& key, const QDBusVariant& value) {
    if (space == Space && key == SchemeKey) Apply(NumberIn(value.variant()));
}

void DesktopScheme::Apply(uint wish) {
    const bool dark = wish == PrefersDark;
    QApplication::setPalette(dark ? QPalette(QColor(240, 240, 240), QColor(40, 40, 42)) : Usual);
}

}  // namespace Corvetape
