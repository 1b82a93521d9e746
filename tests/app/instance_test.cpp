// One running program per user.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/desktop_notes.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

WorldOptions At(const std::shared_ptr<InstancePlace>& place, std::string commandLine = "") {
    WorldOptions options = Starting(std::move(commandLine));
    options.Machine.Place = place;
    return options;
}

TEST(SecondInstance, BringsTheFirstForwardAndEndsWithNothingReadOrWritten) {
    const auto place = std::make_shared<InstancePlace>();
    World first(At(place));
    ASSERT_TRUE(first.Load());

    World second(At(place, "-auto"));
    const auto tree = second.Disk().Tree();
    const uint64_t history = second.Disk().HistoryHash();
    EXPECT_FALSE(second.Load());
    EXPECT_EQ(place->Activations, 1U);
    EXPECT_EQ(second.Disk().OperationCount(), 0U);
    EXPECT_EQ(second.Disk().HistoryHash(), history);
    EXPECT_EQ(second.Disk().Tree(), tree);
    EXPECT_THAT(second.Log, IsEmpty());
    EXPECT_THAT(second.Boxes(), IsEmpty());
}

TEST(SecondInstance, HasNothingToStopAndTheFirstRunsOn) {
    const auto place = std::make_shared<InstancePlace>();
    World first(At(place));
    ASSERT_TRUE(first.Load());
    World second(At(place));
    ASSERT_FALSE(second.Load());
    second.Recorder->Unload();
    second.RunFor(5);
    EXPECT_EQ(second.Disk().OperationCount(), 0U);
    EXPECT_FALSE(second.Recorder->Running());
    first.RunFor(5);
    EXPECT_TRUE(first.Recorder->Running());
}

TEST(SecondInstance, OnlyLaysNothingOutBeforeItEnds) {
    const auto place = std::make_shared<InstancePlace>();
    World first(At(place));
    ASSERT_TRUE(first.Load());
    World second(At(place));
    DesktopNotes desktop;
    PutOn(second, desktop);
    ASSERT_FALSE(second.Load());
    EXPECT_THAT(desktop.Asked, ElementsAre("BusyPointer", "BlankBrowser", "normal pointer"));
}

TEST(SecondInstance, IsAllowedToUpdate) {
    const auto place = std::make_shared<InstancePlace>();
    World first(At(place));
    ASSERT_TRUE(first.Load());
    World second(At(place, "-update"));
    EXPECT_TRUE(second.Load());
    EXPECT_EQ(place->Activations, 0U);
    EXPECT_THAT(LoggedKinds(second), ElementsAre("START"));
}

TEST(NextInstance, FindsThePlaceFree) {
    const auto place = std::make_shared<InstancePlace>();
    {
        World first(At(place));
        ASSERT_TRUE(first.Load());
        first.Finish();
    }
    World next(At(place));
    EXPECT_TRUE(next.Load());
}

}  // namespace
}  // namespace Corvetape::Test
