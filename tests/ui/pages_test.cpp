// Each page holds the controls that belong to it, under their names.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QFile>
#include <QLabel>
#include <QListView>
#include <QMouseEvent>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>
#include <string>
#include <vector>

#include "ui/pages/pages.h"
#include "ui/ui_world.h"

namespace Corvetape::Test {
namespace {

struct PageOfTable {
    std::string Tab;
    std::vector<const char*> Controls;
};

const std::vector<PageOfTable> Expected{
    {"TAB_RECORDING",
     {"cmdStartStop",
      "cmdSkipThisRecording",
      "cmdQuickRecord",
      "chkStartStop_0",
      "chkStartStop_1",
      "chkStopRecording_0",
      "chkStopRecording_1",
      "txtRecordingPeriod",
      "lblStopRecording",
      "txtSong",
      "txtArtist",
      "txtAlbum",
      "txtStation",
      "txtTimeRemaining",
      "lblProvider_0",
      "fraCurrentSong",
      "chkStationDataEnable",
      "lblStationDataEnable",
      "cmdGetStationID",
      "cmbURL",
      "cmdLaunchURL"}},
    {"TAB_AUDIO",
     {"cmbInputDevices", "chk48kHz", "cmdAutoInput", "cmdAGC", "cmdOpenMixer", "cmdSaveMixerSettings",
      "cmdResetMixerSettings", "chkMixerAutoUpdate", "picVUMeter", "vscMultiplier", "lblMultiplier",
      "picHistogram", "lblHistogramMin", "lblHistogramMax", "lblMaxBuffers"}},
    {"TAB_PAUSE",
     {"txtLengthOfPause", "txtSilenceAmplitude", "txtEndOfSilenceAmplitude", "chkDetectSilenceByPeak",
      "chkIgnoreSilence", "txtQuitAfterSilence", "txtIgnoreShortSongs", "optEndOfSong_0", "optEndOfSong_1",
      "optEndOfSong_2", "txtEndOfSongTimer", "optDuplicatePartOfSong_0", "optDuplicatePartOfSong_1",
      "sldEndOfSongThreshold_0", "sldEndOfSongThreshold_1", "cmdAutoPauseParams"}},
    {"TAB_MP3_WMA",
     {"optEncoder_0", "optEncoder_1", "optEncoder_2", "optEncoder_3", "optEncoder_4", "optEncoder_5",
      "cmbMP3", "cmbOgg", "cmbWMA44", "cmbWMA48", "cmdGetEncoder_0", "cmdGetEncoder_1"}},
    {"TAB_OPTIONS1",
     {"chkNormalize", "chkEncodeOffline", "chkDelTemp", "chkDelTempFolder", "chkQuitAfterRecording",
      "chkDelayUnload", "chkDisableSoundScheme", "chkRestartRadioIfSilent", "chkStoreCoverImage",
      "chkNotifySongs", "cmbLanguage", "lstEncodeDelay", "lstBufferFlag"}},
    {"TAB_OPTIONS2",
     {"txtLowTempSpace", "txtLowMusicSpace", "chkStartApp", "txtStartApp", "txtStartAppCommandLine",
      "chkStopApp", "txtStopApp", "txtStopAppCommandLine", "cmdAppSearch_0", "cmdAppSearch_1"}},
    {"TAB_FOLDERS",
     {"txtPath_0", "txtPath_1", "txtPath_2", "cmdGetDir_0", "cmdGetDir_1", "cmdGetDir_2",
      "chkUseMusicSubfolder", "txtMusicFolderTemplate", "txtMusicFileTemplate_0", "txtMusicFileTemplate_1"}},
    {"TAB_LOGFILE", {"txtLogFile", "cmdOpenLogFile", "cmdDeleteLogFiles"}},
    {"TAB_INCLUDE",
     {"lstWatch_0", "txtWatch_0", "cmdAddToWatchList_0", "cmdDeleteFromWatchList_0", "cmdEditWatchList_0"}},
    {"TAB_EXCLUDE",
     {"lstWatch_1", "txtWatch_1", "cmdAddToWatchList_1", "cmdDeleteFromWatchList_1", "cmdEditWatchList_1",
      "chkAutoExclude"}},
    {"TAB_ABOUT",
     {"lblVersion", "lblHomePage", "lblMailTo", "picLogo", "cmdNews", "cmdCheckUpdateNow", "txtlblF1",
      "assistantLater"}},
};

TEST(Pages, AnAssistantThatDoesNotOpenHoldsNothingUp) {
    UiWorld world;
    world.RunFor(3);
    world.Find<QPushButton>("cmdGetEncoder_0")->click();
    EXPECT_FALSE(world.Recorder->Values().Lifecycle.WizardRequested);
}

TEST(Pages, HoldTheirControlsByName) {
    UiWorld world;
    const auto* const pages = world.Window->findChild<QStackedWidget*>();
    ASSERT_NE(pages, nullptr);
    ASSERT_EQ(static_cast<size_t>(pages->count()), Expected.size());
    for (const PageOfTable& page : Expected) {
        world.Form().tbsMain.Select(page.Tab);
        const QWidget* const shown = pages->currentWidget();
        EXPECT_EQ(shown->property("tab").toString().toStdString(), page.Tab);
        for (const char* name : page.Controls) {
            EXPECT_NE(shown->findChild<QWidget*>(name), nullptr) << page.Tab << " " << name;
        }
    }
}

TEST(Pages, HaveADrawnIconForEachTab) {
    UiWorld world;
    for (const Tab& tab : world.Form().tbsMain.Tabs()) {
        EXPECT_TRUE(QFile::exists(":/ui/icons/" + QString::fromStdString(tab.Tag) + ".svg")) << tab.Tag;
    }
}

TEST(Pages, WhatIsNotThereYetCannotBePressedAndSaysSo) {
    UiWorld world;
    for (const char* name : {"cmdCheckUpdateNow"}) {
        const auto* const button = world.Find<QPushButton>(name);
        EXPECT_FALSE(button->isEnabled()) << name;
        EXPECT_EQ(button->toolTip(), "Not available in this version yet") << name;
    }
}

TEST(Pages, TheButtonsOfTheMixerCanBePressedAndDoWhatTheySay) {
    UiWorld world;
    world.RunFor(5);
    for (const char* name :
         {"cmdAutoInput", "cmdAGC", "cmdOpenMixer", "cmdSaveMixerSettings", "cmdResetMixerSettings"}) {
        const auto* const button = world.Find<QPushButton>(name);
        EXPECT_TRUE(button->isEnabled()) << name;
        EXPECT_NE(button->toolTip(), "Not available in this version yet") << name;
    }
    world.Find<QPushButton>("cmdOpenMixer")->click();
    EXPECT_EQ(world.Computer.Processes.ShellCalls.size(), 1U);
}

/// The text of a button without the mark of its key.
QString PlainText(const QPushButton& button) {
    return button.text().remove('&');
}

TEST(Pages, TheTextBesideTheSwitchOfTheMediaDataSwitchesThem) {
    UiWorld world;
    world.RunFor(5);
    auto* const text = world.Find<QLabel>("lblStationDataEnable");
    const QPointF middle = text->rect().center();
    for (const int32_t wanted : {0, 1}) {
        QMouseEvent release(QEvent::MouseButtonRelease, middle, middle, Qt::LeftButton, Qt::LeftButton,
                            Qt::NoModifier);
        QApplication::sendEvent(text, &release);
        EXPECT_EQ(world.Form().chkStationDataEnable.Value(), wanted);
        EXPECT_EQ(world.Find<QCheckBox>("chkStationDataEnable")->isChecked(), wanted == 1);
    }
}

TEST(Pages, AnEmptyListSaysHowToFillIt) {
    UiWorld world;
    world.Form().tbsMain.Select("TAB_EXCLUDE");
    const QWidget* const list = world.Find<QListView>("lstWatch_1");
    const auto* const hint = list->findChild<QLabel*>("emptyHint");
    ASSERT_NE(hint, nullptr);
    EXPECT_TRUE(hint->isVisibleTo(list));
    EXPECT_FALSE(hint->text().isEmpty());
    world.Form().lstWatch[1].AddItem("Rain");
    EXPECT_FALSE(hint->isVisibleTo(list));
}

TEST(Pages, ThatGoOnBelowTheEdgeSaySoAndScrollByAClick) {
    UiWorld world;
    world.Window->show();
    world.Form().tbsMain.Select("TAB_PAUSE");
    world.Window->resize(1000, 720);
    QApplication::processEvents();
    auto* const page =
        qobject_cast<QScrollArea*>(world.Window->findChild<QStackedWidget*>()->currentWidget());
    ASSERT_NE(page, nullptr);
    auto* const more = page->findChild<QWidget*>("moreBelow");
    ASSERT_TRUE(more->isVisible());
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(5, 5), QPointF(5, 5), Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QApplication::sendEvent(more, &press);
    EXPECT_GT(page->verticalScrollBar()->value(), 0);
    page->verticalScrollBar()->setValue(page->verticalScrollBar()->maximum());
    EXPECT_FALSE(more->isVisible());
    world.Window->resize(1000, 2000);
    QApplication::processEvents();
    EXPECT_FALSE(more->isVisible());
}

TEST(Pages, TheRecordButtonSaysWhatItWillDo) {
    UiWorld world;
    world.RunFor(5);
    auto* const button = world.Find<QPushButton>("cmdStartStop");
    EXPECT_EQ(PlainText(*button), "Record");
    button->click();
    EXPECT_EQ(PlainText(*button), "Stop");
    EXPECT_FALSE(world.Form().picStart.Visible());
    button->click();
    EXPECT_EQ(PlainText(*button), "Record");
}

TEST(Pages, AreThereInGerman) {
    UiWorld world("german");
    world.RunFor(5);
    EXPECT_EQ(world.Find<QLabel>("lblPresentState")->text(),
              QString::fromUtf8("Hört zu - nichts wird behalten"));
}

TEST(Pages, AreScrolledToWhereTheyWereWhenTheWindowIsSmallAgain) {
    UiWorld world;
    world.Window->show();
    world.Form().tbsMain.Select("TAB_OPTIONS1");
    world.RunFor(1);
    const auto* const page =
        qobject_cast<QScrollArea*>(world.Window->findChild<QStackedWidget*>()->currentWidget());
    QScrollBar* const bar = page->verticalScrollBar();
    const QSize small = world.Window->size();
    bar->setValue(bar->maximum());
    const int place = bar->value();
    ASSERT_GT(place, 0);
    world.Window->resize(small.width(), 2 * small.height());
    world.RunFor(1);
    ASSERT_EQ(bar->value(), 0);
    world.Window->resize(small);
    world.RunFor(1);
    EXPECT_EQ(bar->value(), place);
}

}  // namespace
}  // namespace Corvetape::Test
