#pragma once

#include "core/control_array.h"

namespace Corvetape {

/// Tab "Log file".
struct LogPage {
    explicit LogPage(Form& form)
        : txtLogFile(form, "txtLogFile"),
          fraLogFile(form, "fraLogFile"),
          cmdOpenLogFile(form, "cmdOpenLogFile"),
          cmdDeleteLogFiles(form, "cmdDeleteLogFiles") {}

    TextBox txtLogFile;
    Label fraLogFile;
    CommandButton cmdOpenLogFile;
    CommandButton cmdDeleteLogFiles;
};

}  // namespace Corvetape
