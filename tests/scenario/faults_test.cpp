// Each file operation of a recording fails in turn. After each: the program is in the state that belongs to
// the failure, it is told, nothing else is lost, and what was written can be read.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <numeric>

#include "scenario/song_audio.h"

namespace Corvetape::Test {
namespace {

using testing::Contains;
using testing::HasSubstr;

constexpr uint64_t BufferFrames = 2205;
constexpr uint64_t Second = 44100;
constexpr double Seconds = 22;

/// Two songs long enough for their headers to be brought up to date while they are written.
WorldOptions TwoShortSongs(int mode) {
    WorldOptions options;
    options.Radio = NumberedRadio({6, 6});
    options.Settings = {{ProviderOfRadio, "EndOfSongDetection", std::to_string(mode)},
                        {ProviderOfRadio, "LengthOfPause", "500"},
                        {ProviderOfRadio, "IgnoreShortSongs", "2"},
                        {ProviderOfRadio, "EndOfSongTimer", "8"},
                        {"DoNotChange", "EncodeDelay", "1000"},
                        {"Options", "DelTempFolder", "1"}};
    options.EncodingTime = std::chrono::milliseconds(300);
    return options;
}

/// A stretch of the radio.
struct Stretch {
    uint64_t Begin = 0;
    uint64_t End = 0;
};

/// Where in the radio the frames of a file come from, told by the numbers that they carry; nothing if they
/// are not one stretch of it. The songs of this radio are loud on the left, its pauses are not.
std::optional<Stretch> PlaceOf(World& world, const std::string& path) {
    const auto frames = FramesOfWav(world.Disk(), path);
    if (!frames) return std::nullopt;
    const auto loud = std::ranges::find_if(*frames, [](Frame frame) { return frame.Left < -1000; });
    if (loud == frames->end()) return Stretch{};
    const auto offset = static_cast<uint64_t>(loud - frames->begin());
    const uint64_t begin = FrameOfStamp(*loud, 0) - offset;
    if (FramesOfRadio(world.Truth(), begin, frames->size()) != *frames) return std::nullopt;
    return Stretch{begin, begin + frames->size()};
}

/// All WAV files on the disk.
std::vector<std::string> WavFiles(World& world) {
    std::vector<std::string> files = world.Disk().Tree();
    std::erase_if(files, [](const std::string& path) { return !path.ends_with(".wav"); });
    return files;
}

/// Frames of the radio's songs up to `upTo` that no file on the disk holds.
uint64_t FramesLost(World& world, uint64_t upTo, std::string& problems) {
    std::vector<Stretch> there;
    for (const std::string& path : WavFiles(world)) {
        const auto place = PlaceOf(world, path);
        if (place) {
            there.push_back(*place);
        } else {
            problems += path + " cannot be read\n";
        }
    }
    std::ranges::sort(there, {}, &Stretch::Begin);
    uint64_t lost = 0;
    for (const ScriptedSong& song : world.Truth()->Songs()) {
        uint64_t at = song.Begin;
        const uint64_t end = std::min(song.End, upTo);
        for (const Stretch& each : there) {
            if (each.End <= at || at >= end) continue;
            if (each.Begin > at) lost += std::min(each.Begin, end) - at;
            at = each.End;
        }
        if (at < end) lost += end - at;
    }
    return lost;
}

/// What became of a run in which one operation failed.
struct Outcome {
    std::string Failed;    ///< such as "Write /music/a.wav"
    int32_t Error = 0;     ///< told at the end
    std::string Problems;  ///< empty if all is as it should be
};

/// Lets the operation of this number fail, once.
class FaultyRun {
 public:
    FaultyRun(int mode, uint64_t operation) : Radio(TwoShortSongs(mode)), Mode(mode), Operation(operation) {}

    Outcome Judge() {
        if (!Radio.StartRecording()) return {"", 0, "did not start\n"};
        Radio.Disk().FailOperation(Operation);
        Radio.RunUntil([this] { return HasFailed(); }, Seconds - Radio.Now());
        const uint64_t heardThen = *Radio.Computer.WaveIn.RadioFrameOf(Radio.Values().Signal.FramesReceived);
        Radio.RunFor(Seconds - Radio.Now());
        const bool endedByItself = !Radio.Recorder->Running();
        const bool failedWhileRunning = HasFailed();
        Radio.Finish();

        Outcome outcome;
        if (HasFailed()) outcome.Failed = Radio.Disk().FailedOperations()[0];
        outcome.Error = Radio.Values().Messages.PendingError;
        Problems = {};
        if (endedByItself != (failedWhileRunning && outcome.Error == 903)) {
            Problems += "the program did not end as it should\n";
        }
        CheckTold(outcome.Error);
        CheckSongs(outcome.Error, heardThen);
        Radio.Recorder.reset();
        if (Radio.Disk().OpenHandles() != 0) Problems += "a file was left open\n";
        outcome.Problems = Problems;
        return outcome;
    }

    World Radio;

