// What the steps of the start bring about, beyond that they are there.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/desktop_notes.h"
#include "scenario/song_audio.h"

namespace Corvetape::Test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

TEST(StartEffects, TheMainWindowSpeaksTheLanguageOfTheUser) {
    World world(Starting("", {{"General", "Language", "german"}}));
    world.Disk().Put("/opt/corvetape/german.lang", "test1=Aufnahme|Nimmt auf\r\n");
    Label label(world.Form(), "lblTest", -1, "test1");
    label.Caption("Recording");
    ASSERT_TRUE(world.Load());
    EXPECT_EQ(label.Caption(), "Aufnahme");
    EXPECT_EQ(label.ToolTip(), "Nimmt auf");
}

TEST(StartEffects, WhatWaitedIsHandledOnceAfterTheBusyPointer) {
    World world;
    DesktopNotes desktop;
    std::vector<std::string> seen;
    EventLoop& loop = world.Computer.Loop;
    desktop.WhileAsked = [&](const std::string& what) {
        if (what == "ShowWindow") loop.Post([&] { seen.emplace_back("event"); });
        if (what == "normal pointer") seen.push_back(what);
    };
    PutOn(world, desktop);
    ASSERT_TRUE(world.Load());
    EXPECT_THAT(seen, ElementsAre("normal pointer", "event"));
}

TEST(StartEffects, NoSilenceIsReportedOfTheTimeThatABoxAtTheStartWasOpen) {
    WorldOptions options = Starting("", {{"Mixer", "InputDeviceNames", "Another;"}});
    options.Radio = RadioScript().SilenceForever();
    options.Machine.MonotonicNanoseconds = 25'000'000'000'000;  // the machine has run for hours
    World world(std::move(options));
    size_t open = 0;
    world.Computer.Dialogs.WhileOpen = [&](const ShownBox&) {
        ++open;
        world.RunFor(10);
    };
    ASSERT_TRUE(world.Start());
    world.RunFor(3);
    EXPECT_EQ(open, 1U);
    EXPECT_THAT(world.Logged("INFO"), Not(Contains(HasSubstr("No sound"))));
    EXPECT_THAT(world.Logged("ERROR"), IsEmpty());
}

TEST(StartEffects, TheFloatingBarIsShownByAClearBoxIfItWasVisible) {
    for (const auto& [visible, box] : {std::pair("1", 0), std::pair("0", 1)}) {
        World world(Starting("", {{"QuickButtons", "Visible", visible}}));
        ASSERT_TRUE(world.Load());
        EXPECT_EQ(world.Form().chkQuickButtons.Value(), box) << visible;
    }
}

TEST(StartEffects, TheSourceIsNotPolledInTheFirstSecond) {
    WorldOptions options = Starting("", {{ProviderOfRadio, "EndOfSongDetection", "1"}});
    options.Machine.WallTime.Millisecond = 600;  // the timers begin in the middle of a second
    options.RestartRadio = [] {};                // so that it plays from a page
    options.Radio = NumberedRadio({60}, {.FirstPause = 0});
    World world(std::move(options));
    ASSERT_TRUE(world.Load());
    // A poll now would take the title that plays for a new one, and cut there before there is any sound.
    world.RunFor(1.2);
    EXPECT_TRUE(world.Form().tmrGetMediaData.Running());
    EXPECT_FALSE(world.Form().chkStartStop[0].Enabled()) << "it is the first second still";
    EXPECT_FALSE(world.Values().Cut.CutPending);
    EXPECT_FALSE(world.Values().Cut.SongBoundary);
    world.RunFor(1);
    EXPECT_EQ(world.Values().Media.CurrentMedia.Song, "Song 1");
}

}  // namespace
}  // namespace Corvetape::Test
