#pragma once

#include <cstdint>
#include <string>

namespace Corvetape {

/// What the icon in the notification area stands for. The numbers are those that the tick writes.
enum class TrayState : int16_t { Idle = 0, Recording = 1, Waiting = 2 };

/// The pointer of the mouse, for the whole program. The numbers are those of the system's own pointers.
enum class MousePointer : int16_t { Default = 0, Busy = 11 };

/// The desktop round the program. By itself it is one without a screen: nothing is shown, and the program is
/// the only one of its user.
class Desktop {
 public:
    virtual ~Desktop() = default;

    /// Claims the place of the one running program. False if another process holds it.
    virtual bool ClaimInstance() { return true; }

    /// Asks the process that holds the place to come to the front.
    virtual void ActivateOther() {}

    /// The language of the user as the name of its file of texts, "german"; empty if it is not known.
    virtual std::string Language() { return {}; }

    /// The pointer that is shown, and another one.
    MousePointer Pointer() const { return OwnPointer; }
    void Pointer(MousePointer pointer) {
        OwnPointer = pointer;
        ShowPointer(pointer);
    }

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

 private:
    virtual void ShowPointer(MousePointer /*pointer*/) {}

    MousePointer OwnPointer = MousePointer::Default;
};

}  // namespace Corvetape
