#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "pause_rig.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char* FullSection =
    "[Radio]\n"
    "LengthOfPause=1500\nIgnorePauseFor=250\nSilenceAmplitude=300\nEndOfSilenceAmplitude=900\n"
    "DetectSilenceByPeak=0\nPauseDetectionTolerance=7\nPauseDetectionToleranceAds=8\n"
    "AllowedPauseAfterEndOfSong=9\nIgnoreSilence=1\nEndOfSongDetection=2\nDuplicatepartOfSong=1\n"
    "EndOfSongThreshold0=1500\nEndOfSongThreshold1=4500\nEndOfSongTimer=1200\nQuitAfterSilence=10\n"
    "IgnoreShortSongs=60\n"
    "[MixerRadio]\nLevelMultiplier=170\n";

TEST(PauseLoading, AnUnknownProviderGetsTheDefaults) {
    PauseRig rig;
    rig.Control.LoadProviderSettings("Radio");
    EXPECT_EQ(rig.Pause.PauseBuffers, 1);
    EXPECT_EQ(rig.Pause.IgnorePauseBuffers, 0);
    EXPECT_EQ(rig.Pause.SilenceAmplitude, 100);
    EXPECT_EQ(rig.Pause.EndOfSilenceAmplitude, 120);
    EXPECT_TRUE(rig.Pause.DetectSilenceByPeak);
    EXPECT_EQ(rig.Pause.PauseDetectionTolerance, 3);
    EXPECT_EQ(rig.Pause.PauseDetectionToleranceAds, 1);
    EXPECT_EQ(rig.Pause.AllowedPauseAfterEndOfSong, 0);
    EXPECT_FALSE(rig.Pause.IgnoreSilence);
    EXPECT_EQ(rig.Pause.EndOfSongDetection, EndOfSong::Silence);
    EXPECT_FALSE(rig.Pause.DuplicatepartOfSong);
    EXPECT_THAT(rig.Pause.EndOfSongThreshold, ElementsAre(3000, 3000));
    EXPECT_EQ(rig.Pause.EndOfSongTimer, 300);
    EXPECT_EQ(rig.Pause.QuitAfterSilence, 300);
    EXPECT_EQ(rig.Pause.IgnoreShortSongs, 35);
    EXPECT_EQ(rig.Pause.LevelMultiplier, 100);
}

TEST(PauseLoading, TheDefaultsReplaceWhatAnotherProviderHad) {
    PauseRig rig(FullSection);
    rig.Control.LoadProviderSettings("Radio");
    rig.Media.MixerSectionName = "MixerOther";
    rig.Control.LoadProviderSettings("Other");
    EXPECT_EQ(rig.Pause.PauseBuffers, 1);
    EXPECT_EQ(rig.Pause.SilenceAmplitude, 100);
    EXPECT_TRUE(rig.Pause.DetectSilenceByPeak);
    EXPECT_FALSE(rig.Pause.IgnoreSilence);
    EXPECT_EQ(rig.Pause.EndOfSongDetection, EndOfSong::Silence);
    EXPECT_FALSE(rig.Pause.DuplicatepartOfSong);
    EXPECT_THAT(rig.Pause.EndOfSongThreshold, ElementsAre(3000, 3000));
    EXPECT_EQ(rig.Pause.LevelMultiplier, 100);
    EXPECT_TRUE(rig.Form.txtQuitAfterSilence.Enabled());
}

TEST(PauseLoading, TheDefaultsAreShownInTheControls) {
    PauseRig rig;
    rig.Control.LoadProviderSettings("Radio");
    EXPECT_EQ(rig.Form.txtLengthOfPause.Text(), "50");
    EXPECT_EQ(rig.Form.txtSilenceAmplitude.Text(), "100");
    EXPECT_EQ(rig.Form.txtEndOfSilenceAmplitude.Text(), "120");
    EXPECT_EQ(rig.Form.chkDetectSilenceByPeak.Value(), 1);
    EXPECT_EQ(rig.Form.chkIgnoreSilence.Value(), 0);
    EXPECT_EQ(rig.Form.optEndOfSong.Selected(), 0);
    EXPECT_EQ(rig.Form.optDuplicatePartOfSong.Selected(), 0);
    EXPECT_EQ(rig.Form.sldEndOfSongThreshold(0).Value(), -6);
    EXPECT_EQ(rig.Form.sldEndOfSongThreshold(1).Value(), 6);
    EXPECT_EQ(rig.Form.txtEndOfSongTimer.Text(), "5");
    EXPECT_EQ(rig.Form.txtQuitAfterSilence.Text(), "5");
    EXPECT_EQ(rig.Form.txtIgnoreShortSongs.Text(), "35");
    EXPECT_EQ(rig.Form.vscMultiplier.Value(), 100);
    EXPECT_EQ(rig.Form.lblMultiplier.Caption(), "100%");
}

