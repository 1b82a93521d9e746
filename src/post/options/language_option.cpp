#include "post/options/language_option.h"

#include "core/controls/message_texts.h"
#include "core/text/text.h"

namespace Corvetape {

LanguageOption::LanguageOption(frmMain& form, SettingsStore& store, Files& files, Reporter& say)
    : Form(form), Store(store), Disk(files), Say(say) {
    Form.cmbLanguage.Click.Connect([this] { Choose(); });
}

void LanguageOption::Show(const std::string& folder, const std::string& inUse) {
    Stored = inUse;
    Languages = ListLanguages(Disk, folder);
    Form.cmbLanguage.Clear();
    for (const LanguageFile& each : Languages) {
        Form.cmbLanguage.AddItem(each.Name);
        const auto last = static_cast<int32_t>(Form.cmbLanguage.Items().size()) - 1;
        if (EqualIgnoringCase(each.File, inUse)) Form.cmbLanguage.ListIndex(last);
    }
}

void LanguageOption::Choose() {
    const int32_t index = Form.cmbLanguage.ListIndex();
    if (index < 0 || static_cast<size_t>(index) >= Languages.size()) return;
    const std::string& chosen = Languages[static_cast<size_t>(index)].File;
    if (EqualIgnoringCase(chosen, Stored)) return;  // the one in use is shown
    Stored = chosen;
    Store.WriteSetting("General", "Language", chosen);
    Say.Show(Say.Text(Message::HoldsFromNextStart.Key));
}

}  // namespace Corvetape
