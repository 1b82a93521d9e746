#include "recording/media_keys.h"

#include <gtest/gtest.h>

namespace Corvetape {
namespace {

class FakeControls : public MediaControls {
 public:
    void Follow(MediaButtons* buttons) override { Buttons = buttons; }
    void Show(const PlayerDisplay& display) override { Shown = display; }

    MediaButtons* Buttons = nullptr;
    PlayerDisplay Shown;
};

class MediaKeysTest : public testing::Test {
 protected:
    MediaKeysTest() {
        // What the session does with the controls.
        Form.chkStartStop[0].Click.Connect(
            [this] { Flags.RecordCurrentSong = Form.chkStartStop[0].Value() != 0; });
        Form.chkStartStop[1].Click.Connect(
            [this] { Flags.RecordNextSong = Form.chkStartStop[1].Value() != 0; });
        Flags.RecordingEnabled = true;
    }
    void Press(MediaButton button) { Controls.Buttons->Pressed(button); }

    frmMain Form;
    RecordingFlags Flags;
    MediaState Media;
    FakeControls Controls;
    MediaKeys Keys{Form, Flags, Media, Controls};
};

TEST_F(MediaKeysTest, PlayKeepsTheSongAndPauseAndStopEndThat) {
    for (const MediaButton end : {MediaButton::Pause, MediaButton::Stop}) {
        Form.chkStartStop[1].Value(1);
        Press(MediaButton::Play);
        EXPECT_TRUE(Flags.RecordCurrentSong);
        EXPECT_EQ(Controls.Shown.Status, RecorderStatus::Recording);
        Press(MediaButton::Play);
        EXPECT_TRUE(Flags.RecordCurrentSong);
        Press(end);
        EXPECT_FALSE(Flags.RecordCurrentSong);
        EXPECT_FALSE(Flags.RecordNextSong);
        EXPECT_EQ(Controls.Shown.Status, RecorderStatus::Listening);
    }
}

TEST_F(MediaKeysTest, OneKeyForBothTogglesTheRecording) {
    Press(MediaButton::PlayPause);
    EXPECT_TRUE(Flags.RecordCurrentSong);
    Press(MediaButton::PlayPause);
    EXPECT_FALSE(Flags.RecordCurrentSong);
}

TEST_F(MediaKeysTest, TheOthersPressTheirControls) {
    int skipped = 0;
    int raised = 0;
    int quit = 0;
    Form.cmdSkipThisRecording.Enabled(true);  // as while a song is kept
    Form.cmdSkipThisRecording.Click.Connect([&] { ++skipped; });
    Form.mnuTaskbarItem[10].Click.Connect([&] { ++raised; });
    Form.mnuTaskbarItem[90].Click.Connect([&] { ++quit; });
    Press(MediaButton::Next);
    EXPECT_EQ(skipped, 1);
    Press(MediaButton::Raise);
    EXPECT_EQ(raised, 1);
    Press(MediaButton::Quit);
    EXPECT_EQ(quit, 1);
}

TEST_F(MediaKeysTest, WhatPlaysIsShownWithEachTick) {
    Media.CurrentMedia.Artist = "Marrow & Mint";
    Media.CurrentMedia.Song = "Little Umbrellas";
    Media.CurrentMedia.Album = "An Album";
    Media.CurrentMedia.Cover = "http://radio.example/cover.jpg";
    Form.tmr1Second.Timer.Raise();
    EXPECT_EQ(Controls.Shown, (PlayerDisplay{RecorderStatus::Listening, "Marrow & Mint", "Little Umbrellas",
                                             "An Album", "http://radio.example/cover.jpg"}));
    Flags.RecordingEnabled = false;
    Form.tmr1Second.Timer.Raise();
    EXPECT_EQ(Controls.Shown.Status, RecorderStatus::Off);
}

TEST(MediaKeysEnd, NobodyIsPressedAfterwards) {
    frmMain form;
    const RecordingFlags flags;
    const MediaState media;
    FakeControls controls;
    { const MediaKeys keys(form, flags, media, controls); }
    EXPECT_EQ(controls.Buttons, nullptr);
    form.tmr1Second.Timer.Raise();
}

}  // namespace
}  // namespace Corvetape
