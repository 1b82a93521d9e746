#include "media/provider_adoption.h"

#include <algorithm>
#include <utility>

#include "core/controls/message_texts.h"
#include "core/text/text.h"

namespace Corvetape {

ProviderAdoption::ProviderAdoption(MediaState& media, SourceSettings& settings, SourceMixer& mixer,
                                   const clsLocalizeControls& texts, FormBoxes* boxes)
    : Media(media), Settings(settings), Mixer(mixer), Texts(texts), Boxes(boxes) {}

bool ProviderAdoption::IsKnown(const std::string& providerName) const {
    return std::ranges::any_of(Media.KnownProviders, [&](const std::string& known) {
        return EqualIgnoringCase(known, providerName);  // as names of sections are compared
    });
}

void ProviderAdoption::Adopt(const std::string& providerName) {
    if (!Media.KnownProviders.empty() && !IsKnown(providerName) && Boxes != nullptr) {
        Ask(providerName);
    } else {
        Load(providerName);
    }
}

void ProviderAdoption::Load(const std::string& providerName) {
    Settings.LoadProviderSettings(providerName);
    Mixer.UpdateMixer();
}

void ProviderAdoption::Ask(const std::string& providerName) {
    dlgProvider dialog;
    Texts.LocalizeControls(dialog);  // ahead of the names, which are no keys of texts
    const std::string info = Texts.FormatMsg(Message::SettingsForNewSource.Key, {providerName});
    if (!info.empty()) dialog.lblInfo.Caption(info);
    for (const std::string& known : Media.KnownProviders) dialog.cboProvider.AddItem(known);
    dialog.cboProvider.ListIndex(0);
    dialog.cmdOK.Click.Connect([this, &dialog] {
        const auto index = static_cast<size_t>(dialog.cboProvider.ListIndex());
        TakeOver(dialog.cboProvider.Items()[index].Text);
        dialog.Visible(false);
    });
    dialog.cmdCancel.Click.Connect([&dialog] { dialog.Visible(false); });
    dialog.Visible(true);
    Open = &dialog;
    Boxes->Ask(dialog);
    Open = nullptr;
}

void ProviderAdoption::TakeOver(const std::string& selected) {
    Settings.LoadProviderSettings(selected);
    Settings.StoreProviderSettings();
    const std::string own = std::exchange(Media.MixerSectionName, "Mixer" + selected);
    Mixer.ApplyMixer();
    Media.MixerSectionName = own;
    Mixer.StoreMixer();
    if (!IsKnown(Media.ProviderName)) Media.KnownProviders.push_back(Media.ProviderName);
}

void ProviderAdoption::Cancel() {
    if (Open != nullptr) Open->Visible(false);
}

}  // namespace Corvetape
