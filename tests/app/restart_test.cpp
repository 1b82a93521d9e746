// The restart with more rights that an update may need.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/desktop_notes.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr SystemVersion Vista = {2, 6, 0, 6000};
constexpr const char* MachineFolder = "/usr/share/Corvet";  // where the machine's branch lies

/// A running program on such a system, with this answer to come.
class RestartElevated : public testing::Test {
 protected:
    void Begin(const SystemVersion& version, bool yes) {
        Place.Computer.System.VersionRecord = version;
        Place.Computer.Dialogs.YesNoAnswers = {yes};
        Place.Made();
        ASSERT_TRUE(Place.Load());
    }
    const std::deque<bool>& Answers() { return Place.Computer.Dialogs.YesNoAnswers; }

    World Place;
};

TEST_F(RestartElevated, OpensTheShortcutAndEndsTheProgramIfTheUserAgrees) {
    Begin(Vista, true);
    EXPECT_TRUE(Place.Recorder->RestartElevated("-update"));
    ASSERT_EQ(Place.Boxes().size(), 1U);
    EXPECT_EQ(Place.Computer.Dialogs.Boxes[0].Kind, BoxKind::YesNo);
    EXPECT_EQ(Place.Computer.Dialogs.Boxes[0].Icon, DialogIcon::Critical);
    EXPECT_NE(Place.Boxes()[0], "");
    const ShellCall call = {"/opt/corvetape/RunAsAdmin.lnk",
                            "/q /c \"start \"\" \"/opt/corvetape/Corvet.exe\" -update\"", "/opt/corvetape"};
    EXPECT_THAT(Place.Computer.Processes.ShellCalls, ElementsAre(call));
    EXPECT_TRUE(Place.Values().Flags.DisableAtEndOfSong);
    Place.RunFor(1);
    EXPECT_EQ(Place.Ends, 1U);
}

TEST_F(RestartElevated, AppliesAlsoIfTheUserDoesNotAgree) {
    Begin(Vista, false);
    EXPECT_TRUE(Place.Recorder->RestartElevated("-update"));
    EXPECT_THAT(Answers(), IsEmpty());
    EXPECT_THAT(Place.Computer.Processes.ShellCalls, IsEmpty());
    Place.RunFor(1);
    EXPECT_TRUE(Place.Recorder->Running());
}

TEST_F(RestartElevated, AsksNobodyWhereTheMachinesBranchCanBeWritten) {
    Place.Disk().MakeFolders(MachineFolder);
    Begin(Vista, true);
    EXPECT_FALSE(Place.Recorder->RestartElevated("-update"));
    EXPECT_EQ(Answers().size(), 1U);
}

TEST_F(RestartElevated, AsksNobodyWhereNoRestartGivesMoreRights) {
    Place.Computer.System.Elevates = false;
    Begin(Vista, true);
    EXPECT_FALSE(Place.Recorder->RestartElevated("-update"));
    EXPECT_EQ(Answers().size(), 1U);
    EXPECT_THAT(Place.Computer.Processes.ShellCalls, IsEmpty());
    Place.RunFor(1);
    EXPECT_TRUE(Place.Recorder->Running());
    EXPECT_FALSE(Place.Values().Flags.DisableAtEndOfSong);
}

TEST_F(RestartElevated, AsksNobodyOnAnotherSystem) {
    Begin({2, 5, 1, 2600}, true);
    EXPECT_FALSE(Place.Recorder->RestartElevated("-update"));
    EXPECT_EQ(Answers().size(), 1U);
}

}  // namespace
}  // namespace Corvetape::Test
