#pragma once

#include "core/controls/controls.h"
#include "core/controls/form.h"

namespace Corvetape {

/// The question which source's settings a newly met source shall take over. It is shown for as long as it is
/// visible; it hides itself when it is answered.
struct dlgProvider : Form {
    dlgProvider();

    Label lblInfo;
    Label Label1;  ///< stands before the list
    ComboBox cboProvider;
    CommandButton cmdOK;
    CommandButton cmdCancel;
};

}  // namespace Corvetape
