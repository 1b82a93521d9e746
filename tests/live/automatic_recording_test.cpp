// Songs that end by everything that is known, with a real player on both sound servers: whole, named, and
// with nothing of their neighbours.
#include <algorithm>
#include <cstring>

#include "live/automatic_recording.h"
#include "live/page_server.h"
#include "live/played_songs.h"

namespace Corvetape {
namespace {

using Json = nlohmann::json;

TEST_F(AutomaticRecording, TaggedFilesWithoutAGapAreOneSongEach) {
    const std::vector<std::string> files = {Song(1, 9), Song(2, 9), Song(3, 9)};
    WithRetakes([&] {
        Record(3);
        Play(files);
        ExpectKept(3, [](const AutomaticStage& stage, const std::vector<Json>& kept) {
            for (int number = 1; number <= 3; ++number) ExpectWhole(stage, number, 9, FirstCuts);
            // One in which its player has faltered is not whole.
            EXPECT_EQ(kept[1].value("whole", false), kept[1].value("dropouts", -1) == 0);
        });
    });
}

TEST_F(AutomaticRecording, TheLastSongKeepsItsNameWhenThePlayerExits) {
    const std::string file = Song(1, 8);
    Record(1);
    Play({file});
    ExpectKept(1, [](const AutomaticStage& stage, const std::vector<Json>& kept) {
        EXPECT_EQ(kept[0].value("title", ""), "Song 1");
        EXPECT_EQ(kept[0].value("/confidence/begin"_json_pointer, ""), "sure");
        EXPECT_EQ(kept[0].value("/confidence/end"_json_pointer, ""), "sure");
        ExpectWhole(stage, 1, 8, WithAGap);
    });
}

TEST_F(AutomaticRecording, APauseOfThePlayerIsLeftOut) {
    const std::string file = Song(1, 12);
    Record(1);
    Play({file});
    PressAfter(1, 6, "Pause");
    WaitFor(8);
    for (AutomaticStage& stage : stages) stage.Press("Play");
    ExpectKept(1, [](const AutomaticStage& stage, const std::vector<Json>& kept) {
        EXPECT_EQ(kept[0].value("pauses_cut", -1), 1);
        ExpectWhole(stage, 1, 12, WithoutAGap);
    });
}

TEST_F(AutomaticRecording, ASkippedSongIsShortAndItsNeighboursAreClean) {
    const std::vector<std::string> files = {Song(1, 13), Song(2, 30), Song(3, 13)};
    WithRetakes([&] {
        Record(2, {"--set", "Source.IgnoreShortSongs=11"});
        Play(files);
        PressAfter(2, 6, "Next");  // what is skipped earlier would be in neither song
        ExpectKept(2, [](const AutomaticStage& stage, const std::vector<Json>&) {
            ExpectWhole(stage, 1, 13, FirstCuts);
            ExpectWhole(stage, 3, 13, FirstCuts);
        });
    });
}

TEST_F(AutomaticRecording, TheSameTrackTwiceIsTwoWholeSongs) {
    const PlayedSong song;
    const std::string file = TaggedFileOf(song, folder.Path());
    WithRetakes([&] {
        Record(2, {"--set", "Options.SameName=2"});
        Play({file, file});
        ExpectKept(2, [&](const AutomaticStage& stage, const std::vector<Json>&) {
            ExpectEdges(stage, song, WithoutAGap);
            ExpectEdges(stage, song, WithoutAGap, " (2)");
        });
    });
}

TEST_F(AutomaticRecording, ASecondPlayerMixesBothAndRenamesNone) {
    const std::string one = Song(1, 14);
    const std::string two = Song(2, 14);
    Record(2);
    Play({one});
    Await([](AutomaticStage& stage) { return stage.HasPlayed("Song 1", 5); });
    Play({two});
    ExpectKept(2, [](const AutomaticStage&, const std::vector<Json>& kept) {
        EXPECT_EQ(kept[0].value("title", ""), "Song 1");
        EXPECT_EQ(kept[1].value("title", ""), "Song 2");
        for (const Json& song : kept) {
            EXPECT_TRUE(song.value("mixed", false));
            EXPECT_FALSE(song.value("whole", true));
        }
    });
}

TEST_F(AutomaticRecording, ADropoutEndsNoSong) {
    const std::string file = Song(1, 9, "volume=0:enable='between(t,5,5.11)'");
    Record(1);
    Play({file});
    ExpectKept(1, [](const AutomaticStage& stage, const std::vector<Json>& kept) {
        EXPECT_GE(kept[0].value("dropouts", -1), 1);
        ExpectWhole(stage, 1, 9, WithoutAGap);
    });
}

// One song of 9 s, with a dropout in its middle, some time after the recorder has asked for its artist; then
// silence.
constexpr const char* FalteringPage =
    R"html(<!doctype html><title>Band 1 - Song 1 | Faltering Radio</title><body><script>
const context = new AudioContext(), volume = context.createGain(), tone = context.createOscillator();
tone.frequency.value = 200;
tone.connect(volume).connect(context.destination);
volume.gain.value = 0;
tone.start();
let begun = false;
const heard = () => {
  const level = (seconds, gain) => volume.gain.setValueAtTime(gain, context.currentTime + seconds);
  if (!begun) { level(5, 0.5); level(9, 0); level(9.11, 0.5); level(14, 0); }
  begun = true;
  return document.title;
};
</script></body>)html";

TEST_F(AutomaticRecording, ADropoutInABrowserEndsNoSong) {
    const PageServer pages(std::map<std::string, std::string>{{"/", FalteringPage}});
    RecordPage(pages, 1, Patience, "Artist=-2;heard();^(.+?) - .\nTitle=-1;;^.+? - (.+) \\|\n");
    ExpectKept(1, [](const AutomaticStage& stage, const std::vector<Json>& kept) {
        EXPECT_EQ(kept[0].value("title", ""), "Song 1");
        EXPECT_GE(kept[0].value("dropouts", -1), 1);
        ExpectWhole(stage, 1, 8.89, WithAGap);
    });
}

/// A page that plays six songs of 9 s, each of a tone, as soon as it is asked what plays, with so much
/// silence between them. Its title changes so much later than its songs, and ends with the name of the
/// station.
std::string PageOfSongs(double gap, double late) {
    return "<!doctype html><title>Soon | Page Radio</title><body><script>const gap = " + std::to_string(gap) +
           ", late = " + std::to_string(late) + R"html(;
const context = new AudioContext(), volume = context.createGain(), tone = context.createOscillator();
tone.connect(volume).connect(context.destination);
volume.gain.value = 0;
tone.start();
let begin = 0;
const heard = () => {
  if (!begin) {
    begin = context.currentTime + 3;
    for (let i = 0; i < 6; ++i) {
      const at = begin + i * (9 + gap);
      tone.frequency.setValueAtTime(200 * (i % 4 + 1), at);
      volume.gain.setValueAtTime(0.5, at);
      if (gap || i == 5) volume.gain.setValueAtTime(0, at + 9);
    }
  }
  const song = Math.min(Math.floor((context.currentTime - late - begin) / (9 + gap)) + 1, 6);
  if (song > 0) document.title = "Song " + song + " | Page Radio";
  return song > 0 ? document.title : "";
};
const band = () => heard() && "Band " + parseInt(document.title.slice(5));
</script></body>)html";
}

