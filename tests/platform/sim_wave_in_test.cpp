#include "sim/sim_wave_in.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/wave_in_user.h"
#include "sim/frame_stamp.h"
#include "sim/sim_machine.h"

namespace Corvetape {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

class SimWaveInTest : public testing::Test {
 protected:
    SimWaveInTest() { Machine.WaveIn.AddRadio("radio", LongSong()); }

    static RadioScript LongSong() {
        ScriptSong song;
        song.Seconds = 4 * 3600;
        song.Media.Song = "Long";
        return RadioScript().Song(song).Stamped();
    }
    static std::vector<std::string> Names(const std::vector<WaveInDevice>& devices) {
        std::vector<std::string> names;
        for (const WaveInDevice& device : devices) names.push_back(device.Name);
        return names;
    }

    /// Every frame that was got is the one that the feed says it is.
    void ExpectTruth(const WaveInUser& user) {
        for (size_t at = 0; at < user.Got.size(); ++at) {
            const uint64_t expected = Machine.WaveIn.RadioFrameOf(at).value();
            ASSERT_EQ(FrameOfStamp(user.Got[at], expected), expected) << at;
        }
    }

    SimMachine Machine;
    WaveInUser User;
};

TEST_F(SimWaveInTest, ARadioPlaysOnWhetherSomebodyListensOrNot) {
    Machine.Loop.RunFor(10s);
    ASSERT_TRUE(User.Open(Machine.WaveIn));
    Machine.Loop.RunFor(1s);
    EXPECT_EQ(FrameOfStamp(User.Got[0], 0), 441000U);
    EXPECT_EQ(Machine.WaveIn.RadioFrameOf(5), 441005U);
    User.Stream.reset();
    User.Got.clear();
    Machine.Loop.RunFor(9s);
    ASSERT_TRUE(User.Open(Machine.WaveIn));
    Machine.Loop.RunFor(50ms);
    EXPECT_EQ(FrameOfStamp(User.Got[0], 0), 882000U);
    EXPECT_EQ(Machine.WaveIn.NowPlaying().Song, "Long");
}

TEST_F(SimWaveInTest, TheListChangesAndNumbersAreThoseOfTheLastList) {
    Machine.WaveIn.AddRadio("second", LongSong(), WaveInKind::Input);
    EXPECT_THAT(Names(Machine.WaveIn.Devices()), ElementsAre("radio", "second"));
    EXPECT_TRUE(Machine.WaveIn.Devices()[0].IsDefault);
    EXPECT_EQ(Machine.WaveIn.Devices()[1].Kind, WaveInKind::Input);
    Machine.WaveIn.Vanish("radio");
    // By the old list number 1 still is the second device, and number 0 is gone.
    EXPECT_EQ(Machine.WaveIn.Open(0, MakeWaveFormat(44100), BufferReturn::Loop, {}), nullptr);
    EXPECT_NE(Machine.WaveIn.Open(1, MakeWaveFormat(44100), BufferReturn::Loop, {}), nullptr);
    EXPECT_THAT(Names(Machine.WaveIn.Devices()), ElementsAre("second"));
    Machine.WaveIn.Return("radio");
    EXPECT_THAT(Names(Machine.WaveIn.Devices()), ElementsAre("radio", "second"));
}

TEST_F(SimWaveInTest, ADeviceGoneForAMinuteLosesExactlyThatMinute) {
    ASSERT_TRUE(User.Open(Machine.WaveIn));
    Machine.Loop.RunFor(10020ms);  // not on a border of buffers
    Machine.WaveIn.Vanish("radio");
    Machine.Loop.RunFor(60s);
    EXPECT_THAT(User.Availabilities, ElementsAre(true));
    EXPECT_TRUE(User.Incidents.empty());
    EXPECT_EQ(User.Got.size(), 441000U);
    Machine.WaveIn.Return("radio");
    Machine.Loop.RunFor(10s);
    EXPECT_THAT(User.Availabilities, ElementsAre(true, false));
    ASSERT_EQ(User.Incidents.size(), 1U);
    EXPECT_EQ(User.Incidents[0].Kind, WaveInIncidentKind::DeviceLost);
    EXPECT_EQ(User.Incidents[0].LostFrames, 60U * 44100);
    EXPECT_EQ(User.Incidents[0].DeviceName, "radio");
    EXPECT_EQ(User.Got.size(), 20U * 44100);
    ExpectTruth(User);
    EXPECT_THAT(Machine.WaveIn.OpenFeed()->Gaps(),
                ElementsAre(FeedGap{441882, 60U * 44100, WaveInIncidentKind::DeviceLost}));
}

TEST_F(SimWaveInTest, AStoppedDeviceIsReportedOnlyWhenItRunsAgain) {
    ASSERT_TRUE(User.Open(Machine.WaveIn));
    Machine.Loop.RunFor(1s);
    Machine.WaveIn.Stop("radio");
    Machine.Loop.RunFor(3s);
    EXPECT_TRUE(User.Availabilities.empty());
    EXPECT_EQ(Machine.WaveIn.Devices().size(), 1U);
    Machine.WaveIn.Restart("radio");
    Machine.Loop.RunFor(1s);
    EXPECT_TRUE(User.Availabilities.empty());
    ASSERT_EQ(User.Incidents.size(), 1U);
    EXPECT_EQ(User.Incidents[0].Kind, WaveInIncidentKind::ClockDrift);
    EXPECT_EQ(User.Incidents[0].LostFrames, 3U * 44100);
    ExpectTruth(User);
}

TEST_F(SimWaveInTest, AHeldDeviceDeliversEverythingLater) {
    ASSERT_TRUE(User.Open(Machine.WaveIn));
    Machine.Loop.RunFor(1s);
    Machine.WaveIn.Hold("radio");
    Machine.Loop.RunFor(20s);
    EXPECT_EQ(User.Got.size(), 44100U);
    Machine.WaveIn.Release("radio");
    Machine.Loop.RunFor(1s);
    EXPECT_EQ(User.Got.size(), 22U * 44100);
    EXPECT_TRUE(User.Incidents.empty());
    ExpectTruth(User);
}

TEST_F(SimWaveInTest, DroppedFramesAreReportedAtOnceAndTakeTheirTime) {
    ASSERT_TRUE(User.Open(Machine.WaveIn));
    Machine.Loop.RunFor(1s);
    Machine.WaveIn.Lose("radio", 22050);
    Machine.Loop.RunFor(0ms);
    ASSERT_EQ(User.Incidents.size(), 1U);
    EXPECT_EQ(User.Incidents[0].Kind, WaveInIncidentKind::Overrun);
    EXPECT_EQ(User.Incidents[0].LostFrames, 22050U);
    Machine.Loop.RunFor(499ms);
    EXPECT_EQ(User.Got.size(), 44100U);
    Machine.Loop.RunFor(501ms);
    EXPECT_EQ(User.Got.size(), 44100U + 22050);
    ExpectTruth(User);
}

TEST_F(SimWaveInTest, ALossIsReportedAfterTheBuffersThatAreHeldUpAheadOfIt) {
    for (const BufferReturn mode : {BufferReturn::Loop, BufferReturn::PollByTimer}) {
        WaveInUser user;
        ASSERT_TRUE(user.Open(Machine.WaveIn, 0, mode));
        size_t buffersAhead = 0;
        user.OnIncident = [&] { buffersAhead = user.Order.size() + user.FullBuffers(); };
        Machine.WaveIn.Hold("radio");
        Machine.Loop.RunFor(1020ms);
        Machine.WaveIn.Lose("radio", 4410);
        Machine.Loop.RunFor(500ms);
        EXPECT_TRUE(user.Incidents.empty());
        Machine.WaveIn.Release("radio");
        Machine.Loop.RunFor(100ms);
        if (mode == BufferReturn::PollByTimer) user.Poll();
        ASSERT_EQ(user.Incidents.size(), 1U);
        EXPECT_EQ(buffersAhead, 20U);
        EXPECT_GT(user.Order.size(), 20U);
    }
}

TEST_F(SimWaveInTest, AFullQueueKeepsTheOldestAndLosesTheRest) {
    Machine.WaveIn.SetQueueLimit(20);
    ASSERT_TRUE(User.Open(Machine.WaveIn));
    Machine.Loop.RunFor(1s);
    Machine.Loop.Sleep(30s);
    Machine.Loop.RunFor(1s);
    ASSERT_EQ(User.Incidents.size(), 1U);
    EXPECT_EQ(User.Incidents[0].Kind, WaveInIncidentKind::Overrun);
    EXPECT_EQ(User.Incidents[0].LostFrames, 10U * 44100);
    EXPECT_EQ(User.Got.size(), 22U * 44100);
    ExpectTruth(User);
    EXPECT_EQ(Machine.WaveIn.RadioFrameOf(21 * 44100 - 1), 21U * 44100 - 1);
    EXPECT_EQ(Machine.WaveIn.RadioFrameOf(21 * 44100), 31U * 44100);
}

TEST_F(SimWaveInTest, AServerThatDiesTakesAllDevicesWithIt) {
    Machine.WaveIn.AddRadio("second", LongSong());
    WaveInUser other;
    ASSERT_TRUE(User.Open(Machine.WaveIn, 0));
    ASSERT_TRUE(other.Open(Machine.WaveIn, 1));
    Machine.Loop.RunFor(1s);
    Machine.WaveIn.KillServer();
    EXPECT_TRUE(Machine.WaveIn.Devices().empty());
    Machine.Loop.RunFor(5s);
    Machine.WaveIn.RestartServer();
    EXPECT_EQ(Machine.WaveIn.Devices().size(), 2U);
    Machine.Loop.RunFor(1s);
    for (const WaveInUser* user : {&User, &other}) {
        EXPECT_THAT(user->Availabilities, ElementsAre(true, false));
        ASSERT_EQ(user->Incidents.size(), 1U);
        EXPECT_EQ(user->Incidents[0].Kind, WaveInIncidentKind::ServerLost);
        EXPECT_EQ(user->Incidents[0].LostFrames, 5U * 44100);
    }
}

TEST_F(SimWaveInTest, ADeviceThatVanishedWhileTheServerWasDeadStaysGone) {
    ASSERT_TRUE(User.Open(Machine.WaveIn));
    Machine.WaveIn.KillServer();
    Machine.WaveIn.Vanish("radio");
    Machine.WaveIn.RestartServer();
    Machine.Loop.RunFor(1s);
    EXPECT_TRUE(Machine.WaveIn.Devices().empty());
    EXPECT_TRUE(User.Incidents.empty());
    Machine.WaveIn.Return("radio");
    Machine.Loop.RunFor(1s);
    EXPECT_EQ(User.Incidents.size(), 1U);
    EXPECT_THAT(User.Availabilities, ElementsAre(true, false));
}

TEST_F(SimWaveInTest, ADeviceThatReturnsToADeadServerComesBackWithTheServer) {
    ASSERT_TRUE(User.Open(Machine.WaveIn));
    Machine.WaveIn.Vanish("radio");
    Machine.WaveIn.KillServer();
    Machine.WaveIn.Return("radio");
    Machine.Loop.RunFor(1s);
    EXPECT_TRUE(User.Incidents.empty());
    EXPECT_TRUE(Machine.WaveIn.Devices().empty());
    Machine.WaveIn.RestartServer();
    Machine.Loop.RunFor(1s);
    ASSERT_EQ(User.Incidents.size(), 1U);
    EXPECT_EQ(User.Incidents[0].Kind, WaveInIncidentKind::ServerLost);
    EXPECT_EQ(User.Incidents[0].LostFrames, 44100U);
    ExpectTruth(User);
}

TEST_F(SimWaveInTest, AStoppedDeviceThatReturnsIsStillStopped) {
    ASSERT_TRUE(User.Open(Machine.WaveIn));
    Machine.WaveIn.Stop("radio");
    Machine.WaveIn.Vanish("radio");
    Machine.WaveIn.Return("radio");
    Machine.Loop.RunFor(1s);
    EXPECT_TRUE(User.Order.empty());
    Machine.WaveIn.Restart("radio");
    Machine.Loop.RunFor(1s);
    EXPECT_EQ(User.Got.size(), 44100U);
    EXPECT_THAT(User.Availabilities, ElementsAre(true, false));
}

TEST_F(SimWaveInTest, ARefusedDeviceIsListedButDoesNotOpen) {
    Machine.WaveIn.Refuse("radio");
    EXPECT_EQ(Machine.WaveIn.Devices().size(), 1U);
    EXPECT_FALSE(User.Open(Machine.WaveIn));
    Machine.WaveIn.Admit("radio");
    EXPECT_TRUE(User.Open(Machine.WaveIn));
}

TEST_F(SimWaveInTest, AStoppedDeviceOpensAndGivesNothing) {
    Machine.WaveIn.Stop("radio");
    ASSERT_TRUE(User.Open(Machine.WaveIn));
    Machine.Loop.RunFor(2s);
    EXPECT_TRUE(User.Order.empty());
    Machine.WaveIn.Restart("radio");
    Machine.Loop.RunFor(1s);
    EXPECT_EQ(User.Got.size(), 44100U);
    ASSERT_EQ(User.Incidents.size(), 1U);
    EXPECT_EQ(User.Incidents[0].LostFrames, 2U * 44100);
    ExpectTruth(User);
}

TEST_F(SimWaveInTest, ADriftingDeviceDeliversMoreOrFewerFrames) {
    User.Collect = false;
    Machine.WaveIn.SetDrift("radio", 100);
    ASSERT_TRUE(User.Open(Machine.WaveIn));
    Machine.Loop.RunFor(1000s);
    // 44100000 and 4410 frames have been heard: two buffers more than the clock would say.
    EXPECT_EQ(User.Order.size(), 20002U);
    Machine.WaveIn.SetDrift("radio", -100);
    Machine.Loop.RunFor(2000s);
    EXPECT_EQ(User.Order.size(), 60000U - 2);
    EXPECT_TRUE(User.Incidents.empty());
}

TEST_F(SimWaveInTest, AMonthOfFramesIsCountedExactly) {
    SimMachine machine;
    machine.WaveIn.AddRadio("quiet", RadioScript().SilenceForever());
    User.Collect = false;
    ASSERT_TRUE(User.Open(machine.WaveIn, 0, BufferReturn::PollByTimer));
    machine.Loop.Sleep(30 * 24h);
    User.Poll();
    EXPECT_EQ(User.Order.size(), WaveInUser::Buffers);
    machine.WaveIn.Lose("quiet", 1);
    EXPECT_EQ(machine.WaveIn.OpenFeed()->Gaps()[0].At, 44100ULL * 3600 * 24 * 30);
    User.Stream.reset();
}

TEST_F(SimWaveInTest, TwoRunsGiveTheSameBytes) {
    const auto run = [] {
        SimMachine machine;
        RandomRadioOptions options;
        options.Seed = 5;
        options.Seconds = 300;
        machine.WaveIn.AddRadio("radio", RandomRadio(options));
        WaveInUser user;
        user.Open(machine.WaveIn, 0, BufferReturn::CaptureThread);
        machine.WaveIn.SetDrift("radio", 37);
        machine.Loop.RunFor(100s);
        machine.WaveIn.Vanish("radio");
        machine.Loop.RunFor(777ms);
        machine.WaveIn.Return("radio");
        machine.Loop.RunFor(100s);
        return HashOf(std::span<const Frame>(user.Got));
    };
    EXPECT_EQ(run(), run());
}

}  // namespace
}  // namespace Corvetape
