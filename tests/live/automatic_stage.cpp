#include "live/automatic_stage.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace Corvetape {

using Json = nlohmann::json;

AutomaticStage::AutomaticStage(LiveSession& session, ServerKind kind) : bus(session), server(kind) {
    server.Start();
    environment = LiveEnvironment(server, bus);
}

void AutomaticStage::Record(int songs, int seconds, const std::vector<std::string>& more) {
    std::vector<std::string> words = {
        "--songs", std::to_string(songs),     "--seconds", std::to_string(seconds),
        "--set",   "Options.EncodeOffline=1", "--set",     "Source.IgnoreShortSongs=5"};
    words.insert(words.end(), more.begin(), more.end());
    recording = {RecordCommand(folder / "home", words), environment, folder / "record.log", RefusesLinks};
    recorder = std::make_unique<TestProcess>(recording);
}

bool AutomaticStage::Records() {
    if (recorder->Wait(std::chrono::milliseconds(0))) recorder = std::make_unique<TestProcess>(recording);
    return server.Recordings() > 0;
}

void AutomaticStage::Play(const std::vector<std::string>& files, const std::vector<std::string>& options) {
    std::vector<std::string> command = {"mpv",        "--no-config", "--script=/usr/lib/mpv-mpris/mpris.so",
                                        "--no-video", "--ao=pulse",  "--gapless-audio=yes"};
    command.insert(command.end(), options.begin(), options.end());
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

std::string AutomaticStage::PathOf(const std::string& name) const {
    return PathEndingWith("/" + name);
}

std::string AutomaticStage::PathEndingWith(const std::string& ending) const {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder / "home")) {
        const std::string path = entry.path();
        if (path.ends_with(ending)) return path;
    }
    return {};
}

}  // namespace Corvetape
