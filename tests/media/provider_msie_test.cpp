#include "media/provider_msie.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <memory>
#include <utility>

#include "core/lifecycle_flags.h"
#include "core/log.h"
#include "media/noted_settings.h"
#include "media/provider_choice.h"
#include "sim/sim_documents.h"
#include "sim/sim_machine.h"
#include "sim/sim_windows.h"

namespace Corvetape {
namespace {

constexpr const char* Profiles =
    "[- Page]\nName=Page Radio\nWindow&Doc=;;Page*;*\nStation=-1;;Page (.*)\nStationDesc=-2;desc;\n"
    "Artist=-4;artist;\nTitle=-4;song;\nAlbum=-4;album;\nCover=-4;cover;\nRestart=x;play();\n"
    "[- Window]\nName=Window Radio\nWindow&Doc=Player;* - *\nStation=-2;\"Player\";\n"
    "Artist=-3;;(.*) - \nTitle=-3;; - (.*)\n";

class Msie : public testing::Test, protected Test::ProviderBench {
 protected:
    Msie() {
        Journal.Listener = [this](const std::string&, const std::string&) { ++Reports; };
        Write(Profiles);
    }

    void Write(const std::string& content) {
        ASSERT_TRUE(Computer.Files.ReplaceAtomically("/home/user/MSIE.ini", content));
    }

    SimPage& AddPage() {
        SimPage& page = Browser.Add("http://radio/", "Page One");
        page.Top->All = {{"artist", {"", "Artist", {}}},
                         {"song", {"", "Song", {}}},
                         {"album", {"", "Album", {}}},
                         {"cover", {"", "", "http://radio/c.jpg"}}};
        page.Top->Values = {{"desc", "Description"}, {"play()", ""}};
        return page;
    }

    std::unique_ptr<clsProviderMSIE> Make() {
        return std::make_unique<clsProviderMSIE>(
            Host, BrowserPlaces{Computer.Files, "/home/user/MSIE.ini", &Browser, &Desktop}, Notices);
    }

    STATIONANDSONGDATA& Now() { return Media.CurrentMedia; }

    class MakerOf : public ProviderMaker {
     public:
        explicit MakerOf(std::function<std::unique_ptr<clsProvider>()> work) : Work(std::move(work)) {}
        std::unique_ptr<clsProvider> Make() override { return Work(); }

     private:
        std::function<std::unique_ptr<clsProvider>()> Work;
    };

