// Which media data the tick asks for, takes over and shows.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "recording/tick_rig.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(SourceTick, FallOnTheFirstTenSecondsAndOnEachTenthAfterThem) {
    TickRig rig;
    std::vector<int32_t> ages;
    for (int i = 0; i < 45; ++i) {
        const int32_t age = rig.Age.Seconds();
        rig.Tick();
        if (rig.WasAsked("GetStationData")) ages.push_back(age);
    }
    EXPECT_THAT(ages, ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 20, 30, 40));
}

TEST(SourceTick, GoOnWhereSongsAreCutByTime) {
    TickRig rig;
    rig.Pause.EndOfSongDetection = EndOfSong::FixedTime;
    rig.Tick();
    EXPECT_TRUE(rig.WasAsked("GetStationData"));
}

/// Seconds until a reading is taken over, with this delay in ms.
int32_t SecondsToTheTakeOver(int32_t encodeDelay) {
    TickRig rig;
    rig.Options.EncodeDelay = encodeDelay;
    rig.Media.CurrentMedia.Song = "New";
    for (int32_t second = 1; second < 100; ++second) {
        rig.Tick();
        if (rig.Media.SongMedia.Song == "New") return second;
    }
    return -1;
}

TEST(TakeOver, WaitsForTheDelayInWholeSecondsAndTwoMore) {
    EXPECT_EQ(SecondsToTheTakeOver(0), 2);
    EXPECT_EQ(SecondsToTheTakeOver(999), 2);
    EXPECT_EQ(SecondsToTheTakeOver(1000), 3);
    EXPECT_EQ(SecondsToTheTakeOver(5999), 7);
    EXPECT_EQ(SecondsToTheTakeOver(30'000), 32);
}

TEST(TakeOver, WaitsUntilThePendingCutIsMade) {
    TickRig rig;
    rig.Options.EncodeDelay = 0;
    rig.Media.SongMedia.Song = "Old";
    rig.Media.CurrentMedia.Song = "New";
    rig.Flags.RecordCurrentSong = true;
    rig.Exclude("New");
    rig.Cut.CutPending = true;
    rig.Ticks(10);
    EXPECT_EQ(rig.Media.SongMedia.Song, "Old");
    EXPECT_TRUE(rig.Flags.RecordCurrentSong);
    rig.Cut.Settle();
    rig.Tick();
    EXPECT_EQ(rig.Media.SongMedia.Song, "New");
    EXPECT_TRUE(rig.Flags.RecordNextSong);
    EXPECT_TRUE(rig.WasAsked("Log INFO #860 New"));
    EXPECT_EQ(rig.Form.lblStatus[1].Caption(), "#860 New");
}

/// What of a reading makes it another song than the one in the file.
struct TakeOverRow {
    const char* Artist;
    const char* Song;
    const char* Album;
    bool Taken;
};

TEST(TakeOver, IsDueIfArtistOrTitleDiffer) {
    for (const auto& [artist, song, album, taken] :
         {TakeOverRow{"A", "S", "L", false}, TakeOverRow{"A", "S", "other", false},
          TakeOverRow{"other", "S", "L", true}, TakeOverRow{"A", "other", "L", true}}) {
        TickRig rig;
        rig.Media.SongMedia.Artist = "A";
        rig.Media.SongMedia.Song = "S";
        rig.Media.SongMedia.Album = "L";
        rig.Media.CurrentMedia.Artist = artist;
        rig.Media.CurrentMedia.Song = song;
        rig.Media.CurrentMedia.Album = album;
        rig.Media.CurrentMedia.StationName = "as it is read now";
        rig.Ticks(10);
        EXPECT_EQ(!rig.Media.SongMedia.StationName.empty(), taken) << artist << song << album;
    }
}

TEST(TakeOver, DoesNotTakePlaceWithoutMediaData) {
    TickRig rig;
    rig.Media.CurrentMedia.Song = "New";
    rig.Ticks(6);
    rig.Media.StationDataEnabled = false;
    rig.Ticks(1);
    rig.Options.EncodeDelay = 0;
    rig.Ticks(10);
    EXPECT_EQ(rig.Media.SongMedia.Song, "");
}

TEST(MediaTexts, AreSetWhicheverFieldDiffers) {
    using Field = std::string STATIONANDSONGDATA::*;
    for (const Field field : {&STATIONANDSONGDATA::StationName, &STATIONANDSONGDATA::Artist,
                              &STATIONANDSONGDATA::Song, &STATIONANDSONGDATA::Album}) {
        TickRig rig;
        STATIONANDSONGDATA& media = rig.Media.CurrentMedia;
        media.StationName = media.Artist = media.Song = media.Album = "as before";
        rig.Tick();
        media.*field = "new";
        rig.Tick();
        EXPECT_EQ(rig.Form.txtStation.Text(), media.StationName);
        EXPECT_EQ(rig.Form.txtArtist.Text(), media.Artist);
        EXPECT_EQ(rig.Form.txtSong.Text(), media.Song);
        EXPECT_EQ(rig.Form.txtAlbum.Text(), media.Album);
        EXPECT_THAT(rig.Asked, testing::Contains(HasSubstr("Tip ")));
    }
}

TEST(MediaTexts, OfAFieldWithAmpersandsShowThemAllInTheTrayTip) {
    TickRig rig;
    rig.Media.CurrentMedia.Artist = "A & B";
    rig.Media.CurrentMedia.Song = "C && D";
    rig.Media.CurrentMedia.Album = "E&";
    rig.Tick();
    EXPECT_TRUE(rig.WasAsked("Tip A &&& B:\nC &&&&&& D\nE&&&"));
    EXPECT_EQ(rig.Form.Caption(), "Corvetape \xC2\xB7 A & B \xC2\xB7 C && D");
}

TEST(MediaTexts, WithAnArtistButNoTitleAreThoseOfNothing) {
    TickRig rig;
    rig.Media.CurrentMedia.Artist = "Somebody";
    rig.Tick();
    EXPECT_EQ(rig.Form.txtArtist.Text(), "Somebody");
    EXPECT_EQ(rig.Form.Caption(), "#100");
}

TEST(MediaDisplay, TheBarHasNoDotBeforeATitleWithoutArtist) {
    TickRig rig;
    rig.Media.CurrentMedia.Song = "Song";
    rig.Tick();
    EXPECT_EQ(rig.PlainBar.Caption(), "Song");
    rig.Media.CurrentMedia.Artist = "Band";
    rig.Tick();
    EXPECT_EQ(rig.PlainBar.Caption(), "Band \xC2\xB7 Song");
}

}  // namespace
}  // namespace Corvetape::Test
