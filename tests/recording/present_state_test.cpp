#include "recording/present_state.h"

#include <gtest/gtest.h>

namespace Corvetape::Test {
namespace {

struct Facts {
    PresentState Now() const {
        return PresentStateOf({Flags, Signal, Messages, InputOpen, SecondsWithoutBuffers});
    }

    RecordingFlags Flags;
    SignalState Signal;
    DeferredMessages Messages;
    bool InputOpen = true;
    double SecondsWithoutBuffers = 0;

    Facts() { Flags.RecordingEnabled = true; }
};

TEST(PresentState, FollowsTheWishesOfTheUser) {
    Facts facts;
    EXPECT_EQ(facts.Now(), PresentState::Listening);
    facts.Flags.RecordNextSong = true;
    EXPECT_EQ(facts.Now(), PresentState::Waiting);
    facts.Flags.RecordCurrentSong = true;
    EXPECT_EQ(facts.Now(), PresentState::Recording);
    facts.Flags.StopAtEndOfSong = true;
    EXPECT_EQ(facts.Now(), PresentState::LastSong);
}

TEST(PresentState, TroubleComesAheadOfWishes) {
    Facts facts;
    facts.Flags.RecordCurrentSong = true;
    facts.Signal.SilenceSeconds = 9;
    EXPECT_EQ(facts.Now(), PresentState::Recording);
    facts.Signal.SilenceSeconds = 10;
    EXPECT_EQ(facts.Now(), PresentState::NoSound);
    facts.SecondsWithoutBuffers = 3;
    EXPECT_EQ(facts.Now(), PresentState::InputGone);
    facts.InputOpen = false;
    EXPECT_EQ(facts.Now(), PresentState::NoInput);
}

TEST(PresentState, AWishThatIsNotFollowedIsNoRecording) {
    Facts facts;
    facts.Flags.RecordingEnabled = false;  // no media data, or the song's file could not be written
    EXPECT_EQ(facts.Now(), PresentState::Listening);
    facts.Flags.RecordNextSong = true;
    EXPECT_EQ(facts.Now(), PresentState::NotEnabled);
    facts.Flags.RecordCurrentSong = true;
    EXPECT_EQ(facts.Now(), PresentState::NotEnabled);
    facts.Signal.SilenceSeconds = 10;
    EXPECT_EQ(facts.Now(), PresentState::NoSound);
}

TEST(PresentState, ADiskThatIsNearlyFullIsReportedUntilRecordingBeginsAnew) {
    Facts facts;
    facts.Flags.RecordingEnabled = true;
    facts.Flags.RecordCurrentSong = true;
    facts.Messages.RaiseInfo(708);  // something else that is told at the end
    facts.Flags.DisableAtEndOfSong = true;
    EXPECT_EQ(facts.Now(), PresentState::Recording);
    facts.Messages.RaiseInfo(833);
    EXPECT_EQ(facts.Now(), PresentState::DiskFull);
    facts.Flags.DisableAtEndOfSong = false;
    facts.Flags.RecordingEnabled = false;  // the song has ended
    EXPECT_EQ(facts.Now(), PresentState::DiskStopped);
    facts.Flags.RecordingEnabled = true;  // there is room again, and somebody has pressed Record
    EXPECT_EQ(facts.Now(), PresentState::Recording);
}

}  // namespace
}  // namespace Corvetape::Test
