#pragma once

#include <cstdint>
#include <string>

namespace Corvetape {

/// What the icon in the notification area stands for. The numbers are those that the tick writes.
enum class TrayState : int16_t { Idle = 0, Recording = 1, Waiting = 2 };

/// The desktop round the program. By itself it is one without a screen: nothing is shown, nothing can be
/// opened, and the program is the only one of its user.
class Desktop {
 public:
    virtual ~Desktop() = default;

    /// Claims the place of the one running program. False if another process holds it.
    virtual bool ClaimInstance() { return true; }

    /// Asks the process that holds the place to come to the front.
    virtual void ActivateOther() {}

    /// The language of the user as the name of its file of texts, "german"; empty if it is not known.
    virtual std::string Language() { return {}; }

    /// The pointer shows that the user has to wait, or no longer.
    virtual void ShowBusy(bool /*busy*/) {}

    /// Opens an address or a folder in the program that the user has for it. False if there is none.
    virtual bool Open(const std::string& /*addressOrFolder*/) { return false; }

    /// Where the window is to stand, in twips; that it is to be minimised; and that it is to be seen, unless
    /// it was minimised.
    virtual void MoveWindow(int32_t /*left*/, int32_t /*top*/) {}
    virtual void MinimizeWindow() {}
    virtual void ShowWindow() {}

    /// The form of the window takes its place and its state.
    virtual void ReportWindow() {}

    /// The windows of the two floating bars.
    virtual void LoadBars() {}
    virtual void CloseBars() {}

    virtual void AddTrayIcon() {}
    virtual void RemoveTrayIcon() {}
    virtual void ShowTrayTip(const std::string& /*tip*/) {}
    virtual void ShowTrayState(TrayState /*state*/) {}
};

}  // namespace Corvetape
