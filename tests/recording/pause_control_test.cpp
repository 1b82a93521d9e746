#include "recording/pause_control.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "pause_rig.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;

/// A box with its bounds, as its page shows it.
struct NumberBox {
    const char* Key;
    TextBox PausePage::*Box;
    int32_t Lowest;
    int32_t Highest;
    int32_t FileUnit;  ///< what one of the box's numbers is in the file
};

constexpr NumberBox NumberBoxes[] = {
    {"LengthOfPause", &PausePage::txtLengthOfPause, 50, 10000, 1},
    {"SilenceAmplitude", &PausePage::txtSilenceAmplitude, -1, 5000, 1},
    {"EndOfSilenceAmplitude", &PausePage::txtEndOfSilenceAmplitude, 100, 12000, 1},
    {"EndOfSongTimer", &PausePage::txtEndOfSongTimer, 1, 600, 60},
    {"QuitAfterSilence", &PausePage::txtQuitAfterSilence, 3, 60, 1},
    {"IgnoreShortSongs", &PausePage::txtIgnoreShortSongs, 0, 120, 1},
};

class PauseNumbers : public testing::TestWithParam<NumberBox> {
 protected:
    PauseNumbers() { Rig.Control.LoadProviderSettings("Radio"); }

    bool Type(int32_t value) { return Type(std::to_string(value)); }
    bool Type(const std::string& text) { return Rig.Type(Rig.Form.*GetParam().Box, text); }
    std::string Stored() { return Rig.Stored(GetParam().Key); }

    PauseRig Rig;
};

TEST_P(PauseNumbers, TheBoundsPassAndAreWrittenAtOnce) {
    EXPECT_TRUE(Type(GetParam().Highest));
    EXPECT_EQ(Stored(), std::to_string(GetParam().Highest * GetParam().FileUnit));
    EXPECT_TRUE(Type(GetParam().Lowest));
    EXPECT_EQ(Stored(), std::to_string(GetParam().Lowest * GetParam().FileUnit));
    EXPECT_THAT(Rig.Told(), ElementsAre());
}

TEST_P(PauseNumbers, BeyondTheBoundsIsRefusedWithTheBounds) {
    const std::string reason =
        "not from " + std::to_string(GetParam().Lowest) + " to " + std::to_string(GetParam().Highest);
    EXPECT_FALSE(Type(GetParam().Lowest - 1));
    EXPECT_THAT(Rig.Told(), ElementsAre(reason));
    EXPECT_FALSE(Type(GetParam().Highest + 1));
    EXPECT_THAT(Rig.Told(), ElementsAre(reason));
    EXPECT_EQ(Stored(), "-");
}

TEST_P(PauseNumbers, WhatIsNoWholeNumberIsRefused) {
    EXPECT_FALSE(Type("much"));
    EXPECT_THAT(Rig.Told(), ElementsAre("no number"));
    EXPECT_FALSE(Type("50.5"));
    EXPECT_THAT(Rig.Told(), ElementsAre("not whole"));
    EXPECT_EQ(Stored(), "-");
}

TEST_P(PauseNumbers, WhatWasWrittenIsShownAgainByTheNextLoad) {
    TextBox& box = Rig.Form.*GetParam().Box;
    EXPECT_TRUE(Type(GetParam().Highest));
    Rig.Control.LoadProviderSettings("Other");
    EXPECT_NE(box.Text(), std::to_string(GetParam().Highest));
    Rig.Control.LoadProviderSettings("Radio");
    EXPECT_EQ(box.Text(), std::to_string(GetParam().Highest));
}

INSTANTIATE_TEST_SUITE_P(EachBox, PauseNumbers, testing::ValuesIn(NumberBoxes),
                         [](const auto& each) { return std::string(each.param.Key); });

class PauseHandlers : public testing::Test {
 protected:
    PauseHandlers() { Rig.Control.LoadProviderSettings("Radio"); }

    PauseRig Rig;
    frmMain& Form = Rig.Form;
    PauseSettings& Pause = Rig.Pause;
};

TEST_F(PauseHandlers, ALengthThatIsNoMultipleOf50IsRefused) {
    EXPECT_FALSE(Rig.Type(Form.txtLengthOfPause, "75"));
    EXPECT_THAT(Rig.Told(), ElementsAre("not a multiple of 50"));
    EXPECT_EQ(Pause.PauseBuffers, 1);
    EXPECT_TRUE(Rig.Type(Form.txtLengthOfPause, "100"));
    EXPECT_EQ(Pause.PauseBuffers, 2);
}

