#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/windows.h"

namespace Corvetape {

/// Windows made of a list.
class SimWindows : public Windows {
 public:
    /// Adds a window on top of the others and gives its handle.
    uint64_t Add(const std::string& text, const std::string& windowClass);

    /// Adds a window inside another one, after those that are there.
    uint64_t AddInside(uint64_t parent, const std::string& text, const std::string& windowClass);

    void Raise(uint64_t handle);
    void SetText(uint64_t handle, const std::string& text);
    void Close(uint64_t handle);

    bool Available() override { return Shown; }
    std::vector<WindowInfo> TopLevel() override;
    std::vector<WindowInfo> Descendants(uint64_t handle) override;
    std::string Text(uint64_t handle) override;

    bool Shown = true;  ///< false: a desktop that shows its windows to nobody

 private:
    WindowInfo* Find(uint64_t handle);

    std::vector<WindowInfo> Top;  ///< topmost first
    std::map<uint64_t, std::vector<WindowInfo>> Inside;
    uint64_t Made = 0;
};

}  // namespace Corvetape
