#include "live/automatic_stage.h"

#include <algorithm>
#include <array>
#include <complex>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <numbers>

namespace Corvetape {

using Json = nlohmann::json;

namespace {

constexpr size_t HeaderBytes = 44;
constexpr size_t WindowFrames = 882;
constexpr double WindowSeconds = 0.02;
constexpr int MostTones = 4;
constexpr double LeastPower = 1e9;  ///< less is silence or noise

/// The loudest tone of a window; 0 if there is none.
int ToneOf(const int16_t* samples) {
    int loudest = 0;
    double most = LeastPower;
    for (int tone = 1; tone <= MostTones; ++tone) {
        std::complex<double> sum;
        const double step = 2 * std::numbers::pi * 200 * tone / 44100;
        for (size_t i = 0; i < WindowFrames; ++i) {
            sum += std::polar<double>(samples[2 * i], step * static_cast<double>(i));
        }
        if (std::norm(sum) <= most) continue;
        most = std::norm(sum);
        loudest = tone;
    }
    return loudest;
}

}  // namespace

ToneEdges EdgesOf(const std::string& waveFile, int number) {
    const std::string bytes = Content(waveFile);
    const size_t frames = bytes.size() > HeaderBytes ? (bytes.size() - HeaderBytes) / 4 : 0;
    std::vector<int16_t> samples(frames * 2);
    if (frames > 0) std::memcpy(samples.data(), bytes.data() + HeaderBytes, frames * 4);
    std::vector<int> tones;
    for (size_t begin = 0; begin + WindowFrames <= frames; begin += WindowFrames) {
        tones.push_back(ToneOf(&samples[2 * begin]));
    }
    const auto secondsOf = [](auto count) { return WindowSeconds * static_cast<double>(count); };
    const auto isOwn = [number](int tone) { return tone == number; };
    const auto isForeign = [](int tone) { return tone != 0; };
    const auto first = std::ranges::find_if(tones, isOwn);
    const auto last = std::find_if(tones.rbegin(), tones.rend(), isOwn);
    return {secondsOf(std::ranges::count(tones, number)),
            secondsOf(std::count_if(tones.begin(), first, isForeign)),
            secondsOf(std::count_if(tones.rbegin(), last, isForeign))};
}

AutomaticStage::AutomaticStage(LiveSession& session, ServerKind kind) : bus(session), server(kind) {
    server.Start();
    environment = LiveEnvironment(server, bus);
}

void AutomaticStage::Record(int songs, int seconds, const std::vector<std::string>& more) {
    std::vector<std::string> words = {
        "--songs", std::to_string(songs),     "--seconds", std::to_string(seconds),
        "--set",   "Options.EncodeOffline=1", "--set",     "Source.IgnoreShortSongs=5"};
    words.insert(words.end(), more.begin(), more.end());
    recording = {RecordCommand(folder / "home", words), environment, folder / "record.log"};
    recorder = std::make_unique<TestProcess>(recording);
}

bool AutomaticStage::Records() {
    if (recorder->Wait(std::chrono::milliseconds(0))) recorder = std::make_unique<TestProcess>(recording);
    return server.Recordings() > 0;
}

void AutomaticStage::Play(const std::vector<std::string>& files) {
    std::vector<std::string> command = {"mpv",        "--no-config", "--script=/usr/lib/mpv-mpris/mpris.so",
                                        "--no-video", "--ao=pulse",  "--gapless-audio=yes"};
    command.insert(command.end(), files.begin(), files.end());
    players.push_back(
        std::make_unique<TestProcess>(TestProcess::Start{command, environment, folder / "player.log"}));
}

void AutomaticStage::Press(const std::string& button) {
    RunToEnd({"dbus-send", "--session", "--print-reply", "--dest=org.mpris.MediaPlayer2.mpv",
              "/org/mpris/MediaPlayer2", "org.mpris.MediaPlayer2.Player." + button},
             environment, folder / "output");
}

std::string AutomaticStage::Said(const std::string& property) const {
    const std::string output = folder / "property";
    std::filesystem::remove(output);
    TestProcess question(
        {{"dbus-send", "--session", "--print-reply=literal", "--dest=org.mpris.MediaPlayer2.mpv",
          "/org/mpris/MediaPlayer2", "org.freedesktop.DBus.Properties.Get",
          "string:org.mpris.MediaPlayer2.Player", "string:" + property},
         environment,
         output});
    return question.Wait(std::chrono::seconds(20)) == 0 ? Content(output) : std::string();
}

bool AutomaticStage::HasPlayed(const std::string& title, double seconds) {
    if (Said("Metadata").find(title) == std::string::npos) return false;
    const std::string position = Said("Position");  // microseconds, as the last word
    const size_t number = position.rfind(' ');
    return number != std::string::npos && std::atof(&position[number]) >= seconds * 1e6;
}

void AutomaticStage::GiveSettings(const std::string& name, const std::string& content) const {
    const std::filesystem::path settings = std::filesystem::path(folder / "home") / "config/Corvet";
    std::filesystem::create_directories(settings);
    std::ofstream(settings / name) << content;
}

std::vector<Json> AutomaticStage::Kept() {
    EXPECT_EQ(recorder->Wait(std::chrono::seconds(240)), 0) << Story();
    return KeptIn(folder / "record.log");
}

void AutomaticStage::Recut(const std::string& title, const std::vector<std::string>& how) {
    std::vector<std::string> command = {std::string(CORVETAPE_BINARY_DIR) + "/bin/corvetape-cli", "recut",
                                        "--home", folder / "home", title};
    command.insert(command.end(), how.begin(), how.end());
    RunToEnd(command, environment, folder / "output");
}

std::string AutomaticStage::FileOf(const std::string& name) const {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder / "home")) {
        if (entry.path().filename() == name + ".wav") return entry.path();
    }
    return {};
}

}  // namespace Corvetape
