// What a web radio plays becomes music files: with a real browser and sound server.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "live/live_browser.h"
#include "live/page_server.h"
#include "live/sound_server.h"

namespace Corvetape {
namespace {

using std::chrono::seconds;
using Json = nlohmann::json;

// Sixteen seconds of a tone and one of silence, then the next song. Its name is there with its first sound.
constexpr const char* Player = R"html(<!doctype html><title>Player</title><body>
<p id="now"></p><script>
const context = new AudioContext(), volume = context.createGain(), tone = context.createOscillator();
tone.connect(volume).connect(context.destination);
tone.start();
let song = 0;
const begin = () => {
  ++song;
  tone.frequency.value = 200 + 100 * (song % 5);
  volume.gain.value = 0.5;
  now.innerText = `Artist ${song} - Title ${song}`;
  setTimeout(() => { volume.gain.value = 0; setTimeout(begin, 1000); }, 16000);
};
begin();
</script></body>)html";

constexpr const char* Holder =
    "<!doctype html><title>Frame Radio</title><body><iframe name='player' src='/player'></iframe></body>";

constexpr const char* Profiles =
    "[- Radio]\nName=Frame Radio\nWindow&Doc=;;Frame Radio;http://127.0.0.1:*\nStation=-1;;\n"
    "Artist=player;now;^(.+?) - .\nTitle=player;now;^.+? - (.+)$\n";

std::string Content(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(BrowserRecording, SongsOfAPlayerInAFrameGetTheirNamesAndTheirLengths) {
    LiveSession session;
    TempFolder folder;
    SoundServer server(ServerKind::PulseAudio);
    server.Start();
    const std::map<std::string, std::string> environment = {{"PULSE_SERVER", server.Address()},
                                                            {"XDG_RUNTIME_DIR", server.Folder / "run"},
                                                            {"DISPLAY", ""},
                                                            {"DBUS_SESSION_BUS_ADDRESS", "disabled:"}};
    PageServer pages({{"/", Holder}, {"/player", Player}});
    LiveBrowser browser(session, pages.Url("/"),
                        {"--autoplay-policy=no-user-gesture-required",
                         "--host-resolver-rules=MAP * ~NOTFOUND , EXCLUDE 127.0.0.1"},
                        environment);

    std::filesystem::create_directories(folder / "home/config/Corvet");
    std::ofstream(folder / "home/config/Corvet/MSIE.ini") << Profiles;
    std::vector<std::string> command = {std::string(CORVETAPE_BINARY_DIR) + "/bin/corvetape-cli",
                                        "record",
                                        "--input",
                                        "Monitor of Radio",
                                        "--home",
                                        folder / "home",
                                        "--json",
                                        "--songs",
                                        "3",
                                        "--set",
                                        "Browser.DevToolsPorts=" + std::to_string(browser.Port())};
    for (const char* source : {"NoStationData", "Frame Radio"}) {
        for (const char* value : {".EndOfSongDetection=1", ".IgnoreShortSongs=5"}) {
            command.insert(command.end(), {"--set", std::string(source) + value});
        }
    }
    TestProcess recorder({command, environment, folder / "record.log"});
    EXPECT_EQ(recorder.Wait(seconds(150)), 0) << Content(folder / "record.log");

    std::vector<Json> kept;
    std::istringstream lines(Content(folder / "record.log"));
    for (std::string line; std::getline(lines, line);) {
        const Json song = Json::parse(line, nullptr, false);
        if (song.is_object() && song.value("kept", false)) kept.push_back(song);
    }
    ASSERT_EQ(kept.size(), 3u) << Content(folder / "record.log");
    int last = 0;
    for (size_t i = 0; i < kept.size(); ++i) {
        SCOPED_TRACE(kept[i].dump());
        const std::string title = kept[i]["title"];
        ASSERT_TRUE(title.starts_with("Title "));
        const int number = std::stoi(title.substr(6));
        EXPECT_EQ(kept[i]["artist"], "Artist " + std::to_string(number));
        EXPECT_NE(kept[i].value("file", "").find("/Frame Radio/"), std::string::npos);
        if (i > 0) {  // the first one had begun before the recording
            EXPECT_EQ(number, last + 1);
            EXPECT_NEAR(kept[i]["frames"].get<double>() / 44100, 16.0, 1.2);
            EXPECT_EQ(kept[i]["lost_frames"], 0);
        }
        last = number;
    }
}

}  // namespace
}  // namespace Corvetape