TEST_F(PauseHandlers, TimesAreHeldInSeconds) {
    EXPECT_TRUE(Rig.Type(Form.txtEndOfSongTimer, "7"));
    EXPECT_EQ(Pause.EndOfSongTimer, 420);
    EXPECT_TRUE(Rig.Type(Form.txtQuitAfterSilence, "7"));
    EXPECT_EQ(Pause.QuitAfterSilence, 420);
    EXPECT_TRUE(Rig.Type(Form.txtIgnoreShortSongs, "7"));
    EXPECT_EQ(Pause.IgnoreShortSongs, 7);
}

TEST_F(PauseHandlers, ARefusedTextThatAPageSetsIsTakenBack) {
    EXPECT_FALSE(Form.txtQuitAfterSilence.SetValueText("2"));
    EXPECT_EQ(Form.txtQuitAfterSilence.Text(), "5");
    EXPECT_EQ(Pause.QuitAfterSilence, 300);
}

TEST_F(PauseHandlers, ASilenceOfMinusOneTakesPauseRecognitionOutOfAction) {
    EXPECT_TRUE(Rig.Type(Form.txtSilenceAmplitude, "-1"));
    EXPECT_EQ(Pause.SilenceAmplitude, -1);
}

TEST_F(PauseHandlers, TypingASilenceLeavesTheThresholdInForce) {
    EXPECT_TRUE(Rig.Type(Form.txtSilenceAmplitude, "110"));
    EXPECT_EQ(Rig.Signal.ActiveThreshold, 100);
}

TEST_F(PauseHandlers, RaisingTheSilenceDragsTheEndOfSilenceAlong) {
    EXPECT_TRUE(Rig.Type(Form.txtSilenceAmplitude, "333"));
    EXPECT_EQ(Pause.SilenceAmplitude, 333);
    EXPECT_EQ(Pause.EndOfSilenceAmplitude, 400);
    EXPECT_EQ(Form.txtEndOfSilenceAmplitude.Text(), "400");
    EXPECT_EQ(Rig.Stored("SilenceAmplitude"), "333");
    EXPECT_EQ(Rig.Stored("EndOfSilenceAmplitude"), "400");
}

TEST_F(PauseHandlers, AnEqualEndOfSilenceStays) {
    EXPECT_TRUE(Rig.Type(Form.txtSilenceAmplitude, "120"));
    EXPECT_EQ(Pause.EndOfSilenceAmplitude, 120);
    EXPECT_EQ(Rig.Stored("EndOfSilenceAmplitude"), "-");
}

TEST_F(PauseHandlers, LoweringTheSilenceLeavesTheEndOfSilenceAlone) {
    EXPECT_TRUE(Rig.Type(Form.txtSilenceAmplitude, "10"));
    EXPECT_EQ(Pause.EndOfSilenceAmplitude, 120);
}

TEST_F(PauseHandlers, TheEndOfSilenceIsDraggedAlsoWhenTheSilenceIsRefused) {
    Pause.EndOfSilenceAmplitude = 50;
    EXPECT_FALSE(Rig.Type(Form.txtSilenceAmplitude, "5001"));
    EXPECT_EQ(Pause.SilenceAmplitude, 100);
    EXPECT_EQ(Pause.EndOfSilenceAmplitude, 120);
    EXPECT_EQ(Form.txtEndOfSilenceAmplitude.Text(), "120");
    EXPECT_EQ(Rig.Stored("SilenceAmplitude"), "-");
    EXPECT_EQ(Rig.Stored("EndOfSilenceAmplitude"), "120");
}

TEST_F(PauseHandlers, AnEndOfSilenceBelowTheSilenceIsRefused) {
    EXPECT_TRUE(Rig.Type(Form.txtSilenceAmplitude, "400"));
    EXPECT_FALSE(Rig.Type(Form.txtEndOfSilenceAmplitude, "399"));
    EXPECT_THAT(Rig.Told(), ElementsAre("not from 400 to 12000"));
    EXPECT_EQ(Pause.EndOfSilenceAmplitude, 480);
    EXPECT_TRUE(Rig.Type(Form.txtEndOfSilenceAmplitude, "400"));
    EXPECT_EQ(Pause.EndOfSilenceAmplitude, 400);
}

