// What a web radio plays becomes music files: with a real browser and sound server.
#include <gtest/gtest-spi.h>

#include <filesystem>
#include <fstream>

#include "live/live_browser.h"
#include "live/live_recording.h"
#include "live/page_server.h"

namespace Corvetape {
namespace {

using Json = nlohmann::json;

// A tone and a second of silence, then the next song. Its name is there with its first sound.
constexpr const char* Player = R"html(<!doctype html><title>Player</title><body>
<p id="now"></p><img id="cover"><script>
const context = new AudioContext(), volume = context.createGain(), tone = context.createOscillator();
tone.connect(volume).connect(context.destination);
tone.start();
let song = 0;
const begin = () => {
  song = song % 4 + 1;
  tone.frequency.value = 200 * song;
  volume.gain.value = 0.5;
  now.innerText = `Artist ${song} - Title ${song}`;
  cover.src = `/cover${song}.jpg`;
  setTimeout(() => { volume.gain.value = 0; setTimeout(begin, 1000); }, 9000);
};
begin();
</script></body>)html";

constexpr const char* Holder =
    "<!doctype html><title>Frame Radio</title><body><iframe name='player' src='/player'></iframe></body>";

constexpr const char* Profiles =
    "[- Radio]\nName=Frame Radio\nWindow&Doc=;;Frame Radio;http://127.0.0.1:*\nStation=-1;;\n"
    "Artist=player;now;^(.+?) - .\nTitle=player;now;^.+? - (.+)$\nCover=player;cover;\n";

class BrowserRecording : public RecordingTest {
 protected:
    /// Records three songs into a home of its own, and looks at them.
    void ExpectThree(const LiveBrowser& browser) {
        std::filesystem::remove_all(folder / "home");
        std::filesystem::create_directories(folder / "home/config/Corvet");
        std::ofstream(folder / "home/config/Corvet/MSIE.ini") << Profiles;
        const std::vector<Json> kept =
            Record(3, "Frame Radio", {"Browser.DevToolsPorts=" + std::to_string(browser.Port())});
        SCOPED_TRACE(Story());
        ASSERT_EQ(kept.size(), 3u);
        int last = 0;
        for (size_t i = 0; i < kept.size(); ++i) {
            const int number = ExpectSong(kept[i], i > 0);  // the first one had begun before the recording
            const std::string file = kept[i].value("file", "");
            EXPECT_NE(file.find("/Frame Radio/"), std::string::npos) << file;
            ExpectPicture(file, number);
            if (i > 0) {
                EXPECT_EQ(number, last % MostSongs + 1);
            }
            last = number;
        }
    }
};

TEST_F(BrowserRecording, SongsOfAPlayerInAFrameGetTheirNamesLengthsAndCovers) {
    std::map<std::string, std::string> content = {{"/", Holder}, {"/player", Player}};
    for (int i = 1; i <= MostSongs; ++i) content["/cover" + std::to_string(i) + ".jpg"] = Picture(i);
    const PageServer pages(content);
    environment["DBUS_SESSION_BUS_ADDRESS"] = "disabled:";  // the page is the only source
    const LiveBrowser browser(session, pages.Url("/"),
                              {"--autoplay-policy=no-user-gesture-required",
                               "--host-resolver-rules=MAP * ~NOTFOUND , EXCLUDE 127.0.0.1"},
                              environment);

    // A page that does not answer within 200 ms is none in that look, by rule, and its song ends there. On a
    // machine that is too busy for it a recording says nothing about songs, so there is another one.
    constexpr int mostTries = 3;
    for (int i = 1; i < mostTries; ++i) {
        testing::TestPartResultArray failures;
        {
            const testing::ScopedFakeTestPartResultReporter intercepted(
                testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &failures);
            ExpectThree(browser);
        }
        if (failures.size() == 0) return;
    }
    ExpectThree(browser);
}

}  // namespace
}  // namespace Corvetape
