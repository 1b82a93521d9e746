#include "media/provider_adoption.h"

#include <algorithm>
#include <utility>

#include "core/text/text.h"

namespace Corvetape {

ProviderAdoption::ProviderAdoption(MediaState& media, AdoptionActions actions)
    : Media(media), Actions(std::move(actions)) {}

bool ProviderAdoption::IsKnown(const std::string& providerName) const {
    return std::ranges::any_of(Media.KnownProviders, [&](const std::string& known) {
        return EqualIgnoringCase(known, providerName);  // as names of sections are compared
    });
}

void ProviderAdoption::Adopt(const std::string& providerName) {
    if (!Media.KnownProviders.empty() && !IsKnown(providerName) && Actions.Ask) {
        Ask(providerName);
        return;
    }
    Actions.LoadProviderSettings(providerName);
    Actions.UpdateMixer();
}

void ProviderAdoption::Ask(const std::string& providerName) {
    dlgProvider dialog;
    Actions.Localize(dialog);  // ahead of the names, which are no keys of texts
    const std::string info = Actions.FormatMsg("50010", providerName);
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
    Actions.Ask(dialog);
    Open = nullptr;
}

void ProviderAdoption::TakeOver(const std::string& selected) {
    Actions.LoadProviderSettings(selected);
    Actions.StoreProviderSettings();
    const std::string own = std::exchange(Media.MixerSectionName, "Mixer" + selected);
    Actions.ApplyMixer();
    Media.MixerSectionName = own;
    Actions.StoreMixer();
    if (!IsKnown(Media.ProviderName)) Media.KnownProviders.push_back(Media.ProviderName);
}

void ProviderAdoption::Cancel() {
    if (Open != nullptr) Open->Visible(false);
}

}  // namespace Corvetape
