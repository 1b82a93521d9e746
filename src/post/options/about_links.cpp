#include "post/options/about_links.h"

#include "core/opening.h"
#include "core/version.h"

namespace Corvetape {

AboutLinks::AboutLinks(frmMain& form, Processes& programs, Reporter& say) : Programs(programs), Say(say) {
    form.lblHomePage.Click.Connect([this] { Open("homepage"); });
    for (Picture& picture : form.picTaskBar) picture.Click.Connect([this] { Open("homepage"); });
    form.lblMailTo.Click.Connect([this] { Open("email"); });
    form.cmdNews.Click.Connect([this] { Open("homepage", std::string("news.htm?v=") + ProgramVersion); });
}

void AboutLinks::Open(const char* key, const std::string& page) {
    const std::string address = Say.Text(key);
    // Without a language there is no address.
    if (!address.empty()) OpenOutside(address + page, Programs, Say);
}

}  // namespace Corvetape
