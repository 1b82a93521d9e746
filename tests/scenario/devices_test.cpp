// Inputs that are lost and come back, disks that stand still: what happened is told, with its length.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/controls/messages.h"
#include "scenario/song_audio.h"

namespace Corvetape::Test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

WorldOptions TwoSongs(std::vector<IniLine> more = {}) {
    WorldOptions options;
    options.Radio = NumberedRadio({40, 40});
    options.Settings = {{ProviderOfRadio, "LengthOfPause", "500"},
                        {ProviderOfRadio, "IgnoreShortSongs", "5"}};
    options.Settings.insert(options.Settings.end(), more.begin(), more.end());
    return options;
}

/// A way to lose the input for a while, and the key of the message that tells its reason.
struct Loss {
    const char* Name;
    void (*Begin)(SimWaveIn&);
    void (*End)(SimWaveIn&);
    const char* ReasonKey;
    bool Announced;  ///< the program is told when it begins
};

class LostInput : public testing::TestWithParam<Loss> {};

TEST_P(LostInput, IsReportedOnceWithItsLengthAndTheRecordingGoesOn) {
    const Loss& loss = GetParam();
    World world(TwoSongs());
    ASSERT_TRUE(world.StartRecording());
    world.RunFor(10.02 - world.Now());
    loss.Begin(world.Computer.WaveIn);
    world.RunFor(3.2);
    loss.End(world.Computer.WaveIn);
    world.RunFor(90);
    world.Finish();

    clsLocalizeControls texts(world.Disk(), world.Computer.Folders.Program, world.Computer.Dialogs);
    texts.Load("english");
    const uint64_t lost = world.Values().Signal.FramesLost;
    EXPECT_EQ(lost, 32 * 4410U);
    std::vector<std::string> told;
    if (loss.Announced) told.push_back(texts.FormatMsg("842"));
    told.push_back(texts.FormatMsg(loss.ReasonKey, {"3.200", "141120", RadioName}));
    if (loss.Announced) told.push_back(texts.FormatMsg("843"));
    const auto info = world.Logged("INFO");
    for (const std::string& line : told) {
        EXPECT_FALSE(line.empty());
        EXPECT_THAT(info, Contains(line).Times(1)) << loss.Name;
    }

    // The song is shorter by what was lost, and says so; what was heard of it is all there.
    const auto kept = KeptSongs(world);
    ASSERT_THAT(kept, SizeIs(2));
    EXPECT_EQ(kept[0].Song.LostFrames, lost);
    EXPECT_EQ(kept[1].Song.LostFrames, 0U);
    EXPECT_EQ(kept[0].RadioEnd - kept[0].RadioBegin, kept[0].Song.Frames + lost);
    EXPECT_THAT(info, Contains(texts.FormatMsg("848", {"Band 1 - Song 1", "3.200"})));
    const auto frames = FramesOfWav(world.Disk(), world.Transferred[0].MusicFile);
    ASSERT_TRUE(frames);
    auto heard = FramesOfRadio(world.Truth(), kept[0].RadioBegin, frames->size() + lost);
    const size_t gap = static_cast<size_t>(std::ranges::mismatch(*frames, heard).in1 - frames->begin());
    ASSERT_LT(gap, frames->size());
    heard.erase(heard.begin() + static_cast<std::ptrdiff_t>(gap),
                heard.begin() + static_cast<std::ptrdiff_t>(gap + lost));
    EXPECT_EQ(Comparison(heard, *frames), "equal");
}

INSTANTIATE_TEST_SUITE_P(Ways, LostInput,
                         testing::Values(Loss{"device", [](SimWaveIn& in) { in.Vanish(RadioName); },
                                              [](SimWaveIn& in) { in.Return(RadioName); }, "846", true},
                                         Loss{"server", [](SimWaveIn& in) { in.KillServer(); },
                                              [](SimWaveIn& in) { in.RestartServer(); }, "845", true},
                                         Loss{"silent device", [](SimWaveIn& in) { in.Stop(RadioName); },
                                              [](SimWaveIn& in) { in.Restart(RadioName); }, "847", false},
                                         Loss{"overrun", [](SimWaveIn& in) { in.Stop(RadioName); },
                                              [](SimWaveIn& in) {
                                                  in.Restart(RadioName, WaveInIncidentKind::Overrun);
                                              },
                                              "844", false}),
                         [](const auto& each) { return testing::PrintToString(each.index); });

TEST(LostInput, IsNeverReplacedByAnotherOne) {
    World world(TwoSongs({{"Mixer", "InputDeviceNames", "Radio;Other;"}}));
    world.Computer.WaveIn.AddRadio("Other", NumberedRadio({200}));
    ASSERT_TRUE(world.StartRecording());
    world.RunFor(10);
    world.Computer.WaveIn.Vanish(RadioName);
    const uint64_t received = world.Values().Signal.FramesReceived;
    world.RunFor(20);
    EXPECT_EQ(world.Values().Signal.FramesReceived, received);
}