constexpr const char* SongsOfPage = "Artist=-2;band();\nTitle=-2;heard();\n";
constexpr int PatienceWithSixSongs = 200;

TEST_F(AutomaticRecording, LateTitlesOfAPageWithGapsGiveEverySongWholeAndLoseItsStation) {
    const PageServer pages(std::map<std::string, std::string>{{"/", PageOfSongs(1.2, 5)}});
    RecordPage(pages, 6, PatienceWithSixSongs, SongsOfPage);
    ExpectKept(6, [](const AutomaticStage& stage, const std::vector<Json>& kept) {
        for (size_t i = 0; i < 6; ++i) {
            const std::string text = std::to_string(i + 1);
            EXPECT_EQ(kept[i].value("title", ""), "Song " + text);
            ExpectWhole(stage, "Band " + text + " - Song " + text, static_cast<int>(i % 4) + 1, 9, WithAGap);
        }
    });
}

TEST_F(AutomaticRecording, SongsOfAPageWithoutGapsAreOneSongEach) {
    const PageServer pages(std::map<std::string, std::string>{{"/", PageOfSongs(0, 0)}});
    RecordPage(pages, 6, PatienceWithSixSongs, SongsOfPage);
    ExpectKept(6, [](const AutomaticStage& stage, const std::vector<Json>& kept) {
        for (size_t i = 0; i < 6; ++i) {
            const std::string text = std::to_string(i + 1);
            EXPECT_EQ(kept[i].value("title", ""), "Song " + text);
            ExpectWhole(stage, "Band " + text + " - Song " + text, static_cast<int>(i % 4) + 1, 9, FirstCuts);
        }
    });
}

// Two songs of one title: it vanishes for 3 s between them, and again in the middle of the second one.
constexpr const char* PageOfOneTitle =
    R"html(<!doctype html><title>Now | Page Radio</title><body><script>
