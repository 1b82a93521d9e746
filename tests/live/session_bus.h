#pragma once

#include <gtest/gtest.h>
#include <signal.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QStringList>
#include <QVariantMap>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "live/test_process.h"
#include "support/live_session.h"
#include "support/temp_folder.h"

namespace Corvetape {

/// A private session bus. It shares nothing with the one that the user may be running.
class SessionBus {
 public:
    explicit SessionBus(LiveSession& session) { Start(session); }

    /// Again, after Kill.
    void Start(LiveSession& session) {
        daemon.reset();
        std::filesystem::remove(folder / "bus");
        daemon = std::make_unique<TestProcess>(TestProcess::Start{
            {"dbus-daemon", "--session", "--nofork", "--nopidfile", "--address=" + Address()},
            {},
            folder / "dbus.log"});
        const QString name = QStringLiteral("probe");
        const bool up = session.WaitFor(
            [&] {
                const QString address = QString::fromStdString(Address());
                const bool connected = QDBusConnection::connectToBus(address, name).isConnected();
                QDBusConnection::disconnectFromBus(name);
                return connected;
            },
            std::chrono::seconds(60));
        EXPECT_TRUE(up) << "the session bus does not come up";
    }

    std::string Address() const { return "unix:path=" + (folder / "bus"); }
    void Signal(int number) const { daemon->Signal(number); }
    void Kill() { daemon->Kill(); }

 private:
    TempFolder folder;
    std::unique_ptr<TestProcess> daemon;
};

/// A media player that says what a test puts into its mouth.
class FakePlayer : public QDBusVirtualObject {
 public:
    FakePlayer(const SessionBus& sessionBus, const QString& name, const QVariantMap& properties = {})
        : Properties(properties), bus(Connect(sessionBus)) {
        EXPECT_TRUE(bus.registerVirtualObject(Path(), this));
        Claim(name);
    }
    ~FakePlayer() override { QDBusConnection::disconnectFromBus(bus.name()); }

    static QString BusName(const QString& name) { return QStringLiteral("org.mpris.MediaPlayer2.") + name; }

    void Claim(const QString& name) { EXPECT_TRUE(bus.registerService(BusName(name))); }
    void Release(const QString& name) { EXPECT_TRUE(bus.unregisterService(BusName(name))); }

    /// Signals changes, and properties that it does not tell the values of.
    void Say(const QVariantMap& changed, const QStringList& untold = {}) {
        Signal({QStringLiteral("org.mpris.MediaPlayer2.Player"), changed, untold});
    }

    /// A signal of changes with whatever in it.
    void Signal(const QList<QVariant>& arguments) {
        QDBusMessage signal = QDBusMessage::createSignal(
            Path(), QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("PropertiesChanged"));
        signal.setArguments(arguments);
        EXPECT_TRUE(bus.send(signal));
    }

    QVariantMap Properties;
    bool Silent = false;  ///< takes questions and does not answer
    int Asked = 0;
    std::optional<qlonglong> PositionUs;  ///< that it answers with, in microseconds; refused without one

 private:
    static QString Path() { return QStringLiteral("/org/mpris/MediaPlayer2"); }

    static QDBusConnection Connect(const SessionBus& sessionBus) {
        static int count = 0;  // Qt keeps connections by name
        return QDBusConnection::connectToBus(QString::fromStdString(sessionBus.Address()),
                                             QStringLiteral("player-%1").arg(++count));
    }

    QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.member() == QStringLiteral("Get") && PositionUs) {
            const QVariant position = QVariant::fromValue(QDBusVariant(*PositionUs));
            return connection.send(message.createReply(position));
        }
        if (message.member() != QStringLiteral("GetAll")) return false;
        ++Asked;
        if (!Silent) connection.send(message.createReply(QVariant(Properties)));
        return true;
    }

    QDBusConnection bus;
};

}  // namespace Corvetape