TEST_F(PauseHandlers, AnEndOfSilenceBelowOneIsRefusedWhateverTheSilence) {
    EXPECT_TRUE(Rig.Type(Form.txtSilenceAmplitude, "-1"));
    EXPECT_FALSE(Rig.Type(Form.txtEndOfSilenceAmplitude, "0"));
    EXPECT_THAT(Rig.Told(), ElementsAre("not from 1 to 12000"));
    EXPECT_TRUE(Rig.Type(Form.txtEndOfSilenceAmplitude, "1"));
}

TEST_F(PauseHandlers, AnEndOfSilenceDraggedToZeroIsReportedByItsOwnCheck) {
    Pause.SilenceAmplitude = -1;
    Pause.EndOfSilenceAmplitude = -1;
    EXPECT_TRUE(Rig.Type(Form.txtSilenceAmplitude, "0"));
    EXPECT_THAT(Rig.Told(), ElementsAre("not from 1 to 12000"));
    EXPECT_EQ(Pause.EndOfSilenceAmplitude, 0);
    EXPECT_EQ(Form.txtEndOfSilenceAmplitude.Text(), "0");
    EXPECT_EQ(Rig.Stored("EndOfSilenceAmplitude"), "-");
}

TEST_F(PauseHandlers, DetectionByPeakIsStoredByItsBox) {
    Form.chkDetectSilenceByPeak.Press();
    EXPECT_FALSE(Pause.DetectSilenceByPeak);
    EXPECT_EQ(Rig.Stored("DetectSilenceByPeak"), "0");
    Form.chkDetectSilenceByPeak.Press();
    EXPECT_TRUE(Pause.DetectSilenceByPeak);
    EXPECT_EQ(Rig.Stored("DetectSilenceByPeak"), "1");
}

TEST_F(PauseHandlers, IgnoredSilenceIsStoredAndCannotBeTimed) {
    Form.optEndOfSong[1].Press();
    Form.chkIgnoreSilence.Press();
    EXPECT_TRUE(Pause.IgnoreSilence);
    EXPECT_EQ(Rig.Stored("IgnoreSilence"), "1");
    EXPECT_FALSE(Form.txtQuitAfterSilence.Enabled());
    EXPECT_FALSE(Form.lblQuitAfterSilence[0].Enabled());
    EXPECT_FALSE(Form.lblQuitAfterSilence[1].Enabled());
    Form.chkIgnoreSilence.Press();
    EXPECT_FALSE(Pause.IgnoreSilence);
    EXPECT_EQ(Rig.Stored("IgnoreSilence"), "0");
    EXPECT_TRUE(Form.txtQuitAfterSilence.Enabled());
    EXPECT_TRUE(Form.lblQuitAfterSilence[0].Enabled());
    EXPECT_TRUE(Form.lblQuitAfterSilence[1].Enabled());
}

TEST_F(PauseHandlers, TheLengthOfAPauseCanBeSetWhereItCounts) {
    for (const size_t mode : {size_t{3}, size_t{0}, size_t{3}, size_t{1}, size_t{3}, size_t{2}}) {
        Form.optEndOfSong[mode].Press();
        const bool counts = mode != 3;
        EXPECT_EQ(Form.txtLengthOfPause.Enabled(), counts) << mode;
        EXPECT_EQ(Form.lblLengthOfPause[0].Enabled(), counts) << mode;
        EXPECT_EQ(Form.lblLengthOfPause[1].Enabled(), counts) << mode;
    }
}

TEST_F(PauseHandlers, TheChoiceToDuplicateIsStored) {
    Form.optEndOfSong[1].Press();
    Form.optDuplicatePartOfSong[1].Press();
    EXPECT_TRUE(Pause.DuplicatepartOfSong);
    EXPECT_EQ(Rig.Stored("DuplicatepartOfSong"), "1");
    Form.optDuplicatePartOfSong[0].Press();
    EXPECT_FALSE(Pause.DuplicatepartOfSong);
    EXPECT_EQ(Rig.Stored("DuplicatepartOfSong"), "0");
}

TEST_F(PauseHandlers, ASliderOfTheCutIsStoredInMilliseconds) {
    Form.sldEndOfSongThreshold(0).Value(-10);
    Form.sldEndOfSongThreshold(1).Value(1);
    EXPECT_THAT(Pause.EndOfSongThreshold, ElementsAre(5000, 500));
    EXPECT_EQ(Rig.Stored("EndOfSongThreshold0"), "5000");
    EXPECT_EQ(Rig.Stored("EndOfSongThreshold1"), "500");
}

