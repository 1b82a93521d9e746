#pragma once

#include <string>
#include <vector>

#include "core/reporter.h"
#include "core/settings/settings_store.h"
#include "forms/frm_main.h"
#include "platform/files.h"
#include "post/options/languages.h"

namespace Corvetape {

/// The choice of the language on the page of options. Windows have their texts from when they were made, so
/// that a choice holds from the next start; the status line says so.
class LanguageOption {
 public:
    /// Attaches itself to cmbLanguage. All of them outlive it.
    LanguageOption(frmMain& form, SettingsStore& store, Files& files, Reporter& say);

    /// Fills the list from the language files of a folder and selects the one in use, if it is among them.
    void Show(const std::string& folder, const std::string& inUse);

 private:
    void Choose();

    frmMain& Form;
    SettingsStore& Store;
    Files& Disk;
    Reporter& Say;
    std::vector<LanguageFile> Languages;  ///< in the order of the list
    std::string Stored;                   ///< the last choice
};

}  // namespace Corvetape
