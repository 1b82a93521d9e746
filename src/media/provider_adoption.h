#pragma once

#include <functional>
#include <string>

#include "core/media_state.h"
#include "forms/dlg_provider.h"

namespace Corvetape {

/// What the adoption of settings asks of others. Those of the mixer act on the section MixerSectionName.
struct AdoptionActions {
    /// Reads the pause recognition values of a provider and shows them.
    std::function<void(const std::string& providerName)> LoadProviderSettings;

    /// Validates the values that are shown, and stores them under the present provider.
    std::function<void()> StoreProviderSettings;

    /// Applies the saved mixer section if the user wants that at each change of the source.
    std::function<void()> UpdateMixer;

    std::function<void()> ApplyMixer;  ///< sets the mixer to what is saved, asked for or not
    std::function<void()> StoreMixer;  ///< saves the mixer as it is set

    std::function<void(Form& form)> Localize;
    std::function<std::string(const std::string& key, const std::string& argument)> FormatMsg;

    /// Shows the question until it is no longer visible; events are handled meanwhile. Not set: there is
    /// nobody to ask.
    std::function<void(dlgProvider& dialog)> Ask;
};

/// Gives a provider whose name has become the present one its settings: its own, or those that the user has
/// taken over from another one.
class ProviderAdoption {
 public:
    /// `media` outlives it.
    ProviderAdoption(MediaState& media, AdoptionActions actions);

    /// Loads the settings of a known provider, and of any while none is known. For an unknown one the user is
    /// asked. Whoever cancels leaves the values in force and the name unknown, so that the question comes
    /// again. Where nobody can be asked an unknown one takes its own values, which are the defaults.
    void Adopt(const std::string& providerName);

    /// Closes an open question as if it had been cancelled.
    void Cancel();

 private:
    bool IsKnown(const std::string& providerName) const;
    void Ask(const std::string& providerName);
    void TakeOver(const std::string& selected);

    MediaState& Media;
    AdoptionActions Actions;
    dlgProvider* Open = nullptr;  ///< while the question is shown
};

}  // namespace Corvetape
