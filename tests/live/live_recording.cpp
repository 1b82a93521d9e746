#include "live/live_recording.h"

#include <algorithm>
#include <array>
#include <complex>
#include <cstring>
#include <fstream>
#include <numbers>
#include <sstream>

namespace Corvetape {

using std::chrono::seconds;
using Json = nlohmann::json;

std::string Content(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::map<std::string, std::string> LiveEnvironment(const SoundServer& server, const SessionBus& bus) {
    return {{"PULSE_SERVER", server.Address()},
            {"DBUS_SESSION_BUS_ADDRESS", bus.Address()},
            {"XDG_RUNTIME_DIR", server.Folder / "run"},
            {"HOME", server.Folder / "home"},
            {"DISPLAY", ""}};
}

std::vector<std::string> RecordCommand(const std::string& home, const std::vector<std::string>& more) {
    std::vector<std::string> command = {std::string(CORVETAPE_BINARY_DIR) + "/bin/corvetape-cli",
                                        "record",
                                        "--input",
                                        "Monitor of Radio",
                                        "--home",
                                        home,
                                        "--json"};
    command.insert(command.end(), more.begin(), more.end());
    return command;
}

std::vector<Json> KeptIn(const std::string& printed) {
    std::vector<Json> kept;
    std::istringstream lines(Content(printed));
    for (std::string line; std::getline(lines, line);) {
        Json song = Json::parse(line, nullptr, false);
        if (song.is_object() && song.value("kept", false)) kept.push_back(std::move(song));
    }
    return kept;
}

std::string RunToEnd(const std::vector<std::string>& command,
                     const std::map<std::string, std::string>& environment, const std::string& output) {
    std::filesystem::remove(output);
    TestProcess process({command, environment, output});
    EXPECT_EQ(process.Wait(seconds(90)), 0) << command.front() << ": " << Content(output);
    return Content(output);
}

RecordingTest::RecordingTest() {
    server.Start();
    environment = LiveEnvironment(server, bus);
}

std::string RecordingTest::Run(const std::vector<std::string>& command) {
    return RunToEnd(command, environment, folder / "output");
}

std::unique_ptr<TestProcess> RecordingTest::Play(const std::vector<std::string>& what) {
    std::vector<std::string> command = {"mpv",        "--no-config", "--script=/usr/lib/mpv-mpris/mpris.so",
                                        "--no-video", "--ao=pulse",  "--loop-playlist=inf"};
    command.insert(command.end(), what.begin(), what.end());
    return std::make_unique<TestProcess>(TestProcess::Start{command, environment, folder / "player.log"});
}

void RecordingTest::MakeSong(int number, const std::vector<std::string>& options, const std::string& file) {
    const std::string tone = "sine=frequency=" + std::to_string(TonePerNumber * number) +
                             ":sample_rate=44100:duration=" + std::to_string(SongSeconds);
    std::vector<std::string> command = {
        "ffmpeg", "-loglevel", "error",
        "-f",     "lavfi",     "-i",
        tone,     "-af",       "apad=pad_dur=" + std::to_string(SilenceSeconds),
        "-ac",    "2"};
    command.insert(command.end(), options.begin(), options.end());
    command.push_back(file);
    Run(command);
}

std::string RecordingTest::Picture(int number) {
    const std::string file = folder / ("picture" + std::to_string(number) + ".jpg");
    if (!std::filesystem::exists(file)) {
        const std::string noise = "nullsrc=size=64x64,geq=random(" + std::to_string(number) + ")*255:128:128";
        Run({"ffmpeg", "-loglevel", "error", "-f", "lavfi", "-i", noise, "-frames:v", "1", file});
    }
    return Content(file);
}

std::vector<Json> RecordingTest::Record(int songs, const std::string& source,
                                        const std::vector<std::string>& settings) {
    std::vector<std::string> more = {"--songs", std::to_string(songs),         "--set", "Options.Encoder=1",
                                     "--set",   "DoNotChange.EncodeDelay=3000"};
    // A player that falters on a busy machine makes pauses. They would put off the names of their songs, and
    // the farther from the change of the title the cut is searched, the more of them are there to be taken.
    for (const std::string& name : {std::string("NoStationData"), source}) {
        for (const char* value : {".EndOfSongDetection=1", ".IgnoreShortSongs=5", ".LengthOfPause=10000",
                                  ".EndOfSongThreshold0=2000", ".EndOfSongThreshold1=500"}) {
            more.insert(more.end(), {"--set", name + value});
        }
    }
    for (const std::string& setting : settings) more.insert(more.end(), {"--set", setting});
    std::filesystem::remove(folder / "record.log");
    TestProcess recorder({RecordCommand(folder / "home", more), environment, folder / "record.log"});
    EXPECT_EQ(recorder.Wait(seconds(240)), 0) << Story();
    return KeptIn(folder / "record.log");
}

Json RecordingTest::FormatOf(const std::string& file) {
    const Json probe =
        Json::parse(Run({"ffprobe", "-v", "quiet", "-of", "json", "-show_format", file}), nullptr, false);
    return probe.is_object() ? probe.value("format", Json::object()) : Json::object();
}

int RecordingTest::ExpectSong(const Json& song, bool whole) {
    SCOPED_TRACE(song.dump());
    const std::string title = song.value("title", "");
    if (!title.starts_with("Title ")) {
        ADD_FAILURE() << "a song without its name";
        return 0;
    }
    const std::string text = title.substr(6);
    const int number = std::stoi(text);
    const std::string file = song.value("file", "");
    EXPECT_EQ(file.substr(file.rfind('/') + 1), "Artist " + text + " - Title " + text + ".mp3");
    const Json format = FormatOf(file);
    EXPECT_EQ(format.value("/tags/artist"_json_pointer, ""), "Artist " + text);
    EXPECT_EQ(format.value("/tags/title"_json_pointer, ""), title);
    EXPECT_EQ(LoudestTone(file), number) << "the sound of another song";
    if (whole) {
        const double length = std::stod(format.value("duration", "0"));
        EXPECT_NEAR(length, SongSeconds, 1.2);
        EXPECT_EQ(song.value("lost_frames", -1), 0);
    }
    return number;
}

void RecordingTest::ExpectPicture(const std::string& file, int number) {
    const std::string inTags = folder / "in-tags.jpg";
    std::filesystem::remove(inTags);
    Run({"ffmpeg", "-loglevel", "error", "-i", file, "-an", "-c:v", "copy", "-f", "image2", inTags});
    EXPECT_TRUE(Content(inTags) == Picture(number)) << "the tags of " << file;
    EXPECT_TRUE(Content(file.substr(0, file.rfind('.')) + ".jpg") == Picture(number)) << "beside " << file;
}

int RecordingTest::LoudestTone(const std::string& file) {
    const std::string raw = folder / "raw";
    Run({"ffmpeg", "-loglevel", "quiet", "-y", "-i", file, "-ac", "1", "-ar", "44100", "-f", "s16le", raw});
    const std::string bytes = Content(raw);
    std::vector<int16_t> samples(bytes.size() / sizeof(int16_t));
    std::memcpy(samples.data(), bytes.data(), samples.size() * sizeof(int16_t));
    // Piece by piece, because a player on a busy machine may falter.
    constexpr size_t piece = 4410;
    std::array<double, MostSongs + 1> power{};
    for (size_t begin = 0; begin + piece <= samples.size(); begin += piece) {
        for (int number = 1; number <= MostSongs; ++number) {
            std::complex<double> sum;
            const double step = 2 * std::numbers::pi * TonePerNumber * number / 44100;
            for (size_t i = 0; i < piece; ++i) {
                sum += std::polar<double>(samples[begin + i], step * static_cast<double>(i));
            }
            power[static_cast<size_t>(number)] += std::norm(sum);
        }
    }
    return static_cast<int>(std::ranges::max_element(power) - power.begin());
}

std::string RecordingTest::Story() {
    std::string story;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.Path())) {
        if (entry.path().extension() == ".log") story += "\n" + Content(entry.path());
    }
    return story;
}

}  // namespace Corvetape
