#include "desktop/press.h"

#include <QDBusConnection>
#include <QDBusMessage>

#include "platform/linux/players/mpris_names.h"
#include "platform/linux/processes/single_instance.h"

namespace Corvetape {

namespace {

constexpr int LimitMs = 3000;
constexpr const char* ConnectionName = "corvetape-press";

}  // namespace

bool PressRemotely(RemoteButton button, const std::string& bus) {
    if (bus.empty()) return false;
    const bool record = button == RemoteButton::Record;
    bool answered = false;
    {
        QDBusConnection connection =
            QDBusConnection::connectToBus(QString::fromStdString(bus), ConnectionName);
        QDBusMessage call = QDBusMessage::createMethodCall(
            OwnPlayerName, "/org/mpris/MediaPlayer2",
            record ? "org.mpris.MediaPlayer2.Player" : "org.mpris.MediaPlayer2", record ? "Play" : "Quit");
        call.setAutoStartService(false);
        answered = connection.isConnected() &&
                   connection.call(call, QDBus::Block, LimitMs).type() == QDBusMessage::ReplyMessage;
    }
    QDBusConnection::disconnectFromBus(ConnectionName);
    return answered;
}

std::string InstanceFolder(const std::string& home) {
    return home.empty() ? LinuxSingleInstance::DefaultFolder() : home;
}

bool RunsUnreached(const std::string& home) {
    return LinuxSingleInstance({}, InstanceFolder(home)).HeldByOther();
}

}  // namespace Corvetape
