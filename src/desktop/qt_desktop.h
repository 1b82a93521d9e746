#pragma once

#include <memory>
#include <string>

#include "platform/desktop.h"
#include "platform/linux/processes/single_instance.h"
#include "ui/tray_icon.h"

namespace Corvetape {

class MainWindow;
struct frmMain;

/// The desktop of the user, as the toolkit reaches it. It shows nothing before it has a window.
class QtDesktop : public Desktop {
 public:
    /// `instanceFolder` is where the one running program of a user has its place.
    explicit QtDesktop(const std::string& instanceFolder);

    /// The window and its form; both outlive the icon.
    void Over(MainWindow& window, frmMain& form);

    /// The icon goes; there is no window any more.
    void LetGo();

    bool ClaimInstance() override { return Instance.Claim(); }
    void ActivateOther() override { Instance.ActivateOther(); }
    std::string Language() override;
    void ShowBusy(bool busy) override;
    bool Open(const std::string& addressOrFolder) override;
    void AddTrayIcon() override;
    void RemoveTrayIcon() override { Tray.reset(); }
    void ShowTrayTip(const std::string& tip) override;
    void ShowTrayState(TrayState state) override;

 private:
    void ComeForward();

    LinuxSingleInstance Instance;
    MainWindow* Window = nullptr;
    frmMain* Form = nullptr;
    std::unique_ptr<TrayIcon> Tray;
};

}  // namespace Corvetape
