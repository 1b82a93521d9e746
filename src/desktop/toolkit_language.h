#pragma once

#include <QTranslator>
#include <string>

namespace Corvetape {

/// The toolkit's own texts, as on the buttons of boxes and in the dialogs for files, in the language of the
/// user. They are English where the system does not have them in that language.
class ToolkitLanguage {
 public:
    /// From now on, by the English name of the language in small letters. An unknown one is English.
    void Speak(const std::string& language);

 private:
    QTranslator Texts;
};

}  // namespace Corvetape
