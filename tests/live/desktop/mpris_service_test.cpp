// The program among the players of a private session bus.
#include "platform/linux/players/mpris_service.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusVariant>

#include "live/session_bus.h"
#include "platform/linux/players/mpris_names.h"
#include "platform/linux/players/mpris_players.h"

namespace Corvetape {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto Patient = 60s;
constexpr const char* Player = "org.mpris.MediaPlayer2.Player";

class NotedButtons : public MediaButtons {
 public:
    void Pressed(MediaButton button) override { All.push_back(button); }
    std::vector<MediaButton> All;
};

/// A desktop that shows notices.
class NoticeServer : public QDBusVirtualObject {
 public:
    QList<QVariant> Last;

    QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.member() != QStringLiteral("Notify")) return false;
        Last = message.arguments();
        connection.send(message.createReply(QVariant(1U)));
        return true;
    }
};

class MprisServiceTest : public testing::Test {
 protected:
    ~MprisServiceTest() override { QDBusConnection::disconnectFromBus(Desktop.name()); }

    void Appear() {
        Service.Follow(&Buttons);
        ASSERT_TRUE(Session.WaitFor([this] { return !Ask(Player, "PlaybackStatus").isNull(); }, Patient));
    }

    QVariant Ask(const char* interface, const char* property) {
        QDBusMessage call = QDBusMessage::createMethodCall(OwnPlayerName, "/org/mpris/MediaPlayer2",
                                                           "org.freedesktop.DBus.Properties", "Get");
        call << QString(interface) << QString(property);
        const QDBusMessage answer = Desktop.call(call, QDBus::Block, 20'000);
        if (answer.type() != QDBusMessage::ReplyMessage) return {};
        return answer.arguments().at(0).value<QDBusVariant>().variant();
    }

    QVariantMap Metadata() { return qdbus_cast<QVariantMap>(Ask(Player, "Metadata")); }

    bool Press(const char* interface, const char* button) {
        const QDBusMessage call =
            QDBusMessage::createMethodCall(OwnPlayerName, "/org/mpris/MediaPlayer2", interface, button);
        return Desktop.call(call, QDBus::Block, 20'000).type() == QDBusMessage::ReplyMessage;
    }

    LiveSession Session;
    SessionBus Bus{Session};
    QDBusConnection Desktop =
        QDBusConnection::connectToBus(QString::fromStdString(Bus.Address()), "desktop-of-the-test");
    NotedButtons Buttons;
    MprisService Service{Session.Loop, Bus.Address()};
};

TEST_F(MprisServiceTest, ShowsWhatIsRecorded) {
    Appear();
    EXPECT_EQ(Ask(Player, "PlaybackStatus").toString(), "Stopped");
    EXPECT_THAT(Metadata(), IsEmpty());
    Service.Show({RecorderStatus::Recording, "Marrow & Mint", "Little Umbrellas", "An Album",
                  "http://127.0.0.1/cover.jpg"});
    ASSERT_TRUE(
        Session.WaitFor([this] { return Ask(Player, "PlaybackStatus").toString() == "Playing"; }, Patient));
    const QVariantMap piece = Metadata();
    EXPECT_EQ(piece["xesam:title"].toString(), "Little Umbrellas");
    EXPECT_EQ(piece["xesam:artist"].toStringList(), QStringList("Marrow & Mint"));
    EXPECT_EQ(piece["xesam:album"].toString(), "An Album");
    EXPECT_EQ(piece["mpris:artUrl"].toString(), "http://127.0.0.1/cover.jpg");
    Service.Show({RecorderStatus::Listening, "", "Another", "", "no address"});
    ASSERT_TRUE(
        Session.WaitFor([this] { return Ask(Player, "PlaybackStatus").toString() == "Paused"; }, Patient));
    EXPECT_FALSE(Metadata().contains("mpris:artUrl"));
}

TEST_F(MprisServiceTest, ItsButtonsArePressedOnTheLogicThread) {
    Appear();
    for (const char* button : {"Play", "Pause", "PlayPause", "Stop", "Next"}) {
        EXPECT_TRUE(Press(Player, button)) << button;
    }
    EXPECT_TRUE(Press("org.mpris.MediaPlayer2", "Raise"));
    EXPECT_TRUE(Press("org.mpris.MediaPlayer2", "Quit"));
    EXPECT_THAT(Buttons.All, IsEmpty()) << "no loop has run since";
    ASSERT_TRUE(Session.WaitFor([this] { return Buttons.All.size() >= 7; }, Patient));
    EXPECT_THAT(Buttons.All,
                ElementsAre(MediaButton::Play, MediaButton::Pause, MediaButton::PlayPause, MediaButton::Stop,
                            MediaButton::Next, MediaButton::Raise, MediaButton::Quit));
}

TEST_F(MprisServiceTest, TheProgramNeverTakesItselfForAPlayer) {
    FakePlayer other(Bus, "other", {{"PlaybackStatus", "Playing"}});
    Appear();
    Service.Show({RecorderStatus::Recording, "Somebody", "Something", "", ""});
    MprisService second(Session.Loop, Bus.Address());  // its name is taken, so it has a number
    second.Follow(&Buttons);
    second.Show({RecorderStatus::Recording, "Somebody", "Something", "", ""});

    MprisPlayers players(Session.Loop, {.Bus = Bus.Address()});
    std::vector<std::string> seen;
    players.Listen([&](const PlayerReport& report) { seen.push_back(report.Player); },
                   [](const std::string&) {});
    ASSERT_TRUE(Session.WaitFor([&] { return !seen.empty(); }, Patient));
    Service.Show({RecorderStatus::Recording, "Somebody", "Something else", "", ""});
    other.Say({{"PlaybackStatus", "Paused"}});
    ASSERT_TRUE(Session.WaitFor([&] { return seen.size() >= 2; }, Patient));
    for (const std::string& name : seen) EXPECT_EQ(name, FakePlayer::BusName("other").toStdString());
}

TEST_F(MprisServiceTest, NoticesGoToTheDesktop) {
    NoticeServer shown;
    ASSERT_TRUE(Desktop.registerVirtualObject("/org/freedesktop/Notifications", &shown));
    ASSERT_TRUE(Desktop.registerService("org.freedesktop.Notifications"));
    Appear();
    Service.Notify({"Marrow & Mint - <b>Umbrellas</b>", "Kept"});
    ASSERT_TRUE(Session.WaitFor([&] { return !shown.Last.isEmpty(); }, Patient));
    ASSERT_EQ(shown.Last.size(), 8);
    EXPECT_EQ(shown.Last[0].toString(), "Corvetape");
    EXPECT_EQ(shown.Last[2].toString(), "corvetape");
    EXPECT_EQ(shown.Last[3].toString(), "Marrow & Mint - <b>Umbrellas</b>");
    EXPECT_EQ(shown.Last[4].toString(), "Kept");
}

TEST_F(MprisServiceTest, ABusThatHangsHoldsUpNothing) {
    Appear();
    Bus.Signal(SIGSTOP);
    const auto begin = std::chrono::steady_clock::now();
    Service.Show({RecorderStatus::Recording, "Somebody", "Something", "", ""});
    Service.Notify({"A song", "Kept"});
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 5s) << "it would stand still for ever";
    Bus.Signal(SIGCONT);
    EXPECT_TRUE(
        Session.WaitFor([this] { return Ask(Player, "PlaybackStatus").toString() == "Playing"; }, Patient));
}

TEST_F(MprisServiceTest, IsBackOnABusThatHasBeenStartedAgain) {
    Appear();
    Bus.Kill();
    Bus.Start(Session);
    const QString name = "desktop-after-the-restart";
    const QString address = QString::fromStdString(Bus.Address());
    bool there = false;
    {
        QDBusConnection again = QDBusConnection::connectToBus(address, name);
        there = Session.WaitFor([&] { return again.interface()->isServiceRegistered(OwnPlayerName).value(); },
                                Patient);
    }
    QDBusConnection::disconnectFromBus(name);
    EXPECT_TRUE(there);
}

}  // namespace
}  // namespace Corvetape
