// Panels that show icons: on a session bus of their own.
#include "platform/linux/desktop/tray_hosts.h"

#include <gtest/gtest.h>

#include <QDBusVariant>
#include <QTimer>

#include "live/session_bus.h"

namespace Corvetape {
namespace {

constexpr std::chrono::seconds Patient{60};

/// A panel as the bus knows it. It shows no icons.
class Panel : public QDBusVirtualObject {
 public:
    Panel(const SessionBus& sessionBus, const char* name)
        : bus(QDBusConnection::connectToBus(QString::fromStdString(sessionBus.Address()), name)) {
        EXPECT_TRUE(bus.registerVirtualObject(Path, this));
        EXPECT_TRUE(bus.registerService(Service));
    }
    ~Panel() override { Leave(); }

    void Leave() {
        bus.unregisterService(Service);
        QDBusConnection::disconnectFromBus(bus.name());
    }
    void Shows(bool shows) {
        shown = shows;
        bus.send(QDBusMessage::createSignal(
            Path, Service, shows ? "StatusNotifierHostRegistered" : "StatusNotifierHostUnregistered"));
    }

    QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.member() != QStringLiteral("Get")) return false;
        ++Asked;
        if (Hangs) return true;
        connection.send(message.createReply(QVariant::fromValue(QDBusVariant(QVariant(shown)))));
        return true;
    }

    int Asked = 0;
    bool Hangs = false;

 private:
    static constexpr const char* Path = "/StatusNotifierWatcher";
    static constexpr const char* Service = "org.kde.StatusNotifierWatcher";

    QDBusConnection bus;
    bool shown = true;
};

class TrayHostsLive : public testing::Test {
 protected:
    QDBusConnection Connect(const char* name) {
        return QDBusConnection::connectToBus(QString::fromStdString(Bus.Address()), name);
    }
    ~TrayHostsLive() override { QDBusConnection::disconnectFromBus("program"); }

    LiveSession Session;
    SessionBus Bus{Session};
};

TEST_F(TrayHostsLive, APanelThatComesAfterTheProgramIsFoundAndMissedWhenItGoes) {
    TrayHosts hosts(TrayHosts::Where::Bus, Connect("program"));
    EXPECT_FALSE(hosts.Present());
    int changes = 0;
    QObject::connect(&hosts, &TrayHosts::Changed, &hosts, [&changes] { ++changes; });
    {
        const Panel panel(Bus, "panel");
        EXPECT_TRUE(Session.WaitFor([&] { return hosts.Present(); }, Patient));
    }
    EXPECT_TRUE(Session.WaitFor([&] { return !hosts.Present(); }, Patient));
    const Panel next(Bus, "next");
    EXPECT_TRUE(Session.WaitFor([&] { return hosts.Present(); }, Patient));
    EXPECT_EQ(changes, 3);
}

TEST_F(TrayHostsLive, APanelThatShowsNoIconsYetIsNoneUntilItDoes) {
    Panel panel(Bus, "panel");
    panel.Shows(false);
    TrayHosts hosts(TrayHosts::Where::Bus, Connect("program"));
    ASSERT_TRUE(Session.WaitFor([&] { return panel.Asked > 0; }, Patient));
    EXPECT_FALSE(hosts.Present());
    panel.Shows(true);
    EXPECT_TRUE(Session.WaitFor([&] { return hosts.Present(); }, Patient));
    panel.Shows(false);
    EXPECT_TRUE(Session.WaitFor([&] { return !hosts.Present(); }, Patient));
}

TEST_F(TrayHostsLive, APanelThatHangsHoldsUpNothing) {
    TrayHosts hosts(TrayHosts::Where::Bus, Connect("program"));
    Panel panel(Bus, "panel");
    panel.Hangs = true;
    ASSERT_TRUE(Session.WaitFor([&] { return panel.Asked > 0; }, Patient));
    int ticks = 0;
    QTimer tick;
    QObject::connect(&tick, &QTimer::timeout, &tick, [&ticks] { ++ticks; });
    tick.start(10);
    // The next one answers, whatever becomes of the question to this one.
    EXPECT_TRUE(Session.WaitFor([&] { return ticks >= 20; }, std::chrono::seconds(20)));
    EXPECT_FALSE(hosts.Present());
    panel.Hangs = false;
    panel.Shows(true);
    EXPECT_TRUE(Session.WaitFor([&] { return hosts.Present(); }, Patient));
}

}  // namespace
}  // namespace Corvetape
