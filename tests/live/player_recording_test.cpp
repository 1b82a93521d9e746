// What a media player plays becomes music files: with a real player, sound server and session bus.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "live/session_bus.h"
#include "live/sound_server.h"
#include "live/test_process.h"

namespace Corvetape {
namespace {

using std::chrono::seconds;
using Json = nlohmann::json;

constexpr int Songs = 4;
constexpr int TonePerNumber = 200;

/// A song takes its name some 10 s after the title has changed, when the one before has been handed on.
constexpr int ToneSeconds = 13;

std::string Content(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Unlike that of any other song; no decoder looks at it.
std::string Cover(int song) {
    return "\xFF\xD8\xFF" + std::string(3000, static_cast<char>('0' + song));
}

class PlayerRecordingTest : public testing::Test {
 protected:
    PlayerRecordingTest() {
        server.Start();
        environment = {{"PULSE_SERVER", server.Address()},
                       {"DBUS_SESSION_BUS_ADDRESS", bus.Address()},
                       {"XDG_RUNTIME_DIR", server.Folder / "run"},
                       {"HOME", server.Folder / "home"},
                       {"DISPLAY", ""}};
    }

    /// Runs a program to its end; gives what it prints.
    std::string Run(const std::vector<std::string>& command) {
        const std::string output = folder / "output";
        std::filesystem::remove(output);
        TestProcess process({command, environment, output});
        EXPECT_EQ(process.Wait(seconds(30)), 0) << command.front() << ": " << Content(output);
        return Content(output);
    }

    /// A tone of its own with a second of silence behind it, its tags and its cover; the path of the song.
    std::string MakeSong(int number) {
        const std::string place = folder / ("album" + std::to_string(number));
        const std::string text = std::to_string(number);
        std::filesystem::create_directories(place);
        std::ofstream(place + "/cover.jpg", std::ios::binary) << Cover(number);
        const std::string tone = "sine=frequency=" + std::to_string(TonePerNumber * number) +
                                 ":sample_rate=44100:duration=" + std::to_string(ToneSeconds);
        Run({"ffmpeg",
             "-loglevel",
             "error",
             "-f",
             "lavfi",
             "-i",
             tone,
             "-af",
             "apad=pad_dur=1",
             "-ac",
             "2",
             "-metadata",
             "artist=Artist " + text,
             "-metadata",
             "title=Title " + text,
             "-metadata",
             "album=Album " + text,
             "-metadata",
             "genre=Rock",
             place + "/song.flac"});
        return place + "/song.flac";
    }

    /// The tone in a music file, in periods a second.
    double Tone(const std::string& file) {
        const std::string raw = folder / "raw";
        Run({"ffmpeg", "-loglevel", "quiet", "-y", "-i", file, "-ac", "1", "-ar", "44100", "-f", "s16le",
             raw});
        const std::string bytes = Content(raw);
        std::vector<int16_t> samples(bytes.size() / sizeof(int16_t));
        std::memcpy(samples.data(), bytes.data(), samples.size() * sizeof(int16_t));
        size_t rises = 0;
        for (size_t i = 1; i < samples.size(); ++i) rises += samples[i - 1] < 0 && samples[i] >= 0;
        return static_cast<double>(rises) * 44100 / static_cast<double>(samples.size());
    }

    std::unique_ptr<TestProcess> PlayAll() {
        std::vector<std::string> command = {
            "mpv",        "--no-config", "--script=/usr/lib/mpv-mpris/mpris.so",
            "--no-video", "--ao=pulse",  "--loop-playlist=inf"};
        for (int i = 1; i <= Songs; ++i) command.push_back(MakeSong(i));
        return std::make_unique<TestProcess>(TestProcess::Start{command, environment, folder / "mpv.log"});
    }

    /// What the recorder tells of the songs that it has kept.
    std::vector<Json> Record(int songs) {
        std::vector<std::string> command = {std::string(CORVETAPE_BINARY_DIR) + "/bin/corvetape-cli",
                                            "record",
                                            "--input",
                                            "Monitor of Radio",
                                            "--home",
                                            folder / "home",
                                            "--json",
                                            "--songs",
                                            std::to_string(songs),
                                            "--set",
                                            "Options.Encoder=1"};
        for (const char* source : {"NoStationData", "Windows Media Player"}) {
            for (const char* value : {".EndOfSongDetection=1", ".IgnoreShortSongs=5"}) {
                command.insert(command.end(), {"--set", std::string(source) + value});
            }
        }
        TestProcess recorder({command, environment, folder / "record.log"});
        EXPECT_EQ(recorder.Wait(seconds(120)), 0) << Content(folder / "record.log");
        std::vector<Json> kept;
        std::istringstream lines(Content(folder / "record.log"));
        for (std::string line; std::getline(lines, line);) {
            const Json song = Json::parse(line, nullptr, false);
            if (song.is_object() && song.value("kept", false)) kept.push_back(song);
        }
        return kept;
    }

    LiveSession session;
    TempFolder folder;
    SessionBus bus{session};
    SoundServer server{ServerKind::PulseAudio};
    std::map<std::string, std::string> environment;
};

TEST_F(PlayerRecordingTest, SongsOfAPlayerGetTheirNamesTagsAndCovers) {
    const auto player = PlayAll();
    const std::vector<Json> kept = Record(3);
    ASSERT_EQ(kept.size(), 3u) << Content(folder / "record.log") << Content(folder / "mpv.log");
    std::set<std::string> titles;
    for (size_t i = 0; i < kept.size(); ++i) {
        const std::string title = kept[i]["title"];
        SCOPED_TRACE(kept[i].dump());
        ASSERT_TRUE(title.starts_with("Title "));
        titles.insert(title);
        const std::string number = title.substr(6);
        const std::string base = folder / ("home/Music/Rock/Artist " + number + " - Title " + number);
        const std::string file = kept[i]["file"];
        EXPECT_EQ(file.substr(0, file.rfind('.')), base);
        EXPECT_TRUE(Content(base + ".jpg") == Cover(std::stoi(number)))
            << Content(base + ".jpg").substr(0, 9);
        const Json probe = Json::parse(Run({"ffprobe", "-v", "quiet", "-of", "json", "-show_format", file}));
        const Json& tags = probe["format"]["tags"];
        EXPECT_EQ(tags.value("artist", ""), "Artist " + number);
        EXPECT_EQ(tags.value("title", ""), title);
        EXPECT_EQ(tags.value("album", ""), "Album " + number);
        EXPECT_NEAR(Tone(file), TonePerNumber * std::stoi(number), 60) << "the sound of another song";
        // The first song had begun before the recording, or the player's name was not known yet.
        if (i > 0) {
            const double length = std::stod(probe["format"]["duration"].get<std::string>());
            EXPECT_NEAR(length, ToneSeconds, 1.2);
        }
    }
    EXPECT_EQ(titles.size(), kept.size()) << "each song has a name of its own";
    if (HasFailure())
        ADD_FAILURE() << Content(folder / "record.log")
                      << Run({"sh", "-c", "cat " + folder.Path() + "/home/config/Corvet/*.log"});
}

}  // namespace
}  // namespace Corvetape
