#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QPalette>

namespace Corvetape {

/// Follows the wish of the desktop for dark or light windows, which newer desktops announce on the session
/// bus and this toolkit does not read: an application palette that is dark while dark is wanted.
class DesktopScheme : public QObject {
    Q_OBJECT

 public:
    /// On the bus of the session, or that of a test.
    explicit DesktopScheme(QDBusConnection bus = QDBusConnection::sessionBus());

    /// The palette for a wish: 1 dark, others as the toolkit has it.
    void Apply(uint wish);

 private slots:
    void SettingChanged(const QString& space, const QString& key, const QDBusVariant& value);

 private:
    QPalette Usual;
};

}  // namespace Corvetape
