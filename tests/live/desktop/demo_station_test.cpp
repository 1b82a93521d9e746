// The station that comes with the program, from the list of stations to the recorded songs.
#include <gmock/gmock.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "live/live_program.h"
#include "platform/linux/browser/radio_browser.h"

namespace Corvetape {
namespace {

using namespace std::chrono_literals;

std::string TextOf(const std::string& file) {
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
}

TEST(DemoStation, IsLaunchedFromTheListAndRecordedSongBySongByItsTitles) {
    LiveSession session;
    SoundServer server(ServerKind::PulseAudio);
    server.Start();
    SessionBus bus(session);
    setenv("PULSE_SERVER", server.Address().c_str(), 1);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    setenv("QTWEBENGINE_DISABLE_SANDBOX", "1", 1);
    setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);  // the page is the only source

    const std::string folder = QCoreApplication::applicationDirPath().toStdString();
    RadioBrowser browser(session.Loop, folder + "/corvetape-browser");
    LiveProgram recorder(session, server, bus);
    recorder.OtherPages = &browser;
    recorder.Browser = &browser;
    ASSERT_TRUE(recorder.Start(TextOf(folder + "/MSIE.ini"), "", {"Demo station"},
                               {{"Browser", "WithoutSandbox", "1"}}));
    frmMain& form = recorder.Running->Values().Form;
    ASSERT_FALSE(form.cmbURL.Items().empty());
    ASSERT_EQ(form.cmbURL.Items()[0].Text, "Demo station");
    form.cmbURL.Select(0);
    form.cmdLaunchURL.Press();
    EXPECT_FALSE(form.cmdLaunchURL.Enabled());
    EXPECT_TRUE(session.WaitFor([&] { return form.cmdLaunchURL.Enabled(); }, 60s));
    EXPECT_TRUE(session.WaitFor([&] { return recorder.Media().ProviderName == "Demo station"; }, 60s));

    form.objWebBrowser.Navigate("corvetape://radio/?seconds=7");
    // Three in a row with a name of its own each. A page that does not answer on a busy machine has no title
    // for that time, by rule, and its song ends there: the next ones count.
    const auto threeInARow = [&] {
        size_t row = 0;
        std::string before;
        for (const TransferredSong& song : recorder.Songs) {
            const bool counts = !song.Media.Song.empty() && song.Media.Song != before;
            row = counts ? row + 1 : 0;
            before = song.Media.Song;
            if (row == 3) return true;
        }
        return false;
    };
    const bool recorded = session.WaitFor(threeInARow, 180s);
    std::string titles;
    for (const TransferredSong& song : recorder.Songs) titles += "\n" + song.Media.Song;
    EXPECT_TRUE(recorded) << titles;
    EXPECT_EQ(recorder.LostFrames, 0U);
    for (const char* name :
         {"PULSE_SERVER", "QT_QPA_PLATFORM", "QTWEBENGINE_DISABLE_SANDBOX", "DBUS_SESSION_BUS_ADDRESS"}) {
        unsetenv(name);
    }
}

}  // namespace
}  // namespace Corvetape
