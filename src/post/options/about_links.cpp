#include "post/options/about_links.h"

#include "core/version.h"

namespace Corvetape {

AboutLinks::AboutLinks(frmMain& form, Processes& programs, const clsLocalizeControls& messages)
    : Programs(programs), Messages(messages) {
    form.lblHomePage.Click.Connect([this] { Open("homepage"); });
    for (Picture& picture : form.picTaskBar) picture.Click.Connect([this] { Open("homepage"); });
    form.lblMailTo.Click.Connect([this] { Open("email"); });
    form.cmdNews.Click.Connect([this] { Open("homepage", std::string("news.htm?v=") + ProgramVersion); });
}

void AboutLinks::Open(const char* key, const std::string& page) {
    const std::string address = Messages.FormatMsg(key);
    // What becomes of it is seen in the browser; without a language there is no address.
    if (!address.empty()) Programs.ShellOpen(address + page, "", "");
}

}  // namespace Corvetape
