#include "recording/level_display.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const LevelLine& TopLine(const LevelLines& lines) {
    return lines.back();
}

/// A display on its tab, with nothing in the history.
class DisplayRig {
 public:
    DisplayRig() { Form.tbsMain.Select("TAB_AUDIO"); }

    void Tick() { Form.tmrVU.Timer.Raise(); }

    void Append(int32_t first, size_t count) {
        for (size_t i = 0; i < count; ++i) Signal.History.Append(first + static_cast<int32_t>(i));
    }

    const LevelLines& Column(size_t column) const { return Display.Histogram().Columns[column]; }

    /// The level up to which a column is blue.
    int32_t BlueUpTo(size_t column) const {
        const LevelLines& lines = Column(column);
        if (lines.empty() || lines.front().Ink != LevelColour::Blue) return 0;
        return static_cast<int32_t>(lines.front().To);
    }

    frmMain Form;
    SignalState Signal;
    PauseSettings Pause;
    LevelDisplay Display{Form, Signal, Pause};
};

TEST(LevelMeter, APeakUpToHalfOfFullScaleIsYellowWithWhiteAbove) {
    EXPECT_THAT(MeterLines(1000), ElementsAre(LevelLine{0, 1000, LevelColour::Yellow},
                                              LevelLine{1000, FullScale, LevelColour::White}));
}

TEST(LevelMeter, APeakOfExactlyHalfOfFullScaleShowsNoGreen) {
    EXPECT_THAT(MeterLines(16384), ElementsAre(LevelLine{0, 16384, LevelColour::Yellow},
                                               LevelLine{16384, FullScale, LevelColour::White}));
}

TEST(LevelMeter, APeakAboveHalfOfFullScaleIsGreenFromThere) {
    EXPECT_THAT(MeterLines(16385), ElementsAre(LevelLine{0, 16384, LevelColour::Yellow},
                                               LevelLine{16384, 16385, LevelColour::Green},
                                               LevelLine{16385, FullScale, LevelColour::White}));
}

TEST(LevelMeter, APeakOf27852ShowsNoRed) {
    EXPECT_THAT(MeterLines(27852), ElementsAre(LevelLine{0, 16384, LevelColour::Yellow},
                                               LevelLine{16384, 27852, LevelColour::Green},
                                               LevelLine{27852, FullScale, LevelColour::White}));
}

TEST(LevelMeter, APeakOf27853ShowsRedFrom85PerCentOn) {
    EXPECT_THAT(MeterLines(27853), ElementsAre(LevelLine{0, 16384, LevelColour::Yellow},
                                               LevelLine{16384, 27852.8, LevelColour::Green},
                                               LevelLine{27852.8, 27853, LevelColour::Red},
                                               LevelLine{27853, FullScale, LevelColour::White}));
}

TEST(LevelMeter, NoPeakIsAllWhite) {
    EXPECT_THAT(MeterLines(0), ElementsAre(LevelLine{0, FullScale, LevelColour::White}));
}

TEST(LevelMeter, FullScaleHasNoWhiteLeft) {
    EXPECT_EQ(TopLine(MeterLines(FullScale)), (LevelLine{27852.8, FullScale, LevelColour::Red}));
}

TEST(LevelMeter, HasItsBarsAtTheirPlaces) {
    const DisplayRig rig;
    EXPECT_EQ(rig.Display.Meter()[0].Left, 0);
    EXPECT_EQ(rig.Display.Meter()[0].Right, 8);
    EXPECT_EQ(rig.Display.Meter()[1].Left, 10);
    EXPECT_EQ(rig.Display.Meter()[1].Right, 19);
}

TEST(HeldPeak, StaysForTwoSecondsUnlessAHigherOneComes) {
    HeldPeak peak;
    EXPECT_EQ(peak.Follow(500), 500);
    EXPECT_EQ(peak.Follow(800), 800);
    for (int picture = 1; picture < HeldPeak::Pictures; ++picture) EXPECT_EQ(peak.Follow(100), 800);
    EXPECT_EQ(peak.Follow(100), 100);
    EXPECT_EQ(peak.Follow(0), 100);
    peak.Clear();
    EXPECT_EQ(peak.Follow(0), 0);
}