TEST(PauseLoading, TurnsEachValueIntoTheUnitOfTheSignalPath) {
    PauseRig rig(FullSection);
    rig.Control.LoadProviderSettings("Radio");
    EXPECT_EQ(rig.Pause.PauseBuffers, 30);
    EXPECT_EQ(rig.Pause.IgnorePauseBuffers, 5);
    EXPECT_EQ(rig.Pause.SilenceAmplitude, 300);
    EXPECT_EQ(rig.Pause.EndOfSilenceAmplitude, 900);
    EXPECT_FALSE(rig.Pause.DetectSilenceByPeak);
    EXPECT_TRUE(rig.Pause.IgnoreSilence);
    EXPECT_EQ(rig.Pause.EndOfSongDetection, EndOfSong::FixedTime);
    EXPECT_TRUE(rig.Pause.DuplicatepartOfSong);
    EXPECT_THAT(rig.Pause.EndOfSongThreshold, ElementsAre(1500, 4500));
    EXPECT_EQ(rig.Pause.EndOfSongTimer, 1200);
    EXPECT_EQ(rig.Pause.QuitAfterSilence, 600);
    EXPECT_EQ(rig.Pause.IgnoreShortSongs, 60);
    EXPECT_EQ(rig.Pause.LevelMultiplier, 170);
}

TEST(PauseLoading, ShowsEachValueInItsControl) {
    PauseRig rig(FullSection);
    rig.Control.LoadProviderSettings("Radio");
    EXPECT_EQ(rig.Form.txtLengthOfPause.Text(), "1500");
    EXPECT_EQ(rig.Form.txtSilenceAmplitude.Text(), "300");
    EXPECT_EQ(rig.Form.txtEndOfSilenceAmplitude.Text(), "900");
    EXPECT_EQ(rig.Form.chkDetectSilenceByPeak.Value(), 0);
    EXPECT_EQ(rig.Form.chkIgnoreSilence.Value(), 1);
    EXPECT_EQ(rig.Form.optEndOfSong.Selected(), 2);
    EXPECT_EQ(rig.Form.optDuplicatePartOfSong.Selected(), 1);
    EXPECT_EQ(rig.Form.sldEndOfSongThreshold(0).Value(), -3);
    EXPECT_EQ(rig.Form.sldEndOfSongThreshold(1).Value(), 9);
    EXPECT_EQ(rig.Form.txtEndOfSongTimer.Text(), "20");
    EXPECT_EQ(rig.Form.txtQuitAfterSilence.Text(), "10");
    EXPECT_EQ(rig.Form.txtIgnoreShortSongs.Text(), "60");
    EXPECT_EQ(rig.Form.vscMultiplier.Value(), 170);
    EXPECT_EQ(rig.Form.lblMultiplier.Caption(), "170%");
}

TEST(PauseLoading, KeepsTheThreeValuesWithoutEffect) {
    PauseRig rig(FullSection);
    rig.Control.LoadProviderSettings("Radio");
    EXPECT_EQ(rig.Pause.PauseDetectionTolerance, 7);
    EXPECT_EQ(rig.Pause.PauseDetectionToleranceAds, 8);
    EXPECT_EQ(rig.Pause.AllowedPauseAfterEndOfSong, 9);
}

TEST(PauseLoading, AnUnknownProviderLeavesNoSectionBehind) {
    PauseRig rig;
    rig.Control.LoadProviderSettings("Radio");
    EXPECT_EQ(rig.SettingsFile(), std::nullopt);
}

TEST(PauseLoading, WritesNothingWhateverItFinds) {
    PauseRig rig(FullSection);
    rig.Control.LoadProviderSettings("Radio");
    rig.Control.LoadProviderSettings("Other");
    rig.Control.LoadProviderSettings("Radio");
    EXPECT_EQ(rig.SettingsFile(), FullSection);
}

