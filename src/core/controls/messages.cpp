#include "core/controls/messages.h"

#include <utility>
#include <vector>

#include "core/controls/controls.h"
#include "core/controls/form.h"
#include "core/settings/profile.h"
#include "core/text/placeholders.h"
#include "core/text/text.h"
#include "platform/dialogs.h"

namespace Corvetape {

namespace {

/// The buffer that the keys are listed into, and each value is read into, with its closing NUL.
constexpr size_t BufferBytes = 32767;

template <typename Texts>
std::string Find(const Texts& texts, std::string_view key) {
    const auto found = texts.find(LowerCase(key));
    return found == texts.end() ? std::string() : found->second;
}

/// The text of a key, or of the key that it names after ":".
template <typename Texts>
std::string FindRedirected(const Texts& texts, std::string_view key) {
    const std::string text = Find(texts, key);
    return text.starts_with(':') ? Find(texts, std::string_view(text).substr(1)) : text;
}

}  // namespace

clsLocalizeControls::clsLocalizeControls(Files& files, std::string programFolder, Dialogs& dialogs)
    : Disk(files), ProgramFolder(std::move(programFolder)), Boxes(dialogs) {}

void clsLocalizeControls::Load(std::string_view language) {
    Language = language;
    CaptionTexts.clear();
    ToolTipTexts.clear();
    if (Language.empty()) return;
    const Profile file(Disk, ProgramFolder + "/" + Language + ".lang");
    for (const std::string& key : file.Keys("", BufferBytes)) {
        const std::vector<std::string> fields = Split(file.ReadText("", key, "", BufferBytes - 1), '|');
        if (!fields[0].empty()) Add(CaptionTexts, key, fields[0]);
        if (fields.size() > 1 && !fields[1].empty()) Add(ToolTipTexts, key, fields[1]);
    }
}

void clsLocalizeControls::Add(Texts& texts, const std::string& key, const std::string& text) {
    if (texts.emplace(LowerCase(key), text).second) return;
    Boxes.ShowMessage("Item " + key + " exists twice in language file!", DialogIcon::Exclamation);
}

std::string clsLocalizeControls::FormatMsg(std::string_view key,
                                           std::span<const std::string> arguments) const {
    const std::string text = FormatWith(Find(CaptionTexts, key), arguments);
    // After the arguments, so that it takes hold of them too: one pass at the end is what messages rely on.
    return ReplaceAll(ReplaceAll(text, "\\r", "\r"), "\\n", "\n");
}

std::string clsLocalizeControls::FormatMsg(std::string_view key,
                                           std::initializer_list<std::string> arguments) const {
    return FormatMsg(key, std::span<const std::string>(arguments.begin(), arguments.size()));
}

std::string clsLocalizeControls::Caption(std::string_view key) const {
    return FindRedirected(CaptionTexts, key);
}

std::string clsLocalizeControls::ToolTip(std::string_view key) const {
    return FindRedirected(ToolTipTexts, key);
}

void clsLocalizeControls::LocalizeControls(Form& form) const {
    if (Language.empty()) return;
    if (form.TextKey() != "0") {
        const std::string caption = Caption(form.TextKey());
        if (!caption.empty()) form.Caption(caption);
    }
    for (Control* control : form.Controls()) {
        if (auto* const tabs = dynamic_cast<TabStrip*>(control)) {
            LocalizeTabs(*tabs);
            continue;
        }
        if (auto* const combo = dynamic_cast<ComboBox*>(control)) {
            for (size_t i = 0; i < combo->Items().size(); ++i) {
                const auto found = CaptionTexts.find(LowerCase(combo->Items()[i].Text));
                if (found != CaptionTexts.end()) combo->ItemText(static_cast<int32_t>(i), found->second);
            }
        }
        LocalizeControl(*control);
    }
}

void clsLocalizeControls::LocalizeControl(Control& control) const {
    if (Language.empty() || control.TextKey() == "0") return;
    control.ToolTip(ToolTip(control.TextKey()));
    const std::string caption = Caption(control.TextKey());
    if (caption.empty()) return;
    if (auto* const box = dynamic_cast<TextBox*>(&control)) {
        box->Text(caption);
    } else {
        control.Caption(caption);
    }
}

void clsLocalizeControls::LocalizeTabs(TabStrip& tabs) const {
    for (size_t i = 0; i < tabs.Tabs().size(); ++i) {
        const Tab& tab = tabs.Tabs()[i];
        if (tab.TextKey == "0") continue;
        const std::string caption = Caption(tab.TextKey);
        tabs.Texts(i, caption.empty() ? tab.Caption : caption, ToolTip(tab.TextKey));
    }
}

}  // namespace Corvetape
