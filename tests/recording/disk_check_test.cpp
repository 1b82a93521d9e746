#include "recording/disk_check.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <string>
#include <utility>
#include <vector>

#include "platform/virtual/sim_clock.h"
#include "sim/sim_files.h"
#include "support/noted_reports.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr uint64_t Megabyte = 1024 * 1024;
constexpr uint32_t BytesPerSecond = 176'400;
constexpr uint64_t TenMinutes = uint64_t{BytesPerSecond} * 600;

/// A temporary folder and a music folder, each on a volume of its own, and what is told of them.
class DiskChecks : public testing::Test {
 protected:
    DiskChecks() {
        Disk.Mount("/temp", 1'000'000 * Megabyte);
        Disk.Mount("/music", 900'000 * Megabyte);
        Folders.Paths = {"/temp", "/music", "/log"};
        Options.LowTempSpace = 300;
        Options.LowMusicSpace = 200;
        Flags.RecordingEnabled = true;
    }

    /// Both folders on the volume of the root.
    void UseOneDrive(uint64_t free) {
        Disk.MakeFolders("/home/temp");
        Disk.MakeFolders("/home/music");
        Folders.Paths = {"/home/temp", "/home/music", "/log"};
        Disk.SetFreeSpace("/", free);
    }

    /// The key of what was told in the status line; empty if nothing happened.
    std::string Status() const { return Form.lblStatus[1].Caption(); }

    frmMain Form;
    SimMachine Computer;
    SimFiles& Disk = Computer.Files;
    Settings Options;
    WorkingFolders Folders;
    RecordingFlags Flags;
    DeferredMessages Messages;
    NotedReports Reports{Computer, Form, "803=803\n804=804\n805=805\n906=906:%1\n907=907\n"};
    std::vector<std::string>& Log = Reports.Lines;
    std::vector<ShownBox>& Boxes = Computer.Dialogs.Boxes;
    WaveFormat Format = MakeWaveFormat(44100);
    MarginStore Margins{Disk, Computer.Clock, Options, Folders, "run-1"};
    DiskCheck Check{{Form, Disk, Options, Folders, Flags, Messages, Margins}, Format, Reports.Say};
};

// The folder of the start, after another one was chosen.

TEST_F(DiskChecks, ATempFolderThatSongsStillGoToIsAskedTooAfterAnotherWasChosen) {
    Disk.Mount("/before", 100 * Megabyte);
    Folders.SongTempFolder = "/before/Corvet";
    EXPECT_TRUE(Check.Run());
    EXPECT_EQ(Status(), "804");
}

TEST_F(DiskChecks, TheReserveIsLookedForWhereSongsGo) {
    Disk.Mount("/before", TenMinutes - 1);
    Folders.SongTempFolder = "/before/Corvet";
    Check.RunIfShort();
    EXPECT_EQ(Status(), "804");
}

TEST_F(DiskChecks, ASongsFolderThatCannotBeAskedEndsTheProgram) {
    Folders.SongTempFolder = "/gone/Corvet";
    EXPECT_FALSE(Check.Run());
    EXPECT_THAT(Log, ElementsAre("ERROR 906:/gone"));
}

TEST_F(DiskChecks, TheChosenFolderIsAskedToo) {
    Disk.Mount("/before", 1'000'000 * Megabyte);
    Folders.SongTempFolder = "/before/Corvet";
    Disk.SetFreeSpace("/temp", 300 * Megabyte);
    EXPECT_TRUE(Check.Run());
    EXPECT_EQ(Status(), "804");
}

TEST_F(DiskChecks, ThereIsRoomOnlyIfNoLimitIsReachedAndTheReserveIsThere) {
    EXPECT_TRUE(Check.HasRoom());
    Disk.SetFreeSpace("/music", 200 * Megabyte);
    EXPECT_FALSE(Check.HasRoom());
    Disk.SetFreeSpace("/music", 900 * Megabyte);
    Options.LowTempSpace = 1;
    Disk.SetFreeSpace("/temp", TenMinutes - 1);
    EXPECT_FALSE(Check.HasRoom());
    Disk.SetFreeSpace("/temp", TenMinutes);
    EXPECT_TRUE(Check.HasRoom());
    Folders.Paths[0] = "/gone";
    EXPECT_FALSE(Check.HasRoom());
}

TEST_F(DiskChecks, EnoughSpaceChangesNothing) {
    EXPECT_TRUE(Check.Run());
    EXPECT_EQ(Status(), "");
    EXPECT_EQ(Form.chkStopRecording[0].Value(), 0);
    EXPECT_FALSE(Flags.DisableAtEndOfSong);
    EXPECT_EQ(Messages.PendingInfo, 0);
    EXPECT_THAT(Log, IsEmpty());
}

TEST_F(DiskChecks, FreeSpaceEqualToTheLimitIsTooLittle) {
    Disk.SetFreeSpace("/temp", 300 * Megabyte + 1);
    EXPECT_TRUE(Check.Run());
    EXPECT_EQ(Status(), "");
    Disk.SetFreeSpace("/temp", 300 * Megabyte);
    EXPECT_TRUE(Check.Run());
    EXPECT_EQ(Status(), "804");
    EXPECT_EQ(Messages.PendingInfo, 834);
    EXPECT_TRUE(Flags.DisableAtEndOfSong);
    EXPECT_EQ(Form.chkStopRecording[0].Value(), 1);
}

TEST_F(DiskChecks, TheTemporaryFolderIsReportedAheadOfTheMusicFolder) {
    Disk.SetFreeSpace("/temp", 100 * Megabyte);
    Disk.SetFreeSpace("/music", 50 * Megabyte);
    EXPECT_TRUE(Check.Run());
    EXPECT_EQ(Status(), "804");
}

TEST_F(DiskChecks, TheMusicFolderHasALimitOfItsOwn) {
    Disk.SetFreeSpace("/music", 200 * Megabyte);
    EXPECT_TRUE(Check.Run());
    EXPECT_EQ(Status(), "805");
    EXPECT_EQ(Messages.PendingInfo, 835);
}

TEST_F(DiskChecks, OnOneDriveBothLimitsHaveToFindRoom) {
    UseOneDrive(500 * Megabyte + 1);
    EXPECT_TRUE(Check.Run());
    EXPECT_EQ(Status(), "");
    UseOneDrive(500 * Megabyte);
    EXPECT_TRUE(Check.Run());
    EXPECT_EQ(Status(), "803");
    EXPECT_EQ(Messages.PendingInfo, 833);
}

TEST_F(DiskChecks, FoldersOfTwoDrivesHaveALimitEachHoweverEqualTheirSpaceAndTheirNames) {
    Disk.Mount("/media/temp", 400 * Megabyte);
    Disk.Mount("/media/music", 400 * Megabyte);
    Folders.Paths = {"/media/temp", "/media/music", "/log"};
    EXPECT_TRUE(Check.Run());
    EXPECT_EQ(Status(), "");
}

TEST_F(DiskChecks, FoldersOfOneDriveShareItsSpaceWhateverTheirNames) {
    Disk.MakeFolders("/home/temp");
    Disk.MakeFolders("/srv/music");
    Folders.Paths = {"/home/temp", "/srv/music", "/log"};
    Disk.SetFreeSpace("/", 500 * Megabyte);
    EXPECT_TRUE(Check.Run());
    EXPECT_EQ(Status(), "803");
}

TEST_F(DiskChecks, TheFolderOfTheStartIsHeldAgainstTheDriveThatItIsOn) {
    Disk.MakeFolders("/srv/before");
    Disk.MakeFolders("/srv/music");
    Folders.Paths[1] = "/srv/music";
    Folders.SongTempFolder = "/srv/before/Corvet";
    Disk.SetFreeSpace("/", 500 * Megabyte);
    EXPECT_TRUE(Check.Run());
    EXPECT_EQ(Status(), "803");
}

TEST_F(DiskChecks, NothingIsHeldAgainstTheLimitsWhileNothingIsToGoOn) {
    Disk.SetFreeSpace("/temp", 0);
    Flags.RecordingEnabled = false;
    EXPECT_TRUE(Check.Run());
    EXPECT_EQ(Status(), "");
    Flags.RecordingEnabled = true;
    Flags.StopAtEndOfSong = true;
    EXPECT_TRUE(Check.Run());
    EXPECT_EQ(Status(), "");
}

TEST_F(DiskChecks, AFolderThatCannotBeAskedEndsTheProgramAlsoWhileNothingIsRecorded) {
    Flags.RecordingEnabled = false;
    Folders.Paths[1] = "/nowhere";
    EXPECT_FALSE(Check.Run());
    EXPECT_THAT(Log, ElementsAre("ERROR 906:/nowhere"));
    ASSERT_EQ(Boxes.size(), 1U);
    EXPECT_EQ(Boxes[0].Text, "906:/nowhere");
    EXPECT_EQ(Boxes[0].Icon, DialogIcon::Critical);
    Folders.Paths[0] = "/gone";
    EXPECT_FALSE(Check.Run());
    EXPECT_THAT(Log, ElementsAre("ERROR 906:/nowhere", "ERROR 906:/gone")) << "the first of them is told";
}

TEST_F(DiskChecks, TenMinutesOfSoundAreTheReserve) {
    Options.LowTempSpace = 100;  // less than the reserve, and below it in its own minute only
    Disk.SetFreeSpace("/temp", TenMinutes);
    Check.RunIfShort();
    EXPECT_EQ(Status(), "");
    Disk.SetFreeSpace("/temp", TenMinutes - 1);
    Check.RunIfShort();
    EXPECT_EQ(Status(), "804");
    EXPECT_EQ(Messages.PendingInfo, 834);
}

TEST_F(DiskChecks, TheReserveIsForARecordingThatIsToGoOn) {
    Disk.SetFreeSpace("/temp", 0);
    Flags.RecordingEnabled = false;
    Check.RunIfShort();
    EXPECT_EQ(Status(), "");
    Flags.RecordingEnabled = true;
    Flags.StopAtEndOfSong = true;
    Check.RunIfShort();
    EXPECT_EQ(Status(), "");
    EXPECT_FALSE(Flags.DisableAtEndOfSong);
}

TEST_F(DiskChecks, TheReserveOfOneDriveIsReportedAsThat) {
    UseOneDrive(TenMinutes - 1);
    Check.RunIfShort();
    EXPECT_EQ(Status(), "803");
    EXPECT_EQ(Messages.PendingInfo, 833);
}

TEST_F(DiskChecks, AFullMusicFolderIsNoMatterOfTheReserve) {
    Disk.SetFreeSpace("/music", 0);
    Check.RunIfShort();
    EXPECT_EQ(Status(), "");
}

TEST_F(DiskChecks, BetweenTheMinutesAFolderThatCannotBeAskedIsLeftAlone) {
    Folders.Paths[0] = "/nowhere";
    Check.RunIfShort();
    EXPECT_EQ(Status(), "");
    EXPECT_THAT(Log, IsEmpty());
}

/// A disk that fails in a way that nobody foresaw.
class ThrowingDisk : public SimFiles {
 public:
    FileOr<uint64_t> FreeSpace(const std::string&) override { throw std::bad_alloc(); }
};

TEST_F(DiskChecks, AnUnexpectedErrorIsReportedAndEndsTheProgram) {
    ThrowingDisk broken;
    DiskCheck check({Form, broken, Options, Folders, Flags, Messages, Margins}, Format, Reports.Say);
    EXPECT_FALSE(check.Run());
    EXPECT_THAT(Log, ElementsAre("ERROR 907"));
    ASSERT_EQ(Boxes.size(), 1U);
    EXPECT_EQ(Boxes[0].Text, "907");
}

TEST_F(DiskChecks, TheRoomIsThatOfTheFolderWhoseLimitComesFirst) {
    Disk.SetFreeSpace("/temp", 300 * Megabyte + TenMinutes);
    ASSERT_TRUE(Check.Room());
    EXPECT_EQ(Check.Room()->FreeBytes, 300 * Megabyte + TenMinutes);
    EXPECT_EQ(Check.Room()->Seconds, 600U);
    Disk.SetFreeSpace("/music", 200 * Megabyte + TenMinutes / 2);
    EXPECT_EQ(Check.Room()->Seconds, 300U);
    Disk.SetFreeSpace("/music", 100 * Megabyte);
    EXPECT_EQ(Check.Room()->Seconds, 0U);
    UseOneDrive(500 * Megabyte + TenMinutes);
    EXPECT_EQ(Check.Room()->Seconds, 600U);
    Folders.Paths[1] = "/nowhere";
    EXPECT_FALSE(Check.Room());
}

}  // namespace
}  // namespace Corvetape::Test
