#include "recording/automatic/learned_cuts.h"

#include <gtest/gtest.h>

#include "sim/sim_files.h"

namespace Corvetape::Test {
namespace {

class LearnedCutsTest : public testing::Test {
 protected:
    LearnedCutsTest() { Disk.MakeFolders("/config"); }

    SimFiles Disk;
    Settings Options;
    LearnedCuts Recorder{Disk, "/config/cuts", Options};
    LearnedCuts Other{Disk, "/config/cuts", Options};
};

TEST_F(LearnedCutsTest, WhatAnotherProcessHasTaughtCountsAtOnceAndIsNotUndone) {
    Recorder.Of("player", false).LearnGap({-20, -20});
    Recorder.Store("player", false);
    Other.Of("player", false).LearnCorrection(-60);
    Other.Store("player", false);
    EXPECT_EQ(Recorder.Of("player", false).Songs(), 1 + CutPrior::SongsOfCorrection);
    Recorder.Of("player", false).LearnGap({-60, -60});
    Recorder.Store("player", false);
    EXPECT_EQ(Other.Of("player", false).Songs(), 2 + CutPrior::SongsOfCorrection);
}

TEST_F(LearnedCutsTest, ADamagedFileDoesNotTakeAwayWhatThisRunKnows) {
    Recorder.Of("player", false).LearnGap({-20, -20});
    Recorder.Store("player", false);
    Disk.Put("/config/cuts/player.cuts", "cut-prior 1 nonsense");
    EXPECT_EQ(Recorder.Of("player", false).Songs(), 1u);
}

TEST_F(LearnedCutsTest, WhatAnotherProcessHasForgottenDoesNotComeBack) {
    Recorder.Of("player", false).LearnGap({-20, -20});
    Recorder.Store("player", false);
    Other.Forget();
    EXPECT_EQ(Recorder.Of("player", false).Songs(), 0U);
    Recorder.Of("player", false).LearnGap({-60, -60});
    Recorder.Store("player", false);
    EXPECT_LE(Other.Of("player", false).Songs(), 1U);
}

TEST_F(LearnedCutsTest, AFileOfALaterVersionStaysAsItIs) {
    const std::string later = "cut-prior 3 of a format that nobody knows yet";
    Disk.MakeFolders("/config/cuts");
    Disk.Put("/config/cuts/player.cuts", later);
    Recorder.Of("player", false).LearnGap({-20, -20});
    Recorder.Store("player", false);
    EXPECT_EQ(Disk.Content("/config/cuts/player.cuts"), later);
    EXPECT_EQ(Recorder.Of("player", false).Songs(), 1U) << "known for this run";
}

TEST_F(LearnedCutsTest, WithoutTheSettingNothingIsReadOrWritten) {
    Other.Of("player", false).LearnGap({-20, -20});
    Other.Store("player", false);
    Options.LearnCuts = false;
    EXPECT_EQ(Recorder.Of("player", false).Songs(), 0u);
    const auto before = Disk.HashOfFile("/config/cuts/player.cuts");
    Recorder.Of("player", false).LearnCorrection(-30);
    Recorder.Store("player", false);
    EXPECT_EQ(Disk.HashOfFile("/config/cuts/player.cuts"), before);
}

}  // namespace
}  // namespace Corvetape::Test
