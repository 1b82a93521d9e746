#include "post/transfer/hand_over.h"

#include "post/transfer_rig.h"

namespace Corvetape {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class HandOverTest : public TransferJobTest {
 protected:
    void SetUp() override {
        TransferJobTest::SetUp();
        Bench.Form.tmrEncodeFile.Attach(Bench.Sim.Loop);
        Bench.Form.tmrEncodeFile.Interval(EncodeInterval(5000));
        Requests.End.Connect([this] { ++Ends; });
    }

    void Take(const std::string& title) {
        STATIONANDSONGDATA song = Bench.Media.SongMedia;
        song.Song = title;
        Kept.Raise(song);
    }

    std::vector<std::string> Titles() const {
        std::vector<std::string> titles;
        for (const TransferredSong& song : Songs) titles.push_back(song.Media.Song);
        return titles;
    }

    ProgramRequests Requests;
    Event<const STATIONANDSONGDATA&> Kept;
    HandOver Wait{Kept, Bench.Form.tmrEncodeFile, Job, Bench.Flags, Requests};
    int Ends = 0;
};

TEST_F(HandOverTest, ASongIsTransferredOnceWhenItsTimeIsOver) {
    Take("One");
    Bench.Sim.Loop.RunFor(std::chrono::milliseconds(4999));
    EXPECT_THAT(Songs, IsEmpty());
    Bench.Sim.Loop.RunFor(std::chrono::milliseconds(1));
    EXPECT_THAT(Titles(), ElementsAre("One"));
    EXPECT_FALSE(Bench.Form.tmrEncodeFile.Running());
    Bench.Sim.Loop.RunFor(std::chrono::milliseconds(20000));
    EXPECT_THAT(Songs, SizeIs(1));
}

TEST_F(HandOverTest, TheNextSongHasItsOwnTimeAndSendsTheOneThatWaitsOn) {
    Take("One");
    Bench.Sim.Loop.RunFor(std::chrono::milliseconds(3000));
    Take("Two");
    EXPECT_THAT(Titles(), ElementsAre("One"));
    Bench.Sim.Loop.RunFor(std::chrono::milliseconds(4999));
    EXPECT_THAT(Songs, SizeIs(1));
    Bench.Sim.Loop.RunFor(std::chrono::milliseconds(1));
    EXPECT_THAT(Titles(), ElementsAre("One", "Two"));
}

TEST_F(HandOverTest, ASongThatWaitsKeepsItsRecordWhateverBecomesOfTheOthers) {
    Take("One");
    Bench.Media.SongMedia = {};
    Wait.TransferNow();
    EXPECT_THAT(Titles(), ElementsAre("One"));
    EXPECT_EQ(Songs[0].Media.TempFileName, Stamp);
    Wait.TransferNow();
    EXPECT_THAT(Songs, SizeIs(1)) << "nothing waits any more";
}

TEST_F(HandOverTest, ThePendingEndOfTheProgramFollowsTheSongWhateverBecomesOfIt) {
    const auto transfer = [this] {
        Take("One");
        Wait.TransferNow();
    };
    transfer();
    Bench.Flags.QuitAtEndOfSong = true;
    transfer();
    EXPECT_EQ(Ends, 0) << "a song from before the wish";
    Bench.Flags.LastSongClosed = true;
    transfer();
    EXPECT_EQ(Ends, 1);
    Bench.Options.Encoder = 99;
    transfer();
    EXPECT_EQ(Ends, 2);
    Bench.Options.EncodeOffline = true;
    transfer();
    EXPECT_EQ(Ends, 3);
    EXPECT_THAT(Songs, SizeIs(5));
}

TEST(EncodeInterval, IsAtLeastAHundredMilliseconds) {
    EXPECT_EQ(EncodeInterval(5000), 5000);
    EXPECT_EQ(EncodeInterval(101), 101);
    EXPECT_EQ(EncodeInterval(100), 100);
    EXPECT_EQ(EncodeInterval(0), 100);
    EXPECT_EQ(EncodeInterval(-7), 100);
}

}  // namespace
}  // namespace Corvetape
