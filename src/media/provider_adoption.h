#pragma once

#include <string>

#include "core/controls/messages.h"
#include "core/media_state.h"
#include "core/source_mixer.h"
#include "forms/dlg_provider.h"
#include "forms/form_boxes.h"
#include "media/source_settings.h"

namespace Corvetape {

/// Gives a provider whose name has become the present one its settings: its own, or those that the user has
/// taken over from another one.
class ProviderAdoption {
 public:
    /// All of them outlive it. Without `boxes` there is nobody to ask.
    ProviderAdoption(MediaState& media, SourceSettings& settings, SourceMixer& mixer,
                     const clsLocalizeControls& texts, FormBoxes* boxes);

    /// Loads the settings of a known provider, and of any while none is known. For an unknown one the user is
    /// asked. Whoever cancels leaves the values in force and the name unknown, so that the question comes
    /// again. Where nobody can be asked an unknown one takes its own values, which are the defaults.
    void Adopt(const std::string& providerName);

    /// Loads the settings of a provider, known or not.
    void Load(const std::string& providerName);

    /// Closes an open question as if it had been cancelled.
    void Cancel();

 private:
    bool IsKnown(const std::string& providerName) const;
    void Ask(const std::string& providerName);
    void TakeOver(const std::string& selected);

    MediaState& Media;
    SourceSettings& Settings;
    SourceMixer& Mixer;
    const clsLocalizeControls& Texts;
    FormBoxes* Boxes;
    dlgProvider* Open = nullptr;  ///< while the question is shown
};

}  // namespace Corvetape
