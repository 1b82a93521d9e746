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
    EXPECT_TRUE(session.WaitFor([&] { return recorder.Songs.size() >= 3; }, 90s));
    std::vector<std::string> titles;
    for (const TransferredSong& song : recorder.Songs) titles.push_back(song.Media.Song);
    ASSERT_GE(titles.size(), 3U);
    for (size_t i = 1; i < titles.size(); ++i) {
        EXPECT_FALSE(titles[i].empty());
        EXPECT_NE(titles[i], titles[i - 1]);
    }
    EXPECT_EQ(recorder.LostFrames, 0U);
    for (const char* name :
         {"PULSE_SERVER", "QT_QPA_PLATFORM", "QTWEBENGINE_DISABLE_SANDBOX", "DBUS_SESSION_BUS_ADDRESS"}) {
        unsetenv(name);
    }
}

}  // namespace
}  // namespace Corvetape
