#include "forms/about_page.h"

namespace Corvetape {

AboutPage::AboutPage(Form& form)
    : picLogo(form, "picLogo"),
      lblVersion(form, "lblVersion"),
      lblHomePage(form, "lblHomePage"),
      lblMailTo(form, "lblMailTo"),
      cmdNews(form, "cmdNews"),
      cmdCheckUpdateNow(form, "cmdCheckUpdateNow"),
      txtlblF1(form, "txtlblF1") {
    lblHomePage.Wording("1230", "Home page");
    lblMailTo.Wording("1231", "Contact");
    cmdNews.Wording("1232", "News");
    cmdCheckUpdateNow.Wording("1233", "Check for updates now");
    txtlblF1.TextKey("1234");
    txtlblF1.Text("Help = F1, Assistant = F2");
}

}  // namespace Corvetape