TEST_F(PauseHandlers, ALabelShowsTheSecondsOfItsSlider) {
    EXPECT_EQ(Form.lblEndOfSongThreshold[3].Caption(), "3");
    Form.sldEndOfSongThreshold(0).Value(-5);
    EXPECT_EQ(Form.lblEndOfSongThreshold[3].Caption(), "2.5");
    Form.sldEndOfSongThreshold(1).Value(10);
    EXPECT_EQ(Form.lblEndOfSongThreshold[4].Caption(), "5");
    Form.sldEndOfSongThreshold(1).Value(0);
    EXPECT_EQ(Form.lblEndOfSongThreshold[4].Caption(), "0");
    Form.sldEndOfSongThreshold(1).Value(1);
    EXPECT_EQ(Form.lblEndOfSongThreshold[4].Caption(), "0.5");
}

TEST_F(PauseHandlers, DraggingASliderOnlyMovesItsLabel) {
    Form.sldEndOfSongThreshold(1).Drag(3);
    EXPECT_EQ(Form.lblEndOfSongThreshold[4].Caption(), "1.5");
    EXPECT_EQ(Pause.EndOfSongThreshold[1], 3000);
    EXPECT_EQ(Rig.SettingsFile(), std::nullopt);
}

TEST_F(PauseHandlers, TheGainFollowsTheScrollBarAndIsStoredWhenItIsLetGo) {
    Form.vscMultiplier.Drag(180);
    EXPECT_EQ(Form.lblMultiplier.Caption(), "180%");
    EXPECT_EQ(Pause.LevelMultiplier, 180);
    EXPECT_EQ(Rig.SettingsFile(), std::nullopt);
    Form.vscMultiplier.Value(180);
    EXPECT_EQ(Rig.Stored("MixerRadio", "LevelMultiplier"), "180");
    EXPECT_EQ(Rig.Stored("Radio", "LevelMultiplier"), "-");
}

TEST_F(PauseHandlers, WriteIntoTheSectionOfThePresentProvider) {
    Rig.Media.ProviderName = "Player";
    EXPECT_TRUE(Rig.Type(Form.txtIgnoreShortSongs, "40"));
    EXPECT_EQ(Rig.Stored("Player", "IgnoreShortSongs"), "40");
    EXPECT_EQ(Rig.Stored("Radio", "IgnoreShortSongs"), "-");
}

TEST_F(PauseHandlers, BetweenTwoProvidersWriteIntoTheSectionThatIsShown) {
    Rig.Media.ProviderName = "";
    EXPECT_TRUE(Rig.Type(Form.txtIgnoreShortSongs, "40"));
    EXPECT_EQ(Rig.Stored("Radio", "IgnoreShortSongs"), "40");
}

TEST(PauseControls, BeforeAnyProviderWriteIntoTheSectionOfNone) {
    PauseRig rig;
    rig.Media.ProviderName = "";
    EXPECT_TRUE(rig.Type(rig.Form.txtIgnoreShortSongs, "40"));
    EXPECT_EQ(rig.Stored("NoStationData", "IgnoreShortSongs"), "40");
}

TEST(PauseControls, BeforeAnyProviderShowTheGainThatHolds) {
    PauseRig rig;
    EXPECT_EQ(rig.Form.lblMultiplier.Caption(), "100%");
    EXPECT_EQ(rig.Pause.LevelMultiplier, 100);
}

/// What the page allows in a mode.
struct ModeRow {
    int32_t Mode;
    bool IgnoreSilence;
    bool Timer;
    bool Search;
    bool Duplicate;
    bool Thresholds;
    bool Polling;
};

constexpr ModeRow ModeRows[] = {
    {0, false, false, false, false, false, false},
    {1, true, false, true, true, true, true},
    {2, true, true, false, true, true, false},
};

class PauseModes : public testing::TestWithParam<ModeRow> {
 protected:
    PauseModes() {
        Rig.Control.LoadProviderSettings("Radio");
        // Come from elsewhere, so that every row is a change.
        Form.optEndOfSong[static_cast<size_t>((GetParam().Mode + 1) % 3)].Value(true);
        Form.optEndOfSong[static_cast<size_t>(GetParam().Mode)].Value(true);
    }

    PauseRig Rig;
    frmMain& Form = Rig.Form;
};

