// The start of the program, step by step.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <vector>

#include "app/desktop_notes.h"
#include "core/settings/registry.h"
#include "core/version.h"

namespace Corvetape::Test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(Start, AsksTheDesktopInTheOrderOfTheSteps) {
    World world(Starting("-hide -update", {{"Form", "Pos", "4097;3073;9000;7000"}}));
    DesktopNotes desktop;
    PutOn(world, desktop);
    ASSERT_TRUE(world.Load());
    EXPECT_THAT(desktop.Asked, ElementsAre("BusyPointer", "BlankBrowser", "BusyPointer", "TextsReady",
                                           "MoveWindow 4097 3073", "MinimizeWindow", "AddTrayIcon",
                                           "ShowWindow", "LoadBars", "normal pointer", "CheckUpdate"));
}

TEST(Start, RaisesThePriorityAheadOfEverything) {
    World world;
    DesktopNotes desktop;
    std::vector<size_t> raised;
    desktop.WhileAsked = [&](const std::string&) { raised.push_back(world.Computer.System.PriorityRaises); };
    PutOn(world, desktop);
    ASSERT_TRUE(world.Load());
    EXPECT_EQ(raised.at(0), 1U);
    EXPECT_EQ(world.Computer.System.PriorityRaises, 1U);
}

TEST(Start, ShowsTheVersionAndHidesTheBoxForPages) {
    World world;
    ASSERT_TRUE(world.Load());
    EXPECT_EQ(world.Form().lblVersion.Caption(), ProgramVersion);
    EXPECT_TRUE(std::regex_match(world.Form().lblVersion.Caption(), std::regex("[0-9]+\\.[0-9]+\\.[0-9]+")));
    EXPECT_TRUE(world.Form().chkNoStartupInfo.Visible());
}

TEST(Start, OpensTheMainWindowAndThenBothBars) {
    World world;
    ASSERT_TRUE(world.Load());
    std::vector<std::string> names;
    for (const Form* form : world.Values().Opened.InOrder()) names.push_back(form->Name());
    EXPECT_THAT(names, testing::ElementsAre("frmMain", "frmQuickButtons", "frmCoverButtons"));
}

TEST(Start, TheBoxOfTheBarIsClearWhereTheBarIsShown) {
    World shown;
    ASSERT_TRUE(shown.Load());
    EXPECT_EQ(shown.Form().chkQuickButtons.Value(), 0);
    WorldOptions options;
    options.Settings = {{"QuickButtons", "Visible", "0"}};
    World hidden(options);
    ASSERT_TRUE(hidden.Load());
    EXPECT_EQ(hidden.Form().chkQuickButtons.Value(), 1);
}

TEST(Start, ThePagesReachTheRecordButtonByItsName) {
    World world;
    ASSERT_TRUE(world.Load());
    EXPECT_TRUE(world.Form().Methods.Call("cmdquickrecord_click"));
    EXPECT_EQ(world.Form().chkStopRecording[0].Value(), 1);
    EXPECT_EQ(world.Form().cmdStartStop.Caption(), "Stop");
}

TEST(Start, ThePagesReachTheListsByTheirMethod) {
    World world;
    ASSERT_TRUE(world.Load());
    const MethodArgument song[] = {1, "No more of this"};
    EXPECT_TRUE(world.Form().Methods.Call("AddToWatchList", song));
    const MethodArgument nowhere[] = {2, "No list"};
    EXPECT_TRUE(world.Form().Methods.Call("AddToWatchList", nowhere));
    ASSERT_EQ(world.Form().lstWatch[1].Items().size(), 1U);
    EXPECT_EQ(world.Form().lstWatch[1].Items()[0].Text, "No more of this");
    EXPECT_TRUE(world.Form().lstWatch[0].Items().empty());
}

TEST(Start, PutsTheCommonFolderAfterTheSearchPathOnce) {
    World world;
    ASSERT_TRUE(world.Load());
    const std::string path = "/usr/local/bin:/usr/bin:/bin:/usr/share/Corvet";
    EXPECT_EQ(world.Computer.Folders.Environment("PATH"), path);
    world.Recorder->Unload();
    world.Made();
    ASSERT_TRUE(world.Load());
    EXPECT_EQ(world.Computer.Folders.Environment("PATH"), path);
}

