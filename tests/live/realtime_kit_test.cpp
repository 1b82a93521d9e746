#include "platform/linux/processes/realtime_kit.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <cstdlib>

#include "live/session_bus.h"
#include "support/live_session.h"

namespace Corvetape {
namespace {

/// Stands in for the service, on a private bus.
class FakeRealtimeKit : public QDBusVirtualObject {
 public:
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        Calls.append(message);
        connection.send(message.createReply());
        return true;
    }

    QList<QDBusMessage> Calls;
};

TEST(RealtimeKit, IsAskedForTheCallingThread) {
    LiveSession session;
    const SessionBus bus(session);  // stands for the bus of the system
    const std::string address = bus.Address();
    setenv("DBUS_SYSTEM_BUS_ADDRESS", address.c_str(), 1);
    {
        FakeRealtimeKit service;
        QDBusConnection connection =
            QDBusConnection::connectToBus(QString::fromStdString(address), QStringLiteral("fake"));
        ASSERT_TRUE(
            connection.registerVirtualObject(QStringLiteral("/org/freedesktop/RealtimeKit1"), &service));
        ASSERT_TRUE(connection.registerService(QStringLiteral("org.freedesktop.RealtimeKit1")));
        AskRealtimeKitForNice(-10);
        EXPECT_TRUE(session.WaitFor([&] { return !service.Calls.isEmpty(); }, std::chrono::seconds(30)));
        ASSERT_EQ(service.Calls.size(), 1);
        const QDBusMessage& call = service.Calls[0];
        EXPECT_EQ(call.interface(), QStringLiteral("org.freedesktop.RealtimeKit1"));
        EXPECT_EQ(call.member(), QStringLiteral("MakeThreadHighPriority"));
        EXPECT_EQ(call.signature(), QStringLiteral("ti"));
        EXPECT_EQ(call.arguments().at(0).toULongLong(), static_cast<qulonglong>(gettid()));
        EXPECT_EQ(call.arguments().at(1).toInt(), -10);
    }
    QDBusConnection::disconnectFromBus(QStringLiteral("fake"));
    unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
}

}  // namespace
}  // namespace Corvetape
