#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Corvetape {

/// A window of the desktop. Texts are cut at 255 characters.
struct WindowInfo {
    uint64_t Handle = 0;  ///< never 0 for a window that exists
    std::string Text;     ///< its title
    std::string Class;

    bool operator==(const WindowInfo&) const = default;
};

/// The windows of all programs.
class Windows {
 public:
    virtual ~Windows() = default;

    /// False if this desktop shows its windows to nobody.
    virtual bool Available() = 0;

    /// Top-level windows in Z order, the topmost first.
    virtual std::vector<WindowInfo> TopLevel() = 0;

    /// All windows inside a window, in the order of enumeration: each one before those inside it.
    virtual std::vector<WindowInfo> Descendants(uint64_t handle) = 0;

    /// The title of a window as it is now; empty if the window has gone.
    virtual std::string Text(uint64_t handle) = 0;
};

}  // namespace Corvetape
