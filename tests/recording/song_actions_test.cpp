#include "recording/song_actions.h"

#include <gtest/gtest.h>

#include "core/log.h"
#include "post/lists/watch_list.h"
#include "post/transfer/song_counter.h"
#include "sim/sim_machine.h"
#include "support/noted_reports.h"

namespace Corvetape::Test {
namespace {

struct Rig {
    Rig() {
        Folders.Paths = {"/tmp", "/music", "/log"};
        Folders.SongTempFolder = "/tmp/Corvet";
        Options.MusicFileTemplate[1] = "%Artist% - %Title%";
        for (const char* folder : {"/music", "/log", "/tmp/Corvet"}) Computer.Files.MakeFolders(folder);
    }

    RunSong Song(const std::string& title) const {
        RunSong song;
        song.Media.Artist = "Tin Weather";
        song.Media.Song = title;
        song.TempFile = "/tmp/Corvet/one.wav";
        return song;
    }

    SimMachine Computer;
    frmMain Form;
    Settings Options;
    WorkingFolders Folders;
    MediaState Media;
    PauseSettings Pause;
    NotedReports Reports{Computer, Form, "61880=nothing opens: %1\n61881=not there: %1\n61882=gone: %1\n"};
    const std::vector<ShownBox>& Boxes() const { return Computer.Dialogs.Boxes; }
    RegistryBranches Registry{Computer.Files, "/home/user/user.reg", "/home/user/machine.reg"};
    SongCounter Counter{Registry};
    WatchLists Lists{Computer.Files, Folders};
    WatchPages Pages{Form, Lists, Computer.Processes, Reports.Say};
    Log Journal{Computer.Files, Computer.Clock, Options, Folders};
    SongNotes Notes{Computer.Files, Folders};
    TransferJob Transfer{{Options, Folders, "run", {}},
                         Media,
                         Pause,
                         {Computer.Files, Computer.Processes, Journal, Notes, Counter, Pages}};
    SongActions Actions{
        {Computer.Files, Computer.Clock, Options, Folders, Pages, Transfer, Computer.Processes, Reports.Say}};
};

TEST(SongActions, TheMusicFileIsPlayedAndTheRecordingWithoutIt) {
    Rig rig;
    RunSong song = rig.Song("Rain");
    song.MusicFile = "/music/Rain.mp3";
    EXPECT_EQ(rig.Actions.FileToPlay(song), "");
    rig.Computer.Files.Put(song.TempFile, "x");
    EXPECT_EQ(rig.Actions.FileToPlay(song), song.TempFile);
    rig.Computer.Files.Put(song.MusicFile, "x");
    EXPECT_EQ(rig.Actions.FileToPlay(song), song.MusicFile);
}

TEST(SongActions, WhatCannotBePlayedOrShownIsSaidWithItsPath) {
    Rig rig;
    const RunSong song = rig.Song("Rain");
    rig.Actions.Play(song);
    ASSERT_EQ(rig.Boxes().size(), 1U);
    EXPECT_EQ(rig.Boxes()[0].Text, "gone: Rain");
    rig.Computer.Files.Put(song.TempFile, "x");
    rig.Actions.Play(song);
    EXPECT_EQ(rig.Boxes().size(), 1U);
    EXPECT_EQ(rig.Computer.Processes.ShellCalls.at(0).Path, song.TempFile);
    rig.Computer.Processes.OnShellOpen = [](const ShellCall&) { return 31; };
    rig.Actions.Play(song);
    ASSERT_EQ(rig.Boxes().size(), 2U);
    EXPECT_EQ(rig.Boxes()[1].Text, "nothing opens: " + song.TempFile);
    rig.Computer.Processes.OnShellOpen = [](const ShellCall&) { return 3; };
    rig.Actions.OpenFolder(song);
    ASSERT_EQ(rig.Boxes().size(), 3U);
    EXPECT_EQ(rig.Boxes()[2].Text, "not there: /tmp/Corvet");
}

TEST(SongActions, AnEntryOfAListMeansItsSongAlone) {
    Rig rig;
    const RunSong song = rig.Song("No. #1 [live]");
    rig.Actions.PutOnList(song, WatchListKind::Exclude);
    const WatchList& list = rig.Lists.List(WatchListKind::Exclude);
    EXPECT_TRUE(list.Holds("Tin Weather - No. #1 [live]"));
    EXPECT_FALSE(list.Holds("Tin Weather - No. 31 l"));
    rig.Actions.PutOnList(rig.Song(""), WatchListKind::Exclude);
    EXPECT_EQ(list.Entries().size(), 1U);
}

TEST(SongActions, TheLogIsReadForTheSongAlone) {
    Rig rig;
    const RunSong song = rig.Song("Rain");
    EXPECT_EQ(rig.Actions.LogLines(song), "");
    rig.Journal.WriteLog({"START"});
    rig.Journal.WriteLog({"MP3 ", "Tin Weather - Rain"});
    rig.Journal.WriteLog({"MP3 ", "Tin Weather - Snow"});
    const std::string lines = rig.Actions.LogLines(song);
    EXPECT_NE(lines.find("Tin Weather - Rain"), std::string::npos);
    EXPECT_EQ(std::ranges::count(lines, '\n'), 1);
}

TEST(SongActions, TheLogOfTheEveningBeforeCountsToo) {
    Rig rig;
    const RunSong song = rig.Song("Rain");
    rig.Computer.Clock.SetLocalNow({2024, 2, 29, 23, 59, 0, 0});
    rig.Journal.WriteLog({"MP3 ", "Tin Weather - Rain"});
    rig.Computer.Clock.SetLocalNow({2024, 3, 1, 0, 5, 0, 0});
    rig.Journal.WriteLog({"MP3 ", "Tin Weather - Rain (2)"});
    const std::string lines = rig.Actions.LogLines(song);
    EXPECT_EQ(std::ranges::count(lines, '\n'), 2);
    EXPECT_LT(lines.find("23:59"), lines.find("00:05"));
}

TEST(SongActions, WhatIsStillThereCanBeKept) {
    Rig rig;
    RunSong song = rig.Song("Rain");
    EXPECT_FALSE(rig.Actions.CanBeKept(song));
    rig.Computer.Files.Put(song.TempFile, "x");
    EXPECT_TRUE(rig.Actions.CanBeKept(song));
    song.Fate = SongFate::Kept;
    song.Progress = SongProgress::Encoding;
    EXPECT_FALSE(rig.Actions.CanBeKept(song));
    song.Progress = SongProgress::Failed;
    EXPECT_TRUE(rig.Actions.CanBeKept(song));
}

}  // namespace
}  // namespace Corvetape::Test
