// What is left of the temporary folder when the program ends.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/desktop_notes.h"
#include "post/transfer/song_notes.h"
#include "scenario/song_audio.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

/// One short song is recorded and handed over, and the program ends.
WorldOptions OneSong(std::vector<IniLine> settings) {
    WorldOptions options = Starting("", {{ProviderOfRadio, "LengthOfPause", "500"},
                                         {ProviderOfRadio, "IgnoreShortSongs", "2"},
                                         {"DoNotChange", "EncodeDelay", "0"}});
    options.Settings.insert(options.Settings.end(), settings.begin(), settings.end());
    options.Radio = NumberedRadio({10});
    return options;
}

void RecordTheSong(World& world) {
    ASSERT_TRUE(world.StartRecording());
    world.RunFor(25);
    ASSERT_THAT(world.Transferred, SizeIs(1));
}

const std::string Song = std::string(SongTempFolder) + "/Band 1 - Song 1.wav";
const std::string Note = std::string(SongTempFolder) + "/Band 1 - Song 1.note";

TEST(TempFolder, GoesWithTheSongsOfThisRun) {
    World world(OneSong({{"Options", "DelTempFolder", "1"}}));
    RecordTheSong(world);
    world.RunFor(5);
    world.Recorder->Unload();
    EXPECT_FALSE(world.Disk().Exists(SongTempFolder));
}

TEST(TempFolder, StaysWithWhateverThisRunHasNotMade) {
    World world(OneSong({{"Options", "DelTempFolder", "1"}}));
    const std::string folder = std::string(SongTempFolder) + "/";
    world.Disk().Put(folder + "Other - Song.wav", "a song that was promised to stay");
    world.Disk().Put(folder + "something else.txt", "text");
    RecordTheSong(world);
    world.Finish();
    EXPECT_THAT(world.Disk().Tree(SongTempFolder),
                ElementsAre(folder + "Other - Song.wav", folder + "something else.txt"));
}

TEST(TempFolder, StaysWithoutTheOption) {
    World world(OneSong({}));
    RecordTheSong(world);
    world.Finish();
    EXPECT_THAT(world.Disk().Tree(SongTempFolder), ElementsAre(Song));
}

TEST(TempFolder, StaysWithSongsThatAreNotEncoded) {
    World world(OneSong({{"Options", "DelTempFolder", "1"}, {"Options", "EncodeOffline", "1"}}));
    RecordTheSong(world);
    world.Finish();
    EXPECT_THAT(world.Disk().Tree(SongTempFolder), ElementsAre(Song));
    EXPECT_THAT(world.Computer.Processes.Jobs, IsEmpty());
}

TEST(TempFolder, StaysWithASongThatIsStillEncodedAndGoesAfterIt) {
    WorldOptions options = OneSong({{"Options", "DelTempFolder", "1"}});
    options.EncodingTime = std::chrono::minutes(5);
    World world(std::move(options));
    RecordTheSong(world);
    world.Recorder->Unload();
    EXPECT_THAT(world.Disk().Tree(SongTempFolder), ElementsAre(Note, Song));

    ASSERT_TRUE(world.Computer.Processes.WaitForAll(std::chrono::minutes(10)));
    world.Recorder->CollectJobs();
    world.Recorder->RemoveTempFolder();
    EXPECT_FALSE(world.Disk().Exists(SongTempFolder));
    EXPECT_TRUE(world.Disk().Exists(std::string(MusicFolder) + "/Radio/Band 1 - Song 1.wav"));
}

TEST(TempFolder, StaysWithTheSongsThatAnotherRunIsWriting) {
    World world(OneSong({{"Options", "DelTempFolder", "1"}}));
    RecordTheSong(world);
    world.Computer.System.AliveRuns.insert("other");
    const std::string folder = std::string(SongTempFolder) + "/";
    SongNote note;
    for (const auto& [run, name] : {std::pair{"other", "one"}, {"ended", "two"}}) {
        note.Run = run;
        world.Disk().Put(folder + name + ".note", SongNoteText(note));
        world.Disk().Put(folder + name + ".wav", "samples");
    }
    world.Finish();
    EXPECT_THAT(world.Disk().Tree(SongTempFolder),
                ElementsAre(folder + "one.note", folder + "one.wav", folder + "two.note", folder + "two.wav"))
        << "the next start looks after the songs of a run that has ended";
}

TEST(TempFolder, StaysWithASongWhoseEncoderHasFailed) {
    World world(OneSong({{"Options", "DelTempFolder", "1"}}));
    world.Computer.Processes.OnJob = [](const HiddenJob&) { return 1; };
    RecordTheSong(world);
    world.Finish();
    EXPECT_THAT(world.EndedJobs, SizeIs(1));
    EXPECT_THAT(world.Disk().Tree(SongTempFolder), ElementsAre(Note, Song));
}

