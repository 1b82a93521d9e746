// Songs that end by everything that is known, with a real player on both sound servers: whole, named, and
// with nothing of their neighbours.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <complex>
#include <cstring>
#include <fstream>
#include <nlohmann/json.hpp>
#include <numbers>
#include <sstream>

#include "live/live_recording.h"

namespace Corvetape {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using Json = nlohmann::json;

/// What of a file is the tone of a song, and what of others is at its ends.
struct Edges {
    double OwnSeconds = 0;
    double ForeignAtBegin = 0;
    double ForeignAtEnd = 0;
};

class AutomaticRecording : public testing::TestWithParam<ServerKind> {
 protected:
    static constexpr double WithAGap = 0.1;
    static constexpr double WithoutAGap = 0.3;
    static constexpr const char* PlayerName = "org.mpris.MediaPlayer2.mpv";

    AutomaticRecording() {
        server.Start();
        environment = {{"PULSE_SERVER", server.Address()},
                       {"DBUS_SESSION_BUS_ADDRESS", bus.Address()},
                       {"XDG_RUNTIME_DIR", server.Folder / "run"},
                       {"HOME", server.Folder / "home"},
                       {"DISPLAY", ""}};
    }

    std::string Run(const std::vector<std::string>& command) {
        const std::string output = folder / "output";
        std::filesystem::remove(output);
        TestProcess process({command, environment, output});
        EXPECT_EQ(process.Wait(seconds(30)), 0) << command.front() << ": " << Content(output);
        return Content(output);
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
        Run(command);
        return file;
    }

    std::unique_ptr<TestProcess> Play(const std::vector<std::string>& files) {
        std::vector<std::string> command = {
            "mpv",        "--no-config", "--script=/usr/lib/mpv-mpris/mpris.so",
            "--no-video", "--ao=pulse",  "--gapless-audio=yes"};
        command.insert(command.end(), files.begin(), files.end());
        return std::make_unique<TestProcess>(TestProcess::Start{command, environment, folder / "player.log"});
    }

    void Press(const std::string& button) {
        Run({"dbus-send", "--session", "--print-reply", std::string("--dest=") + PlayerName,
             "/org/mpris/MediaPlayer2", "org.mpris.MediaPlayer2.Player." + button});
    }

    /// Records so many seconds without any setting about songs but the least length.
    std::unique_ptr<TestProcess> Record(int length, const std::vector<std::string>& more = {}) {
        std::vector<std::string> command = {std::string(CORVETAPE_BINARY_DIR) + "/bin/corvetape-cli",
                                            "record",
                                            "--input",
                                            "Monitor of Radio",
                                            "--home",
                                            folder / "home",
                                            "--json",
                                            "--seconds",
                                            std::to_string(length),
                                            "--set",
                                            "Options.EncodeOffline=1",
                                            "--set",
                                            "Source.IgnoreShortSongs=6"};
        command.insert(command.end(), more.begin(), more.end());
        auto recorder =
            std::make_unique<TestProcess>(TestProcess::Start{command, environment, folder / "record.log"});
        WaitFor(5);  // until it hears the server
        return recorder;
    }

    /// The time of a player and a recorder that know of no clock of ours.
    void WaitFor(double length) {
        session.WaitFor([] { return false; }, milliseconds(static_cast<int>(length * 1000)));
    }

    std::vector<Json> SongsOf(TestProcess& recorder) {
        EXPECT_EQ(recorder.Wait(seconds(120)), 0) << Content(folder / "record.log");
        std::vector<Json> songs;
        std::istringstream lines(Content(folder / "record.log"));
        for (std::string line; std::getline(lines, line);) {
            const Json song = Json::parse(line, nullptr, false);
            if (song.is_object() && song.contains("kept")) songs.push_back(song);
        }
        return songs;
    }

    std::vector<Json> KeptOf(TestProcess& recorder) {
        std::vector<Json> songs = SongsOf(recorder);
        std::erase_if(songs, [](const Json& song) { return !song.value("kept", false); });
        return songs;
    }

