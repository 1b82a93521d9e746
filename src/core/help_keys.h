#pragma once

#include <cstdint>
#include <string>

#include "core/lifecycle_flags.h"

namespace Corvetape {

/// Where the pages of the help and of the assistant are shown.
class HelpPages {
 public:
    virtual ~HelpPages() = default;

    /// Shows a page, from the web or (`online` false) from the folder of the program.
    virtual void SetUrl(const std::string& page, bool online) = 0;
};

/// Keys that all windows of the program share.
enum class HelpKey { F1, F2, F3, F12 };

/// What the shared keys do. A key that comes while one is being handled is ignored.
class HelpKeys {
 public:
    /// Both outlive it.
    HelpKeys(LifecycleFlags& flags, HelpPages& pages) : Flags(flags), Pages(pages) {}

    /// `tag` is the stem of the window's own page. F1 and F2 show their pages from the folder of the program
    /// while Alt is held, F3 and F12 never do.
    void Press(HelpKey key, bool alt, const std::string& tag);

 private:
    LifecycleFlags& Flags;
    HelpPages& Pages;
    bool Busy = false;
};

}  // namespace Corvetape
