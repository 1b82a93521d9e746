#pragma once

#include <chrono>
#include <cstdint>
#include <memory>

#include "core/reporter.h"
#include "core/settings/settings_store.h"
#include "core/text/placeholders.h"
#include "forms/frm_main.h"
#include "platform/desktop.h"
#include "platform/event_loop.h"
#include "platform/processes.h"

namespace Corvetape {

/// What the launch works on. All of it outlives it.
struct StationLaunchParts {
    frmMain& Form;
    Corvetape::Settings& Settings;  ///< CurrentUrlIndex is the index of the chosen entry
    SettingsStore& Store;
    const Placeholders& Expansion;
    Corvetape::Processes& Processes;
    Corvetape::Desktop& Desktop;
    EventLoop& Loop;
    Reporter& Say;
};

/// The list of stations and other things to start. An entry with an address opens in the form's own browser,
/// any other one as the desktop opens it.
class StationLaunch {
 public:
    /// Attaches itself to cmbURL, cmdLaunchURL and objWebBrowser.
    explicit StationLaunch(StationLaunchParts parts);
    StationLaunch(const StationLaunch&) = delete;
    StationLaunch& operator=(const StationLaunch&) = delete;

    /// How long a page may take before something else can be launched in its place.
    static constexpr std::chrono::seconds LongestWait{20};

    /// True from the launch of an address until its page has come. cmdLaunchURL is disabled meanwhile, but
    /// not for longer than LongestWait: a server that never answers would take it from the user for good.
    bool BrowserLoading() const { return Loading; }

 private:
    void Launch();
    void ShowProgress(int64_t progress, int64_t maximum);
    void PageHasCome();
    void LetLaunch();

    StationLaunchParts Parts;
    bool Loading = false;
    std::unique_ptr<LoopTimer> Patience;
};

}  // namespace Corvetape
