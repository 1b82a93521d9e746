#include "platform/linux/players/mpris_values.h"

#include <gtest/gtest.h>

#include <QDBusObjectPath>
#include <QStringList>

namespace Corvetape {
namespace {

/// What a player that says nothing yet is told to have said.
PlayerReport After(const QVariantMap& properties) {
    return WithProperties({}, properties);
}

PlayerReport AfterPiece(const QVariantMap& piece) {
    return After({{"Metadata", piece}});
}

TEST(MprisValues, ABusNameStandsForAPlayerUnlessItRepeatsOthers) {
    EXPECT_TRUE(IsPlayerName("org.mpris.MediaPlayer2.mpv"));
    EXPECT_TRUE(IsPlayerName("org.mpris.MediaPlayer2.chromium.instance7"));
    EXPECT_FALSE(IsPlayerName("org.mpris.MediaPlayer2.playerctld"));
    EXPECT_FALSE(IsPlayerName("org.mpris.MediaPlayer2"));
    EXPECT_FALSE(IsPlayerName("org.freedesktop.DBus"));
    EXPECT_FALSE(IsPlayerName(""));
}

TEST(MprisValues, AreTakenFromThePiece) {
    const PlayerReport report =
        After({{"PlaybackStatus", "Playing"},
               {"Metadata", QVariantMap{{"xesam:artist", QStringList{"Ann"}},
                                        {"xesam:title", "One"},
                                        {"xesam:album", "First"},
                                        {"xesam:genre", QStringList{"Pop"}},
                                        {"mpris:artUrl", "http://127.0.0.1/c.jpg"}}}});
    PlayerReport expected{"", true, "Pop", "Ann", "One", "First", "http://127.0.0.1/c.jpg"};
    expected.Status = PlayerStatus::Playing;
    EXPECT_EQ(report, expected);
}

TEST(MprisValues, APieceHasAnIdALengthAndAnAddress) {
    const PlayerReport report =
        AfterPiece({{"mpris:trackid", QVariant::fromValue(QDBusObjectPath("/track/7"))},
                    {"mpris:length", QVariant(qlonglong{61'500'000})},
                    {"xesam:url", "file:///a.flac"}});
    EXPECT_EQ(report.TrackId, "/track/7");
    EXPECT_EQ(report.LengthMs, 61'500);
    EXPECT_EQ(report.Address, "file:///a.flac");
    const PlayerReport odd = AfterPiece({{"mpris:trackid", "/org/mpris/MediaPlayer2/TrackList/NoTrack"},
                                         {"mpris:length", QVariant(qlonglong{-5})}});
    EXPECT_EQ(odd.TrackId, "");
    EXPECT_EQ(odd.LengthMs, 0);
    EXPECT_EQ(AfterPiece({{"mpris:trackid", "a text"}}).TrackId, "a text");
}

TEST(MprisValues, TellsPlayingPausedAndStoppedApart) {
    EXPECT_EQ(After({{"PlaybackStatus", "Playing"}}).Status, PlayerStatus::Playing);
    EXPECT_EQ(After({{"PlaybackStatus", "Paused"}}).Status, PlayerStatus::Paused);
    EXPECT_EQ(After({{"PlaybackStatus", "Stopped"}}).Status, PlayerStatus::Stopped);
    EXPECT_EQ(After({{"PlaybackStatus", "Else"}}).Status, PlayerStatus::Unknown);
}

TEST(MprisValues, OnlyAPieceThatIsAFileMayShowAPictureFromAFile) {
    const auto coverOf = [](const char* cover, const char* piece) {
        return AfterPiece({{"mpris:artUrl", cover}, {"xesam:url", piece}}).Cover;
    };
    EXPECT_EQ(coverOf("file:///c.jpg", "file:///music/a.flac"), "file:///c.jpg");
    EXPECT_EQ(coverOf("/c.jpg", "FILE:///music/a.flac"), "/c.jpg");
    for (const char* stream : {"http://radio/", "https://radio/", "cdda://1", "/music/a.flac", "", "file"}) {
        EXPECT_EQ(coverOf("file:///c.jpg", stream), "") << stream;
        EXPECT_EQ(coverOf("/c.jpg", stream), "") << stream;
        EXPECT_EQ(coverOf("HTTPS://radio/c.jpg", stream), "HTTPS://radio/c.jpg") << stream;
    }
    EXPECT_EQ(AfterPiece({{"mpris:artUrl", "file:///c.jpg"}}).Cover, "");
}

TEST(MprisValues, APictureThatABrowserHasFetchedForAPageIsShown) {
    const auto coverOf = [](const char* cover) { return AfterPiece({{"mpris:artUrl", cover}}).Cover; };
    for (const char* own :
         {"file:///tmp/.org.chromium.Chromium.rYa1SC", "file:///run/user/1000/tmp/.com.google.Chrome.0aZ9bY",
          "file:///tmp/.com.microsoft.Edge.abcdef",
          "file:///home/my%20name/.mozilla/firefox/firefox-mpris/4711_12.png"}) {
        EXPECT_EQ(coverOf(own), own);
    }
    for (const char* other :
         {"file:///home/user/passport.png", "file:///home/user/.org.chromium.Chromium.rYa1SC/../passport.png",
          "file:///tmp/.org.chromium.Chromium.rYa1SC/passport.png",
          "file:///tmp/.org.chromium.Chromium.%2e%2e%2fpass",
          "file:///home/user/passport.png?.org.chromium.Chromium.rYa1SC",
          "file:///home/user/passport.png#/.org.chromium.Chromium.rYa1SC",
          "file:///home/user/passport.png\n/tmp/.org.chromium.Chromium.rYa1SC\n",
          "file:///tmp/.org.chromium.Chromium.rYa1SC2", "file:///tmp/xorg.chromium.Chromium.rYa1SC",
          "file://server/tmp/.org.chromium.Chromium.rYa1SC", "/tmp/.org.chromium.Chromium.rYa1SC",
          "file:///home/user/firefox-mpris/passport.png",
          "file:///home/user/firefox-mpris/1_2.png/passport.png"}) {
        EXPECT_EQ(coverOf(other), "") << other;
    }
}

TEST(MprisValues, OnlyTheExactStatusPlays) {
    EXPECT_TRUE(After({{"PlaybackStatus", "Playing"}}).Playing);
    for (const QVariant& status : {QVariant("playing"), QVariant("Paused"), QVariant("Stopped"), QVariant(""),
                                   QVariant(1), QVariant(QStringList{"Playing"})}) {
        EXPECT_FALSE(After({{"PlaybackStatus", status}}).Playing) << status.toString().toStdString();
    }
}

TEST(MprisValues, ThatAreNotSaidStayAsTheyAre) {
    const PlayerReport before{"player", true, "Pop", "Ann", "One", "First", "cover"};
    EXPECT_EQ(WithProperties(before, {}), before);
    EXPECT_EQ(WithProperties(before, {{"Volume", 0.5}}), before);
    PlayerReport paused = before;
    paused.Playing = false;
    paused.Status = PlayerStatus::Paused;
    EXPECT_EQ(WithProperties(before, {{"PlaybackStatus", "Paused"}}), paused);
}

TEST(MprisValues, OfANewPieceReplaceAllOfTheOldOne) {
    const PlayerReport before{"player", true, "Pop", "Ann", "One", "First", "cover"};
    const PlayerReport after = WithProperties(before, {{"Metadata", QVariantMap{{"xesam:title", "Two"}}}});
    EXPECT_EQ(after, (PlayerReport{"player", true, "", "", "Two", "", ""}));
}

TEST(MprisValues, SeveralArtistsAreJoinedWithoutEmptyOnes) {
    EXPECT_EQ(AfterPiece({{"xesam:artist", QStringList{"Ann", "", "Bob"}}}).Artist, "Ann, Bob");
    EXPECT_EQ(AfterPiece({{"xesam:artist", "Ann"}}).Artist, "Ann");  // some players say one text
    EXPECT_EQ(AfterPiece({{"xesam:artist", QStringList()}}).Artist, "");
}

TEST(MprisValues, OfTheWrongTypeCountAsEmpty) {
    EXPECT_EQ(AfterPiece({{"xesam:title", 7}, {"xesam:artist", 7}, {"mpris:artUrl", QStringList{"a"}}}),
              PlayerReport{});
    EXPECT_EQ(After({{"Metadata", "a text"}}), PlayerReport{});
    EXPECT_TRUE(BusMap(QVariant(7)).isEmpty());
    EXPECT_EQ(BusMap(QVariantMap{{"a", 1}}).size(), 1);
}

TEST(MprisValues, TextsAreCutBetweenTwoCharacters) {
    const QString text = QString(MostPlayerTextBytes - 1, 'x') + QString::fromUtf8("\xC3\xA4") + "tail";
    EXPECT_EQ(AfterPiece({{"xesam:title", text}}).Title, std::string(MostPlayerTextBytes - 1, 'x'));
    const QString fits = QString(MostPlayerTextBytes - 2, 'x') + QString::fromUtf8("\xC3\xA4");
    EXPECT_EQ(AfterPiece({{"xesam:title", fits}}).Title, fits.toStdString());
    const QString clef = QString::fromUtf8("\xF0\x9D\x84\x9E");
    EXPECT_EQ(AfterPiece({{"xesam:title", QString(MostPlayerTextBytes - 3, 'x') + clef}}).Title,
              std::string(MostPlayerTextBytes - 3, 'x'));
}

TEST(MprisValues, ManyArtistsEndWithinTheLimit) {
    const QStringList artists(100'000, QString("Somebody"));
    EXPECT_EQ(AfterPiece({{"xesam:artist", artists}}).Artist.size(),
              static_cast<size_t>(MostPlayerTextBytes));
}

TEST(MprisValues, AnAddressThatIsTooLongIsLeftOut) {
    const auto coverOfSize = [](qsizetype size) {
        return AfterPiece({{"mpris:artUrl", QString("http://").leftJustified(size, 'x')}}).Cover;
    };
    EXPECT_EQ(coverOfSize(MostPlayerTextBytes).size(), static_cast<size_t>(MostPlayerTextBytes));
    EXPECT_EQ(coverOfSize(MostPlayerTextBytes + 1), "");
}

}  // namespace
}  // namespace Corvetape
