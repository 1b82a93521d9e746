#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "audio/pause_settings.h"
#include "audio/signal_state.h"
#include "core/controls/messages.h"
#include "core/media_state.h"
#include "core/settings/run_overrides.h"
#include "core/settings/settings_store.h"
#include "forms/frm_main.h"
#include "media/source_settings.h"
#include "platform/dialogs.h"
#include "recording/song_end_mode.h"

namespace Corvetape {

/// What the pause settings need of others. All of it outlives them.
struct PauseControlParts {
    frmMain& Form;
    PauseSettings& Pause;
    SignalState& Signal;      ///< ActiveThreshold is set by loading
    const MediaState& Media;  ///< names of the sections
    SettingsStore& Store;
    Corvetape::Dialogs& Dialogs;
    const clsLocalizeControls& Messages;
    RunOverrides& Overrides;
};

/// The settings for how the end of a song is noticed: kept per provider, loaded when the provider
/// changes, and written by their controls at once. The handlers of the tab "TAB_PAUSE" and of the gain.
class PauseControl : public SourceSettings {
 public:
    /// Attaches itself to the controls. Nothing is loaded yet.
    PauseControl(PauseControlParts parts, SongEndMode& mode);

    /// Reads the settings of a provider and shows them; nothing is done for the one that was loaded last. A
    /// missing key takes its default. Nothing is written, so that an unknown provider has no section until
    /// something is changed.
    ///
    /// The gain comes from the present mixer section, which is named before this is called. An end of song
    /// by media data switches the media data on.
    void LoadProviderSettings(const std::string& section) override;

    /// Validates what is shown and stores all of it under the present provider, as if the user had set each
    /// value there. What a validation refuses is reported and not stored. The gain goes into the present
    /// mixer section.
    void StoreProviderSettings() override;

    /// The next load reads its section even if it was loaded last.
    void ForgetLoaded() { Loaded.reset(); }

 private:
    void AttachNumbers();
    void AttachChoices();
    void AttachSliders();

    void LoadLevels(const std::string& section);
    void LoadFlags(const std::string& section);
    void LoadEndOfSong(const std::string& section);
    void LoadTimes(const std::string& section);
    void LoadMultiplier();
    int32_t Read(const std::string& section, const char* key) const;

    bool SilenceAmplitudeRefused();
    bool EndOfSilenceAmplitudeRefused();
    std::optional<int32_t> Accepted(TextBox& box, int32_t minimum, int32_t maximum, int32_t step = 1);

    void ShowThreshold(size_t side);
    void TakeMultiplier();

    std::string Section() const;
    void Write(const char* key, int32_t value);

    PauseControlParts Parts;
    SongEndMode& Mode;
    std::optional<std::string> Loaded;  ///< section loaded last
    bool Loading = false;               ///< controls follow the file; nobody has changed anything
};

}  // namespace Corvetape
