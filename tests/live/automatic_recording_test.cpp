// Songs that end by everything that is known, with a real player on both sound servers: whole, named, and
// with nothing of their neighbours.
#include <gtest/gtest-spi.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <thread>

#include "live/automatic_stage.h"
#include "live/live_browser.h"
#include "live/page_server.h"

namespace Corvetape {
namespace {

using std::chrono::milliseconds;
using Json = nlohmann::json;

constexpr double WithAGap = 0.1;
constexpr double WithoutAGap = 0.3;

/// Of the first songs of a source, at joins without a gap. Nothing is learned of it yet: a join may be taken
/// for a fade of a second, of which both songs have all.
constexpr double FirstCuts = 1.2;

/// A player on a busy machine falters: its song gets longer by that, and a little of it is lost to the eye of
/// the test, which looks at windows of 20 ms.
constexpr double Faltering = 3;
constexpr double FalteringHides = 0.3;

/// Seconds of the input after which a recorder ends that does not get what it waits for.
constexpr int Patience = 120;

/// So busy that players start late and falter whatever they play.
bool MachineIsBusy() {
    constexpr double mostPerCore = 4;
    double load = 0;
    return getloadavg(&load, 1) == 1 &&
           load > mostPerCore * std::max(std::thread::hardware_concurrency(), 1U);
}

/// Both sound servers at the same time: most of a test is waiting.
class AutomaticRecording : public testing::Test {
 protected:
    AutomaticRecording() { MakeStages(); }

    void MakeStages() {
        browsers.clear();
        stages.clear();
        for (const ServerKind kind : {ServerKind::PulseAudio, ServerKind::PipeWire}) {
            stages.emplace_back(session, kind);
        }
    }

    /// A take on a machine that was too busy for its players says nothing of joins: there is another one
    /// then, with everything new. On any other machine the first failure counts.
    template <typename Take>
    void WithRetakes(const Take& take) {
        constexpr int mostTakes = 3;
        for (int number = 1; number < mostTakes; ++number) {
            testing::TestPartResultArray failures;
            {
                const testing::ScopedFakeTestPartResultReporter intercepted(
                    testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &failures);
                take();
            }
            if (failures.size() == 0) return;
            if (!MachineIsBusy()) {
                for (int i = 0; i < failures.size(); ++i) {
                    ADD_FAILURE() << failures.GetTestPartResult(i).message();
                }
                return;
            }
            MakeStages();
        }
        take();
    }

    /// A song with the tone of its number, 20 % of it noise.
    std::string Song(int number, int length, const std::string& filter = "anull", bool tagged = true) {
        const std::string text = std::to_string(number);
        const std::string file = folder / ((tagged ? "song" : "Old Tape ") + text + ".flac");
        const std::string noise = "anoisesrc=d=" + std::to_string(length) +
                                  ":c=" + (number % 2 == 0 ? "brown" : "white") +
                                  ":a=0.05:r=44100:seed=" + text;
        const std::string tone = "sine=frequency=" + std::to_string(200 * number) +
                                 ":sample_rate=44100:duration=" + std::to_string(length);
        std::vector<std::string> command = {"ffmpeg",
                                            "-y",
                                            "-loglevel",
                                            "error",
                                            "-f",
                                            "lavfi",
                                            "-i",
                                            tone,
                                            "-f",
                                            "lavfi",
                                            "-i",
                                            noise,
                                            "-filter_complex",
                                            "[0][1]amix=inputs=2:normalize=0," + filter,
                                            "-ac",
                                            "2"};
        if (tagged) {
            command.insert(command.end(),
                           {"-metadata", "artist=Band " + text, "-metadata", "title=Song " + text});
        }
        command.push_back(file);
        RunToEnd(command, {}, folder / "output");
        return file;
    }

    /// Records until so many songs were kept.
    void Record(int songs, const std::vector<std::string>& more = {}) {
        for (AutomaticStage& stage : stages) stage.Record(songs, Patience, more);
        Await([](AutomaticStage& stage) { return stage.Records(); });
        WaitFor(2);  // until sound has come, and they know of no player
    }

