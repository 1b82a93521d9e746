#pragma once

#include <memory>

#include "platform/windows.h"

namespace Corvetape {

/// The windows of an X server. They are those of its window manager, or all children of the root without one.
/// A desktop that has no X server shows no windows.
class X11Windows : public Windows {
 public:
    /// Connects to the server of this session, or to another one by its name. A connection that breaks is not
    /// made again.
    explicit X11Windows(const char* display = nullptr);
    ~X11Windows() override;
    X11Windows(const X11Windows&) = delete;
    X11Windows& operator=(const X11Windows&) = delete;

    bool Available() override;
    std::vector<WindowInfo> TopLevel() override;
    std::vector<WindowInfo> Descendants(uint64_t handle) override;
    std::string Text(uint64_t handle) override;

 private:
    struct Server;
    std::unique_ptr<Server> X;
};

}  // namespace Corvetape