 private:
    bool HasFailed() const { return !Radio.Computer.Files.FailedOperations().empty(); }

    void CheckTold(int32_t error) {
        if (Radio.Ends != 1 || Radio.Logged("END ").size() != 1) Problems += "the end was not in order\n";
        std::vector<std::string> told = Radio.Logged("ERROR");
        // A log or settings that could not be written are a line of their own, without a box.
        std::erase_if(told, [](const std::string& line) {
            return line.starts_with("The log could not be written") ||
                   line.starts_with("The settings could not be written");
        });
        if (told.size() != (error == 0 ? 0U : 1U)) Problems += "the failure was not told once\n";
        if (Radio.Boxes() != told) Problems += "the box does not tell what the log tells\n";
        if (error != 0 && Radio.Values().Flags.RecordingEnabled) Problems += "recording goes on\n";
    }

    void CheckSongs(int32_t error, uint64_t heardThen) {
        const uint64_t heard = *Radio.Computer.WaveIn.RadioFrameOf(0) + Radio.Values().Signal.FramesReceived;
        // Without an error nothing at all is lost. With one, recording has stopped there: the failing buffer
        // and what comes after it is not written, and neither is what still waited in memory.
        const uint64_t inMemory = Mode == 0 ? BufferFrames : 11 * Second + BufferFrames;
        const uint64_t upTo = error == 0 ? heard : heardThen - std::min(heardThen, inMemory);
        if (const uint64_t lost = FramesLost(Radio, upTo, Problems); lost > 0) {
            Problems += std::to_string(lost) + " frames are lost\n";
        }
    }