TEST(MissingInput, EndsTheProgramOnTheSecondTickWithItsMessage) {
    World world(TwoSongs());
    world.Computer.WaveIn.Vanish(RadioName);
    ASSERT_TRUE(world.Load());
    EXPECT_TRUE(world.RunUntil([&] { return world.Ends > 0; }, 2));
    EXPECT_THAT(world.Boxes(), ElementsAre(HasSubstr("No input to record from was found")));
    EXPECT_THAT(world.Logged("INFO"), Contains(HasSubstr("No input to record from was found")));
}

TEST(LostInput, IsReportedWithTheWordsOfTheSoundServer) {
    World world(TwoSongs());
    world.Computer.WaveIn.SetServerWords("Connection terminated");
    ASSERT_TRUE(world.StartRecording());
    world.RunFor(10);
    world.Computer.WaveIn.KillServer();
    world.RunFor(3);
    world.Computer.WaveIn.RestartServer();
    world.RunFor(3);
    EXPECT_THAT(world.Logged("INFO"),
                Contains(HasSubstr("because the sound server was gone. The sound server "
                                   "says: Connection terminated.")));
}

TEST(MissingInput, IsReportedWithTheWordsOfTheSoundServer) {
    World world(TwoSongs());
    world.Computer.WaveIn.SetServerWords("Connection refused");
    world.Computer.WaveIn.KillServer();
    ASSERT_TRUE(world.Load());
    EXPECT_TRUE(world.RunUntil([&] { return world.Ends > 0; }, 2));
    EXPECT_THAT(world.Logged("INFO"), Contains(HasSubstr("The sound server says: Connection refused.")));
}

TEST(BusyInput, LeavesTheProgramOpenWithoutAnythingToRecordFrom) {
    World world(TwoSongs());
    world.Computer.WaveIn.Refuse(RadioName);
    ASSERT_TRUE(world.Load());
    world.RunFor(10);
    EXPECT_TRUE(world.Recorder->Running());
    EXPECT_FALSE(world.Form().chkStartStop[0].Enabled());
    EXPECT_THAT(world.Boxes(), IsEmpty());

    // Chosen again when it is free, it is recorded from.
    world.Computer.WaveIn.Admit(RadioName);
    world.Form().cmbInputDevices.Select(0);
    EXPECT_TRUE(world.Form().chkStartStop[0].Enabled());
}

TEST(StandingDisk, For30SecondsLosesNothing) {
    for (const int mode : {0, 1}) {
        World world(TwoSongs({{ProviderOfRadio, "EndOfSongDetection", std::to_string(mode)}}));
        FileFault slow;
        slow.Pattern = "*.wav";
        slow.Operation = FileOperation::Write;
        slow.Error = 0;
        slow.AfterCalls = 200;
        slow.Times = 1;
        slow.Delay = std::chrono::seconds(30);
        world.Disk().AddFault(slow);
        ASSERT_TRUE(world.StartRecording());
        world.RunFor(110);
        world.Finish();
        EXPECT_EQ(MusicComparedWithRadio(world), "");
        const auto kept = KeptSongs(world);
        ASSERT_THAT(kept, SizeIs(2));
        for (size_t i = 0; i < kept.size(); ++i) {
            EXPECT_LT(kept[i].RadioBegin, world.Truth()->Songs()[i].Begin + 2205) << mode;
            EXPECT_GT(kept[i].RadioEnd + 2205, world.Truth()->Songs()[i].End) << mode;
        }
        EXPECT_EQ(world.Values().Signal.FramesLost, 0U);
        EXPECT_THAT(world.Logged("ERROR"), Contains(HasSubstr("buffers of sound were waiting")));
    }
}

TEST(StandingDisk, OfADeviceWithAShortMemoryIsReportedAsLoss) {
    World world(TwoSongs());
    world.Computer.WaveIn.SetQueueLimit(10);
    FileFault slow;
    slow.Pattern = "*.wav";
    slow.Operation = FileOperation::Write;
    slow.Error = 0;
    slow.AfterCalls = 200;
    slow.Times = 1;
    slow.Delay = std::chrono::seconds(15);
    world.Disk().AddFault(slow);
    ASSERT_TRUE(world.StartRecording());
    world.RunFor(60);
    EXPECT_NEAR(static_cast<double>(world.Values().Signal.FramesLost), 5.0 * 44100, 4410);
    EXPECT_THAT(world.Logged("INFO"), Contains(HasSubstr(RadioName)));
}

TEST(DriftingDevice, LosesNothingAndReportsNothing) {
    World world(TwoSongs());
    world.Computer.WaveIn.SetDrift(RadioName, 300);  // a cheap card
    ASSERT_TRUE(world.StartRecording());
    world.RunFor(110);
    world.Finish();
    EXPECT_EQ(MusicComparedWithRadio(world), "");
    EXPECT_THAT(KeptSongs(world), SizeIs(2));
    EXPECT_THAT(world.Logged("INFO"), IsEmpty());
}

}  // namespace
}  // namespace Corvetape::Test