    /// Where the temporary song of this name is.
    std::string FileOf(const std::string& name) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder / "home")) {
            if (entry.path().filename() == name + ".wav") return entry.path();
        }
        return {};
    }

    /// The tones of a file, window by window of 20 ms.
    Edges EdgesOf(const std::string& name, int number) {
        const std::string bytes = Content(FileOf(name));
        constexpr size_t header = 44;
        constexpr size_t window = 882;
        constexpr double windowSeconds = 0.02;
        const size_t frames = bytes.size() > header ? (bytes.size() - header) / 4 : 0;
        std::vector<int16_t> samples(frames * 2);
        if (frames > 0) std::memcpy(samples.data(), bytes.data() + header, frames * 4);
        std::vector<int> tones;
        for (size_t begin = 0; begin + window <= frames; begin += window) {
            int loudest = 0;
            double most = 1e9;  // less is silence or noise
            for (int tone = 1; tone <= 4; ++tone) {
                std::complex<double> sum;
                const double step = 2 * std::numbers::pi * 200 * tone / 44100;
                for (size_t i = 0; i < window; ++i) {
                    sum += std::polar<double>(samples[2 * (begin + i)], step * static_cast<double>(i));
                }
                if (std::norm(sum) > most) {
                    most = std::norm(sum);
                    loudest = tone;
                }
            }
            tones.push_back(loudest);
        }
        Edges edges;
        edges.OwnSeconds = windowSeconds * static_cast<double>(std::ranges::count(tones, number));
        const auto isOwn = [number](int tone) { return tone == number; };
        const auto first = std::ranges::find_if(tones, isOwn);
        const auto foreign = [](int tone) { return tone != 0; };
        edges.ForeignAtBegin =
            windowSeconds * static_cast<double>(std::count_if(tones.begin(), first, foreign));
        const auto last = std::find_if(tones.rbegin(), tones.rend(), isOwn);
        edges.ForeignAtEnd =
            windowSeconds * static_cast<double>(std::count_if(tones.rbegin(), last, foreign));
        return edges;
    }

    void ExpectWhole(const std::string& name, int number, double length, double within) {
        SCOPED_TRACE(name + "\n" + Content(folder / "record.log"));
        const Edges edges = EdgesOf(name, number);
        EXPECT_NEAR(edges.OwnSeconds, length, 2 * within);
        EXPECT_LE(edges.ForeignAtBegin, within);
        EXPECT_LE(edges.ForeignAtEnd, within);
    }

    LiveSession session;
    TempFolder folder;
    SessionBus bus{session};
    SoundServer server{GetParam()};
    std::map<std::string, std::string> environment;
};

TEST_P(AutomaticRecording, TaggedFilesWithoutAGapAreOneSongEach) {
    const std::vector<std::string> files = {Song(1, 14), Song(2, 14), Song(3, 14)};
    const auto recorder = Record(62);
    const auto player = Play(files);
    EXPECT_EQ(KeptOf(*recorder).size(), 3U) << Content(folder / "record.log");
    for (int number = 1; number <= 3; ++number) {
        const std::string text = std::to_string(number);
        ExpectWhole("Band " + text + " - Song " + text, number, 14, WithoutAGap);
    }
}

TEST_P(AutomaticRecording, TheLastSongKeepsItsNameWhenThePlayerExits) {
    const std::string file = Song(1, 14);
    const auto recorder = Record(35);
    const auto player = Play({file});
    const std::vector<Json> kept = KeptOf(*recorder);
    ASSERT_EQ(kept.size(), 1U) << Content(folder / "record.log");
    EXPECT_EQ(kept[0]["title"], "Song 1");
    EXPECT_EQ(kept[0]["confidence"]["end"], "sure");
    ExpectWhole("Band 1 - Song 1", 1, 14, WithAGap);
}

TEST_P(AutomaticRecording, APauseOfThePlayerIsLeftOut) {
    const std::string file = Song(1, 18);
    const auto recorder = Record(50);
    const auto player = Play({file});
    WaitFor(9);
    Press("Pause");
    WaitFor(8);
    Press("Play");
    const std::vector<Json> kept = KeptOf(*recorder);
    ASSERT_EQ(kept.size(), 1U) << Content(folder / "record.log");
    EXPECT_EQ(kept[0]["pauses_cut"], 1);
    ExpectWhole("Band 1 - Song 1", 1, 18, WithoutAGap);
}

