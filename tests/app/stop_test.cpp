// The stop of the program, step by step.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/desktop_notes.h"
#include "core/settings/profile.h"
#include "core/settings/registry.h"
#include "scenario/song_audio.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

/// The order in which the desktop was asked, boxes were shown and lines were logged.
class StopOrder {
 public:
    explicit StopOrder(World& world) : Place(world) {
        Desktop.WhileAsked = [this](const std::string& what) { Add(what); };
        PutOn(Place, Desktop);
        Place.Computer.Dialogs.WhileOpen = [this](const ShownBox&) { Add("box"); };
    }

    std::vector<std::string> OfTheStop() {
        Seen.clear();
        Lines = Place.Log.size();
        Place.Recorder->Unload();
        Add("the end");
        Seen.pop_back();
        return Seen;
    }

 private:
    void Add(const std::string& what) {
        for (; Lines < Place.Log.size(); ++Lines) Seen.push_back(Place.Log[Lines].Kind);
        Seen.push_back(what);
    }

    World& Place;
    DesktopNotes Desktop;
    std::vector<std::string> Seen;
    size_t Lines = 0;
};

TEST(Stop, ReportsAndAsksInTheOrderOfItsSteps) {
    World world(Starting("", {{"Options", "StopApp", "1"}, {"Options", "StopAppName", "/usr/bin/lights"}}));
    StopOrder order(world);
    ASSERT_TRUE(world.Start());
    world.Values().Messages.RaiseError(905, "/a/song.wav", 28);
    world.Values().Messages.RaiseInfo(834);
    EXPECT_THAT(order.OfTheStop(), ElementsAre("ERROR", "box", "INFO", "box", "START", "ReportWindow",
                                               "RemoveTrayIcon", "CloseBars", "END "));
}

std::string StoredForm(World& world, const char* key) {
    return Profile(world.Computer.Files, IniFile).ReadText("Form", key, "", 99);
}

TEST(Stop, StoresWhereTheWindowIs) {
    World world;
    ASSERT_TRUE(world.Load());
    world.Form().Place({1500, 750, 15000, 10800});
    world.Recorder->Unload();
    EXPECT_EQ(StoredForm(world, "Pos"), "1500;750;15000;10800");
    EXPECT_EQ(StoredForm(world, "State"), "");
}

TEST(Stop, StoresThePlaceOfANormalWindowAndTheStateOfOneThatIsNotMinimised) {
    World maximised;
    ASSERT_TRUE(maximised.Load());
    maximised.Form().Place({1500, 750, 15000, 10800});
    maximised.Form().State(WindowState::Maximised);
    maximised.Recorder->Unload();
    EXPECT_EQ(StoredForm(maximised, "Pos"), "");
    EXPECT_EQ(StoredForm(maximised, "State"), "2");
    World minimised(Starting("", {{"Form", "State", "2"}}));
    ASSERT_TRUE(minimised.Load());
    minimised.Form().Place({1500, 750, 15000, 10800});
    minimised.Form().State(WindowState::Minimised);
    minimised.Recorder->Unload();
    EXPECT_EQ(StoredForm(minimised, "Pos"), "");
    EXPECT_EQ(StoredForm(minimised, "State"), "2");
}

TEST(Stop, ARunWithoutAWindowLeavesThePlaceOfTheLastOne) {
    World world(Starting("", {{"Form", "Pos", "1;2;3;4"}, {"Form", "State", "2"}}));
    ASSERT_TRUE(world.Load());
    world.Recorder->Unload();
    EXPECT_EQ(StoredForm(world, "Pos"), "1;2;3;4");
    EXPECT_EQ(StoredForm(world, "State"), "2");
}

TEST(Stop, WritesItsLastLineWithItsTrailingBlank) {
    World world;
    ASSERT_TRUE(world.Load());
    world.Recorder->Unload();
    EXPECT_EQ(world.Disk().Content(std::string(LogFolder) + "/20240514.log"),
              "12:00:00\tSTART\r\n12:00:00\tEND \r\n");
}

TEST(Stop, LeavesNothingThatRunsOn) {
    World world;
    ASSERT_TRUE(world.Start());
    world.Form().tbsMain.Select("TAB_AUDIO");
    world.Form().lstBufferFlag.ListIndex(0);  // its box would come in a second
    world.Recorder->Unload();
    const size_t lines = world.Log.size();
    world.RunFor(10);
    EXPECT_EQ(world.Log.size(), lines);
    EXPECT_THAT(world.Boxes(), IsEmpty());
    EXPECT_EQ(world.Disk().OpenHandles(), 0U);
}

TEST(Stop, ClosesTheInput) {
    World world;
    ASSERT_TRUE(world.Start());
    world.RunFor(2);
    EXPECT_NE(world.Computer.WaveIn.OpenFeed(), nullptr);
    world.Recorder->Unload();
    EXPECT_EQ(world.Computer.WaveIn.OpenFeed(), nullptr);
}

