#include "platform/linux/processes/realtime_kit.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <cstdlib>

namespace Corvetape {
namespace {

/// True if asking for the system bus is worth the while: without its socket no time is spent on it.
bool SystemBusIsThere() {
    struct stat status {};
    if (std::getenv("DBUS_SYSTEM_BUS_ADDRESS") != nullptr) return true;
    return stat("/run/dbus/system_bus_socket", &status) == 0 && S_ISSOCK(status.st_mode);
}

}  // namespace

void AskRealtimeKitForNice(int nice) {
    if (QCoreApplication::instance() == nullptr || !SystemBusIsThere()) return;
    const QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected()) return;
    QDBusMessage message = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.RealtimeKit1"), QStringLiteral("/org/freedesktop/RealtimeKit1"),
        QStringLiteral("org.freedesktop.RealtimeKit1"), QStringLiteral("MakeThreadHighPriority"));
    message << QVariant::fromValue(static_cast<qulonglong>(gettid())) << nice;
    bus.send(message);  // granted or not, nothing depends on it
}

}  // namespace Corvetape
