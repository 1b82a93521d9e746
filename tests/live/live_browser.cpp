#include "live/live_browser.h"

#include <gtest/gtest.h>

#include <fstream>

namespace Corvetape {

LiveBrowser::LiveBrowser(LiveSession& session, const std::string& url, const std::vector<std::string>& flags,
                         const std::map<std::string, std::string>& environment) {
    TestProcess::Start start;
    start.Command = {"chromium",
                     "--headless",
                     "--remote-debugging-port=0",
                     "--user-data-dir=" + folder.Path(),
                     "--no-sandbox",
                     "--disable-gpu",
                     "--disable-quic",
                     "--no-first-run",
                     "--disable-background-networking",
                     "--disable-component-update",
                     "--disable-sync",
                     "--disable-dev-shm-usage"};
    start.Command.insert(start.Command.end(), flags.begin(), flags.end());
    if (flags.empty()) {
        start.Command.push_back(
            "--host-resolver-rules=MAP * ~NOTFOUND , EXCLUDE 127.0.0.1 , EXCLUDE localhost");
    }
    start.Command.push_back(url);
    start.Environment = environment;
    start.Environment["HOME"] = folder.Path();
    start.Output = folder / "output";
    process = std::make_unique<TestProcess>(start);

    const std::string portFile = folder / "DevToolsActivePort";
    const auto open = [&] { return static_cast<bool>(std::ifstream(portFile) >> port); };
    EXPECT_TRUE(session.WaitFor(open, std::chrono::seconds(60))) << "no browser answers";
}

}  // namespace Corvetape
