// A request to close, and what may come between it and the end.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/desktop_notes.h"

namespace Corvetape::Test {
namespace {

using testing::IsEmpty;
using testing::Not;

/// A program that runs, with the delay of its end as wanted.
class ClosingRequest : public testing::Test {
 protected:
    void Begin(int delayed) {
        Place.emplace(Starting("", {{"Options", "DelayUnload", std::to_string(delayed)}}));
        ASSERT_TRUE(Place->Start());
    }

    frmMain& Form() { return Place->Form(); }
    RecordingFlags& Flags() { return Place->Values().Flags; }
    bool Close() { return Place->Recorder->Close(); }
    bool Runs() const { return Place->Recorder->Running(); }

    std::optional<World> Place;
};

TEST_F(ClosingRequest, PassesWhileNothingIsRecorded) {
    Begin(1);
    EXPECT_TRUE(Close());
    EXPECT_FALSE(Runs());
    EXPECT_EQ(Place->Ends, 1U);
}

TEST_F(ClosingRequest, PassesDuringARecordingThatNeedNotFinish) {
    Begin(0);
    Form().chkStartStop[0].Value(1);
    EXPECT_TRUE(Close());
    EXPECT_EQ(Place->Ends, 1U);
}

TEST_F(ClosingRequest, IsRefusedOnceWhileASongIsRecorded) {
    Begin(1);
    Form().chkStartStop[0].Value(1);
    EXPECT_FALSE(Close());
    EXPECT_TRUE(Runs());
    EXPECT_TRUE(Flags().DisableAtEndOfSong);
    EXPECT_TRUE(Flags().QuitAtEndOfSong);
    EXPECT_EQ(Form().chkStopRecording[0].Value(), 1);
    EXPECT_TRUE(Flags().StopAtEndOfSong);
    EXPECT_EQ(Form().lblStatus[1].Caption(),
              "Corvetape will end after this song. Close the window again to end it at once.");
}

TEST_F(ClosingRequest, IsRefusedOnceWhileANextSongIsWaitedFor) {
    Begin(1);
    Form().chkStartStop[1].Value(1);
    EXPECT_FALSE(Close());
    EXPECT_TRUE(Runs());
    EXPECT_TRUE(Flags().QuitAtEndOfSong);
}

TEST_F(ClosingRequest, PassesTheSecondTime) {
    Begin(1);
    Form().chkStartStop[0].Value(1);
    ASSERT_FALSE(Close());
    EXPECT_TRUE(Close());
    EXPECT_EQ(Place->Ends, 1U);
}

TEST_F(ClosingRequest, PassesIfRecordingIsToEndAnyway) {
    Begin(1);
    Form().chkStartStop[0].Value(1);
    Flags().DisableAtEndOfSong = true;  // such as by a disk that is nearly full
    EXPECT_TRUE(Close());
}

TEST_F(ClosingRequest, ThatWaitsIsTakenBackByAClickOnTheOption) {
    Begin(1);
    Form().chkStartStop[0].Value(1);
    ASSERT_FALSE(Close());
    Form().chkDelayUnload.Press();
    EXPECT_FALSE(Flags().DisableAtEndOfSong);
    EXPECT_EQ(Form().lblStatus[1].Caption(), "");
    // The next request is judged anew, by the option as it is now.
    Form().chkDelayUnload.Press();
    EXPECT_FALSE(Close());
    EXPECT_THAT(Form().lblStatus[1].Caption(), Not(IsEmpty()));
}

TEST_F(ClosingRequest, ComesAlsoFromThePublicMethod) {
    Begin(1);
    Form().chkStartStop[0].Value(1);
    Form().Methods.Call("Quit");
    EXPECT_TRUE(Runs());
    Form().Methods.Call("Quit");
    EXPECT_EQ(Place->Ends, 1U);
}

/// A start during which something is asked of the program while its window is shown.
class RequestDuringTheStart : public testing::Test {
 protected:
    bool StartWith(const std::function<void()>& request) {
        Desktop.WhileAsked = [request](const std::string& what) {
            if (what == "ShowWindow") request();
        };
        PutOn(Place, Desktop);
        return Place.Load();
    }

    DesktopNotes Desktop;
    World Place{Starting("", {{"Options", "DelayUnload", "1"}})};
};

TEST_F(RequestDuringTheStart, ToCloseIsCarriedOutWhenTheStartIsThrough) {
    EXPECT_FALSE(StartWith([&] { EXPECT_FALSE(Place.Recorder->Close()); }));
    EXPECT_FALSE(Place.Recorder->Running());
    EXPECT_EQ(Place.Ends, 1U);
    EXPECT_THAT(LoggedKinds(Place), testing::ElementsAre("START", "END "));
    EXPECT_EQ(Desktop.Asked.back(), "CloseBars") << "every step of the start, and then those of the end";
}

TEST_F(RequestDuringTheStart, ToCloseIsRefusedOnceAsAnyOther) {
    EXPECT_TRUE(StartWith([&] {
        Place.Form().chkStartStop[0].Value(1);
        EXPECT_FALSE(Place.Recorder->Close());
    }));
    EXPECT_TRUE(Place.Recorder->Running());
    EXPECT_TRUE(Place.Values().Flags.QuitAtEndOfSong);
}

TEST_F(RequestDuringTheStart, ForMoreRightsEndsTheProgramToo) {
    Place.Computer.System.VersionRecord = {2, 6, 0, 6000};
    Place.Computer.Dialogs.YesNoAnswers = {true};
    EXPECT_FALSE(StartWith([&] { EXPECT_TRUE(Place.Recorder->RestartElevated("-update")); }));
    EXPECT_EQ(Place.Ends, 1U);
}

TEST_F(ClosingRequest, InTheMiddleOfAChangeOfTheInputLeavesNothingOpen) {
    Place.emplace(Starting(""));
    Place->Computer.WaveIn.AddRadio("Other", RadioScript().SilenceForever());
    ASSERT_TRUE(Place->Start());
    // Events are served while a device closes.
    Place->Computer.Loop.Post([&] { Place->Recorder->Unload(); });
    Place->Form().cmbInputDevices.Select(1);
    EXPECT_EQ(Place->Ends, 1U);
    const uint64_t received = Place->Values().Signal.FramesReceived;
    Place->RunFor(2);
    EXPECT_EQ(Place->Values().Signal.FramesReceived, received) << "the other input is open";
    EXPECT_FALSE(Form().chkStartStop[0].Enabled());
}

TEST_F(ClosingRequest, AfterTheEndDoesNothing) {
    Begin(0);
    ASSERT_TRUE(Close());
    const size_t lines = Place->Log.size();
    EXPECT_TRUE(Close());
    Place->Recorder->Unload();
    EXPECT_EQ(Place->Ends, 1U);
    EXPECT_EQ(Place->Log.size(), lines);
}

TEST_F(ClosingRequest, WhileABoxStandsOpenAtTheEndDoesNotEndTwice) {
    Begin(0);
    Place->Values().Messages.RaiseInfo(833);
    Place->Computer.Dialogs.WhileOpen = [&](const ShownBox&) {
        EXPECT_TRUE(Close());
        Place->RunFor(5);  // timers run on behind a box
    };
    EXPECT_TRUE(Close());
    EXPECT_EQ(Place->Ends, 1U);
    EXPECT_EQ(Place->Logged("END ").size(), 1U);
}

}  // namespace
}  // namespace Corvetape::Test