    /// Records a page that a browser plays on each server, until so many songs were kept. `how`: lines of its
    /// profile.
    void RecordPage(const PageServer& pages, int songs, int seconds, const std::string& how) {
        for (AutomaticStage& stage : stages) {
            stage.GiveSettings("MSIE.ini",
                               "[- Radio]\nName=Page Radio\nWindow&Doc=;;* | *;http://127.0.0.1:*\n" + how);
            std::map<std::string, std::string> environment = stage.Environment();
            environment["DBUS_SESSION_BUS_ADDRESS"] = "disabled:";  // the page is the only source
            browsers.push_back(std::make_unique<LiveBrowser>(
                session, pages.Url("/"),
                std::vector<std::string>{"--autoplay-policy=no-user-gesture-required",
                                         "--host-resolver-rules=MAP * ~NOTFOUND , EXCLUDE 127.0.0.1"},
                environment));
            const std::string port = std::to_string(browsers.back()->Port());
            stage.Record(songs, seconds, {"--set", "Browser.DevToolsPorts=" + port});
        }
        Await([](AutomaticStage& stage) { return stage.Records(); });
    }

    void Play(const std::vector<std::string>& files) {
        for (AutomaticStage& stage : stages) stage.Play(files);
    }

    /// Waits until it is so on all servers.
    template <typename Condition>
    void Await(const Condition& condition) {
        for (AutomaticStage& stage : stages) {
            EXPECT_TRUE(session.WaitFor([&] { return condition(stage); }, milliseconds(60'000)));
        }
    }

    /// Presses a button of each player when it has played so much of a song.
    void PressAfter(int number, double played, const std::string& button) {
        const std::string title = "Song " + std::to_string(number);
        for (AutomaticStage& stage : stages) {
            EXPECT_TRUE(
                session.WaitFor([&] { return stage.HasPlayed(title, played); }, milliseconds(60'000)));
            stage.Press(button);
        }
    }

    /// The time of a player and a recorder that know of no clock of ours.
    void WaitFor(double length) {
        session.WaitFor([] { return false; }, milliseconds(static_cast<int>(length * 1000)));
    }

    /// Looks at what was kept on each of the servers, which have to be so many songs.
    template <typename Look>
    void ExpectKept(size_t songs, const Look& look) {
        constexpr std::array<const char*, 2> names = {"PulseAudio", "PipeWire"};
        for (size_t i = 0; i < stages.size(); ++i) {
            const std::vector<Json> kept = stages[i].Kept();
            SCOPED_TRACE(names[i] + ("\n" + stages[i].Story()));
            EXPECT_EQ(kept.size(), songs);
            if (kept.size() == songs) look(stages[i], kept);
        }
    }

    static void ExpectWhole(const AutomaticStage& stage, const std::string& name, int number, double length,
                            double within) {
        SCOPED_TRACE(name);
        const ToneEdges edges = EdgesOf(stage.FileOf(name), number);
        EXPECT_GE(edges.OwnSeconds, length - 2 * within - FalteringHides);
        EXPECT_LE(edges.OwnSeconds, length + 2 * within + Faltering);
        EXPECT_LE(edges.ForeignAtBegin, within);
        EXPECT_LE(edges.ForeignAtEnd, within);
    }

    static void ExpectWhole(const AutomaticStage& stage, int number, double length, double within) {
        const std::string text = std::to_string(number);
        ExpectWhole(stage, "Band " + text + " - Song " + text, number, length, within);
    }

    LiveSession session;
    TempFolder folder;
    std::deque<AutomaticStage> stages;  ///< one for each sound server
    std::vector<std::unique_ptr<LiveBrowser>> browsers;
};

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

TEST_F(AutomaticRecording, TheSameSongTwiceIsTwoSongsOfItsLength) {
    const std::string file = Song(1, 9);
    Record(2, {"--set", "Options.SameName=2"});
    Play({file, file});
    ExpectKept(2, [](const AutomaticStage&, const std::vector<Json>& kept) {
        // Nothing in the sound shows where one ends and the other begins.
        for (const Json& song : kept) {
            EXPECT_EQ(song.value("title", ""), "Song 1");
            EXPECT_GE(song.value("frames", 0.0) / 44100, 9 - FirstCuts);
            EXPECT_LE(song.value("frames", 0.0) / 44100, 9 + FirstCuts + Faltering);
        }
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
