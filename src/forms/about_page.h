#pragma once

#include "core/controls/control_array.h"
#include "core/controls/form_parts.h"

namespace Corvetape {

/// The last tab: the program itself.
struct AboutPage {
    explicit AboutPage(Form& form);

    Picture picLogo;
    Label lblVersion;   ///< major.minor.revision
    Label lblHomePage;  ///< a link
    Label lblMailTo;    ///< a link
    CommandButton cmdNews;
    CommandButton cmdCheckUpdateNow;
    TextBox txtlblF1;  ///< only read and clicked
};

}  // namespace Corvetape