TEST(PauseLoading, WritesNoGainIntoTheMixerSectionOfAnUnknownProvider) {
    PauseRig rig(FullSection);
    rig.Control.LoadProviderSettings("Radio");
    rig.Media.MixerSectionName = "MixerOther";
    rig.Control.LoadProviderSettings("Other");
    EXPECT_EQ(rig.Pause.LevelMultiplier, 100);
    EXPECT_EQ(rig.SettingsFile(), FullSection);
}

TEST(PauseLoading, ASectionExistsOnceSomethingWasChanged) {
    PauseRig rig;
    rig.Control.LoadProviderSettings("Radio");
    rig.Form.chkDetectSilenceByPeak.Press();
    ASSERT_TRUE(rig.SettingsFile().has_value());
    EXPECT_THAT(*rig.SettingsFile(), HasSubstr("[Radio]"));
    EXPECT_EQ(rig.Stored("DetectSilenceByPeak"), "0");
    EXPECT_EQ(rig.Stored("LengthOfPause"), "-");
}

TEST(PauseLoading, ShowsNoBoxForValuesThatNoControlWouldTake) {
    PauseRig rig("[Radio]\nLengthOfPause=75\nSilenceAmplitude=9000\nQuitAfterSilence=1\n");
    rig.Control.LoadProviderSettings("Radio");
    EXPECT_THAT(rig.Told(), ElementsAre());
    EXPECT_EQ(rig.Pause.SilenceAmplitude, 9000);
    EXPECT_EQ(rig.Pause.QuitAfterSilence, 60);
}

TEST(PauseLoading, TheSilenceIsTheThresholdInForce) {
    PauseRig rig(FullSection);
    rig.Signal.ActiveThreshold = 900;
    rig.Control.LoadProviderSettings("Radio");
    EXPECT_EQ(rig.Signal.ActiveThreshold, 300);
}

TEST(PauseLoading, WithoutAnEndOfSilenceItIs1Point2TimesTheSilenceRounded) {
    for (const auto& [silence, end] : {std::pair{333, 400}, {332, 398}, {0, 0}, {-1, -1}, {5000, 6000}}) {
        PauseRig rig("[Radio]\nSilenceAmplitude=" + std::to_string(silence) + "\n");
        rig.Control.LoadProviderSettings("Radio");
        EXPECT_EQ(rig.Pause.EndOfSilenceAmplitude, end) << silence;
        EXPECT_EQ(rig.Form.txtEndOfSilenceAmplitude.Text(), std::to_string(end));
    }
}

TEST(PauseLoading, DoesNothingForTheSectionLoadedLast) {
    PauseRig rig(FullSection);
    rig.Control.LoadProviderSettings("Radio");
    rig.Store.WriteSetting("Radio", "IgnoreShortSongs", 90);
    rig.Pause.SilenceAmplitude = 5;
    rig.Control.LoadProviderSettings("Radio");
    EXPECT_EQ(rig.Pause.IgnoreShortSongs, 60);
    EXPECT_EQ(rig.Pause.SilenceAmplitude, 5);
}

TEST(PauseLoading, ForgettingTheSectionLoadsItAnew) {
    PauseRig rig(FullSection);
    rig.Control.LoadProviderSettings("Radio");
    rig.Store.WriteSetting("Radio", "IgnoreShortSongs", 90);
    rig.Control.ForgetLoaded();
    rig.Control.LoadProviderSettings("Radio");
    EXPECT_EQ(rig.Pause.IgnoreShortSongs, 90);
}

TEST(PauseLoading, BackAtASectionReadsItAgain) {
    PauseRig rig(FullSection);
    rig.Control.LoadProviderSettings("Radio");
    rig.Control.LoadProviderSettings("Other");
    rig.Control.LoadProviderSettings("Radio");
    EXPECT_EQ(rig.Pause.IgnoreShortSongs, 60);
}

TEST(PauseLoading, ALengthBelowOneBufferGivesNoPauseBuffers) {
    PauseRig rig("[Radio]\nLengthOfPause=49\n");
    rig.Control.LoadProviderSettings("Radio");
    EXPECT_EQ(rig.Pause.PauseBuffers, 0);
}