TEST_P(PauseModes, EnableTheControlsOfTheirRow) {
    const ModeRow& row = GetParam();
    EXPECT_EQ(Form.chkIgnoreSilence.Enabled(), row.IgnoreSilence);
    EXPECT_EQ(Form.txtIgnoreSilence.Enabled(), row.IgnoreSilence);
    EXPECT_EQ(Form.txtEndOfSongTimer.Enabled(), row.Timer);
    EXPECT_EQ(Form.optDuplicatePartOfSong[0].Enabled(), row.Search);
    EXPECT_EQ(Form.optDuplicatePartOfSong[1].Enabled(), row.Duplicate);
    EXPECT_EQ(Form.sldEndOfSongThreshold(0).Enabled(), row.Thresholds);
    EXPECT_EQ(Form.sldEndOfSongThreshold(1).Enabled(), row.Thresholds);
    for (const Label& label : Form.lblEndOfSongThreshold) {
        EXPECT_EQ(label.Enabled(), row.Thresholds) << label.Index();
    }
    EXPECT_EQ(Form.tmrGetMediaData.Running(), row.Polling);
}

TEST_P(PauseModes, AreHeldAndStored) {
    EXPECT_EQ(static_cast<int32_t>(Rig.Pause.EndOfSongDetection), GetParam().Mode);
    EXPECT_EQ(Rig.Stored("EndOfSongDetection"), std::to_string(GetParam().Mode));
}

INSTANTIATE_TEST_SUITE_P(EachMode, PauseModes, testing::ValuesIn(ModeRows),
                         [](const auto& each) { return "Mode" + std::to_string(each.param.Mode); });

TEST_F(PauseHandlers, EndOfSongByMediaDataSelectsTheSearchForAPause) {
    Form.optEndOfSong[2].Press();
    Form.optEndOfSong[1].Press();
    EXPECT_EQ(Form.optDuplicatePartOfSong.Selected(), 0);
    EXPECT_FALSE(Pause.DuplicatepartOfSong);
    EXPECT_EQ(Rig.Stored("DuplicatepartOfSong"), "0");
}

TEST_F(PauseHandlers, EndOfSongByTimeSelectsTheDuplication) {
    Form.optEndOfSong[2].Press();
    EXPECT_EQ(Form.optDuplicatePartOfSong.Selected(), 1);
    EXPECT_TRUE(Pause.DuplicatepartOfSong);
    EXPECT_EQ(Rig.Stored("DuplicatepartOfSong"), "1");
}

TEST_F(PauseHandlers, EndOfSongBySilenceLeavesTheChoiceToDuplicate) {
    Form.optEndOfSong[2].Press();
    Form.optEndOfSong[0].Press();
    EXPECT_EQ(Form.optDuplicatePartOfSong.Selected(), 1);
    EXPECT_TRUE(Pause.DuplicatepartOfSong);
}

TEST_F(PauseHandlers, EndOfSongByMediaDataSwitchesTheMediaDataOnAndRunsTheirHandler) {
    int runs = 0;
    Form.chkStationDataEnable.Click.Connect([&runs] { ++runs; });
    Form.optEndOfSong[1].Press();
    EXPECT_EQ(Form.chkStationDataEnable.Value(), 1);
    EXPECT_FALSE(Form.chkStationDataEnable.Enabled());
    EXPECT_EQ(runs, 1);
}

TEST_F(PauseHandlers, EndOfSongBySilenceFreesTheMediaDataAndLeavesThemOn) {
    Form.optEndOfSong[1].Press();
    Form.optEndOfSong[0].Press();
    EXPECT_TRUE(Form.chkStationDataEnable.Enabled());
    EXPECT_EQ(Form.chkStationDataEnable.Value(), 1);
}

TEST_F(PauseHandlers, EndOfSongByTimeLeavesTheMediaDataAsTheyAre) {
    Form.optEndOfSong[2].Press();
    EXPECT_TRUE(Form.chkStationDataEnable.Enabled());
    EXPECT_EQ(Form.chkStationDataEnable.Value(), 0);
    Form.optEndOfSong[1].Press();
    Form.optEndOfSong[2].Press();
    EXPECT_FALSE(Form.chkStationDataEnable.Enabled());
    EXPECT_EQ(Form.chkStationDataEnable.Value(), 1);
}

TEST_F(PauseHandlers, TheModeThatIsSetAlreadyRunsNothing) {
    Form.optEndOfSong[0].Press();
    EXPECT_EQ(Rig.SettingsFile(), std::nullopt);
}

