// Dark and light as a desktop wishes it on the session bus.
#include "desktop/desktop_scheme.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QDeadlineTimer>
#include <QPalette>
#include <functional>

#include "live/test_process.h"
#include "support/temp_folder.h"

namespace Corvetape {
namespace {

constexpr const char* Path = "/org/freedesktop/portal/desktop";
constexpr const char* Interface = "org.freedesktop.portal.Settings";
constexpr int PatientMs = 20'000;

/// A desktop with a wish.
class Portal : public QDBusVirtualObject {
 public:
    explicit Portal(uint wish) : Wish(wish) {}

    QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.member() != QStringLiteral("Read")) return false;
        const QVariant value = QVariant::fromValue(QDBusVariant(QVariant(Wish)));
        connection.send(message.createReply(QVariant::fromValue(QDBusVariant(value))));
        return true;
    }

    void Change(uint wish, const QDBusConnection& connection) {
        Wish = wish;
        QDBusMessage news = QDBusMessage::createSignal(Path, Interface, "SettingChanged");
        news << QString("org.freedesktop.appearance") << QString("color-scheme")
             << QVariant::fromValue(QDBusVariant(QVariant(Wish)));
        connection.send(news);
    }

 private:
    uint Wish;
};

bool WaitFor(const std::function<bool()>& condition) {
    const QDeadlineTimer limit(PatientMs);
    while (!condition() && !limit.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    }
    return condition();
}

bool Dark() {
    return QApplication::palette().color(QPalette::Window).lightness() < 128;
}

TEST(DesktopScheme, FollowsTheWishOfTheDesktopFromTheStartAndWhenItChanges) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    int count = 1;
    std::string name = "test";
    char* words[] = {name.data(), nullptr};
    const QApplication application(count, words);
    const TempFolder folder;
    const std::string address = "unix:path=" + (folder / "bus");
    const TestProcess daemon(TestProcess::Start{
        {"dbus-daemon", "--session", "--nofork", "--nopidfile", "--address=" + address}, {}, folder / "log"});
    const auto connect = [&](const char* as) {
        return QDBusConnection::connectToBus(QString::fromStdString(address), as);
    };
    ASSERT_TRUE(WaitFor([&] {
        const bool up = connect("probe").isConnected();
        QDBusConnection::disconnectFromBus("probe");
        return up;
    }));
    QDBusConnection desktop = connect("desktop");
    Portal portal(1);
    ASSERT_TRUE(desktop.registerVirtualObject(Path, &portal));
    ASSERT_TRUE(desktop.registerService("org.freedesktop.portal.Desktop"));
    ASSERT_FALSE(Dark());

    const DesktopScheme scheme(connect("program"));
    EXPECT_TRUE(WaitFor(Dark)) << "the wish at the start";
    portal.Change(0, desktop);
    EXPECT_TRUE(WaitFor([] { return !Dark(); })) << "a change";
    portal.Change(1, desktop);
    EXPECT_TRUE(WaitFor(Dark)) << "another one";
    for (const char* as : {"desktop", "program"}) QDBusConnection::disconnectFromBus(as);
}

}  // namespace
}  // namespace Corvetape
