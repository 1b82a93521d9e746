#include "cli/printed_notices.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace Corvetape {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NoticesTest : public testing::Test {
 protected:
    std::vector<std::string> Told;
    PrintedNotices Lines{[this](const std::string& text) { Told.push_back(text); }};
};

TEST_F(NoticesTest, HintsAndErrorsOfTheLogAreReportedAndNothingElseOfIt) {
    for (const char* kind : {"START", "INFO", "WAV44", "ERROR", "END "}) Lines.Logged(kind, kind);
    EXPECT_THAT(Told, ElementsAre("INFO", "ERROR"));
}

TEST_F(NoticesTest, AStatusThatTheLogDoesNotHoldIsReported) {
    Lines.Status("the disk is nearly full");
    Lines.Status("");
    EXPECT_THAT(Told, ElementsAre("the disk is nearly full"));
}

TEST_F(NoticesTest, WhatIsShownAndLoggedIsReportedOnceInEitherOrder) {
    Lines.Status("no sound for 60 seconds");
    Lines.Logged("INFO", "no sound for 60 seconds");
    Lines.Logged("ERROR", "30 buffers were waiting");
    Lines.Status("30 buffers were waiting");
    EXPECT_THAT(Told, ElementsAre("no sound for 60 seconds", "30 buffers were waiting"));
}

TEST_F(NoticesTest, WhatTheLineOfASongHasSaidIsNotRepeated) {
    Lines.SongReported();
    Lines.Logged("WAV44", "a song");
    Lines.Logged("INFO", "too short");
    Lines.Status("too short");
    Lines.Logged("INFO", "another");
    EXPECT_THAT(Told, ElementsAre("another"));
}

TEST_F(NoticesTest, AStatusThatCountsOnIsReportedOnceUntilItHasGone) {
    for (const char* text :
         {"no sound for 60 seconds", "no sound for 61 seconds", "", "no sound for 60 seconds"})
        Lines.Status(text);
    EXPECT_THAT(Told, ElementsAre("no sound for 60 seconds", "no sound for 60 seconds"));
}

TEST_F(NoticesTest, TheSameLineOfTheLogIsReportedEachTime) {
    for (int i = 0; i < 2; ++i) {
        Lines.Logged("ERROR", "30 buffers were waiting");
        Lines.Status("30 buffers were waiting");
    }
    EXPECT_THAT(Told, ElementsAre("30 buffers were waiting", "30 buffers were waiting"));
}

}  // namespace
}  // namespace Corvetape
