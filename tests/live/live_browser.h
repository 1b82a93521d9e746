#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "live/test_process.h"
#include "support/live_session.h"
#include "support/temp_folder.h"

namespace Corvetape {

/// A browser without a window, with a profile of its own and a DevTools port. It reaches nothing but this
/// machine.
class LiveBrowser {
 public:
    /// Starts it and waits until its port is open. Fails the test if there is none.
    LiveBrowser(LiveSession& session, const std::string& url, const std::vector<std::string>& flags = {},
                const std::map<std::string, std::string>& environment = {});

    uint16_t Port() const { return port; }

    void Signal(int number) const { process->Signal(number); }
    void Kill() { process->Kill(); }

 private:
    TempFolder folder;
    std::unique_ptr<TestProcess> process;
    uint16_t port = 0;
};

}  // namespace Corvetape