TEST(TempFolder, KeepsASongWhoseEncoderFailedThoughTheNextOneHasItsName) {
    WorldOptions options = OneSong({{"Options", "DelTempFolder", "1"}});
    ScriptSong song;
    song.Seconds = 10;
    song.Media = {"Radio", "Band", "Song", "", ""};
    options.Radio = RadioScript().Pause(3).Song(song).Pause(2).Song(song).Pause(2).SilenceForever();
    options.EncodingTime = std::chrono::seconds(20);
    World world(std::move(options));
    world.Computer.Processes.OnJob = [](const HiddenJob& job) { return job.Name == "song 1" ? 1 : 0; };
    ASSERT_TRUE(world.StartRecording());
    world.RunFor(30);
    world.Finish();
    ASSERT_THAT(world.EndedJobs, SizeIs(2));
    EXPECT_TRUE(world.Disk().Exists(world.Transferred[0].TempFile));
    EXPECT_FALSE(world.Disk().Exists(world.Transferred[1].TempFile));
}

TEST(TempFolder, KeepsASongThatStaysOnPurposeUnderTheNameOfAFinishedOne) {
    WorldOptions options = OneSong({{"Options", "DelTempFolder", "1"}});
    ScriptSong song;
    song.Seconds = 10;
    song.Media = {"Radio", "Band", "Song", "", ""};
    options.Radio = RadioScript().Pause(3).Song(song).Pause(2).Song(song).Pause(2).SilenceForever();
    World world(std::move(options));
    ASSERT_TRUE(world.StartRecording());
    world.RunFor(20);
    ASSERT_THAT(world.EndedJobs, SizeIs(1));
    world.Form().chkEncodeOffline.Value(1);
    world.RunFor(10);
    world.Form().chkEncodeOffline.Value(0);
    world.Finish();
    ASSERT_THAT(world.Transferred, SizeIs(2));
    EXPECT_EQ(world.Transferred[1].JobName, "");
    EXPECT_TRUE(world.Disk().Exists(world.Transferred[1].TempFile));
}

TEST(TempFolder, StaysWithASongWhoseEncoderCouldNotBeStarted) {
    World world(OneSong({{"Options", "DelTempFolder", "1"}}));
    world.Computer.Processes.RefuseJobs = true;
    RecordTheSong(world);
    world.Finish();
    EXPECT_THAT(world.Disk().Tree(SongTempFolder), ElementsAre(Note, Song));
}

TEST(TempFolder, StaysWithASongForWhichThereIsNoCommand) {
    World world(OneSong({{"Options", "DelTempFolder", "1"}}));
    world.Disk().Put("/opt/corvetape/CorvetFix.ini", "[Encode]\r\n");
    RecordTheSong(world);
    world.Finish();
    EXPECT_THAT(world.Logged("ERROR"), ElementsAre(HasSubstr("The song stays as " + Song)));
    EXPECT_THAT(world.Disk().Tree(SongTempFolder), ElementsAre(Note, Song));
}

TEST(TempFolder, StaysWithASongThatCouldNotBeRenamed) {
    World world(OneSong({{"Options", "DelTempFolder", "1"}}));
    FileFault fault;
    fault.Operation = FileOperation::Rename;
    world.Disk().AddFault(fault);
    world.Computer.Processes.OnJob = [](const HiddenJob&) { return 1; };  // there is no song of its name
    RecordTheSong(world);
    world.Finish();
    const std::string stamped = std::string(SongTempFolder) + "/240514120003";
    EXPECT_EQ(world.Transferred[0].TempFile, stamped + ".wav");
    EXPECT_THAT(world.Disk().Tree(SongTempFolder), ElementsAre(stamped + ".note", stamped + ".wav"));
}

TEST(TempFolder, StaysWithASongThatWasBrokenOffByItsDisk) {
    World world(OneSong({{"Options", "DelTempFolder", "1"}}));
    FileFault fault;
    fault.Pattern = "*.wav";
    fault.Operation = FileOperation::Write;
    fault.AfterCalls = 100;
    fault.Times = 1;
    world.Disk().AddFault(fault);
    ASSERT_TRUE(world.StartRecording());
    world.RunFor(25);
    world.Finish();
    const std::string broken = std::string(SongTempFolder) + "/240514120003.wav";
    EXPECT_TRUE(world.Disk().Exists(broken));
    const auto frames = FramesOfWav(world.Disk(), broken);
    ASSERT_TRUE(frames);
    EXPECT_GT(frames->size(), 80 * 2205U);
}

TEST(TempFolder, StaysWithAFolderInIt) {
    World world(OneSong({{"Options", "DelTempFolder", "1"}}));
    RecordTheSong(world);
    world.Disk().Put(SongTempFolder + std::string("/kept/notes.txt"), "text");
    world.Finish();
    EXPECT_THAT(
        world.Disk().Tree(SongTempFolder),
        ElementsAre(SongTempFolder + std::string("/kept/"), SongTempFolder + std::string("/kept/notes.txt")));
}

}  // namespace
}  // namespace Corvetape::Test