TEST(PauseLoading, PartsOfABufferAreCutOff) {
    PauseRig rig("[Radio]\nLengthOfPause=199\nIgnorePauseFor=99\n");
    rig.Control.LoadProviderSettings("Radio");
    EXPECT_EQ(rig.Pause.PauseBuffers, 3);
    EXPECT_EQ(rig.Pause.IgnorePauseBuffers, 1);
}

TEST(PauseLoading, ValuesBeyond16BitsStopAtTheirEnd) {
    PauseRig rig("[Radio]\nLengthOfPause=2000000000\nSilenceAmplitude=70000\nQuitAfterSilence=2000000000\n");
    rig.Control.LoadProviderSettings("Radio");
    EXPECT_EQ(rig.Pause.PauseBuffers, std::numeric_limits<int16_t>::max());
    EXPECT_EQ(rig.Pause.SilenceAmplitude, std::numeric_limits<int16_t>::max());
    EXPECT_EQ(rig.Pause.EndOfSilenceAmplitude, std::numeric_limits<int16_t>::max());
    EXPECT_EQ(rig.Pause.QuitAfterSilence, std::numeric_limits<int32_t>::max());
}

TEST(PauseLoading, ASourceWithoutAModeOfItsOwnHasThatOfAllSources) {
    for (const char* text : {"[Source]\nEndOfSongDetection=3\n",
                             "[Source]\nEndOfSongDetection=1\n[Radio]\nEndOfSongDetection=3\n"}) {
        PauseRig rig(text);
        rig.Control.LoadProviderSettings("Radio");
        EXPECT_EQ(rig.Pause.EndOfSongDetection, EndOfSong::Automatic) << text;
        EXPECT_TRUE(rig.Form.optEndOfSong[3].Value());
    }
    PauseRig rig("");
    rig.Control.LoadProviderSettings("Radio");
    EXPECT_EQ(rig.Pause.EndOfSongDetection, EndOfSong::Silence) << "a file without the key means silence";
}

TEST(PauseLoading, AutomaticPollsTheTitlesAndAsksForNothingElse) {
    PauseRig rig("[Radio]\nEndOfSongDetection=3\n");
    rig.Control.LoadProviderSettings("Radio");
    EXPECT_TRUE(rig.Form.tmrGetMediaData.Running());
    EXPECT_FALSE(rig.Form.chkIgnoreSilence.Enabled());
    EXPECT_FALSE(rig.Form.txtEndOfSongTimer.Enabled());
    EXPECT_FALSE(rig.Form.optDuplicatePartOfSong[0].Enabled());
    EXPECT_FALSE(rig.Form.optDuplicatePartOfSong[1].Enabled());
    EXPECT_FALSE(rig.Form.sldEndOfSongThreshold(0).Enabled());
    EXPECT_TRUE(rig.Form.chkStationDataEnable.Enabled());
    rig.Form.optEndOfSong[0].Press();
    EXPECT_FALSE(rig.Form.tmrGetMediaData.Running());
}

TEST(PauseLoading, AModeThatDoesNotExistIsEndOfSongBySilence) {
    for (const char* mode : {"4", "-1", "x"}) {
        PauseRig rig(std::string("[Radio]\nEndOfSongDetection=") + mode + "\n");
        rig.Control.LoadProviderSettings("Radio");
        EXPECT_EQ(rig.Pause.EndOfSongDetection, EndOfSong::Silence) << mode;
        EXPECT_EQ(rig.Form.optEndOfSong.Selected(), 0) << mode;
    }
}

TEST(PauseLoading, TheModeComesBeforeTheChoiceToDuplicateSoThatTheFileDecides) {
    PauseRig media("[Radio]\nEndOfSongDetection=1\nDuplicatepartOfSong=1\n");
    media.Control.LoadProviderSettings("Radio");
    EXPECT_EQ(media.Form.optDuplicatePartOfSong.Selected(), 1);
    EXPECT_TRUE(media.Pause.DuplicatepartOfSong);

    PauseRig time("[Radio]\nEndOfSongDetection=2\nDuplicatepartOfSong=0\n");
    time.Control.LoadProviderSettings("Radio");
    EXPECT_EQ(time.Form.optDuplicatePartOfSong.Selected(), 0);
    EXPECT_FALSE(time.Pause.DuplicatepartOfSong);
}

