#pragma once

#include <memory>
#include <string>

#include "platform/desktop.h"
#include "platform/linux/desktop/tray_hosts.h"
#include "platform/linux/processes/single_instance.h"
#include "ui/cover_bar.h"
#include "ui/main_window.h"
#include "ui/quick_bar.h"
#include "ui/tray_icon.h"

namespace Corvetape {

struct State;

/// The desktop of the user, as the toolkit reaches it: the window on it, its floating bars and its icon. It
/// shows nothing before it has a window.
class QtDesktop : public Desktop {
 public:
    /// `instanceFolder` is where the one running program of a user has its place.
    explicit QtDesktop(const std::string& instanceFolder);

    /// The window, what it shows, and its forms. All of it outlives the icon and the bars.
    void Over(MainWindow& window, const UiParts& parts, State& state);

    /// Bars and icon go; there is no window any more.
    void LetGo();

    bool ClaimInstance() override { return Instance.Claim(); }
    void ActivateOther() override { Instance.ActivateOther(); }
    std::string Language() override;
    void MoveWindow(int32_t left, int32_t top) override;
    void MinimizeWindow() override;
    void ShowWindow() override;
    void ReportWindow() override;
    void LoadBars() override;
    void CloseBars() override;
    void AddTrayIcon() override;
    void RemoveTrayIcon() override;
    void ShowTrayTip(const std::string& tip) override;
    void ShowTrayState(TrayState state) override;

 private:
    void ComeForward();
    void ReportPlace();
    void SeeWindowPlaced();
    bool IsExposed() const;
    void ShowPointer(MousePointer pointer) override;
    bool IconIsThere() const { return Tray && Tray->Present(); }

    LinuxSingleInstance Instance;
    MainWindow* Window = nullptr;
    const UiParts* Parts = nullptr;
    State* Forms = nullptr;
    bool WindowPlaced = false;
    std::unique_ptr<QuickBarWindow> PlainBar;
    std::unique_ptr<CoverBarWindow> CoverBar;
    std::unique_ptr<TrayHosts> Hosts;
    std::unique_ptr<TrayIcon> Tray;
};

}  // namespace Corvetape
