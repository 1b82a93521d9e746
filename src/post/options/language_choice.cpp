#include "post/options/language_choice.h"

#include "core/text/text.h"
#include "post/options/languages.h"

namespace Corvetape {

LanguageChoice::LanguageChoice(dlgLanguage& dialog, Files& files, Dialogs& boxes, const std::string& folder,
                               const std::string& wanted)
    : Dialog(dialog), Boxes(boxes) {
    for (const LanguageFile& each : ListLanguages(files, folder)) {
        Dialog.flist.AddItem(each.File);
        Dialog.cboLanguage.AddItem(each.Name);
        const auto last = static_cast<int32_t>(Dialog.cboLanguage.Items().size()) - 1;
        if (EqualIgnoringCase(each.File, wanted)) Dialog.cboLanguage.ListIndex(last);
    }
    Dialog.cmdOK.Click.Connect([this] { Accept(); });
}

void LanguageChoice::Accept() {
    const int32_t index = Dialog.cboLanguage.ListIndex();
    if (index < 0) return;
    Accepted = Dialog.flist.Items()[static_cast<size_t>(index)].Text;
    Dialog.Visible(false);
}

bool LanguageChoice::MayClose() {
    if (Dialog.cboLanguage.ListIndex() >= 0) return true;
    Boxes.Beep();
    return false;
}

}  // namespace Corvetape