const context = new AudioContext(), volume = context.createGain(), tone = context.createOscillator();
tone.frequency.value = 200;
tone.connect(volume).connect(context.destination);
volume.gain.value = 0;
tone.start();
let begin = 0;
const heard = () => {
  if (!begin) {
    begin = context.currentTime + 3;
    volume.gain.setValueAtTime(0.5, begin);
    tone.frequency.setValueAtTime(600, begin + 10);
    volume.gain.setValueAtTime(0, begin + 47);
  }
  const second = context.currentTime - begin;
  const shown = second > 0 && !(second > 10 && second < 13) && !(second > 20 && second < 23);
  return shown ? "Song 1" : "";
};
const band = () => heard() && "Band 1";
</script></body>)html";

TEST_F(AutomaticRecording, ATitleThatComesAgainIsAnotherSongWhereTheSoundIsAnother) {
    const PageServer pages(std::map<std::string, std::string>{{"/", PageOfOneTitle}});
    WithRetakes([&] {
        RecordPage(pages, 2, Patience, SongsOfPage);
        ExpectKept(2, [](const AutomaticStage& stage, const std::vector<Json>&) {
            ExpectWhole(stage, "Band 1 - Song 1 (2)", 1, 10, FirstCuts);  // the longer one has the name
            ExpectWhole(stage, "Band 1 - Song 1", 3, 37, FirstCuts);
        });
    });
}

TEST_F(AutomaticRecording, TheLastSongIsKeptThoughASilenceEndsTheRecording) {
    const std::string file = Song(1, 8);
    Record(2, {"--set", "Source.QuitAfterSilence=1"});
    Play({file});
    const auto look = [](const AutomaticStage& stage, const std::vector<Json>& kept) {
        EXPECT_EQ(kept[0].value("title", ""), "Song 1");
        EXPECT_EQ(kept[0].value("/confidence/end"_json_pointer, ""), "sure");
        ExpectWhole(stage, 1, 8, WithAGap);
    };
    ExpectKept(1, look);
}

/// The samples of a WAV file, as bytes from frame `from` on.
std::string SamplesOf(const std::string& file, size_t from = 0) {
    constexpr size_t headerBytes = 44;
    const std::string bytes = Content(file);
    if (bytes.size() < headerBytes) return {};
    uint32_t length = 0;
    std::memcpy(&length, &bytes[headerBytes - sizeof(length)], sizeof(length));
    return bytes.substr(std::min(headerBytes + 4 * from, bytes.size()),
                        length - std::min<size_t>(length, 4 * from));
}

TEST_F(AutomaticRecording, ASongThatWasHeardFromItsMiddleIsCutAgainToTheSample) {
    constexpr size_t second = 44100;
    constexpr size_t slot = 2205;
    const std::vector<std::string> files = {Song(1, 30), Song(2, 9)};
    Play(files);
    Await([](AutomaticStage& stage) { return stage.HasPlayed("Song 1", 5); });
    Record(2);
    ExpectKept(2, [](AutomaticStage& stage, const std::vector<Json>& kept) {
        EXPECT_EQ(kept[0].value("/confidence/begin"_json_pointer, ""), "unsure");
        EXPECT_FALSE(kept[0].value("whole", true));
        const std::string before = SamplesOf(stage.FileOf("Band 1 - Song 1"));
        stage.Recut("Song 1", {"--begin", "+1", "--end", "+2"});
        const std::string after = SamplesOf(stage.FileOf("Band 1 - Song 1"));
        ASSERT_EQ(after.size(), before.size() + 4 * second) << stage.Story();
        ASSERT_GT(before.size(), 4 * second);
        const size_t common = before.size() - 4 * second;
        EXPECT_TRUE(after.starts_with(before.substr(4 * second)));
        // What follows is the next song, but for a fade that both have.
        bool follows = false;
        const std::string added = after.substr(common);
        for (size_t shared = 0; shared < 60 && !follows; ++shared) {
            follows = SamplesOf(stage.FileOf("Band 2 - Song 2"), shared * slot).starts_with(added);
        }
        EXPECT_TRUE(follows);
    });
}

TEST_F(AutomaticRecording, AFileWithoutTagsIsNamedByItsFile) {
    const std::string file = Song(3, 8, "anull", false);
    Record(1);
    Play({file});
    ExpectKept(1, [](const AutomaticStage&, const std::vector<Json>& kept) {
        EXPECT_EQ(kept[0].value("title", ""), "Old Tape 3");
    });
}

TEST_F(AutomaticRecording, SilenceOfThreeSecondsIsInNoSong) {
    const std::vector<std::string> files = {Song(1, 8, "apad=pad_dur=4"), Song(2, 8)};
    Record(2);
    Play(files);
    ExpectKept(2, [](const AutomaticStage& stage, const std::vector<Json>&) {
        ExpectWhole(stage, 1, 8, WithAGap);
        ExpectWhole(stage, 2, 8, WithAGap);
    });
}

}  // namespace
}  // namespace Corvetape
