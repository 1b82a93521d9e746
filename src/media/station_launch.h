#pragma once

#include <cstdint>

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

    /// True from the launch of an address until its page has come. cmdLaunchURL is disabled meanwhile.
    bool BrowserLoading() const { return Loading; }

 private:
    void Launch();
    void ShowProgress(int64_t progress, int64_t maximum);
    void PageHasCome();

    StationLaunchParts Parts;
    bool Loading = false;
};

}  // namespace Corvetape