    int Mode;
    uint64_t Operation;
    std::string Problems;
};

class EveryFileOperation : public testing::TestWithParam<int> {
 protected:
    /// The numbers of the first and last operation between the opening of the input and the end.
    static std::pair<uint64_t, uint64_t> Range(int mode) {
        World world(TwoShortSongs(mode));
        EXPECT_TRUE(world.StartRecording());
        const uint64_t first = world.Disk().OperationCount() + 1;
        world.RunFor(Seconds - world.Now());
        world.Finish();
        EXPECT_GE(world.Transferred.size(), 2U);
        return {first, world.Disk().OperationCount()};
    }
};

TEST_P(EveryFileOperation, MayFailAndNothingElseIsLost) {
    const auto [first, last] = Range(GetParam());
    ASSERT_GT(last, first + 300);
    std::map<int32_t, int> errors;
    std::map<std::string, int> kinds;
    for (uint64_t number = first; number <= last; ++number) {
        const Outcome outcome = FaultyRun(GetParam(), number).Judge();
        EXPECT_EQ(outcome.Problems, "")
            << "operation " << number << ": " << outcome.Failed << ", error " << outcome.Error;
        EXPECT_NE(outcome.Failed, "");
        ++errors[outcome.Error];
        ++kinds[outcome.Failed.substr(0, outcome.Failed.find(' '))];
        if (HasFailure() && number > first + 50) break;  // the first ones tell enough
    }
    // All ways to fail have come up. What is written ahead gets a second chance when it is due.
    const bool ahead = GetParam() != 0;
    for (const int32_t error : {0, 904}) EXPECT_GT(errors[error], 0) << error;
    for (const int32_t error : {903, 905}) EXPECT_EQ(errors[error] > 0, !ahead) << error;
    for (const char* kind : {"Create", "Write", "Seek", "Close", "Append", "Replace", "Delete"}) {
        EXPECT_GT(kinds[kind], 0) << kind;
    }
    EXPECT_EQ(kinds["Rename"] > 0, GetParam() != 2);  // pieces by time keep their names
}

INSTANTIATE_TEST_SUITE_P(Modes, EveryFileOperation, testing::Values(0, 1, 2));

/// A fault that strikes the song files from their n-th operation of a kind on.
FileFault OnSongs(FileOperation operation, uint64_t after, int32_t error = ENOSPC) {
    FileFault fault;
    fault.Pattern = std::string(SongTempFolder) + "/*.wav";
    fault.Operation = operation;
    fault.AfterCalls = after;
    fault.Error = error;
    return fault;
}

TEST(FailingSongFile, ThatCannotBeMadeEndsTheProgramWithItsMessage) {
    World world(TwoShortSongs(0));
    world.Disk().AddFault(OnSongs(FileOperation::Create, 1, EACCES));
    ASSERT_TRUE(world.StartRecording());
    EXPECT_TRUE(world.RunUntil([&] { return world.Ends > 0; }, Seconds));
    EXPECT_LT(world.Now(), 3.2);  // the first song begins at 3 s
    const std::string told =
        "The song file \"/home/user/.cache/Corvet/240514120003.wav\" could not be created "
        "(error 13: Permission denied).";
    EXPECT_THAT(world.Logged("ERROR"), testing::ElementsAre(testing::StartsWith(told)));
    ASSERT_EQ(world.Computer.Dialogs.Boxes.size(), 1U);
    EXPECT_THAT(world.Computer.Dialogs.Boxes[0].Text, testing::StartsWith(told));
    EXPECT_EQ(world.Computer.Dialogs.Boxes[0].Icon, DialogIcon::Critical);
}

TEST(FailingSongFile, ThatCannotBeWrittenStopsTheRecordingAndIsReportedAtTheEnd) {
    World world(TwoShortSongs(0));
    world.Disk().AddFault(OnSongs(FileOperation::Write, 60));
    ASSERT_TRUE(world.StartRecording());
    world.RunFor(Seconds);
    EXPECT_TRUE(world.Recorder->Running());
    EXPECT_FALSE(world.Values().Flags.RecordingEnabled);
    EXPECT_THAT(world.Boxes(), testing::IsEmpty());
    world.Finish();
    EXPECT_THAT(world.Boxes(), testing::ElementsAre(HasSubstr(
                                   "could not be written any further (error 28: No space left on device)")));
    EXPECT_EQ(world.Values().Messages.PendingError, 905);
}

TEST(FailingSongFile, ThatCannotBeClosedStopsTheRecordingAndIsReportedAtTheEnd) {
    World world(TwoShortSongs(0));
    world.Disk().AddFault(OnSongs(FileOperation::Close, 1));
    ASSERT_TRUE(world.StartRecording());
    world.RunFor(Seconds);
    EXPECT_TRUE(world.Recorder->Running());
    world.Finish();
    EXPECT_EQ(world.Values().Messages.PendingError, 904);
    EXPECT_THAT(world.Logged("ERROR"),
                testing::ElementsAre(HasSubstr("could not be finished (error 28: No space left on device)")));
    ASSERT_EQ(world.Transferred.size(), 1U);  // it is handed on all the same
    EXPECT_EQ(MusicComparedWithRadio(world), "");
}

TEST(FailingSongFile, IsOnlyReportedInTheLogByAnUnattendedProgram) {
    WorldOptions options = TwoShortSongs(0);
    options.CommandLine = "-dontask";
    World world(std::move(options));
    world.Disk().AddFault(OnSongs(FileOperation::Write, 60));
    ASSERT_TRUE(world.StartRecording());
    world.RunFor(Seconds);
    world.Finish();
    EXPECT_THAT(world.Boxes(), testing::IsEmpty());
    EXPECT_EQ(world.Logged("ERROR").size(), 1U);
}

TEST(FailingSongFile, IsHandedOverByTheNextStartAsFarAsItGoes) {
    World world(TwoShortSongs(0));
    world.Disk().AddFault(OnSongs(FileOperation::Write, 220));  // in the second song
    ASSERT_TRUE(world.StartRecording());
    world.RunFor(Seconds);
    world.Finish();
    ASSERT_EQ(world.Transferred.size(), 1U);

    world.Disk().ClearFaults();
    world.Computer.System.OwnRun = "run-2";
    world.Computer.System.AliveRuns = {"run-2"};
    world.Made();
    ASSERT_TRUE(world.Load());
    world.RunFor(5);
    ASSERT_EQ(world.Transferred.size(), 2U);
    const auto place = PlaceOf(world, MusicFolder + std::string("/Radio/Band 2 - Song 2.wav"));
    ASSERT_TRUE(place);
    EXPECT_LE(place->Begin, world.Truth()->Songs()[1].Begin);
    EXPECT_GT(place->End, world.Truth()->Songs()[1].Begin + 2 * Second);
    EXPECT_LT(place->End, world.Truth()->Songs()[1].End);
}

TEST(FailingSongFile, IsWrittenOnWhenTheSoundComesBackAfterASilence) {
    WorldOptions options = TwoShortSongs(0);
    options.Radio = RadioScript().Pause(3);
    ScriptSong song;
    song.Seconds = 10;
    options.Radio.Song(song).Silence(70).Song(song).Pause(2).Stamped().SilenceForever();
    World world(std::move(options));
    FileFault once = OnSongs(FileOperation::Write, 60);
    once.Times = 1;
    world.Disk().AddFault(once);
    ASSERT_TRUE(world.StartRecording());
    world.RunFor(80);
    EXPECT_FALSE(world.Values().Flags.RecordingEnabled);
    EXPECT_THAT(world.Logged("INFO"), Contains(HasSubstr("No sound for")));
    world.RunFor(10);
    EXPECT_TRUE(world.Values().Flags.RecordingEnabled);
    EXPECT_THAT(world.Logged("INFO"), Contains("The sound is back."));
    ASSERT_FALSE(world.Disk().OpenPaths().empty());
    const std::string path = world.Disk().OpenPaths()[0];
    const uint64_t before = world.Disk().FileSize(path).value_or(0);
    world.RunFor(1);
    EXPECT_EQ(world.Disk().FileSize(path).value_or(0), before + 20 * BufferFrames * sizeof(Frame));
}

}  // namespace
}  // namespace Corvetape::Test