TEST(PauseLoading, RunsTheHandlerOfTheMode) {
    PauseRig rig("[Radio]\nEndOfSongDetection=1\n");
    rig.Control.LoadProviderSettings("Radio");
    EXPECT_TRUE(rig.Form.tmrGetMediaData.Running());
    EXPECT_EQ(rig.Form.chkStationDataEnable.Value(), 1);
    EXPECT_FALSE(rig.Form.chkStationDataEnable.Enabled());
    rig.Control.LoadProviderSettings("Other");
    EXPECT_FALSE(rig.Form.tmrGetMediaData.Running());
    EXPECT_TRUE(rig.Form.chkStationDataEnable.Enabled());
}

TEST(PauseLoading, RunsTheHandlerThatIgnoresSilence) {
    PauseRig rig("[Radio]\nIgnoreSilence=1\n");
    rig.Control.LoadProviderSettings("Radio");
    EXPECT_FALSE(rig.Form.txtQuitAfterSilence.Enabled());
}

TEST(PauseLoading, AThresholdIsWhatItsSliderCanShow) {
    PauseRig rig("[Radio]\nEndOfSongThreshold0=3300\nEndOfSongThreshold1=20000\n");
    rig.Control.LoadProviderSettings("Radio");
    EXPECT_THAT(rig.Pause.EndOfSongThreshold, ElementsAre(3500, 5000));
    EXPECT_EQ(rig.Form.sldEndOfSongThreshold(0).Value(), -7);
    EXPECT_EQ(rig.Form.sldEndOfSongThreshold(1).Value(), 10);
}

TEST(PauseLoading, AThresholdOfZeroIsHeldThoughItsSliderStandsThereAlready) {
    PauseRig rig("[Radio]\nEndOfSongThreshold0=0\nEndOfSongThreshold1=0\n");
    rig.Control.LoadProviderSettings("Radio");
    EXPECT_THAT(rig.Pause.EndOfSongThreshold, ElementsAre(0, 0));
    EXPECT_EQ(rig.Form.lblEndOfSongThreshold[3].Caption(), "0");
    EXPECT_EQ(rig.Form.lblEndOfSongThreshold[4].Caption(), "0");
}

TEST(PauseLoading, TheGainComesFromTheMixerSection) {
    PauseRig rig("[Radio]\nLevelMultiplier=900\n[MixerRadio]\nLevelMultiplier=250\n");
    rig.Control.LoadProviderSettings("Radio");
    EXPECT_EQ(rig.Pause.LevelMultiplier, 250);
}

TEST(PauseLoading, TheGainStaysWithinItsRange) {
    PauseRig rig("[MixerA]\nLevelMultiplier=5000\n[MixerB]\nLevelMultiplier=20\n");
    rig.Media.MixerSectionName = "MixerA";
    rig.Control.LoadProviderSettings("A");
    EXPECT_EQ(rig.Pause.LevelMultiplier, 1000);
    rig.Media.MixerSectionName = "MixerB";
    rig.Control.LoadProviderSettings("B");
    EXPECT_EQ(rig.Pause.LevelMultiplier, 100);
}

TEST(PauseLoading, AGainThatWasChangedWithoutItsScrollBarIsSetToo) {
    PauseRig rig;
    rig.Pause.LevelMultiplier = 300;
    rig.Control.LoadProviderSettings("Radio");
    EXPECT_EQ(rig.Pause.LevelMultiplier, 100);
}

TEST(PauseLoading, FlagsThatWereChangedWithoutTheirBoxesAreSetToo) {
    PauseRig rig("[Radio]\nDetectSilenceByPeak=1\n");
    rig.Control.LoadProviderSettings("Other");
    rig.Pause.DetectSilenceByPeak = false;
    rig.Control.LoadProviderSettings("Radio");
    EXPECT_TRUE(rig.Pause.DetectSilenceByPeak);
}

