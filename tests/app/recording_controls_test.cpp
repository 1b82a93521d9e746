// The recording as a user steers it, on the whole program.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/desktop_notes.h"
#include "scenario/song_audio.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

WorldOptions Songs(std::initializer_list<double> seconds, std::vector<IniLine> more = {}) {
    WorldOptions options =
        Starting("", {{ProviderOfRadio, "LengthOfPause", "500"}, {ProviderOfRadio, "IgnoreShortSongs", "5"}});
    options.Settings.insert(options.Settings.end(), more.begin(), more.end());
    options.Radio = NumberedRadio(seconds);
    return options;
}

std::vector<std::string> KeptTitlesOf(const World& world) {
    std::vector<std::string> titles;
    for (const HeardSong& song : KeptSongs(world)) titles.push_back(song.Song.Media.Song);
    return titles;
}

struct Period {
    const char* Typed;
    const char* Told;  ///< empty: it is accepted
};

class RecordingPeriod : public testing::TestWithParam<Period> {};

TEST_P(RecordingPeriod, IsAWholeNumberOfMinutesUpToADay) {
    World world(Songs({60}));
    ASSERT_TRUE(world.Start());
    const bool accepted = world.Form().txtRecordingPeriod.SetValueText(GetParam().Typed);
    EXPECT_EQ(accepted, std::string(GetParam().Told).empty());
    if (accepted) {
        EXPECT_THAT(world.Boxes(), IsEmpty());
        EXPECT_EQ(world.Values().Flags.RecordingSecondsLeft, std::stoi(GetParam().Typed) * 60);
        EXPECT_EQ(world.Stored("Record", "StopAfter"), GetParam().Typed);
    } else {
        EXPECT_THAT(world.Boxes(), ElementsAre(HasSubstr(GetParam().Told)));
        EXPECT_EQ(world.Form().txtRecordingPeriod.Text(), "60");
        EXPECT_EQ(world.Stored("Record", "StopAfter"), "-");
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, RecordingPeriod,
                         testing::Values(Period{"1", ""}, Period{"1440", ""}, Period{"0", "from 1 to 1440"},
                                         Period{"1441", "from 1 to 1440"}, Period{"-1", "from 1 to 1440"},
                                         Period{"1.5", "without a fraction"},
                                         Period{"an hour", "in digits only"}));

TEST(TimedStop, OfNoMinutesIsRefusedWithItsText) {
    World world(Songs({60}));
    ASSERT_TRUE(world.Start());
    world.Form().chkStartStop[0].Value(1);
    world.Form().txtRecordingPeriod.Text("0");
    world.Form().chkStopRecording[1].Press();
    ASSERT_THAT(world.Computer.Dialogs.Boxes, SizeIs(1));
    EXPECT_EQ(world.Computer.Dialogs.Boxes[0].Icon, DialogIcon::Exclamation);
    EXPECT_THAT(world.Boxes()[0], HasSubstr("A recording of 0 minutes would record nothing."));
    EXPECT_EQ(world.Form().chkStopRecording[1].Value(), 0);
}

TEST(TimedStop, OfNoMinutesIsRefusedAheadOfItsTickThatGoes) {
    World world(Songs({60}));
    ASSERT_TRUE(world.Start());
    world.Form().chkStartStop[0].Value(1);
    world.Form().txtRecordingPeriod.Text("0");
    std::vector<int32_t> ticked;
    world.Computer.Dialogs.WhileOpen = [&](const ShownBox&) {
        ticked.push_back(world.Form().chkStopRecording[1].Value());
    };
    world.Form().chkStopRecording[1].Press();
    EXPECT_THAT(ticked, ElementsAre(1));
}

TEST(TimedStop, ShowsTheMinutesThatAreLeftAndDoesNotStoreThem) {
    World world(Songs({600}));
    ASSERT_TRUE(world.StartRecording());
    ASSERT_TRUE(world.Form().txtRecordingPeriod.SetValueText("5"));
    world.Form().chkStopRecording[1].Press();
    EXPECT_FALSE(world.Form().txtRecordingPeriod.Enabled());
    world.RunFor(130);
    EXPECT_EQ(world.Form().txtRecordingPeriod.Text(), "3");  // as at the last full minute
    EXPECT_EQ(world.Stored("Record", "StopAfter"), "5");
}

TEST(RecordButton, InTheMiddleOfASongKeepsItFromItsBeginning) {
    World world(Songs({60, 60}));
    ASSERT_TRUE(world.Start());
    world.RunFor(40);
    world.Form().cmdStartStop.Press();
    world.RunFor(40);
    EXPECT_THAT(KeptTitlesOf(world), ElementsAre("Song 1"));
    EXPECT_LE(KeptSongs(world)[0].RadioBegin, world.Truth()->Songs()[0].Begin);
}

TEST(RecordButton, SaysWhyNothingIsRecordedWithoutMediaData) {
    World world(Songs({60}, {{"Providers", "Enable", "0"}}));
    ASSERT_TRUE(world.Start());
    world.Form().cmdStartStop.Press();
    EXPECT_THAT(world.Form().lblStatus[1].Caption(), testing::HasSubstr("media data are switched off"));
}

TEST(RecordButton, RecordsAgainAfterAFullDiskAsSoonAsThereIsRoom) {
    constexpr uint64_t megabyte = 1024 * 1024;
    World world(Songs({70, 30, 30, 60}));
    ASSERT_TRUE(world.StartRecording());
    world.Disk().SetFreeSpace("/", 200 * megabyte);
    ASSERT_TRUE(world.RunUntil([&] { return !world.Values().Flags.RecordingEnabled; }, 150));
    world.RunFor(2);  // the button follows the flags within a second
    world.Form().cmdStartStop.Press();
    EXPECT_FALSE(world.Values().Flags.RecordingEnabled);
    EXPECT_THAT(world.Form().lblStatus[1].Caption(), testing::HasSubstr("the disk has no room"));
    world.Disk().SetFreeSpace("/", 10'000 * megabyte);
    world.Form().cmdStartStop.Press();
    world.Form().cmdStartStop.Press();
    EXPECT_TRUE(world.Values().Flags.RecordingEnabled);
    EXPECT_FALSE(world.Values().Flags.DisableAtEndOfSong);
    EXPECT_EQ(world.Form().lblStatus[1].Caption(), "");
}

TEST(RecordButton, RecordsAgainAfterTheSwitchQuitHasEndedTheRecording) {
    WorldOptions options = Songs({30, 30, 60});
    options.CommandLine = "-quit";
    World world(std::move(options));
    ASSERT_TRUE(world.Start());
    ASSERT_TRUE(world.RunUntil([&] { return !world.Values().Flags.RecordingEnabled; }, 60));
    world.RunFor(45 - world.Now());
    world.Form().cmdStartStop.Press();
    EXPECT_TRUE(world.Values().Flags.RecordingEnabled);
    world.RunFor(30);
    EXPECT_THAT(KeptTitlesOf(world), ElementsAre("Song 2"));
}

TEST(FullDisk, WithoutASourceOfTitlesEndsTheRecordingTooAndForGood) {
    constexpr uint64_t megabyte = 1024 * 1024;
    WorldOptions options = Songs({70, 30, 30, 60});
    options.TellsTitles = false;
    options.Settings.push_back({NoStationData, "LengthOfPause", "500"});
    World world(std::move(options));
    ASSERT_TRUE(world.StartRecording());
    world.Disk().SetFreeSpace("/", 200 * megabyte);
    ASSERT_TRUE(world.RunUntil([&] { return !world.Values().Flags.RecordingEnabled; }, 150));
    // A source is looked for each second, which would switch recording on.
    EXPECT_FALSE(world.RunUntil([&] { return world.Values().Flags.RecordingEnabled; }, 60));
    EXPECT_FALSE(world.Values().Flags.RecordCurrentSong);
    EXPECT_EQ(KeptSongs(world).size(), 1U);
}

TEST(SkipButton, IsOutOfReachWithoutMediaData) {
    World world(Songs({60}));
    ASSERT_TRUE(world.StartRecording());
    ASSERT_TRUE(world.Form().cmdSkipThisRecording.Enabled());
    world.Form().chkStationDataEnable.Press();
    EXPECT_FALSE(world.Form().cmdSkipThisRecording.Enabled());
    world.Form().chkStationDataEnable.Press();
    EXPECT_TRUE(world.Form().cmdSkipThisRecording.Enabled());
}

TEST(QuickRecording, KeepsTheSongThatPlaysAndNoOther) {
    World world(Songs({30, 30, 30}));
    ASSERT_TRUE(world.Start());
    world.RunFor(45);
    world.Form().cmdQuickRecord.Press();
    world.RunFor(80);
    EXPECT_THAT(KeptTitlesOf(world), ElementsAre("Song 2"));
    EXPECT_EQ(world.Form().chkStartStop[0].Value(), 0);
    EXPECT_EQ(world.Form().chkStopRecording[0].Value(), 0);
}

TEST(SkipButton, DropsTheSongThatPlaysAndKeepsTheNextOnes) {
    World world(Songs({30, 30, 30}));
    ASSERT_TRUE(world.StartRecording());
    world.RunFor(45);
    world.Form().cmdSkipThisRecording.Press();
    world.RunFor(80);
    EXPECT_THAT(KeptTitlesOf(world), ElementsAre("Song 1", "Song 3"));
}

TEST(WaitingForTheNextSong, EndsAtAnyCloseAlsoOfAShortSong) {
    World world(Songs({30, 3, 30}));
    ASSERT_TRUE(world.Start());
    world.RunFor(34);  // in the short one
    ASSERT_TRUE(world.RunUntil([&] { return world.Closed.size() >= 2; }, 5));
    world.Form().chkStartStop[1].Value(1);
    world.RunFor(50);
    EXPECT_THAT(KeptTitlesOf(world), ElementsAre("Song 3"));
}

TEST(StopAtTheEndOfTheSong, KeepsItAndThenOnlyWatches) {
    World world(Songs({30, 30, 30}));
    ASSERT_TRUE(world.StartRecording());
    world.RunFor(40);
    world.Form().chkStopRecording[0].Press();
    world.RunFor(80);
    EXPECT_THAT(KeptTitlesOf(world), ElementsAre("Song 1", "Song 2"));
    EXPECT_FALSE(world.Values().Flags.RecordCurrentSong);
    EXPECT_TRUE(world.Values().Flags.RecordingEnabled);
}

TEST(TurningOff, ByTheClockKeepsThePieceUpToNowAndByOtherWaysDropsTheSong) {
    for (const int mode : {0, 1, 2}) {
        World world(Songs({60}, {{ProviderOfRadio, "EndOfSongDetection", std::to_string(mode)},
                                 {ProviderOfRadio, "EndOfSongTimer", "600"}}));
        ASSERT_TRUE(world.Start());
        world.RunFor(5);
        world.Form().chkStartStop[0].Value(1);
        world.RunFor(30);
        const size_t before = KeptSongs(world).size();
        world.Form().cmdStartStop.Press();
        EXPECT_EQ(KeptSongs(world).size() - before, mode == 2 ? 1U : 0U) << mode;
        world.RunFor(60);
        EXPECT_EQ(KeptSongs(world).size() - before, mode == 2 ? 1U : 0U) << mode;
    }
}

}  // namespace
}  // namespace Corvetape::Test
