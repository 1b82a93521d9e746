// Titles and covers on their whole way: from a web page and a player to song files with their tags, and what
// happens to a recording whose source goes away.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenario/story.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* Profiles =
    "[- Page]\nName=Page Radio\nWindow&Doc=;;*;http://radio/\nStation=-1;;\nArtist=-4;artist;\n"
    "Title=-4;title;\nAlbum=-4;album;\nCover=-4;cover;\n";

/// A radio whose titles come from a page in a browser, and from a player that knows other words for them.
/// Song k, from 0 on, begins at second 3 + 42 k and lasts 40 seconds.
class MediaSources : public testing::TestWithParam<int> {
 protected:
    static std::string Place(const std::string& source, int song) {
        return "http://127.0.0.1/" + source + std::to_string(song) + ".jpg";
    }

    /// A picture unlike that of any other address.
    static std::string Picture(const std::string& address) {
        std::string bytes = "picture of " + address;
        bytes.resize(3000, '.');
        return bytes;
    }

    void Begin() {
        WorldOptions options;
        options.Radio = EvenRadio(4, 40);
        options.TellsTitles = false;
        for (const char* source : {"Page Radio", MediaPlayerName}) {
            options.Settings.push_back({source, "EndOfSongDetection", std::to_string(GetParam())});
            options.Settings.push_back({source, "LengthOfPause", "500"});
        }
        options.Connect = [](World& world, Machine& machine, RunOptions&) {
            machine.Documents = &world.Browser;
            machine.Players = &world.Players;
            machine.Web = &world.Web;
        };
        Radio.emplace(std::move(options));
        Radio->Disk().Put(Radio->Computer.Folders.Program + "/MSIE.ini", Profiles);
        for (int song = 1; song <= 4; ++song) {
            for (const char* source : {"page", "player"}) {
                const std::string address = Place(source, song);
                Radio->Web.Bodies[address] = Picture(address);
            }
        }
    }

    /// The page shows a song, and the player says it, both a little late.
    void OnAir(int song) {
        RunTo(*Radio, 3 + 42 * (song - 1) + 0.4);
        if (!Radio->Browser.All.empty()) ShowOnPage(song);
        if (PlayerRuns) SayByPlayer(song);
    }

    void OpenPage() { Radio->Browser.Add("http://radio/", "Radio &amp; Page"); }

    void ShowOnPage(int song) {
        const std::string number = std::to_string(song);
        const auto text = [](const std::string& shown) { return ElementText{{}, shown, {}}; };
        Radio->Browser.All[0]->Top->All = {{"artist", text("Page Band " + number)},
                                           {"title", text("Page Song " + number)},
                                           {"album", text("Page Album")},
                                           {"cover", {{}, {}, Place("page", song)}}};
    }

    void SayByPlayer(int song) {
        const std::string number = std::to_string(song);
        Radio->Players.Say({"mpv", true, "Pop", "", "Player Band " + number + " - Player Song " + number,
                            "Player Album", Place("player", song)});
    }

    /// The song file of a title, with its cover beside it: what is wrong, or nothing.
    std::string Fault(const std::string& artist, const std::string& title, const std::string& album,
                      const std::string& cover) {
        for (const TransferredSong& song : Radio->Transferred) {
            if (song.Media.Song != title) continue;
            const std::string file = Radio->Disk().Content(song.MusicFile).value_or("");
            for (const std::string& tag : {artist, title, album}) {
                if (file.find(tag) == std::string::npos) return title + ": no tag " + tag;
            }
            if (song.MusicFile.find(artist + " - " + title) == std::string::npos) return song.MusicFile;
            const std::string base = song.TempFile.substr(0, song.TempFile.rfind('.'));
            const bool same = Radio->Disk().Content(base + ".jpg") == Picture(cover);
            return same ? "" : title + ": another cover";
        }
        return title + " is missing";
    }

