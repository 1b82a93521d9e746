#include "platform/virtual/source_players.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "sim/sim_machine.h"

namespace Corvetape {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

class SourcePlayersTest : public testing::Test {
 protected:
    void Listen() {
        Players.Listen([this](const PlayerReport& report) { Told.push_back(report); },
                       [](const std::string&) { ADD_FAILURE() << "an input does not end like a player"; });
    }
    void RunFor(int milliseconds) { Computer.Loop.RunFor(std::chrono::milliseconds(milliseconds)); }

    SimMachine Computer;
    SourceMedia OnAir{"Station", "Ann", "One", "First", "http://127.0.0.1/c.jpg"};
    std::vector<PlayerReport> Told;
    SourcePlayers Players{Computer.Loop, "tape", [this] { return OnAir; }};
};

TEST_F(SourcePlayersTest, ReportAtOnceWhatPlays) {
    Listen();
    ASSERT_THAT(Told, SizeIs(1));
    EXPECT_EQ(Told[0],
              (PlayerReport{"tape", true, "Station", "Ann", "One", "First", "http://127.0.0.1/c.jpg"}));
}

TEST_F(SourcePlayersTest, ReportAChangeOnceAndSoon) {
    Listen();
    RunFor(1000);
    OnAir.Song = "Two";
    RunFor(100);
    ASSERT_THAT(Told, SizeIs(2));
    EXPECT_EQ(Told[1].Title, "Two");
    RunFor(5000);
    EXPECT_THAT(Told, SizeIs(2));
}

TEST_F(SourcePlayersTest, AreThereEvenIfTheyKnowNothing) {
    OnAir = {};
    Listen();
    RunFor(100);
    ASSERT_THAT(Told, SizeIs(1));
    EXPECT_TRUE(Told[0].Playing);
    EXPECT_EQ(Told[0].Title, "");
}

TEST_F(SourcePlayersTest, BeginAnewForWhoeverListensNext) {
    Listen();
    RunFor(100);
    Listen();
    RunFor(100);
    EXPECT_THAT(Told, SizeIs(2));
}

TEST_F(SourcePlayersTest, SayNothingUnlessSomebodyListens) {
    RunFor(1000);
    EXPECT_THAT(Told, IsEmpty());
}

}  // namespace
}  // namespace Corvetape
