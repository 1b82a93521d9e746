#include "platform/linux/players/mpris_players.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <map>
#include <vector>

#include "live/session_bus.h"
#include "media/player_bridge.h"
#include "platform/linux/files/linux_files.h"
#include "support/live_session.h"

namespace Corvetape {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

QVariantMap Metadata(const QString& artist, const QString& title) {
    return {{"xesam:artist", QStringList{artist}}, {"xesam:title", title}};
}

QVariantMap Properties(const QString& status, const QVariantMap& metadata) {
    return {{"PlaybackStatus", status}, {"Metadata", metadata}};
}

/// What is told of the player "one" when it says nothing more than this.
PlayerReport Mute(bool playing) {
    PlayerReport report;
    report.Player = "org.mpris.MediaPlayer2.one";
    report.Playing = playing;
    return report;
}

/// Listens as the recorder does, and keeps all that is told.
class Listener {
 public:
    Listener(LiveSession& session, const std::string& bus, milliseconds answerLimit = seconds(10))
        : players(session.Loop, {.Bus = bus, .AnswerLimit = answerLimit}) {
        players.Listen(
            [this](const PlayerReport& report) {
                Reports.push_back(report);
                Present[report.Player] = report;
            },
            [this](const std::string& player) { Present.erase(player); });
        EXPECT_THAT(Reports, IsEmpty()) << "told from within Listen";
    }

    bool Has(const std::string& name) const { return Present.contains("org.mpris.MediaPlayer2." + name); }
    PlayerReport Of(const std::string& name) const {
        const auto found = Present.find("org.mpris.MediaPlayer2." + name);
        return found == Present.end() ? PlayerReport{} : found->second;
    }
    std::string TitleOf(const std::string& name) const { return Of(name).Title; }

    std::vector<PlayerReport> Reports;
    std::map<std::string, PlayerReport> Present;

 private:
    MprisPlayers players;
};

class MprisTest : public testing::Test {
 protected:
    bool Wait(const std::function<bool()>& condition) { return session.WaitFor(condition, seconds(60)); }

    /// What a player that says this is understood to say.
    PlayerReport Understood(const QVariantMap& properties) {
        FakePlayer player(bus, "one", properties);
        Listener listener(session, bus.Address());
        EXPECT_TRUE(Wait([&] { return listener.Has("one"); }));
        return listener.Of("one");
    }

