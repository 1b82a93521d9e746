#pragma once

#include <string>

#include "forms/dlg_language.h"
#include "platform/dialogs.h"
#include "platform/files.h"

namespace Corvetape {

/// The question for the language: which there are, which is chosen, and when the question may end.
class LanguageChoice {
 public:
    /// Fills the lists from the files "*.lang" of the folder, that of the user with the languages' own names,
    /// and selects the one whose file is `wanted`, if it is among them.
    /// Attaches itself to cmdOK. All of them outlive it.
    LanguageChoice(dlgLanguage& dialog, Files& files, Dialogs& boxes, const std::string& folder,
                   const std::string& wanted);

    /// The user closes the question otherwise. Refused with a beep while no language is selected.
    bool MayClose();

    /// Name of the language file that the user accepted, without its ending. Empty before that.
    const std::string& Chosen() const { return Accepted; }

 private:
    void Accept();

    dlgLanguage& Dialog;
    Dialogs& Boxes;
    std::string Accepted;
};

}  // namespace Corvetape
