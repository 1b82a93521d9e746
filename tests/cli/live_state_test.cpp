#include "cli/live_state.h"

#include <gtest/gtest.h>

#include "sim/sim_machine.h"

namespace Corvetape {
namespace {

class LiveState : public testing::Test {
 protected:
    std::string Text(int32_t keptSongs = 0) { return LiveStateText(Recorder, keptSongs); }
    std::string Meter() { return Text().substr(0, 22); }

    SimMachine Computer;
    Program Recorder{Computer.Get(), {}};
    SignalState& Signal = Recorder.Values().Signal;
    RecordingFlags& Flags = Recorder.Values().Flags;
};

TEST_F(LiveState, HasLevelAgeWishAndNumberOfSongs) {
    EXPECT_EQ(Text(3), "[....................]    0:00  watching  3 kept");
}

TEST_F(LiveState, ShowsTheNewestPeakInStepsOfThreeDecibels) {
    for (const auto& [peak, meter] :
         {std::pair(32768, "[####################]"), std::pair(23198, "[###################.]"),
          std::pair(1036, "[##########..........]"), std::pair(33, "[....................]"),
          std::pair(0, "[....................]")}) {
        Signal.History.Append(peak);
        EXPECT_EQ(Meter(), meter) << peak;
    }
}

TEST_F(LiveState, NamesWhatIsKept) {
    Flags.RecordingEnabled = true;
    Flags.RecordNextSong = true;
    EXPECT_EQ(Text().substr(32, 9), "waiting  ");
    Flags.RecordCurrentSong = true;
    EXPECT_EQ(Text().substr(32, 9), "recording");
    Flags.StopAtEndOfSong = true;
    EXPECT_EQ(Text().substr(32, 9), "last song");
}

TEST_F(LiveState, ShowsThatNothingIsWrittenThoughItIsWanted) {
    Flags.RecordNextSong = true;
    EXPECT_EQ(Text().substr(32, 9), "stopped  ");
    Flags.RecordNextSong = false;
    EXPECT_EQ(Text().substr(32, 9), "watching ");
}

TEST_F(LiveState, ReportsSilenceOnceItLastsAndFitsATerminal) {
    Signal.SilenceSeconds = 1;
    EXPECT_TRUE(Text().ends_with(" kept"));
    Signal.SilenceSeconds = 2;
    EXPECT_TRUE(Text().ends_with(" kept  silent 2 s"));
    Signal.SilenceSeconds = 2'000'000'000;
    EXPECT_LE(Text(999'999).size(), 79U);
}

}  // namespace
}  // namespace Corvetape