class PauseCalibration : public PauseHandlers {
 protected:
    void Measure(int32_t low) {
        Form.lblHistogramMin.Caption(std::to_string(low));
        Form.cmdAutoPauseParams.Press();
    }
};

TEST_F(PauseCalibration, Noise20BelowTheNewSilenceIsDetectedByMean) {
    Measure(0);
    EXPECT_EQ(Pause.SilenceAmplitude, 20);
    EXPECT_EQ(Pause.EndOfSilenceAmplitude, 24);
    EXPECT_FALSE(Pause.DetectSilenceByPeak);
    EXPECT_EQ(Form.chkDetectSilenceByPeak.Value(), 0);
}

TEST_F(PauseCalibration, ALowOf200IsNoise) {
    Measure(200);
    EXPECT_EQ(Form.txtSilenceAmplitude.Text(), "220");
    EXPECT_EQ(Form.txtEndOfSilenceAmplitude.Text(), "264");
    EXPECT_FALSE(Pause.DetectSilenceByPeak);
}

TEST_F(PauseCalibration, ALowOf201IsAHum) {
    Form.chkDetectSilenceByPeak.Value(0);
    Measure(201);
    EXPECT_EQ(Form.txtSilenceAmplitude.Text(), "221");
    EXPECT_EQ(Form.txtEndOfSilenceAmplitude.Text(), "265");
    EXPECT_TRUE(Pause.DetectSilenceByPeak);
    EXPECT_EQ(Form.chkDetectSilenceByPeak.Value(), 1);
}

TEST_F(PauseCalibration, ALowOf2000IsStillAHum) {
    Measure(2000);
    EXPECT_EQ(Pause.SilenceAmplitude, 2200);
    EXPECT_EQ(Pause.EndOfSilenceAmplitude, 2640);
    EXPECT_TRUE(Pause.DetectSilenceByPeak);
}

TEST_F(PauseCalibration, ALowOf2001IsTooLoudAndChangesNothing) {
    Measure(2001);
    EXPECT_EQ(Rig.Computer.Dialogs.Boxes,
              (std::vector<ShownBox>{{BoxKind::Message, "too loud", DialogIcon::Exclamation, "", ""}}));
    EXPECT_EQ(Pause.SilenceAmplitude, 100);
    EXPECT_EQ(Form.txtSilenceAmplitude.Text(), "100");
    EXPECT_EQ(Rig.SettingsFile(), std::nullopt);
}

TEST_F(PauseCalibration, WithoutAMeasurementItIsTooLoud) {
    Form.cmdAutoPauseParams.Press();
    EXPECT_THAT(Rig.Told(), ElementsAre("too loud"));
    EXPECT_EQ(Pause.SilenceAmplitude, 100);
}

TEST_F(PauseCalibration, AMediaMarkOfTwoIsTakenForASilence) {
    Measure(2);
    EXPECT_EQ(Pause.SilenceAmplitude, 22);
}

TEST_F(PauseCalibration, AHumIsRounded) {
    for (const auto& [low, silence] : {std::pair{204, 224}, {206, 227}, {205, 226}}) {
        Measure(low);
        EXPECT_EQ(Pause.SilenceAmplitude, silence) << low;
    }
}

TEST_F(PauseCalibration, TheEndOfSilenceFollowsAlsoDownwards) {
    EXPECT_TRUE(Rig.Type(Form.txtEndOfSilenceAmplitude, "9000"));
    Measure(300);
    EXPECT_EQ(Pause.SilenceAmplitude, 330);
    EXPECT_EQ(Pause.EndOfSilenceAmplitude, 396);
}

TEST_F(PauseCalibration, StoresWhatItFound) {
    Measure(80);
    EXPECT_EQ(Rig.Stored("SilenceAmplitude"), "100");
    EXPECT_EQ(Rig.Stored("EndOfSilenceAmplitude"), "120");
    EXPECT_EQ(Rig.Stored("DetectSilenceByPeak"), "0");
}

TEST_F(PauseCalibration, ReportsTheNewValuesAndTheWayOfMeasuring) {
    Measure(80);
    EXPECT_EQ(Rig.Computer.Dialogs.Boxes, (std::vector<ShownBox>{{BoxKind::Message, "now 100 and 120 by mean",
                                                                  DialogIcon::Exclamation, "", ""}}));
    Rig.Computer.Dialogs.Boxes.clear();
    Measure(1000);
    EXPECT_THAT(Rig.Told(), ElementsAre("now 1100 and 1320 by peak"));
}

}  // namespace
}  // namespace Corvetape::Test