TEST(PauseLoading, TheHandlersStoreWhatWasLoadedFromAnotherProviderUnderThePresentOne) {
    PauseRig rig(FullSection);
    rig.Media.ProviderName = "New";
    rig.Media.MixerSectionName = "MixerNew";
    rig.Control.LoadProviderSettings("Radio");
    EXPECT_FALSE(rig.Form.txtLengthOfPause.RunValidate());
    EXPECT_FALSE(rig.Form.txtSilenceAmplitude.RunValidate());
    EXPECT_FALSE(rig.Form.txtEndOfSilenceAmplitude.RunValidate());
    rig.Form.chkDetectSilenceByPeak.Click.Raise();
    EXPECT_FALSE(rig.Form.txtQuitAfterSilence.RunValidate());
    EXPECT_FALSE(rig.Form.txtIgnoreShortSongs.RunValidate());
    rig.Form.vscMultiplier.Change.Raise();
    EXPECT_EQ(rig.Stored("New", "LengthOfPause"), "1500");
    EXPECT_EQ(rig.Stored("New", "SilenceAmplitude"), "300");
    EXPECT_EQ(rig.Stored("New", "EndOfSilenceAmplitude"), "900");
    EXPECT_EQ(rig.Stored("New", "DetectSilenceByPeak"), "0");
    EXPECT_EQ(rig.Stored("New", "QuitAfterSilence"), "10");
    EXPECT_EQ(rig.Stored("New", "IgnoreShortSongs"), "60");
    EXPECT_EQ(rig.Stored("MixerNew", "LevelMultiplier"), "100");
}

TEST(PauseStoring, PutsAllThatWasLoadedUnderThePresentProvider) {
    PauseRig rig(FullSection);
    rig.Media.ProviderName = "New";
    rig.Media.MixerSectionName = "MixerNew";
    rig.Control.LoadProviderSettings("Radio");
    EXPECT_EQ(rig.Stored("New", "LengthOfPause"), "-");
    rig.Control.StoreProviderSettings();
    for (const ProviderSettingRow& row : ProviderSettingsTable()) {
        const std::string key(row.Key);
        // Nothing reads these three again.
        if (key.starts_with("PauseDetectionTolerance") || key == "AllowedPauseAfterEndOfSong") continue;
        if (row.InMixerSection) continue;
        EXPECT_EQ(rig.Stored("New", key), rig.Stored("Radio", key)) << key;
    }
    EXPECT_EQ(rig.Stored("MixerNew", "LevelMultiplier"), "100");  // the gain is that of its own section
    EXPECT_THAT(rig.Told(), testing::IsEmpty());
}

TEST(PauseStoring, PutsChoicesThatAreOffUnderThePresentProviderToo) {
    PauseRig rig("[Radio]\nIgnoreSilence=0\nDetectSilenceByPeak=0\nDuplicatepartOfSong=0\n");
    rig.Media.ProviderName = "New";
    rig.Control.LoadProviderSettings("Radio");
    rig.Control.StoreProviderSettings();
    for (const char* key : {"IgnoreSilence", "DetectSilenceByPeak", "DuplicatepartOfSong"}) {
        EXPECT_EQ(rig.Stored("New", key), "0") << key;
    }
}

TEST(PauseStoring, ReportsWhatItsValidationRefusesAndStoresTheRest) {
    PauseRig rig("[Radio]\nLengthOfPause=75\nIgnoreShortSongs=60\n");
    rig.Media.ProviderName = "New";
    rig.Control.LoadProviderSettings("Radio");
    rig.Control.StoreProviderSettings();
    EXPECT_THAT(rig.Told(), ElementsAre("not a multiple of 50"));
    EXPECT_EQ(rig.Stored("New", "LengthOfPause"), "-");
    EXPECT_EQ(rig.Stored("New", "IgnoreShortSongs"), "60");
}

TEST(PauseStoring, WhatIsChangedUnderAnotherNameIsLoadedAnewForTheFirst) {
    PauseRig rig(FullSection);
    rig.Control.LoadProviderSettings("Radio");
    rig.Media.ProviderName = "New";
    ASSERT_TRUE(rig.Type(rig.Form.txtLengthOfPause, "2000"));
    ASSERT_EQ(rig.Stored("New", "LengthOfPause"), "2000");
    rig.Media.ProviderName = "Radio";
    rig.Control.LoadProviderSettings("Radio");
    EXPECT_EQ(rig.Form.txtLengthOfPause.Text(), "1500");
}

}  // namespace
}  // namespace Corvetape::Test
