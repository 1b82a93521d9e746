#pragma once

#include "core/reporter.h"
#include "forms/frm_main.h"
#include "platform/processes.h"

namespace Corvetape {

/// The links of the last tab, opened as the desktop opens addresses.
class AboutLinks {
 public:
    /// Attaches itself to lblHomePage, picTaskBar, lblMailTo and cmdNews. All of them outlive it.
    AboutLinks(frmMain& form, Processes& programs, Reporter& say);

 private:
    /// The address of a key, with something after it.
    void Open(const char* key, const std::string& page = {});

    Processes& Programs;
    Reporter& Say;
};

}  // namespace Corvetape