TEST(LevelMeter, HoldsThePeaksOfBothSidesUntilTheTabIsEnteredAgain) {
    DisplayRig rig;
    rig.Signal.PeakLeft = 20'000;
    rig.Signal.PeakRight = 3'000;
    rig.Tick();
    rig.Tick();
    EXPECT_EQ(rig.Display.Meter()[0].Held, 20'000);
    EXPECT_EQ(rig.Display.Meter()[1].Held, 3'000);
    EXPECT_EQ(rig.Display.Meter()[0].Lines, MeterLines(0)) << "the bar itself falls at once";
    rig.Form.tbsMain.Select("TAB_ABOUT");
    rig.Form.tbsMain.Select("TAB_AUDIO");
    rig.Tick();
    EXPECT_EQ(rig.Display.Meter()[0].Held, 0);
}

TEST(LevelMeter, ATickShowsTheLeftPeakInTheLeftBarAndClearsBothPeaks) {
    DisplayRig rig;
    rig.Signal.PeakLeft = 100;
    rig.Signal.PeakRight = 200;
    rig.Tick();
    EXPECT_EQ(rig.Display.Meter()[0].Lines, MeterLines(100));
    EXPECT_EQ(rig.Display.Meter()[1].Lines, MeterLines(200));
    EXPECT_EQ(rig.Signal.PeakLeft, 0);
    EXPECT_EQ(rig.Signal.PeakRight, 0);
}

TEST(LevelHistogram, TheEndOfASongIsABlackLineFromTopToBottom) {
    EXPECT_THAT(HistogramLines(-1, 100), ElementsAre(LevelLine{0, FullScale, LevelColour::Black}));
}

TEST(LevelHistogram, ASoundIsBlueWithWhiteAbove) {
    EXPECT_THAT(HistogramLines(101, 100), ElementsAre(LevelLine{0, 101, LevelColour::Blue},
                                                      LevelLine{101, FullScale, LevelColour::White}));
}

TEST(LevelHistogram, ALevelEqualToTheThresholdHasTheGreyOfSilenceAbove) {
    EXPECT_THAT(HistogramLines(100, 100), ElementsAre(LevelLine{0, 100, LevelColour::Blue},
                                                      LevelLine{100, FullScale, LevelColour::LightGrey}));
}

TEST(LevelHistogram, ALevelOfZeroIsGreyAllOver) {
    EXPECT_THAT(HistogramLines(0, 100), ElementsAre(LevelLine{0, FullScale, LevelColour::LightGrey}));
}

TEST(LevelHistogram, ALevelOfZeroIsWhiteIfNothingCanBeSilent) {
    EXPECT_THAT(HistogramLines(0, -1), ElementsAre(LevelLine{0, FullScale, LevelColour::White}));
}

TEST(LevelHistogram, TheStartOfASongIsGreyUpToItsLevelAndRedAbove) {
    EXPECT_THAT(HistogramLines(-5000, 100), ElementsAre(LevelLine{0, 5000, LevelColour::MidGrey},
                                                        LevelLine{5000, FullScale, LevelColour::Red}));
}

TEST(LevelHistogram, AChangeOfMediaDataIsNearlyAllRed) {
    EXPECT_THAT(HistogramLines(-2, 100), ElementsAre(LevelLine{0, 2, LevelColour::MidGrey},
                                                     LevelLine{2, FullScale, LevelColour::Red}));
}

TEST(LevelHistogram, TheColoursAreTheOnesOfThePicture) {
    EXPECT_EQ(LevelColour::LightGrey, (Colour{224, 224, 224}));
    EXPECT_EQ(LevelColour::MidGrey, (Colour{128, 128, 128}));
    EXPECT_EQ(LevelColour::Yellow, (Colour{255, 255, 0}));
    EXPECT_EQ(LevelColour::Green, (Colour{0, 255, 0}));
    EXPECT_EQ(LevelColour::Red, (Colour{255, 0, 0}));
    EXPECT_EQ(LevelColour::White, (Colour{255, 255, 255}));
    EXPECT_EQ(LevelColour::Blue, (Colour{0, 0, 255}));
    EXPECT_EQ(LevelColour::Black, (Colour{0, 0, 0}));
}

TEST(LevelDisplay, AnEmptyHistoryDrawsNoColumnAndShowsTheStartingValues) {
    DisplayRig rig;
    rig.Tick();
    EXPECT_EQ(rig.Display.Histogram().DrawnEnd, 0U);
    EXPECT_EQ(rig.Form.lblHistogramMin.Caption(), "32768");
    EXPECT_EQ(rig.Form.lblHistogramMax.Caption(), "0");
}

TEST(LevelDisplay, TheSilenceOfTheSettingsDecidesTheColourAboveALevel) {
    DisplayRig rig;
    rig.Pause.SilenceAmplitude = 500;
    rig.Append(500, 2);
    rig.Tick();
    EXPECT_EQ(TopLine(rig.Column(0)).Ink, LevelColour::LightGrey);
    EXPECT_EQ(TopLine(rig.Column(1)).Ink, LevelColour::White);
}

TEST(LevelDisplay, FewerThan200EntriesAreDrawnFromTheFirstColumnEachTime) {
    DisplayRig rig;
    rig.Append(1000, 195);
    rig.Tick();
    rig.Append(2000, 4);
    rig.Tick();
    const HistogramPicture& picture = rig.Display.Histogram();
    EXPECT_FALSE(picture.Scrolled);
    EXPECT_EQ(picture.FirstDrawn, 0U);
    EXPECT_EQ(picture.DrawnEnd, 199U);
    EXPECT_EQ(rig.BlueUpTo(194), 1194);
    EXPECT_EQ(rig.BlueUpTo(195), 2000);
    EXPECT_THAT(rig.Column(199), IsEmpty());
}

TEST(LevelDisplay, FewerThan200EntriesLeaveTheWishForARedrawStanding) {
    DisplayRig rig;
    rig.Append(1000, 199);
    rig.Tick();
    EXPECT_TRUE(rig.Signal.History.HistogramRedraw);
    rig.Append(1, 1);
    rig.Tick();
    EXPECT_FALSE(rig.Signal.History.HistogramRedraw);
    EXPECT_FALSE(rig.Display.Histogram().Scrolled);
}

TEST(LevelDisplay, SelectingTheTabShowsAtOnceWhatWasCollectedWhileItWasAway) {
    DisplayRig rig;
    rig.Form.tbsMain.Select("TAB_RECORDING");
    rig.Append(1000, 200);
    rig.Form.tbsMain.Select("TAB_AUDIO");
    rig.Tick();
    EXPECT_EQ(rig.Display.Histogram().FirstDrawn, 0U);
    EXPECT_EQ(rig.BlueUpTo(0), 1000);
    EXPECT_EQ(rig.BlueUpTo(199), 1199);
}

TEST(LevelDisplay, AFullPictureScrollsByFourColumnsAndDrawsOnlyTheNewOnes) {
    DisplayRig rig;
    rig.Append(1000, 200);
    rig.Tick();
    rig.Append(2000, 4);
    rig.Tick();
    const HistogramPicture& picture = rig.Display.Histogram();
    EXPECT_TRUE(picture.Scrolled);
    EXPECT_EQ(picture.FirstDrawn, 195U);
    EXPECT_EQ(picture.DrawnEnd, 200U);
    for (size_t column = 0; column < 200; ++column) {
        EXPECT_EQ(rig.BlueUpTo(column), rig.Signal.History[column]) << column;
    }
}

TEST(LevelDisplay, ScrollingDoesNotDrawOlderColumnsAnew) {
    DisplayRig rig;
    rig.Append(1000, 200);
    rig.Tick();
    rig.Pause.SilenceAmplitude = 3000;
    rig.Append(2000, 4);
    rig.Tick();
    EXPECT_EQ(TopLine(rig.Column(194)).Ink, LevelColour::White);
    EXPECT_EQ(TopLine(rig.Column(195)).Ink, LevelColour::LightGrey);
}

TEST(LevelDisplay, AMarkInThePastHasTheWholePictureDrawnOnce) {
    DisplayRig rig;
    rig.Append(1000, 200);
    rig.Tick();
    rig.Signal.History.ReplaceLast(MarkMediaChange);
    rig.Append(2000, 4);
    rig.Tick();
    EXPECT_FALSE(rig.Display.Histogram().Scrolled);
    EXPECT_EQ(rig.Display.Histogram().FirstDrawn, 0U);
    EXPECT_EQ(rig.Column(195), HistogramLines(-2, 100));
    rig.Append(3000, 4);
    rig.Tick();
    EXPECT_TRUE(rig.Display.Histogram().Scrolled);
    rig.Signal.History.ReplaceLast(MarkSongEnd);
    rig.Tick();
    EXPECT_FALSE(rig.Display.Histogram().Scrolled);
}

TEST(LevelDisplay, ShowsTheExtremeLevelsOfTenSeconds) {
    DisplayRig rig;
    for (const int32_t level : {700, 300, 900}) rig.Signal.History.Append(level);
    rig.Tick();
    EXPECT_EQ(rig.Form.lblHistogramMin.Caption(), "300");
    EXPECT_EQ(rig.Form.lblHistogramMax.Caption(), "900");
    EXPECT_EQ(rig.Display.HistogramMin(), 300);
    EXPECT_EQ(rig.Display.HistogramMax(), 900);
}

TEST(LevelDisplay, TheExtremesForgetWhatIsOlderThanTenSeconds) {
    DisplayRig rig;
    rig.Append(5, 1);
    rig.Append(1000, 200);
    rig.Tick();
    EXPECT_EQ(rig.Form.lblHistogramMin.Caption(), "1000");
}

TEST(LevelDisplay, TheEndOfASongIsNoLevel) {
    DisplayRig rig;
    for (const int32_t entry : {700, -1, 900}) rig.Signal.History.Append(entry);
    rig.Tick();
    EXPECT_EQ(rig.Form.lblHistogramMin.Caption(), "700");
}

TEST(LevelDisplay, TheStartOfASongCountsWithItsLevel) {
    DisplayRig rig;
    for (const int32_t entry : {700, -50, -1200}) rig.Signal.History.Append(entry);
    rig.Tick();
    EXPECT_EQ(rig.Form.lblHistogramMin.Caption(), "50");
    EXPECT_EQ(rig.Form.lblHistogramMax.Caption(), "1200");
}

TEST(LevelDisplay, AChangeOfMediaDataGivesAMinimumOfTwo) {
    DisplayRig rig;
    for (const int32_t entry : {700, -2, 900}) rig.Signal.History.Append(entry);
    rig.Tick();
    EXPECT_EQ(rig.Form.lblHistogramMin.Caption(), "2");
}

TEST(LevelDisplay, RunsOnlyWhileItsTabIsSelected) {
    DisplayRig rig;
    EXPECT_TRUE(rig.Form.tmrVU.Running());
    EXPECT_EQ(rig.Form.tmrVU.Interval(), 200);
    rig.Form.tbsMain.Select("TAB_PAUSE");
    EXPECT_FALSE(rig.Form.tmrVU.Running());
    rig.Form.tbsMain.Select("TAB_AUDIO");
    EXPECT_TRUE(rig.Form.tmrVU.Running());
}

TEST(LevelDisplay, SelectingTheTabClearsThePeaksAndAsksForARedraw) {
    DisplayRig rig;
    rig.Form.tbsMain.Select("TAB_PAUSE");
    rig.Signal.PeakLeft = 100;
    rig.Signal.PeakRight = 200;
    rig.Signal.History.HistogramRedraw = false;
    rig.Form.tbsMain.Select("TAB_AUDIO");
    EXPECT_EQ(rig.Signal.PeakLeft, 0);
    EXPECT_EQ(rig.Signal.PeakRight, 0);
    EXPECT_TRUE(rig.Signal.History.HistogramRedraw);
}

TEST(LevelDisplay, LeavingTheTabLeavesThePeaksAlone) {
    DisplayRig rig;
    rig.Signal.PeakLeft = 100;
    rig.Form.tbsMain.Select("TAB_PAUSE");
    EXPECT_EQ(rig.Signal.PeakLeft, 100);
}

TEST(LevelDisplay, NotifiesTheScreenOfEachTick) {
    DisplayRig rig;
    int ticks = 0;
    rig.Display.Drawn.Connect([&ticks] { ++ticks; });
    rig.Tick();
    rig.Display.HistogramClicked();
    rig.Tick();
    EXPECT_EQ(ticks, 2);
}

TEST(FrozenHistogram, StandsStillWhileTheMeterGoesOn) {
    DisplayRig rig;
    rig.Append(1000, 200);
    rig.Tick();
    rig.Display.HistogramClicked();
    EXPECT_TRUE(rig.Display.HistogramFrozen());
    rig.Append(50, 4);
    rig.Signal.PeakLeft = 20000;
    rig.Tick();
    EXPECT_EQ(rig.Display.Meter()[0].Lines, MeterLines(20000));
    EXPECT_EQ(rig.Signal.PeakLeft, 0);
    EXPECT_EQ(rig.BlueUpTo(199), 1199);
    EXPECT_EQ(rig.Form.lblHistogramMin.Caption(), "1000");
}

TEST(FrozenHistogram, ASecondClickLetsItGoOnWithAFullRedraw) {
    DisplayRig rig;
    rig.Append(1000, 200);
    rig.Tick();
    rig.Display.HistogramClicked();
    EXPECT_FALSE(rig.Signal.History.HistogramRedraw);
    rig.Append(2000, 60);
    rig.Tick();
    rig.Display.HistogramClicked();
    EXPECT_FALSE(rig.Display.HistogramFrozen());
    EXPECT_TRUE(rig.Signal.History.HistogramRedraw);
    rig.Tick();
    EXPECT_FALSE(rig.Display.Histogram().Scrolled);
    EXPECT_EQ(rig.BlueUpTo(140), 2000);
}

TEST(FrozenHistogram, FreezingWithdrawsAWishForARedraw) {
    DisplayRig rig;
    rig.Signal.History.HistogramRedraw = true;
    rig.Display.HistogramClicked();
    EXPECT_FALSE(rig.Signal.History.HistogramRedraw);
}

TEST(FrozenHistogram, ShowsTheLevelUnderTheMouseAsItWasWhenItFroze) {
    DisplayRig rig;
    rig.Append(1000, 200);
    rig.Tick();
    rig.Display.HistogramClicked();
    rig.Append(9000, 10);
    rig.Display.HistogramMouseMove(7);
    EXPECT_EQ(rig.Display.HistogramToolTip(), "1007");
    rig.Display.HistogramMouseMove(199);
    EXPECT_EQ(rig.Display.HistogramToolTip(), "1199");
}

TEST(FrozenHistogram, ShowsTheLevelOfASongStartAndTheMinimumForMarksBelowIt) {
    DisplayRig rig;
    for (const int32_t entry : {700, -1, -900, 650}) rig.Signal.History.Append(entry);
    rig.Tick();
    rig.Display.HistogramClicked();
    rig.Display.HistogramMouseMove(2);
    EXPECT_EQ(rig.Display.HistogramToolTip(), "900");
    rig.Display.HistogramMouseMove(1);
    EXPECT_EQ(rig.Display.HistogramToolTip(), "650");
}

TEST(FrozenHistogram, HasNoToolTipBesideThePicture) {
    DisplayRig rig;
    rig.Append(1000, 200);
    rig.Tick();
    rig.Display.HistogramClicked();
    rig.Display.HistogramMouseMove(200);
    EXPECT_EQ(rig.Display.HistogramToolTip(), "");
}

TEST(FrozenHistogram, LosesItsToolTipWhenItGoesOn) {
    DisplayRig rig;
    rig.Append(1000, 200);
    rig.Tick();
    rig.Display.HistogramMouseMove(7);
    EXPECT_EQ(rig.Display.HistogramToolTip(), "");
    rig.Display.HistogramClicked();
    rig.Display.HistogramMouseMove(7);
    rig.Display.HistogramClicked();
    EXPECT_EQ(rig.Display.HistogramToolTip(), "");
}

TEST(FrozenHistogram, IsClickedAndAskedForItsLevelsThroughThePicture) {
    DisplayRig rig;
    rig.Append(1000, 200);
    rig.Tick();
    rig.Form.picHistogram.Press();
    EXPECT_TRUE(rig.Display.HistogramFrozen());
    rig.Form.picHistogram.MouseMove.Raise(-1);
    EXPECT_EQ(rig.Form.picHistogram.ToolTip(), "");
    rig.Form.picHistogram.MouseMove.Raise(0);
    EXPECT_EQ(rig.Form.picHistogram.ToolTip(), "1000");
    rig.Form.picHistogram.Press();
    EXPECT_EQ(rig.Form.picHistogram.ToolTip(), "");
}

}  // namespace
}  // namespace Corvetape::Test
