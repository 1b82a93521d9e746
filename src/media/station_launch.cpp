#include "media/station_launch.h"

#include <fmt/format.h>

#include <string>

#include "core/opening.h"

namespace Corvetape {

StationLaunch::StationLaunch(StationLaunchParts parts)
    : Parts(parts), Patience(Parts.Loop.NewTimer([this] { LetLaunch(); })) {
    frmMain& form = Parts.Form;
    form.cmbURL.Click.Connect([this] {
        Parts.Settings.CurrentUrlIndex = Parts.Form.cmbURL.ListIndex();
        Parts.Store.WriteSetting("URLs", "Current", Parts.Settings.CurrentUrlIndex);
    });
    form.cmdLaunchURL.Click.Connect([this] { Launch(); });
    form.objWebBrowser.StatusTextChange.Connect([this](const std::string& text) {
        if (Loading && !text.empty()) Parts.Form.lblStatus[1].Caption(text);
    });
    form.objWebBrowser.ProgressChange.Connect(
        [this](int64_t progress, int64_t maximum) { ShowProgress(progress, maximum); });
    form.objWebBrowser.DownloadComplete.Connect([this] { PageHasCome(); });
}

void StationLaunch::Launch() {
    const auto& addresses = Parts.Settings.StationUrls;
    const int32_t index = Parts.Settings.CurrentUrlIndex;
    if (index < 0 || static_cast<size_t>(index) >= addresses.size()) return;
    const std::string address = addresses[static_cast<size_t>(index)];
    if (address.find("://") == std::string::npos) {
        OpenOutside(Parts.Expansion.ExpandPlaceholders(address), Parts.Processes, Parts.Say);
        return;
    }
    Parts.Form.cmdLaunchURL.Enabled(false);
    Parts.Loop.ProcessEvents();
    Loading = true;  // the page may come from within Navigate
    Parts.Desktop.Pointer(MousePointer::Busy);
    Patience->Start(LongestWait, TimerPrecision::Coarse);
    Parts.Form.objWebBrowser.Navigate(address);
}

void StationLaunch::ShowProgress(int64_t progress, int64_t maximum) {
    if (!Loading) return;
    if (progress == -1) {
        Parts.Form.lblStatus[3].Caption("");
    } else if (maximum != 0) {
        const double share = static_cast<double>(progress) / static_cast<double>(maximum);
        Parts.Form.lblStatus[3].Caption(fmt::format("{:.2f}%", share * 100));
    }
}

void StationLaunch::PageHasCome() {
    if (!Loading) return;
    LetLaunch();
    Loading = false;
}

void StationLaunch::LetLaunch() {
    Patience->Stop();
    Parts.Desktop.Pointer(MousePointer::Default);
    Parts.Form.cmdLaunchURL.Enabled(true);
}

}  // namespace Corvetape
