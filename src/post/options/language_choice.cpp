#include "post/options/language_choice.h"

#include <string_view>

#include "core/text/text.h"

namespace Corvetape {

namespace {

constexpr std::string_view Ending = ".lang";

}  // namespace

LanguageChoice::LanguageChoice(dlgLanguage& dialog, Files& files, Dialogs& boxes, const std::string& folder,
                               const std::string& wanted)
    : Dialog(dialog), Boxes(boxes) {
    for (const FileEntry& entry : files.List(folder)) {
        if (entry.IsFolder || !entry.Name.ends_with(Ending)) continue;
        Dialog.flist.AddItem(entry.Name);
        const std::string name = entry.Name.substr(0, entry.Name.size() - Ending.size());
        Dialog.cboLanguage.AddItem(name);
        const auto last = static_cast<int32_t>(Dialog.cboLanguage.Items().size()) - 1;
        if (EqualIgnoringCase(name, wanted)) Dialog.cboLanguage.ListIndex(last);
    }
    Dialog.cmdOK.Click.Connect([this] { Accept(); });
}

void LanguageChoice::Accept() {
    const int32_t index = Dialog.cboLanguage.ListIndex();
    if (index < 0) return;
    Accepted = Dialog.cboLanguage.Items()[static_cast<size_t>(index)].Text;
    Dialog.Visible(false);
}

bool LanguageChoice::MayClose() {
    if (Dialog.cboLanguage.ListIndex() >= 0) return true;
    Boxes.Beep();
    return false;
}

}  // namespace Corvetape
