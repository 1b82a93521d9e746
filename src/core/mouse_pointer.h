#pragma once

#include "platform/desktop.h"

namespace Corvetape {

/// The pointer shows that the user has to wait for as long as this object lives; then the one from before
/// comes back. The screen outlives it.
class clsMousePointer {
 public:
    explicit clsMousePointer(Desktop& screen) : Screen(screen), Remembered(screen.Pointer()) {
        SetMousePointer(MousePointer::Busy);
    }

    /// What somebody else has set meanwhile stays: what the remembered pointer stood for is over then.
    ~clsMousePointer() {
        if (Screen.Pointer() == Shown) Screen.Pointer(Remembered);
    }
    clsMousePointer(const clsMousePointer&) = delete;
    clsMousePointer& operator=(const clsMousePointer&) = delete;

    /// Another pointer meanwhile.
    void SetMousePointer(MousePointer value) {
        Shown = value;
        Screen.Pointer(value);
    }

 private:
    Desktop& Screen;
    MousePointer Remembered;
    MousePointer Shown = MousePointer::Default;
};

}  // namespace Corvetape
