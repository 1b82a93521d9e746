#pragma once

#include "core/controls/form.h"
#include "core/controls/form_parts.h"

namespace Corvetape {

/// The question for the language, asked at the first start.
struct dlgLanguage : Form {
    dlgLanguage();

    Label Label1;  ///< in both languages, since none is known yet
    ComboBox cboLanguage;
    ListBox flist;  ///< never seen: the language files, in the order of cboLanguage
    CommandButton cmdOK;
};

}  // namespace Corvetape
