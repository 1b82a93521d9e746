#pragma once

#include "core/controls/control_array.h"
#include "core/controls/form_parts.h"

namespace Corvetape {

/// Tab "Log file".
struct LogPage {
    explicit LogPage(Form& form)
        : fraLogFile(form, "fraLogFile"),
          txtLogFile(form, "txtLogFile"),
          cmdOpenLogFile(form, "cmdOpenLogFile"),
          cmdDeleteLogFiles(form, "cmdDeleteLogFiles") {
        fraLogFile.Caption("Log file ");
        txtLogFile.TextKey("1200");
        cmdOpenLogFile.Wording("1201", "Open log file...");
        cmdDeleteLogFiles.Wording("1202", "Delete log files...");
    }

    GroupBox fraLogFile;  ///< its caption is written with the log that is on show
    TextBox txtLogFile;
    CommandButton cmdOpenLogFile;
    CommandButton cmdDeleteLogFiles;
};

}  // namespace Corvetape
