#pragma once

#include <cstddef>
#include <string>

#include "core/reporter.h"

namespace Corvetape {

/// Reports why profiles of the browser provider find nothing, each reason once in a run.
class BrowserNotices {
 public:
    /// `say` outlives it.
    explicit BrowserNotices(Reporter& say) : Say(say) {}

    /// A profile asks for windows, and the desktop shows none.
    void WindowsWanted();

    /// So many profiles of the file did not fit into the list.
    void ProfilesUnread(const std::string& path, size_t unread);

 private:
    Reporter& Say;
    bool WindowsReported = false;
    bool ProfilesReported = false;
};

}  // namespace Corvetape
