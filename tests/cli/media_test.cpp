// Names and tags from a media table, titles that mean harm among them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/cli_test.h"

namespace Corvetape {
namespace {

using namespace Test;
using testing::ElementsAre;
using testing::Eq;
using testing::SizeIs;

/// A field of a table in its quotation marks.
std::string Quoted(const std::string& text) {
    std::string field = "\"";
    for (const char letter : text) field += letter == '"' ? std::string("\"\"") : std::string(1, letter);
    return field + '"';
}

class MediaTest : public CliTest {
 protected:
    /// The tags of a music file of any format, as the program itself reads them.
    static SourceMedia TagsOf(const std::string& path) {
        const auto opened = SoundFileSource::Open(path, Rate);
        if (opened.Source) return opened.Source->NowPlaying();
        ADD_FAILURE() << opened.Error;
        return {};
    }
};

TEST_F(MediaTest, SongsTakeTheirNamesAndTagsFromTheTable) {
    const Recording recording = MakeRecording({.Seconds = 10});
    PutWave("show.wav", recording);
    Put("show.csv",
        "seconds,station,artist,title,album\n"
        "0,Radio One,Ann,First,Begin\n10.5,Radio One,Bob,\"Second, again\",\n22.5,,,Third,\n");
    const Finished run = Split({"show.wav", "--media", "show.csv", "--json"});
    EXPECT_EQ(run.Code, 0);
    EXPECT_EQ(run.Err, "");
    EXPECT_THAT(Compared(recording, run), ElementsAre("equal", "equal", "equal"));
    EXPECT_THAT(FilesBelow(Out()),
                ElementsAre("- Third.wav", "Radio One/Ann - First.wav", "Radio One/Bob - Second, again.wav"));
    const std::vector<Json> songs = Objects(run.Out);
    EXPECT_EQ(songs.at(1)["artist"], "Bob");
    EXPECT_EQ(songs.at(1)["title"], "Second, again");
    EXPECT_EQ(songs.at(0)["file"], Out() + "/Radio One/Ann - First.wav");
    EXPECT_EQ(TagOf(songs.at(0)["file"], "INAM"), "First");
    EXPECT_EQ(TagOf(songs.at(0)["file"], "IART"), "Ann");
    EXPECT_EQ(TagOf(songs.at(0)["file"], "IALB"), "Begin");
    EXPECT_EQ(TagOf(songs.at(0)["file"], "IGNR"), "Radio One");
}

/// A voice in the middle, with a pause of 100 ms after every 300 ms.
std::vector<Frame> Speech(size_t seconds) {
    std::vector<Frame> speech = Noise(seconds * Rate, 77);
    constexpr size_t period = Rate * 4 / 10;
    for (size_t i = 0; i < speech.size(); ++i) {
        if (i % period >= period * 3 / 4) speech[i].Left = static_cast<int16_t>(speech[i].Left / 12);
        speech[i].Right = speech[i].Left;
    }
    return speech;
}

TEST_F(MediaTest, TalkBetweenTwoSongsIsAPieceThatTheRulesForShortOnesDecideOn) {
    Recording recording;
    recording.Songs = {Noise(24 * Rate, 1), Speech(5), Noise(25 * Rate, 2)};
    for (const std::vector<Frame>& song : recording.Songs) {
        recording.Frames.insert(recording.Frames.end(), song.begin(), song.end());
    }
    PutWave("show.wav", recording);
    Put("show.csv", "0,FM,Ann,First,\n31,FM,Bob,Second,\n");
    const std::vector<std::string> words = {"show.wav", "--media", "show.csv", "--json", "--mode", "auto"};
    const Finished run = Split(words);
    EXPECT_EQ(run.Err, "");
    EXPECT_THAT(Compared(recording, run), ElementsAre("equal", "equal", "equal"));
    const std::vector<Json> songs = Objects(run.Out);
    ASSERT_THAT(songs, SizeIs(3));
    EXPECT_EQ(songs[0]["title"], "First");
    EXPECT_EQ(songs[1]["title"], "");
    EXPECT_EQ(songs[1]["kept"], true);
    EXPECT_EQ(songs[2]["title"], "Second");
    EXPECT_EQ(songs[2]["confidence"]["begin"], "likely");

    std::vector<std::string> longer = words;
    longer.insert(longer.end(), {"--set", "Source.IgnoreShortSongs=6"});
    const std::vector<Json> kept = Objects(Split(longer).Out);
    ASSERT_THAT(kept, SizeIs(3));
    EXPECT_EQ(kept[1]["reason"], "short");
    EXPECT_EQ(kept[2]["title"], "Second");
    EXPECT_EQ(kept[2]["kept"], true);
}

TEST_F(MediaTest, TheTableIsOfTheTimeOfEachFile) {
    PutWave("one.wav", MakeRecording({.Seed = 1, .Songs = 1, .Seconds = 10}));
    PutWave("two.wav", MakeRecording({.Seed = 2, .Songs = 1, .Seconds = 10}));
    Put("show.csv", "0,FM,Ann,Same\n");
    const Finished run = Split({"one.wav", "two.wav", "--media", "show.csv", "--json"});
    const std::vector<Json> songs = Objects(run.Out);
    ASSERT_THAT(songs, SizeIs(2));
    EXPECT_EQ(songs[0]["title"], "Same");
    EXPECT_EQ(songs[1]["title"], "Same");
}

TEST_F(MediaTest, ChangesOfTheTableAreTheEndsOfSongsInThatMode) {
    // One sound without a pause but for short rests, so that only the table can tell the songs apart.
    std::vector<Frame> sound = Noise(size_t{36} * Rate, 4);
    std::fill_n(sound.begin() + 12 * Rate, Rate / 10, Frame{});
    std::fill_n(sound.begin() + 24 * Rate, Rate / 10, Frame{});
    WriteWave(folder / "show.wav", sound, Rate);
    Put("show.csv", "0,FM,Ann,One\n13.5,FM,Bob,Two\n24.5,FM,Cleo,Three\n");
    const Finished run =
        Split({"show.wav", "--media", "show.csv", "--json", "--set", "Source.EndOfSongDetection=1"});
    EXPECT_EQ(run.Code, 0);
    const std::vector<Json> songs = Objects(run.Out);
    ASSERT_THAT(songs, SizeIs(3));
    const double songBegins[] = {0.0, 12.1, 24.1};
    const double songEnds[] = {12.0, 24.0, 36.0};
    const char* const titles[] = {"One", "Two", "Three"};
    for (size_t i = 0; i < songs.size(); ++i) {
        EXPECT_NEAR(songs[i]["begin"].get<double>(), songBegins[i], 0.051) << i;
        EXPECT_NEAR(songs[i]["end"].get<double>(), songEnds[i], 0.051) << i;
        EXPECT_EQ(songs[i]["title"], titles[i]);
    }
    EXPECT_THAT(FilesBelow(Out()),
                ElementsAre("FM/Ann - One.wav", "FM/Bob - Two.wav", "FM/Cleo - Three.wav"));
}

TEST_F(MediaTest, TheTagsOfAFileNameItsSongsAndNumberThemAfterTheFirst) {
    Put("show.csv", "0,FM,Ann,The Show\n");
    const Recording recording = MakeRecording({.Seconds = 10});
    PutWave("show.wav", recording);
    ASSERT_EQ(Split({"show.wav", "--media", "show.csv", "--set", "Source.LengthOfPause=3000"}).Code, 0);
    ASSERT_THAT(FilesBelow(Out()), ElementsAre("FM/Ann - The Show.wav"));
    const Finished run = RunCommand(
        With("record", {"--input", "file:" + Out() + "/FM/Ann - The Show.wav", "--speed", "1000", "--json"}));
    EXPECT_EQ(run.Code, 0);
    EXPECT_THAT(Compared(recording, run), ElementsAre("equal", "equal", "equal"));
    const std::vector<Json> songs = Objects(run.Out);
    ASSERT_THAT(songs, SizeIs(3));
    EXPECT_EQ(songs[0]["artist"], "Ann");
    EXPECT_EQ(songs[0]["title"], "The Show");
    EXPECT_EQ(songs[1]["title"], "The Show (2)");
    EXPECT_EQ(songs[2]["title"], "The Show (3)");
    EXPECT_EQ(TagOf(songs[2]["file"], "INAM"), "The Show (3)");
}

/// A text from a stranger, and the file name that it becomes.
struct Hostile {
    std::string Text;
    std::string Name;
};

std::vector<Hostile> HostileTexts() {
    return {{"say \"hi\" 'you'", "say _hi_ 'you'"},
            {"$(touch pwned) `touch pwned`", "$(touch pwned) `touch pwned`"},
            {"'; touch pwned; '", "'; touch pwned; '"},
            {"two\nlines", "two_lines"},
            {"-rf", "-rf"},
            {"--help", "--help"},
            {"../../up", ".._.._up"},
            {"..", "_"},
            {"/etc/passwd", "_etc_passwd"},
            {"\\\\server\\share", "__server_share"},
            {"%Artist%%Temp%", "%Artist%%Temp%"},
            {"%1 %2 \\r\\n touch pwned", "%1 %2 _r_n touch pwned"},
            {"a\x1b[2Jb", "a_[2Jb"},
            {"*?<>|:", "______"}};
}

class HostileTitles : public MediaTest, public testing::WithParamInterface<const char*> {};

TEST_P(HostileTitles, EndAsSafeFilesInsideTheFolder) {
    const std::vector<Hostile> texts = HostileTexts();
    std::string table;
    Recording recording;
    for (uint32_t i = 0; i < texts.size(); ++i) {
        const Recording one = MakeRecording({.Seed = i, .Songs = 1, .Seconds = 9});
        recording.Frames.insert(recording.Frames.end(), one.Frames.begin(), one.Frames.end());
        const std::string field = Quoted(texts[i].Text);
        table += std::to_string(10 * i) + ",FM," + field + "," + field + "," + field + "\n";
    }
    PutWave("show.wav", recording);
    Put("show.csv", table);
    const Finished run = Split({"show.wav", "--media", "show.csv", "--json", "--set",
                                "Options.MusicFileTemplate2=%Title%", "--set", GetParam()});
    EXPECT_EQ(run.Code, 0);
    EXPECT_EQ(run.Err, "");
    const std::vector<Json> songs = Objects(run.Out);
    ASSERT_THAT(songs, SizeIs(texts.size()));
    for (size_t i = 0; i < songs.size(); ++i) {
        const std::string file = songs[i]["file"];
        EXPECT_EQ(songs[i]["title"], texts[i].Text);
        EXPECT_EQ(file.substr(0, file.rfind('.')), Out() + "/FM/" + texts[i].Name);
        EXPECT_NE(TagsOf(file).Song, "");
    }
    EXPECT_THAT(FilesBelow(Out()), SizeIs(texts.size())) << "a song is somewhere else";
    std::vector<std::string> beside;
    for (const auto& entry : std::filesystem::directory_iterator(folder.Path())) {
        beside.push_back(entry.path().filename());
    }
    EXPECT_THAT(beside, testing::UnorderedElementsAre("home", "out", "show.wav", "show.csv"))
        << "a command was run or a path left the folder";
}

INSTANTIATE_TEST_SUITE_P(Formats, HostileTitles,
                         testing::Values("Options.Encoder=0", "Options.Encoder=1", "Options.Encoder=2"));

}  // namespace
}  // namespace Corvetape