TEST(Stop, GivesTheLastSongTheLastReading) {
    WorldOptions options = Starting("", {{ProviderOfRadio, "IgnoreShortSongs", "0"}});
    options.Radio = NumberedRadio({60});
    World world(std::move(options));
    ASSERT_TRUE(world.StartRecording());
    world.RunFor(6);
    // So young a song has not taken its data over yet.
    ASSERT_EQ(world.Values().Media.SongMedia.Song, "");
    world.Finish();
    ASSERT_THAT(world.Transferred, SizeIs(1));
    EXPECT_EQ(world.Transferred[0].Media.Song, "Song 1");
}

TEST(StopApplication, IsLaunchedWithALineOfItsOwn) {
    World world(Starting("", {{"Options", "StopApp", "1"},
                              {"Options", "StopAppName", "/usr/bin/lights"},
                              {"Options", "StopAppParams", "off"}}));
    ASSERT_TRUE(world.Load());
    EXPECT_THAT(world.Computer.Processes.ShellCalls, IsEmpty());
    world.Recorder->Unload();
    const ShellCall call = {"/usr/bin/lights", "off", "/usr/bin/"};
    EXPECT_THAT(world.Computer.Processes.ShellCalls, ElementsAre(call));
    EXPECT_THAT(world.Logged("START"), ElementsAre("", "/usr/bin/lights\toff"));
}

TEST(StopApplication, ThatFailsIsReportedInTheLogAndTheStopGoesOn) {
    World world(Starting("", {{"Options", "StopApp", "1"}}));
    world.Computer.Processes.OnShellOpen = [](const ShellCall&) { return 5; };
    ASSERT_TRUE(world.Load());
    world.Recorder->Unload();
    EXPECT_THAT(world.Logged("ERROR"), ElementsAre("5 (Access to this file denied)"));
    EXPECT_THAT(world.Logged("END "), SizeIs(1));
}

TEST(DeferredMessages, AreReportedInTheLogAndInBoxesErrorFirst) {
    World world;
    ASSERT_TRUE(world.Load());
    world.Values().Messages.RaiseError(905, "/a/song.wav", 28);
    world.Values().Messages.RaiseError(903, "/a/later.wav", 5);  // the first error wins
    world.Values().Messages.RaiseInfo(833);
    world.Values().Messages.RaiseInfo(835);  // the last information wins
    world.Recorder->Unload();
    ASSERT_THAT(world.Computer.Dialogs.Boxes, SizeIs(2));
    const ShownBox& error = world.Computer.Dialogs.Boxes[0];
    const ShownBox& info = world.Computer.Dialogs.Boxes[1];
    EXPECT_EQ(error.Icon, DialogIcon::Critical);
    EXPECT_THAT(error.Text, HasSubstr("\"/a/song.wav\" could not be written any further (error 28)"));
    EXPECT_EQ(info.Icon, DialogIcon::Information);
    EXPECT_THAT(info.Text, HasSubstr("the disk with your music was nearly full"));
    EXPECT_THAT(world.Logged("ERROR"), ElementsAre(error.Text));
    EXPECT_THAT(world.Logged("INFO"), ElementsAre(info.Text));
}

TEST(DeferredMessages, OfAnUnattendedProgramAreReportedInTheLogAlone) {
    World world(Starting("-dontask"));
    ASSERT_TRUE(world.Load());
    world.Values().Messages.RaiseError(905, "/a/song.wav", 28);
    world.Values().Messages.RaiseInfo(833);
    world.Recorder->Unload();
    EXPECT_THAT(world.Boxes(), IsEmpty());
    EXPECT_THAT(world.Logged("ERROR"), SizeIs(1));
    EXPECT_THAT(world.Logged("INFO"), SizeIs(1));
}

TEST(DeferredMessages, ThatDoNotExistAreNotReported) {
    World world;
    ASSERT_TRUE(world.Load());
    world.Recorder->Unload();
    EXPECT_THAT(world.Boxes(), IsEmpty());
    EXPECT_THAT(LoggedKinds(world), ElementsAre("START", "END "));
}

TEST(SongCounter, CountsTheSongsOfAllRunsAndIsStoredAtOnce) {
    WorldOptions options =
        Starting("", {{ProviderOfRadio, "LengthOfPause", "500"}, {ProviderOfRadio, "IgnoreShortSongs", "2"}});
    options.Radio = NumberedRadio({20, 20});
    World world(std::move(options));
    world.Disk().MakeFolders(LogFolder);
    RegistryBranches branches(world.Disk(), std::string(LogFolder) + "/registry.ini",
                              "/nowhere/registry.ini");
    ASSERT_TRUE(branches.WriteUserValue("", "TotalCountOfSongs", 41));
    ASSERT_TRUE(world.StartRecording());
    world.RunFor(60);
    ASSERT_THAT(world.Transferred, SizeIs(2));
    EXPECT_EQ(world.Transferred[0].JobName, "song 42");
    EXPECT_EQ(NumberOf(branches.ReadUserValue("", "TotalCountOfSongs")), 43);
}

}  // namespace
}  // namespace Corvetape::Test
