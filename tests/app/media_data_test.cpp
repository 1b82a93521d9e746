// Media data switched on and off, asked for by hand, and taken over while songs are handed on.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/desktop_notes.h"
#include "scenario/song_audio.h"

namespace Corvetape::Test {
namespace {

using testing::SizeIs;

constexpr const char* NoProvider = " \xE2\x80\xA2 ";

WorldOptions Radio(std::initializer_list<double> seconds) {
    WorldOptions options = Starting("", {{ProviderOfRadio, "LengthOfPause", "500"},
                                         {ProviderOfRadio, "IgnoreShortSongs", "2"},
                                         {"NoStationData", "LengthOfPause", "700"}});
    options.Radio = NumberedRadio(seconds);
    return options;
}

TEST(MediaData, AreReadByTheFirstProviderThatHasASource) {
    World world(Radio({60}));
    ASSERT_TRUE(world.Start());
    world.RunFor(5);
    EXPECT_EQ(world.Values().Media.ProviderName, ProviderOfRadio);
    EXPECT_EQ(world.Values().Media.MixerSectionName, std::string("Mixer") + ProviderOfRadio);
    for (const Label& label : world.Form().lblProvider) {
        EXPECT_EQ(label.Caption(), std::string(" ") + ProviderOfRadio + " ");
    }
    EXPECT_EQ(world.Form().txtArtist.Text(), "Band 1");
    EXPECT_EQ(world.Form().txtSong.Text(), "Song 1");
    EXPECT_EQ(world.Form().txtAlbum.Text(), "Album 1");
    EXPECT_EQ(world.Form().txtStation.Text(), "Radio");
    EXPECT_EQ(world.Form().Caption(), "Corvetape \xC2\xB7 Band 1 \xC2\xB7 Song 1");
}

TEST(MediaData, WithoutAnySourceAreThoseOfTheNullProvider) {
    WorldOptions options = Radio({60});
    options.TellsTitles = false;
    World world(std::move(options));
    ASSERT_TRUE(world.Start());
    world.RunFor(5);
    EXPECT_EQ(world.Values().Media.ProviderName, "NoStationData");
    EXPECT_EQ(world.Form().lblProvider[2].Caption(), NoProvider);
    EXPECT_EQ(world.Form().txtLengthOfPause.Text(), "700");
    EXPECT_TRUE(world.Values().Flags.RecordingEnabled);
}

TEST(MediaData, SwitchedOffEmptyTheSongAndTakeTheSettingsOfNoSource) {
    World world(Radio({60}));
    ASSERT_TRUE(world.Start());
    world.RunFor(15);
    ASSERT_EQ(world.Values().Media.SongMedia.Song, "Song 1");
    ASSERT_EQ(world.Form().txtLengthOfPause.Text(), "500");
    world.Form().chkStationDataEnable.Press();

    EXPECT_FALSE(world.Values().Media.StationDataEnabled);
    EXPECT_EQ(world.Stored("Providers", "Enable"), "0");
    EXPECT_FALSE(world.Form().cmdGetStationID.Enabled());
    for (const Label& label : world.Form().lblMedia) EXPECT_FALSE(label.Enabled());
    EXPECT_EQ(world.Values().Media.SongMedia, STATIONANDSONGDATA{});
    EXPECT_EQ(world.Values().Media.CurrentMedia, STATIONANDSONGDATA{});
    EXPECT_EQ(world.Values().Media.ProviderName, "NoStationData");
    EXPECT_EQ(world.Form().txtLengthOfPause.Text(), "700");
    for (const Label& label : world.Form().lblProvider) EXPECT_EQ(label.Caption(), NoProvider);
    // The null provider goes on with the recording.
    EXPECT_TRUE(world.Values().Flags.RecordingEnabled);
    EXPECT_EQ(world.Values().Signal.PauseRecognition, PauseRecognitionRunning);
    world.RunFor(5);
    EXPECT_EQ(world.Form().txtSong.Text(), "");
}

TEST(MediaData, SwitchedOnAgainWaitForTheNextTickToFindTheirProvider) {
    World world(Radio({60}));
    ASSERT_TRUE(world.Start());
    world.RunFor(10.2 - world.Now());
    world.Form().chkStationDataEnable.Press();
    world.Values().Flags.RecordingEnabled = false;
    world.Form().chkStationDataEnable.Press();
    EXPECT_EQ(world.Stored("Providers", "Enable"), "1");
    EXPECT_TRUE(world.Form().cmdGetStationID.Enabled());
    EXPECT_EQ(world.Values().Signal.PauseRecognition, -1);
    EXPECT_TRUE(world.Values().Flags.RecordingEnabled);
    world.RunFor(1);
    EXPECT_EQ(world.Values().Media.ProviderName, ProviderOfRadio);
    EXPECT_EQ(world.Values().Signal.PauseRecognition, PauseRecognitionRunning);
    EXPECT_EQ(world.Form().txtLengthOfPause.Text(), "500");
}

TEST(MediaData, SwitchedOffInASongKeepItsSoundWhole) {
    World world(Radio({60}));
    ASSERT_TRUE(world.StartRecording());
    world.RunFor(30);
    world.Form().chkStationDataEnable.Press();
    world.RunFor(50);
    world.Finish();
    ASSERT_THAT(world.Transferred, SizeIs(1));
    EXPECT_EQ(MusicComparedWithRadio(world), "");
    EXPECT_EQ(world.Transferred[0].Media.Song, "");
    EXPECT_GE(KeptSongs(world)[0].RadioEnd, world.Truth()->Songs()[0].End);
}

TEST(MediaData, SwitchedOffWhileASongWaitsForItsHandOverLeaveItsName) {
    World world(Radio({20, 60}));
    ASSERT_TRUE(world.StartRecording());
    ASSERT_TRUE(world.RunUntil([&] { return world.Form().tmrEncodeFile.Running(); }, 30));
    world.Form().chkStationDataEnable.Press();
    EXPECT_EQ(world.Values().Media.SongMedia.Song, "");
    world.RunFor(8);
    ASSERT_THAT(world.Transferred, SizeIs(1));
    EXPECT_EQ(world.Transferred[0].Media.Song, "Song 1");
    EXPECT_TRUE(world.Disk().Exists(world.Transferred[0].MusicFile));
}

TEST(MediaData, AreAskedForAtOnceByTheButton) {
    World world(Radio({60, 60}));
    ASSERT_TRUE(world.Start());
    world.RunFor(26);
    world.Values().Media.CurrentMedia.Album = "older";
    world.Form().cmdGetStationID.Press();
    EXPECT_EQ(world.Values().Media.CurrentMedia.Album, "Album 1");
    EXPECT_TRUE(world.Form().cmdGetStationID.Enabled());
}

TEST(MediaData, AreSwitchedByAClickOnTheTextBesideTheBoxToo) {
    World world(Radio({60}));
    ASSERT_TRUE(world.Start());
    world.Form().lblStationDataEnable.Press();
    EXPECT_EQ(world.Form().chkStationDataEnable.Value(), 0);
    EXPECT_FALSE(world.Values().Media.StationDataEnabled);
    world.Form().lblStationDataEnable.Press();
    EXPECT_EQ(world.Form().chkStationDataEnable.Value(), 1);
    world.Form().optEndOfSong[1].Press();
    world.Form().lblStationDataEnable.Press();  // the box is held
    EXPECT_EQ(world.Form().chkStationDataEnable.Value(), 1);
}

TEST(MediaData, AreForcedOnByTheEndOfSongThatNeedsThem) {
    World world(Radio({60}));
    ASSERT_TRUE(world.Start());
    world.RunFor(5);
    world.Form().chkStationDataEnable.Press();
    world.Form().optEndOfSong[1].Press();
    EXPECT_EQ(world.Form().chkStationDataEnable.Value(), 1);
    EXPECT_FALSE(world.Form().chkStationDataEnable.Enabled());
    EXPECT_TRUE(world.Form().tmrGetMediaData.Running());
    world.Form().optEndOfSong[0].Press();
    EXPECT_TRUE(world.Form().chkStationDataEnable.Enabled());
    EXPECT_FALSE(world.Form().tmrGetMediaData.Running());
}

TEST(MediaData, AreTakenOverSomeSecondsIntoASongAndNotBefore) {
    World world(Radio({40, 60}));
    ASSERT_TRUE(world.StartRecording());
    world.RunFor(49.5 - world.Now());
    // The second song began at 45 s; its title is known, but the file has not taken it over.
    EXPECT_EQ(world.Values().Media.CurrentMedia.Song, "Song 2");
    EXPECT_EQ(world.Values().Media.SongMedia.Song, "Song 1");
    world.RunFor(6);
    EXPECT_EQ(world.Values().Media.SongMedia.Song, "Song 2");
}

TEST(MediaData, OfAJingleWithoutTitleLeaveThoseOfTheSongBefore) {
    WorldOptions options = Radio({});
    options.Radio = RadioScript().Pause(3);
    ScriptSong song;
    song.Seconds = 30;
    song.Media = {"Radio", "Band", "Song", "", ""};
    ScriptSong jingle;
    jingle.Seconds = 15;
    jingle.Media = {"Radio", "", "", "", ""};
    options.Radio.Song(song).Pause(2).Song(jingle).Pause(2).SilenceForever();
    World world(std::move(options));
    ASSERT_TRUE(world.StartRecording());
    world.RunFor(48);
    EXPECT_EQ(world.Values().Media.CurrentMedia.Song, "");
    EXPECT_EQ(world.Values().Media.SongMedia.Song, "Song");
}

}  // namespace
}  // namespace Corvetape::Test