    /// Records four songs; three of them end, and each of these has what its source told of it.
    void RecordThreeSongsOf(const std::string& source, const std::string& place) {
        ASSERT_TRUE(Radio->StartRecording());
        for (int song = 1; song <= 4; ++song) OnAir(song);
        Radio->RunFor(60);
        Radio->Finish();
        for (int song = 1; song <= 3; ++song) {
            const std::string number = " " + std::to_string(song);
            EXPECT_EQ(Fault(source + " Band" + number, source + " Song" + number, source + " Album",
                            Place(place, song)),
                      "");
        }
        EXPECT_EQ(MusicComparedWithRadio(*Radio), "");
    }

    std::optional<World> Radio;
    bool PlayerRuns = false;
};

TEST_P(MediaSources, APageNamesTheSongsAndGivesThemTheirCovers) {
    Begin();
    OpenPage();
    RecordThreeSongsOf("Page", "page");
    EXPECT_THAT(Radio->Transferred[0].MusicFile, HasSubstr("/Radio & Page/"));
}

TEST_P(MediaSources, APlayerNamesTheSongsAndGivesThemTheirCovers) {
    Begin();
    PlayerRuns = true;
    RecordThreeSongsOf("Player", "player");
}

TEST_P(MediaSources, APageThatIsClosedInASongGivesWayToThePlayerWithinTwoSeconds) {
    Begin();
    OpenPage();
    PlayerRuns = true;
    ASSERT_TRUE(Radio->StartRecording());
    OnAir(1);
    OnAir(2);
    RunTo(*Radio, 65);
    ASSERT_EQ(Radio->Values().Media.ProviderName, "Page Radio");
    Radio->Browser.Close(*Radio->Browser.All[0]);
    // In the other modes the source is asked every tenth second only.
    const double asked = GetParam() == 1 ? 0 : 10;
    ASSERT_TRUE(Radio->RunUntil([&] { return Radio->Values().Media.ProviderName.empty(); }, asked + 1));
    Radio->RunFor(2);
    EXPECT_EQ(Radio->Values().Media.ProviderName, MediaPlayerName);
    const auto title = [&] { return Radio->Values().Media.CurrentMedia.Song; };
    EXPECT_TRUE(Radio->RunUntil([&] { return title() == "Player Song 2"; }, asked)) << title();
    OnAir(3);
    OnAir(4);
    Radio->RunFor(60);
    Radio->Finish();
    EXPECT_EQ(Fault("Page Band 1", "Page Song 1", "Page Album", Place("page", 1)), "");
    EXPECT_EQ(Fault("Player Band 3", "Player Song 3", "Player Album", Place("player", 3)), "");
    EXPECT_EQ(MusicComparedWithRadio(*Radio), "");
}

TEST_P(MediaSources, APageThatOpensLaterTakesNothingFromAPlayerThatIsThere) {
    Begin();
    PlayerRuns = true;
    ASSERT_TRUE(Radio->StartRecording());
    OnAir(1);
    RunTo(*Radio, 20);
    OpenPage();
    OnAir(2);
    RunTo(*Radio, 70);
    EXPECT_EQ(Radio->Values().Media.ProviderName, MediaPlayerName);
    EXPECT_EQ(Radio->Values().Media.CurrentMedia.Song, "Player Song 2");
}

TEST_P(MediaSources, ThatHaveAllGoneCostNoSound) {
    Begin();
    PlayerRuns = true;
    ASSERT_TRUE(Radio->StartRecording());
    OnAir(1);
    RunTo(*Radio, 30);
    Radio->Players.Quit("mpv");
    PlayerRuns = false;
    Radio->RunFor(12);
    EXPECT_EQ(Radio->Values().Media.ProviderName, NoStationData);
    RunTo(*Radio, 200);
    Radio->Finish();
    EXPECT_EQ(MusicComparedWithRadio(*Radio), "");
    EXPECT_GE(Radio->Transferred.size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Modes, MediaSources, testing::Values(0, 1),
                         [](const auto& mode) { return mode.param == 0 ? "BySilence" : "ByMediaData"; });

}  // namespace
}  // namespace Corvetape::Test