TEST(Start, GoesOnWhereTheSearchPathCannotBeExtended) {
    World world;
    world.Computer.Folders.RefuseVariables = true;
    EXPECT_TRUE(world.Load());
}

TEST(Start, TakesTheLanguageOfTheDesktopOnlyIfNoneIsStored) {
    World world;
    world.Disk().Put("/opt/corvetape/german.lang", "");
    world.Computer.Desktop.OwnLanguage = "german";
    ASSERT_TRUE(world.Load());
    EXPECT_EQ(world.Values().Options.Language, "english");
    EXPECT_EQ(world.Computer.Dialogs.Beeps, 0U);
}

TEST(Start, WithoutAStoredLanguageBeepsAndTakesThatOfTheDesktopIfItHasTexts) {
    for (const bool hasTexts : {true, false}) {
        World world(Starting("", {{"General", "Language", ""}}));
        if (hasTexts) world.Disk().Put("/opt/corvetape/german.lang", "");
        world.Computer.Desktop.OwnLanguage = "german";
        ASSERT_TRUE(world.Load());
        EXPECT_EQ(world.Computer.Dialogs.Beeps, 1U);
        EXPECT_EQ(world.Values().Options.Language, hasTexts ? "german" : "english");
    }
}

TEST(Start, WithoutAStoredLanguageTheUserIsAskedOnceAndTheAnswerIsStored) {
    World world(Starting("", {{"General", "Language", ""}}));
    size_t beepsBefore = 0;
    world.Question.Language = [&](const std::string& fitting) {
        beepsBefore = world.Computer.Dialogs.Beeps;
        EXPECT_EQ(fitting, "english") << "there are no texts of that of the desktop";
        return std::string("german");
    };
    world.Computer.Desktop.OwnLanguage = "polish";
    world.Made();
    ASSERT_TRUE(world.Load());
    EXPECT_EQ(beepsBefore, 1U);
    EXPECT_EQ(world.Values().Options.Language, "german");
    EXPECT_EQ(world.Stored("General", "Language"), "german");
}

TEST(Start, ALanguageThatNobodyWasAskedForIsNotStored) {
    World world(Starting("-dontask", {{"General", "Language", ""}}));
    world.Question.Language = [](const std::string&) { return std::string("polish"); };
    world.Disk().Put("/opt/corvetape/german.lang", "");
    world.Computer.Desktop.OwnLanguage = "german";
    world.Made();
    ASSERT_TRUE(world.Load());
    EXPECT_EQ(world.Values().Options.Language, "german");
    EXPECT_EQ(world.Stored("General", "Language"), "");
}

TEST(Start, WithoutAnyLanguageSpeaksEnglish) {
    World world(Starting("", {{"General", "Language", ""}}));
    ASSERT_TRUE(world.Load());
    EXPECT_EQ(world.Values().Options.Language, "english");
    EXPECT_EQ(world.Computer.Dialogs.Beeps, 0U);
}

TEST(Start, MakesTheFoldersForSongsAndForTheLogAndNoOthers) {
    World world(Starting("", {{"Options", "TempPath", "/home/user/temp"},
                              {"Options", "LogFilePath", "/home/user/logs"},
                              {"Options", "MusicPath", "/home/user/tunes"}}));
    world.Disk().MakeFolders("/home/user/temp");
    ASSERT_TRUE(world.Load());
    EXPECT_TRUE(world.Disk().IsFolder("/home/user/temp/Corvet"));
    EXPECT_TRUE(world.Disk().IsFolder("/home/user/logs"));
    EXPECT_FALSE(world.Disk().Exists("/home/user/tunes"));
}

TEST(Start, LeavesAMissingParentOfTheTemporaryFolderMissing) {
    World world(Starting("", {{"Options", "TempPath", "/home/user/no/such"}}));
    EXPECT_TRUE(world.Load());
    EXPECT_FALSE(world.Disk().Exists("/home/user/no"));
    EXPECT_THAT(world.Boxes(), IsEmpty());  // the first song reports it
}