    PauseSettings Pause;
    CoverImages Covers{nullptr, Computer.Files, Pause};
    SimDocuments Browser;
    SimWindows Desktop;
    Corvetape::Settings Options;
    WorkingFolders Folders;
    LifecycleFlags Lifecycle;
    Form Window{"frmTest", ""};
    Label Status{Window, "lblStatus"};
    Log Journal{Computer.Files, Computer.Clock, Options, Folders};
    Reporter Say{Journal, Texts, Computer.Dialogs, Lifecycle, Status};
    BrowserNotices Notices{Say};
    int Reports = 0;
};

TEST_F(Msie, ConstructionFindsThePageAndReadsTheStation) {
    AddPage();
    const auto provider = Make();
    EXPECT_EQ(Media.ProviderName, "Page Radio");
    EXPECT_EQ(Media.MixerSectionName, "MixerPage Radio");
    EXPECT_EQ(Now().StationName, "One");
    EXPECT_EQ(Now().StationDescr, "Description");
    EXPECT_EQ(Now().Song, "");
    EXPECT_EQ(Settings.Loaded, std::vector<std::string>{"Page Radio"});
}

TEST_F(Msie, ConstructionWithoutASourceLeavesTheName) {
    Media.ProviderName = NoStationData;
    Media.MixerSectionName = "MixerX";
    const auto provider = Make();
    EXPECT_EQ(Media.ProviderName, NoStationData);
    EXPECT_EQ(Media.MixerSectionName, "Mixer");
    EXPECT_TRUE(Settings.Loaded.empty());
}

TEST_F(Msie, ConstructionReArmsTheRecordingAndClearsTheRecords) {
    Signal.PauseRecognition = 0;
    Flags.RecordingEnabled = false;
    Now().Song = "old";
    Media.SongMedia.Song = "old";
    const auto provider = Make();
    EXPECT_EQ(Signal.PauseRecognition, 2147483647);
    EXPECT_TRUE(Flags.RecordingEnabled);
    EXPECT_EQ(Now(), STATIONANDSONGDATA{});
    EXPECT_EQ(Media.SongMedia, STATIONANDSONGDATA{});
}

TEST_F(Msie, ARefreshReadsAllFields) {
    AddPage();
    const auto provider = Make();
    provider->GetStationData();
    STATIONANDSONGDATA expected;
    expected.StationName = "One";
    expected.StationDescr = "Description";
    expected.Artist = "Artist";
    expected.Song = "Song";
    expected.Album = "Album";
    expected.Cover = "http://radio/c.jpg";
    EXPECT_EQ(Now(), expected);
}

TEST_F(Msie, TakesNoMarksAndNoMoreThanAThousandCharactersOfAField) {
    SimPage& page = AddPage();
    const std::string longText = "\u2066" + std::string(3000, 'x');
    for (size_t field = 0; field < 3; ++field) page.Top->All[field].Text.InnerText = longText;
    for (size_t field = 0; field < 3; ++field) page.Top->All[field].Text.Title = longText;
    const auto provider = Make();
    provider->GetStationData();
    for (const std::string& field : {Now().Artist, Now().Song, Now().Album}) {
        EXPECT_EQ(field, std::string(1000, 'x'));
    }
}

TEST_F(Msie, ACoverComesFromTheWebOnly) {
    SimPage& page = AddPage();
    const auto provider = Make();
    for (const char* address : {"file:///home/user/letter.txt", "/home/user/letter.txt", "c.jpg",
                                "ftp://radio/c", "data:image/png;base64,AAAA"}) {
        page.Top->All[3].Text.Src = address;
        provider->GetStationData();
        EXPECT_EQ(Now().Cover, "") << address;
    }
    page.Top->All[3].Text.Src = "https://radio/c.jpg";
    provider->GetStationData();
    EXPECT_EQ(Now().Cover, "https://radio/c.jpg");
}

TEST_F(Msie, ARefreshReArmsTheRecordingEachTime) {
    AddPage();
    const auto provider = Make();
    Signal.PauseRecognition = 0;
    Flags.RecordingEnabled = false;
    provider->GetStationData();
    EXPECT_EQ(Signal.PauseRecognition, 2147483647);
    EXPECT_TRUE(Flags.RecordingEnabled);
}

TEST_F(Msie, SettingsAreAdoptedOnlyWhenTheNameChanges) {
    AddPage();
    const auto provider = Make();
    provider->GetStationData();
    provider->GetStationData();
    EXPECT_EQ(Settings.Loaded.size(), 1u);
}

TEST_F(Msie, APageThatIsClosedEmptiesTheNameAndTheFields) {
    SimPage& page = AddPage();
    const auto provider = Make();
    provider->GetStationData();
    Browser.Close(page);
    provider->GetStationData();
    EXPECT_EQ(Media.ProviderName, "");
    EXPECT_EQ(Now(), STATIONANDSONGDATA{});
}

TEST_F(Msie, APageThatHangsIsGoneForThePollAndBackAfterwards) {
    SimPage& page = AddPage();
    const auto provider = Make();
    page.Answers = false;
    provider->GetStationData();
    EXPECT_EQ(Media.ProviderName, "");
    page.Answers = true;
    provider->GetStationData();
    EXPECT_EQ(Media.ProviderName, "Page Radio");
}

TEST_F(Msie, DocumentsComeBeforeWindows) {
    Desktop.Add("A - B", "Player");
    const auto provider = Make();
    EXPECT_EQ(Media.ProviderName, "Window Radio");
    AddPage();
    provider->GetStationData();
    EXPECT_EQ(Media.ProviderName, "Page Radio");
    EXPECT_EQ(Settings.Loaded, (std::vector<std::string>{"Window Radio", "Page Radio"}));
}

TEST_F(Msie, AWindowIsReadByItsTitle) {
    Desktop.Add("Some Artist - Some Song", "Player");
    const auto provider = Make();
    provider->GetStationData();
    EXPECT_EQ(Now().StationName, "Player");
    EXPECT_EQ(Now().Artist, "Some Artist");
    EXPECT_EQ(Now().Song, "Some Song");
}

TEST_F(Msie, ADocumentHasNothingOfTheWindowThatWasReadBefore) {
    Write(
        "[- Page]\nName=P\nWindow&Doc=;;*;*\nArtist=-3;;\nTitle=-1;;\n"
        "[- Window]\nName=W\nWindow&Doc=Player;*\nTitle=-3;;\n");
    Desktop.Add("Song of the window", "Player");
    const auto provider = Make();
    provider->GetStationData();
    ASSERT_EQ(Now().Song, "Song of the window");
    AddPage();
    provider->GetStationData();
    EXPECT_EQ(Now().Song, "Page One");
    EXPECT_EQ(Now().Artist, "");
}

TEST_F(Msie, TheOrderOfTheFileIsThePriority) {
    Write("[- 1]\nName=First\nWindow&Doc=;;*B;*\n[- 2]\nName=Second\nWindow&Doc=;;*;*\n");
    Browser.Add("http://a/", "A");
    const auto provider = Make();
    EXPECT_EQ(Media.ProviderName, "Second");
    Browser.Add("http://b/", "B");
    provider->GetStationData();
    EXPECT_EQ(Media.ProviderName, "First");
}

TEST_F(Msie, TwoPagesOfOneProfileFollowTheOrderOfTheirWindowsUnderOneName) {
    Write("[- 1]\nName=R\nWindow&Doc=;;*;*\nTitle=-1;;\n");
    Browser.Add("http://a/", "A");
    Browser.Add("http://b/", "B");
    const uint64_t a = Desktop.Add("A - Browser", "N");
    Desktop.Add("B - Browser", "N");
    const auto provider = Make();
    provider->GetStationData();
    EXPECT_EQ(Now().Song, "B");
    Desktop.Raise(a);
    provider->GetStationData();
    EXPECT_EQ(Now().Song, "A");
    EXPECT_EQ(Settings.Loaded, std::vector<std::string>{"R"});
}

TEST_F(Msie, AnErrorEndsTheReadAndLeavesTheFieldsAfterItEmpty) {
    Write(
        "[- 1]\nName=R\nWindow&Doc=;;*;*\nStation=-1;;\nArtist=-4;artist;\nTitle=0;song;\nAlbum=-4;album;\n");
    AddPage();
    const auto provider = Make();
    provider->GetStationData();
    EXPECT_EQ(Now().Artist, "Artist");
    EXPECT_EQ(Now().Song, "");
    EXPECT_EQ(Now().Album, "");
    EXPECT_EQ(Media.ProviderName, "R");
}

TEST_F(Msie, AStationThatFailsLeavesNoSongDataInThatPoll) {
    Write("[- 1]\nName=R\nWindow&Doc=;;*;*\nStation=-2;nothing;\nTitle=-4;song;\n");
    SimPage& page = AddPage();
    const auto provider = Make();
    provider->GetStationData();
    EXPECT_EQ(Now().Song, "");
    page.Top->Values["nothing"] = "now there";
    provider->GetStationData();
    EXPECT_EQ(Now().Song, "Song");
}

TEST_F(Msie, ADescriptionThatFailsDoesNotKeepTheSongDataBack) {
    Write("[- 1]\nName=R\nWindow&Doc=;;*;*\nStation=-1;;\nStationDesc=-2;nothing;\nTitle=-4;song;\n");
    AddPage();
    const auto provider = Make();
    provider->GetStationData();
    EXPECT_EQ(Now().StationName, "Page One");
    EXPECT_EQ(Now().StationDescr, "");
    EXPECT_EQ(Now().Song, "Song");
}

TEST_F(Msie, EachRuleThatFailsEndsTheReadAfterTheFieldsBeforeIt) {
    const std::array<std::string, 4> keys = {"Artist", "Title", "Album", "Cover"};
    AddPage();
    for (size_t failing = 0; failing < keys.size(); ++failing) {
        std::string profile = "[- 1]\nName=R\nWindow&Doc=;;*;*\nStation=-1;;\n";
        // In the order of the file the last comes first: the order of the read is its own.
        for (size_t key = keys.size(); key-- > 0;) {
            profile += keys[key] + (key == failing ? "=9;x;\n" : "=-2;desc;\n");
        }
        Write(profile);
        const auto provider = Make();
        provider->GetStationData();
        const std::array<std::string, 4> read = {Now().Artist, Now().Song, Now().Album, Now().Cover};
        for (size_t key = 0; key < keys.size(); ++key) {
            EXPECT_EQ(read[key], key < failing ? "Description" : "") << keys[failing] << " " << keys[key];
        }
    }
}

TEST_F(Msie, AProfileWithoutANameLeavesTheChoiceOpen) {
    Write("[- 1]\nWindow&Doc=;;*;*\nTitle=-4;song;\n");
    AddPage();
    MakerOf pages([this] { return Make(); });
    ProviderChoice choice(Host, Covers, {&pages});
    choice.Choose();
    EXPECT_TRUE(choice.Wanted());
    EXPECT_EQ(Media.ProviderName, NoStationData);
}

TEST_F(Msie, AWindowOfAHigherProfileTakesOverAndAnotherOneOfTheSameDoesNot) {
    Write("[- 1]\nName=First\nWindow&Doc=A;*\nTitle=-3;;\n[- 2]\nName=Second\nWindow&Doc=B;*\nTitle=-3;;\n");
    Desktop.Add("below", "B");
    const auto provider = Make();
    Desktop.Add("above", "B");
    provider->GetStationData();
    EXPECT_EQ(Media.ProviderName, "Second");
    EXPECT_EQ(Now().Song, "above");
    Desktop.Add("new", "A");
    provider->GetStationData();
    EXPECT_EQ(Media.ProviderName, "First");
    EXPECT_EQ(Now().Song, "new");
    EXPECT_EQ(Settings.Loaded, (std::vector<std::string>{"Second", "First"}));
}

TEST_F(Msie, AStationWithoutARuleIsReadAgainAndSongDataFollow) {
    Write("[- 1]\nName=R\nWindow&Doc=;;*;*\nTitle=-4;song;\n");
    AddPage();
    const auto provider = Make();
    provider->GetStationData();
    EXPECT_EQ(Now().Song, "Song");
    EXPECT_EQ(Now().StationName, "");
}

TEST_F(Msie, SongDataAloneKeepTheStation) {
    SimPage& page = AddPage();
    const auto provider = Make();
    page.Top->All[1].Text.InnerText = "Next";
    page.Top->Title = "Page Two";
    provider->GetSongData();
    EXPECT_EQ(Now().Song, "Next");
    EXPECT_EQ(Now().StationName, "One");
}

TEST_F(Msie, SongDataWithoutASourceSearchForOne) {
    const auto provider = Make();
    AddPage();
    provider->GetSongData();
    EXPECT_EQ(Media.ProviderName, "Page Radio");
    EXPECT_EQ(Now().Song, "Song");
}

TEST_F(Msie, TheFileIsReadAnewByEachProviderOnly) {
    AddPage();
    auto provider = Make();
    Write("[- 1]\nName=Other\nWindow&Doc=;;*;*\n");
    provider->GetStationData();
    EXPECT_EQ(Media.ProviderName, "Page Radio");
    provider = Make();
    EXPECT_EQ(Media.ProviderName, "Other");
}

TEST_F(Msie, NoProfilesFindNothing) {
    Write("[Page]\nName=R\nWindow&Doc=;;*;*\n");
    AddPage();
    const auto provider = Make();
    provider->GetStationData();
    EXPECT_EQ(Media.ProviderName, "");
    EXPECT_EQ(Browser.Opened, 0u);
}

TEST_F(Msie, StatusHasNoEffect) {
    Write("[- 1]\nName=R\nWindow&Doc=;;*;*\nStatus=7,nowhere;x;(\nRestart=nowhere;;\nTitle=-4;song;\n");
    AddPage();
    const auto provider = Make();
    provider->GetStationData();
    EXPECT_EQ(Now().Song, "Song");
}

TEST_F(Msie, RestartRunsTheScriptInThePage) {
    SimPage& page = AddPage();
    const auto provider = Make();
    EXPECT_TRUE(provider->RestartRadio());
    EXPECT_EQ(page.Top->Ran, std::vector<std::string>{"play()"});
    page.Top->Values.clear();
    const size_t before = Browser.Polls;
    EXPECT_FALSE(provider->RestartRadio());
    EXPECT_EQ(Browser.Polls, before + 1);  // a page that was slow before has its whole time again
}

TEST_F(Msie, RestartWithAScriptButWithoutAPageIsFalse) {
    Write("[- 1]\nName=R\nWindow&Doc=Player;*\nRestart=0;play();\n");
    Desktop.Add("Song", "Player");
    EXPECT_FALSE(Make()->RestartRadio());
}

TEST_F(Msie, RestartWithoutAScriptIsTrue) {
    Write("[- 1]\nName=R\nWindow&Doc=;;*;*\nRestart=0;;\n");
    SimPage& page = AddPage();
    EXPECT_TRUE(Make()->RestartRadio());
    EXPECT_TRUE(page.Top->Ran.empty());
}

TEST_F(Msie, APollThatIsAskedForWhileOneRunsDoesNothing) {
    AddPage();
    std::unique_ptr<clsProviderMSIE> provider;
    Media.ProviderName = "Other";
    provider = Make();
    Media.ProviderName = "Other";
    size_t before = 0;
    Settings.WhileLoading = [&] {
        before = Browser.Polls;
        provider->GetStationData();
        provider->GetSongData();
        EXPECT_FALSE(provider->RestartRadio());
        EXPECT_EQ(Browser.Polls, before);
    };
    provider->GetStationData();
    EXPECT_GT(before, 0u);
    EXPECT_EQ(Now().Song, "Song");
}

TEST_F(Msie, EachPollBeginsItsLimitsAnew) {
    AddPage();
    const auto provider = Make();
    const size_t before = Browser.Polls;
    provider->GetStationData();
    provider->GetStationData();
    EXPECT_EQ(Browser.Polls, before + 2);
}

TEST_F(Msie, ADesktopWithoutWindowsIsReportedOnlyIfAProfileAsksForThem) {
    Desktop.Shown = false;
    Write("[- 1]\nName=R\nWindow&Doc=;;*;*\n");
    Make();
    EXPECT_EQ(Reports, 0);
    Write(Profiles);
    Make();
    EXPECT_EQ(Reports, 1);
}

TEST_F(Msie, ItsEndClearsTheMediaData) {
    AddPage();
    auto provider = Make();
    provider->GetStationData();
    provider.reset();
    EXPECT_EQ(Now(), STATIONANDSONGDATA{});
}

TEST_F(Msie, TheNextProviderKeepsWhatItHasReadWhenThisOneGoes) {
    SimPage& page = AddPage();
    /// A source after this one, which is always there.
    class Next : public clsProvider {
     public:
        explicit Next(MediaState& media) {
            media.ProviderName = "Next";
            media.CurrentMedia.Song = "Read by the next";
        }
        void GetStationData() override {}
        void GetSongData() override {}
        bool RestartRadio() override { return false; }
    };
    MakerOf pages([this] { return Make(); });
    MakerOf others([this] { return std::make_unique<Next>(Media); });
    ProviderChoice choice(Host, Covers, {&pages, &others});
    choice.Choose();
    choice.GetStationData();
    EXPECT_EQ(Now().Song, "Song");
    Browser.Close(page);
    choice.GetStationData();
    EXPECT_TRUE(choice.Wanted());
    choice.Choose();
    EXPECT_EQ(Media.ProviderName, "Next");
    EXPECT_EQ(Now().Song, "Read by the next");
}

}  // namespace
}  // namespace Corvetape