TEST_P(AutomaticRecording, ASkippedSongIsShortAndItsNeighboursAreClean) {
    const std::vector<std::string> files = {Song(1, 12), Song(2, 20), Song(3, 12)};
    const auto recorder = Record(62, {"--set", "Source.IgnoreShortSongs=11"});
    const auto player = Play(files);
    WaitFor(20);
    Press("Next");
    const std::vector<Json> kept = KeptOf(*recorder);
    ASSERT_EQ(kept.size(), 2U) << Content(folder / "record.log");
    ExpectWhole("Band 1 - Song 1", 1, 12, WithoutAGap);
    ExpectWhole("Band 3 - Song 3", 3, 12, WithoutAGap);
}

/// Nothing in the sound shows where one ends and the other begins, so only the names and their number are
/// looked at.
TEST_P(AutomaticRecording, TheSameSongTwiceIsTwoSongs) {
    const std::string file = Song(1, 12);
    const auto recorder = Record(46, {"--set", "Options.SameName=2"});
    const auto player = Play({file, file});
    const std::vector<Json> kept = KeptOf(*recorder);
    ASSERT_EQ(kept.size(), 2U) << Content(folder / "record.log");
    for (const Json& song : kept) EXPECT_EQ(song["title"], "Song 1");
}

TEST_P(AutomaticRecording, ASecondPlayerMixesBothAndRenamesNone) {
    const std::string one = Song(1, 20);
    const std::string two = Song(2, 20);
    const auto recorder = Record(58);
    const auto first = Play({one});
    WaitFor(12);
    const auto second = Play({two});
    const std::vector<Json> kept = KeptOf(*recorder);
    ASSERT_EQ(kept.size(), 2U) << Content(folder / "record.log");
    EXPECT_EQ(kept[0]["title"], "Song 1");
    EXPECT_EQ(kept[1]["title"], "Song 2");
    for (const Json& song : kept) {
        EXPECT_EQ(song["mixed"], true);
        EXPECT_EQ(song["whole"], false);
    }
}

TEST_P(AutomaticRecording, ADropoutEndsNoSong) {
    const std::string file = Song(1, 16, "volume=0:enable='between(t,8,8.11)'");
    const auto recorder = Record(38);
    const auto player = Play({file});
    const std::vector<Json> kept = KeptOf(*recorder);
    ASSERT_EQ(kept.size(), 1U) << Content(folder / "record.log");
    EXPECT_GE(kept[0]["dropouts"], 1);
    ExpectWhole("Band 1 - Song 1", 1, 16, WithoutAGap);
}

TEST_P(AutomaticRecording, AFileWithoutTagsIsNamedByItsFile) {
    const std::string file = Song(3, 12, "anull", false);
    const auto recorder = Record(33);
    const auto player = Play({file});
    const std::vector<Json> kept = KeptOf(*recorder);
    ASSERT_EQ(kept.size(), 1U) << Content(folder / "record.log");
    EXPECT_EQ(kept[0]["title"], "Old Tape 3");
}

TEST_P(AutomaticRecording, SilenceOfThreeSecondsIsInNoSong) {
    const std::vector<std::string> files = {Song(1, 12, "apad=pad_dur=4"), Song(2, 12)};
    const auto recorder = Record(50);
    const auto player = Play(files);
    EXPECT_EQ(KeptOf(*recorder).size(), 2U) << Content(folder / "record.log");
    ExpectWhole("Band 1 - Song 1", 1, 12, WithAGap);
    ExpectWhole("Band 2 - Song 2", 2, 12, WithAGap);
}

INSTANTIATE_TEST_SUITE_P(Servers, AutomaticRecording,
                         testing::Values(ServerKind::PulseAudio, ServerKind::PipeWire), [](const auto& each) {
                             return each.param == ServerKind::PulseAudio ? "PulseAudio" : "PipeWire";
                         });

}  // namespace
}  // namespace Corvetape