TEST(Start, WritesItsLineIntoTheLogOfTheDay) {
    World world;
    ASSERT_TRUE(world.Load());
    EXPECT_EQ(world.Disk().Content(std::string(LogFolder) + "/20240514.log"), "12:00:00\tSTART\r\n");
}

TEST(Start, WithoutALogWritesNoLine) {
    World world(Starting("", {{"General", "LogToFile", "0"}}));
    ASSERT_TRUE(world.Load());
    EXPECT_FALSE(world.Disk().Exists(std::string(LogFolder) + "/20240514.log"));
}

struct Place {
    const char* Pos;
    const char* Moved;  ///< empty: the window stays
};

class StoredPlace : public testing::TestWithParam<Place> {};

TEST_P(StoredPlace, MovesTheWindowIfLeftAndTopHaveABitInCommon) {
    World world(Starting("", {{"Form", "Pos", GetParam().Pos}}));
    DesktopNotes desktop;
    PutOn(world, desktop);
    ASSERT_TRUE(world.Load());
    std::vector<std::string> moves;
    for (const std::string& each : desktop.Asked) {
        if (each.starts_with("MoveWindow")) moves.push_back(each);
    }
    if (std::string(GetParam().Moved).empty()) {
        EXPECT_THAT(moves, IsEmpty());
    } else {
        EXPECT_THAT(moves, ElementsAre(GetParam().Moved));
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, StoredPlace,
                         testing::Values(Place{"0;500;9000;7000", ""}, Place{"4096;3072;9000;7000", ""},
                                         Place{"300;300;9000;7000", "MoveWindow 300 300"},
                                         Place{"-15;700;9000;7000", "MoveWindow -15 700"},
                                         Place{"300;300;9000", ""}, Place{"", ""}, Place{"a;b;c;d", ""}));

TEST(Start, BeginsWithNothingWantedAndRecordingEnabledByTheMediaData) {
    for (const bool enabled : {true, false}) {
        World world(Starting("", {{"Providers", "Enable", enabled ? "1" : "0"}}));
        ASSERT_TRUE(world.Load());
        const RecordingFlags& flags = world.Values().Flags;
        EXPECT_FALSE(flags.RecordCurrentSong || flags.RecordNextSong || flags.StopAtEndOfSong);
        EXPECT_EQ(flags.RecordingEnabled, enabled);
        EXPECT_EQ(world.Form().chkStationDataEnable.Value(), enabled ? 1 : 0);
    }
}

TEST(Start, WithoutMediaDataAppliesTheStateOfNoSource) {
    World world(Starting("", {{"Providers", "Enable", "0"}}));
    ASSERT_TRUE(world.Load());
    EXPECT_EQ(world.Values().Media.ProviderName, "NoStationData");
    EXPECT_FALSE(world.Form().cmdGetStationID.Enabled());
    EXPECT_EQ(world.Form().lblProvider[0].Caption(), " \xE2\x80\xA2 ");
    EXPECT_EQ(world.Stored("Providers", "Enable"), "0");
}

TEST(Start, SetsTheDelayOfTheTransferToTheLargerOfTheSettingAnd100Milliseconds) {
    for (const auto& [stored, interval] :
         {std::pair("5000", 5000), std::pair("0", 100), std::pair("-3", 100)}) {
        World world(Starting("", {{"DoNotChange", "EncodeDelay", stored}}));
        ASSERT_TRUE(world.Load());
        EXPECT_EQ(world.Form().tmrEncodeFile.Interval(), interval);
        EXPECT_FALSE(world.Form().tmrEncodeFile.Running());
        world.Form().lstEncodeDelay.ListIndex(2);
        EXPECT_EQ(world.Form().tmrEncodeFile.Interval(), interval) << "a change acts from the next start on";
    }
}

TEST(Start, LeavesOnlyTheTickOfEachSecondRunning) {
    World world;
    ASSERT_TRUE(world.Load());
    frmMain& form = world.Form();
    EXPECT_TRUE(form.tmr1Second.Running());
    for (const TimerControl* timer :
         {&form.tmrGetMediaData, &form.tmrEncodeFile, &form.tmrVU, &form.tmrMsgBox}) {
        EXPECT_FALSE(timer->Running()) << timer->Name();
    }
}

TEST(Start, OpensTheInputInTheSecondWholeSecond) {
    World world;
    ASSERT_TRUE(world.Load());
    world.RunFor(0.9);
    EXPECT_FALSE(world.Form().chkStartStop[0].Enabled());
    world.RunFor(0.2);
    EXPECT_TRUE(world.Form().chkStartStop[0].Enabled());
    EXPECT_TRUE(world.Form().chkStartStop[1].Enabled());
}

TEST(Start, EnablesTheFormatsWhoseToolsAreThere) {
    World world;
    world.Disk().Put("/usr/bin/lame", "program");
    world.Disk().Put("/usr/share/Corvet/oggenc", "program");
    ASSERT_TRUE(world.Load());
    EXPECT_TRUE(world.Form().optEncoder[0].Enabled());
    EXPECT_TRUE(world.Form().optEncoder[1].Enabled());
    EXPECT_TRUE(world.Form().optEncoder[2].Enabled());
    EXPECT_FALSE(world.Form().optEncoder[3].Enabled());
}

TEST(Start, AsksForTheWmaEncoderUntilItHasAnsweredOnce) {
    World world;
    world.Disk().Put("/usr/bin/ffmpeg", "program");
    SimProcesses& processes = world.Computer.Processes;
    processes.OnJob = nullptr;
    processes.DurationOf = [](const HiddenJob&) { return std::chrono::seconds(60); };  // a busy machine
    for (const auto& [found, questions] : {std::pair(false, 1U), std::pair(true, 2U), std::pair(true, 2U)}) {
        world.Made();
        ASSERT_TRUE(world.Load());
        EXPECT_EQ(world.Form().optEncoder[3].Enabled(), found);
        EXPECT_EQ(processes.Jobs.size(), questions);
        world.Recorder->Unload();
        processes.DurationOf = nullptr;
        world.RunFor(100);  // the first question has been given up, but still runs
    }
}

TEST(StartApplication, IsLaunchedWithItsLineIfChecked) {
    World world(Starting("", {{"Options", "StartApp", "1"},
                              {"Options", "StartAppName", "/usr/bin/radio"},
                              {"Options", "StartAppParams", "--play %Temp%"}}));
    ASSERT_TRUE(world.Load());
    const ShellCall call = {"/usr/bin/radio", "--play %Temp%", "/usr/bin/"};
    EXPECT_THAT(world.Computer.Processes.ShellCalls, ElementsAre(call));
    EXPECT_THAT(world.Logged("START"), ElementsAre("", "/usr/bin/radio\t--play %Temp%"));
}

TEST(StartApplication, IsLeftAloneIfNotChecked) {
    World world(Starting("", {{"Options", "StartAppName", "/usr/bin/radio"}}));
    ASSERT_TRUE(world.Load());
    EXPECT_THAT(world.Computer.Processes.ShellCalls, IsEmpty());
}

TEST(StartApplication, ThatFailsIsReportedInTheLogAndTheStartGoesOn) {
    World world(Starting("", {{"Options", "StartApp", "1"}, {"Options", "StartAppName", "/no/such"}}));
    world.Computer.Processes.OnShellOpen = [](const ShellCall&) { return 2; };
    ASSERT_TRUE(world.Load());
    EXPECT_THAT(world.Logged("ERROR"), ElementsAre("2 (File not found)"));
    EXPECT_THAT(world.Boxes(), IsEmpty());
}

TEST(FirstStart, CopiesTheSeedFileAndReadsIt) {
    WorldOptions options;
    options.FirstStart = true;
    World world(std::move(options));
    world.Disk().Put("/opt/corvetape/Corvet.ini", "[Options]\r\nLowTempSpace=777\r\nNoStartupInfo=1\r\n");
    ASSERT_TRUE(world.Load());
    EXPECT_EQ(world.Values().Options.LowTempSpace, 777);
    EXPECT_THAT(world.Disk().Content(IniFile).value_or(""), HasSubstr("LowTempSpace=777\r\n"));
}

TEST(FirstStart, WithoutAnyFileTakesTheDefaults) {
    WorldOptions options;
    options.FirstStart = true;
    World world(std::move(options));
    ASSERT_TRUE(world.Load());
    EXPECT_EQ(world.Values().Options.LowTempSpace, 300);
    EXPECT_EQ(world.Form().txtRecordingPeriod.Text(), "60");
    EXPECT_TRUE(world.Values().Media.StationDataEnabled);
}

TEST(FirstStart, OpensTheFirstPageOfTheAssistantOnTheSecondTick) {
    WorldOptions options;
    options.FirstStart = true;
    World world(std::move(options));
    DesktopNotes desktop;
    desktop.ChosenLanguage = "english";
    PutOn(world, desktop);
    ASSERT_TRUE(world.Load());
    world.RunFor(2);
    EXPECT_THAT(desktop.Asked, Contains("OpenAssistant 1st.htm").Times(1));
    const ShellCall call = {"/opt/corvetape/COR1st.bat", "english", "/opt/corvetape"};
    EXPECT_THAT(world.Computer.Processes.ShellCalls, ElementsAre(call));
    EXPECT_TRUE(world.Values().Lifecycle.WizardRequested);
}

TEST(FirstStart, AsksForTheLanguageAndNamesTheInputAndThenRecordIsAllThatIsToBePressed) {
    WorldOptions options;
    options.FirstStart = true;
    options.Radio = RadioScript();
    for (const char* title : {"One", "Two", "Three"}) {
        ScriptSong song;
        song.Media.Artist = "Artist";
        song.Media.Song = title;
        options.Radio.Song(song).Pause(2);
    }
    World world(std::move(options));
    world.Computer.Desktop.OwnLanguage = "english";
    int asked = 0;
    world.Question.Language = [&](const std::string& fitting) {
        ++asked;
        return fitting;
    };
    world.Made();
    ASSERT_TRUE(world.Start());
    EXPECT_EQ(asked, 1);
    EXPECT_THAT(world.Boxes(), ElementsAre(HasSubstr("will record from \"Radio (default)\"")));
    EXPECT_THAT(world.Logged("INFO"), Contains(HasSubstr("will record from \"Radio")));
    world.Form().cmdStartStop.Press();
    EXPECT_TRUE(world.RunUntil([&] { return world.Transferred.size() >= 2; }, 180));
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(world.Boxes().size(), 1U);
    EXPECT_EQ(world.Transferred.at(1).Media.Song, "Two");
}

TEST(FaultyStart, GoesOnWhicheverFileOperationFails) {
    uint64_t last = 0;
    {
        World world;
        ASSERT_TRUE(world.Load());
        last = world.Disk().OperationCount();
    }
    ASSERT_GT(last, 10U);
    for (uint64_t number = 1; number <= last; ++number) {
        World world;
        world.Disk().FailOperation(number);
        ASSERT_TRUE(world.Load()) << number;
        ASSERT_EQ(world.Disk().FailedOperations().size(), 1U);
        world.RunFor(3);
        world.Finish();
        EXPECT_EQ(world.Ends, 1U) << world.Disk().FailedOperations()[0];
        EXPECT_EQ(world.Disk().OpenHandles(), 0U) << world.Disk().FailedOperations()[0];
    }
}

TEST(AssistantOfTheProgram, IsOpenedByTheButtonsThatTellWhereToGetAnEncoder) {
    DesktopNotes desktop;
    World world(Starting(""));
    PutOn(world, desktop);
    ASSERT_TRUE(world.Load());
    world.Form().cmdGetEncoder[0].Press();
    EXPECT_EQ(desktop.Asked.back(), "OpenAssistant wiz_wma.htm");
    world.Form().cmdGetEncoder[1].Press();
    EXPECT_EQ(desktop.Asked.back(), "OpenAssistant wiz_lame.htm");
}

}  // namespace
}  // namespace Corvetape::Test