    LiveSession session;
    SessionBus bus{session};
};

TEST_F(MprisTest, APlayerThatRunsAlreadyIsReported) {
    QVariantMap metadata = Metadata("Artist", "Title");
    metadata["xesam:album"] = "Album";
    metadata["xesam:genre"] = QStringList{"Rock", "Pop"};
    metadata["mpris:artUrl"] = "file:///tmp/a.jpg";
    metadata["xesam:url"] = "file:///tmp/a.flac";  // only a piece in a file may show a picture from one
    metadata["mpris:length"] = qlonglong{1000};
    PlayerReport expected{"org.mpris.MediaPlayer2.one", true, "Rock, Pop", "Artist", "Title", "Album",
                          "file:///tmp/a.jpg"};
    expected.Status = PlayerStatus::Playing;
    expected.Address = "file:///tmp/a.flac";
    expected.LengthMs = 1;
    EXPECT_EQ(Understood(Properties("Playing", metadata)), expected);
}

TEST_F(MprisTest, OnlyTheStatusPlayingPlays) {
    EXPECT_FALSE(Understood(Properties("Paused", {})).Playing);
    EXPECT_FALSE(Understood(Properties("playing", {})).Playing);
}

TEST_F(MprisTest, SeveralArtistsAreJoinedAndOneTextIsTakenForAList) {
    EXPECT_EQ(Understood({{"Metadata", QVariantMap{{"xesam:artist", QStringList{"A", "", "B"}}}}}).Artist,
              "A, B");
    EXPECT_EQ(Understood({{"Metadata", QVariantMap{{"xesam:artist", "Alone"}}}}).Artist, "Alone");
}

TEST_F(MprisTest, PlayersComeAndGo) {
    Listener listener(session, bus.Address());
    auto first = std::make_unique<FakePlayer>(bus, "first", Properties("Playing", Metadata("A", "1")));
    FakePlayer second(bus, "second", Properties("Paused", Metadata("B", "2")));
    ASSERT_TRUE(Wait([&] { return listener.Has("first") && listener.Has("second"); }));
    EXPECT_EQ(listener.TitleOf("first"), "1");
    EXPECT_EQ(listener.TitleOf("second"), "2");
    first.reset();
    ASSERT_TRUE(Wait([&] { return !listener.Has("first"); }));
    second.Release("second");
    ASSERT_TRUE(Wait([&] { return !listener.Has("second"); }));
}

TEST_F(MprisTest, ChangesAreReportedAndWhatIsNotNamedStays) {
    FakePlayer player(bus, "one", Properties("Playing", Metadata("A", "1")));
    Listener listener(session, bus.Address());
    ASSERT_TRUE(Wait([&] { return listener.TitleOf("one") == "1"; }));
    player.Say({{"Metadata", Metadata("A", "2")}});
    ASSERT_TRUE(Wait([&] { return listener.TitleOf("one") == "2"; }));
    EXPECT_TRUE(listener.Of("one").Playing);
    player.Say({{"PlaybackStatus", "Paused"}});
    ASSERT_TRUE(Wait([&] { return !listener.Of("one").Playing; }));
    EXPECT_EQ(listener.TitleOf("one"), "2");
    player.Say({{"Metadata", QVariantMap()}});
    ASSERT_TRUE(Wait([&] { return listener.TitleOf("one").empty(); }));
}

TEST_F(MprisTest, SignalsThatChangeNoTextAreNotReported) {
    FakePlayer player(bus, "one", Properties("Playing", Metadata("A", "1")));
    Listener listener(session, bus.Address());
    ASSERT_TRUE(Wait([&] { return listener.TitleOf("one") == "1"; }));
    for (int i = 0; i < 500; ++i) {
        QVariantMap metadata = Metadata("A", "1");
        metadata["mpris:length"] = i;
        player.Say({{"Metadata", metadata}, {"Position", i}});
    }
    player.Say({{"Metadata", Metadata("A", "2")}});
    ASSERT_TRUE(Wait([&] { return listener.TitleOf("one") == "2"; }));
    EXPECT_THAT(listener.Reports, SizeIs(2));
}

TEST_F(MprisTest, ThePositionOfTheSongBeforeIsNotThatOfTheNextOneThoughBothHaveOneName) {
    const auto metadata = [](const QString& title, qlonglong length) {
        QVariantMap map = Metadata("A", title);
        map["mpris:trackid"] = "/page/1";
        map["mpris:length"] = length;
        return map;
    };
    FakePlayer player(bus, "one", Properties("Playing", metadata("1", 40'000'000)));
    player.PositionUs = 30'000'000;
    Listener listener(session, bus.Address());
    ASSERT_TRUE(Wait([&] { return listener.Of("one").BeganAtMs.has_value(); }));
    const int64_t began = listener.Of("one").BeganAtMs.value_or(0);
    player.PositionUs.reset();
    player.Say({{"Metadata", metadata("2", 40'000'000)}});
    ASSERT_TRUE(Wait([&] { return listener.TitleOf("one") == "2"; }));
    EXPECT_EQ(listener.Of("one").BeganAtMs, std::nullopt);
    player.PositionUs = 10'000;
    ASSERT_TRUE(Wait([&] { return listener.Of("one").BeganAtMs.has_value(); }));
    EXPECT_GT(listener.Of("one").BeganAtMs.value_or(0), began + 20'000);
    player.PositionUs.reset();
    player.Say({{"Metadata", metadata("2", 50'000'000)}});
    EXPECT_TRUE(Wait([&] { return listener.Of("one").LengthMs == 50'000; }));
    EXPECT_EQ(listener.Of("one").BeganAtMs, std::nullopt) << "of another length, it is another piece";
}

TEST_F(MprisTest, WhatIsOnlySaidToHaveChangedIsAskedFor) {
    FakePlayer player(bus, "one", Properties("Playing", Metadata("A", "1")));
    Listener listener(session, bus.Address());
    ASSERT_TRUE(Wait([&] { return listener.TitleOf("one") == "1"; }));
    player.Properties = Properties("Playing", Metadata("A", "2"));
    player.Say({}, {"Volume"});
    player.Say({}, {"Metadata"});
    ASSERT_TRUE(Wait([&] { return listener.TitleOf("one") == "2"; }));
    EXPECT_EQ(player.Asked, 2);
}

TEST_F(MprisTest, AFloodOfSuchSignalsIsAnsweredByOneQuestionAtATime) {
    FakePlayer player(bus, "one", Properties("Playing", Metadata("A", "1")));
    Listener listener(session, bus.Address());
    ASSERT_TRUE(Wait([&] { return listener.TitleOf("one") == "1"; }));
    player.Silent = true;
    for (int i = 0; i < 100; ++i) player.Say({}, {"Metadata"});
    player.Say({{"Metadata", Metadata("A", "last")}});
    ASSERT_TRUE(Wait([&] { return listener.TitleOf("one") == "last"; }));
    ASSERT_TRUE(Wait([&] { return player.Asked == 2; }));
    EXPECT_EQ(player.Asked, 2);
}

TEST_F(MprisTest, APlayerThatDoesNotAnswerIsThereAllTheSame) {
    FakePlayer player(bus, "one", Properties("Playing", Metadata("A", "1")));
    player.Silent = true;
    Listener listener(session, bus.Address(), milliseconds(50));
    ASSERT_TRUE(Wait([&] { return listener.Has("one"); }));
    EXPECT_EQ(listener.Of("one"), Mute(false));
    player.Say(Properties("Playing", Metadata("A", "2")));
    ASSERT_TRUE(Wait([&] { return listener.TitleOf("one") == "2"; }));
}

TEST_F(MprisTest, TwoNamesOfOneProgramAreTwoPlayers) {
    FakePlayer player(bus, "one", Properties("Playing", Metadata("A", "1")));
    player.Claim("two");
    Listener listener(session, bus.Address());
    ASSERT_TRUE(Wait([&] { return listener.Has("one") && listener.Has("two"); }));
    player.Say({{"Metadata", Metadata("A", "2")}});
    ASSERT_TRUE(Wait([&] { return listener.TitleOf("one") == "2" && listener.TitleOf("two") == "2"; }));
    player.Release("one");
    ASSERT_TRUE(Wait([&] { return !listener.Has("one"); }));
    EXPECT_TRUE(listener.Has("two"));
}

TEST_F(MprisTest, OthersOnTheBusAreNoPlayersAndOneThatRepeatsOthersIsNoneEither) {
    FakePlayer repeater(bus, "playerctld", Properties("Playing", Metadata("A", "1")));
    FakePlayer player(bus, "one", Properties("Playing", Metadata("A", "1")));
    Listener listener(session, bus.Address());
    ASSERT_TRUE(Wait([&] { return listener.Has("one"); }));
    repeater.Say({{"Metadata", Metadata("A", "2")}});
    player.Say({{"Metadata", Metadata("A", "3")}});
    ASSERT_TRUE(Wait([&] { return listener.TitleOf("one") == "3"; }));
    EXPECT_THAT(listener.Present, SizeIs(1));
}

TEST_F(MprisTest, ValuesOfTheWrongTypeCountAsEmpty) {
    const QVariantMap metadata = {{"xesam:artist", 5},
                                  {"xesam:title", QStringList{"a", "list"}},
                                  {"xesam:album", QByteArray("bytes")},
                                  {"xesam:genre", QVariantMap{{"a", "map"}}},
                                  {"mpris:artUrl", 1.5}};
    PlayerReport expected = Mute(true);
    expected.Status = PlayerStatus::Playing;
    EXPECT_EQ(Understood(Properties("Playing", metadata)), expected);
    EXPECT_EQ(Understood({{"PlaybackStatus", "Playing"}, {"Metadata", "no map"}}), expected);
    EXPECT_EQ(Understood({{"PlaybackStatus", "Playing"}, {"Metadata", QStringList{"no", "map"}}}), expected);
    EXPECT_FALSE(Understood({{"PlaybackStatus", true}}).Playing);
}

TEST_F(MprisTest, SignalsOfTheWrongFormAreLeftAlone) {
    FakePlayer player(bus, "one", Properties("Playing", Metadata("A", "1")));
    Listener listener(session, bus.Address());
    ASSERT_TRUE(Wait([&] { return listener.TitleOf("one") == "1"; }));
    const QString interface = "org.mpris.MediaPlayer2.Player";
    player.Signal({interface});
    player.Signal({interface, "text", 5});
    player.Signal({interface, QVariantMap{{"Metadata", 7}}, QStringList()});
    player.Signal({interface, Properties("Playing", Metadata("A", "no list")), "Metadata"});
    player.Signal({"org.mpris.MediaPlayer2", Properties("Paused", Metadata("A", "another")), QStringList()});
    player.Say({{"Metadata", Metadata("A", "2")}});
    ASSERT_TRUE(Wait([&] { return listener.TitleOf("one") == "2"; }));
    EXPECT_TRUE(listener.Of("one").Playing);
}

TEST_F(MprisTest, HugeTextsAreCutBetweenTwoCharactersAndHugeAddressesLeftOut) {
    QVariantMap metadata = Metadata(QString(10'000'000, 'a'), "x" + QString(5000, QChar(0xE4)));
    metadata["xesam:genre"] = QStringList(5000, "Pop");
    metadata["mpris:artUrl"] = "http://127.0.0.1/" + QString(5000, 'a');
    const PlayerReport report = Understood(Properties("Playing", metadata));
    EXPECT_EQ(report.Artist, std::string(4096, 'a'));
    std::string title = "x";
    while (title.size() + 2 <= 4096) title += "\xC3\xA4";
    EXPECT_EQ(report.Title, title);
    EXPECT_THAT(report.Genre, SizeIs(4096));
    EXPECT_EQ(report.Cover, "");
}

TEST_F(MprisTest, HalvesOfCharactersAreReplaced) {
    const QString half = QString("a") + QChar(0xD800) + "b";
    EXPECT_EQ(Understood({{"Metadata", Metadata(half, half)}}).Title, "a?b");
}

TEST_F(MprisTest, AProgramThatClaimsNamesWithoutEndIsFollowedForSomeOnly) {
    FakePlayer player(bus, "n0", Properties("Playing", Metadata("A", "1")));
    for (int i = 1; i < 100; ++i) player.Claim("n" + QString::number(i));
    Listener listener(session, bus.Address());
    ASSERT_TRUE(Wait([&] { return listener.Present.size() == 64; }));
    player.Say({{"Metadata", Metadata("A", "2")}});
    const auto told = [&] {
        return std::ranges::all_of(listener.Present,
                                   [](const auto& entry) { return entry.second.Title == "2"; });
    };
    ASSERT_TRUE(Wait(told));
    EXPECT_THAT(listener.Present, SizeIs(64));
}

TEST_F(MprisTest, ABusThatEndsTakesItsPlayersWithIt) {
    FakePlayer player(bus, "one", Properties("Playing", Metadata("A", "1")));
    Listener listener(session, bus.Address());
    ASSERT_TRUE(Wait([&] { return listener.Has("one"); }));
    bus.Kill();
    EXPECT_TRUE(Wait([&] { return listener.Present.empty(); }));
}

TEST_F(MprisTest, ABusThatStandsStillIsNotWaitedFor) {
    bus.Signal(SIGSTOP);
    const auto began = std::chrono::steady_clock::now();
    Listener listener(session, bus.Address());
    session.Loop.ProcessEvents();
    EXPECT_LT(std::chrono::steady_clock::now() - began, seconds(10)) << "it would stand still for ever";
    bus.Signal(SIGCONT);
    FakePlayer player(bus, "one", Properties("Playing", Metadata("A", "1")));
    EXPECT_TRUE(Wait([&] { return listener.TitleOf("one") == "1"; }));
}

TEST_F(MprisTest, NothingIsReportedAfterTheEnd) {
    FakePlayer player(bus, "one", Properties("Playing", Metadata("A", "1")));
    Listener other(session, bus.Address());
    for (int i = 0; i < 20; ++i) {
        auto listener = std::make_unique<Listener>(session, bus.Address());
        if (i % 2 == 0) {
            ASSERT_TRUE(Wait([&] { return listener->Has("one"); }));
        }
        player.Say({{"Metadata", Metadata("A", QString::number(i))}});
        listener.reset();  // with news on its way; a sanitizer sees what came after
        ASSERT_TRUE(Wait([&] { return other.TitleOf("one") == std::to_string(i); }));
    }
}

TEST_F(MprisTest, AnEndAmongSignalsIsAnEnd) {
    FakePlayer player(bus, "one", Properties("Playing", Metadata("A", "1")));
    for (int i = 0; i < 100; ++i) {
        const Listener listener(session, bus.Address());
        ASSERT_TRUE(Wait([&] { return listener.Has("one"); }));
        for (int n = 0; n < 20; ++n) player.Say({{"Metadata", Metadata("A", QString::number(n))}});
    }
}

TEST_F(MprisTest, OfPlayersThatPlayTheOneThatBeganLastCounts) {
    LinuxFiles files;
    RegistryBranches registry(files, "", "");
    MprisPlayers players(session.Loop, {.Bus = bus.Address()});
    const PlayerBridge bridge(players, registry, session.Loop);
    const auto counts = [&](const char* status, const char* title) {
        const auto is = [&](const char* name, const std::string& text) {
            return TextOf(registry.ReadRegistryValue(RegistryRoot::CurrentUser, PlayerKeyPath, name)) == text;
        };
        return Wait([&] { return is("Status", status) && is("Title", title); });
    };
    FakePlayer first(bus, "first", Properties("Playing", Metadata("A", "1")));
    ASSERT_TRUE(counts("Playing", "1"));
    auto second = std::make_unique<FakePlayer>(bus, "second", Properties("Paused", Metadata("B", "2")));
    ASSERT_TRUE(Wait([&] { return second->Asked > 0; }));
    EXPECT_TRUE(counts("Playing", "1"));
    second->Say({{"PlaybackStatus", "Playing"}});
    EXPECT_TRUE(counts("Playing", "2"));
    first.Say({{"PlaybackStatus", "Paused"}});
    first.Say({{"PlaybackStatus", "Playing"}});
    EXPECT_TRUE(counts("Playing", "1"));
    first.Say({{"PlaybackStatus", "Stopped"}});
    EXPECT_TRUE(counts("Playing", "2"));
    second.reset();
    EXPECT_TRUE(counts("Stopped", ""));
}

TEST(MprisPlayers, AMachineWithoutASessionBusHasNoPlayersAndNoDelay) {
    LiveSession session;
    for (const char* address : {"", "unix:path=/nowhere/bus", "nonsense"}) {
        const auto began = std::chrono::steady_clock::now();
        {
            Listener listener(session, address);
            session.Loop.ProcessEvents();
            EXPECT_THAT(listener.Reports, IsEmpty());
        }
        EXPECT_LT(std::chrono::steady_clock::now() - began, seconds(5)) << address;
    }
}

TEST(SessionBusAddress, IsThatOfARunningBusOnly) {
    LiveSession session;
    const TempFolder folder;
    setenv("XDG_RUNTIME_DIR", folder.Path().c_str(), 1);
    unsetenv("DBUS_SESSION_BUS_ADDRESS");
    EXPECT_EQ(SessionBusAddress(), "");
    setenv("DBUS_SESSION_BUS_ADDRESS", "autolaunch:", 1);
    EXPECT_EQ(SessionBusAddress(), "") << "nothing is started";
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/tmp/x", 1);
    EXPECT_EQ(SessionBusAddress(), "unix:path=/tmp/x");
    unsetenv("DBUS_SESSION_BUS_ADDRESS");
    const TestProcess daemon(
        {{"dbus-daemon", "--session", "--nofork", "--nopidfile", "--address=unix:path=" + (folder / "bus")},
         {},
         ""});
    EXPECT_TRUE(session.WaitFor([] { return !SessionBusAddress().empty(); }, seconds(60)));
    EXPECT_EQ(SessionBusAddress(), "unix:path=" + (folder / "bus"));
    unsetenv("XDG_RUNTIME_DIR");
}

}  // namespace
}  // namespace Corvetape
