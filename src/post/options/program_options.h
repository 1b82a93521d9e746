#pragma once

#include "core/settings/settings.h"

namespace Corvetape {

class clsLocalizeControls;
class Dialogs;
class SettingsStore;
class TextBox;
struct frmMain;
struct RecordingFlags;
struct SettingRow;

/// Binds the controls of the option pages to their settings. A change is written and takes effect at once;
/// EncodeDelay and PollRecordingBuffers act from the next start on.
///
/// The silencing of the system's sounds is only stored: there is no scheme of sounds to empty here.
class ProgramOptions {
 public:
    /// All of them must outlive it. Connects to the controls.
    ProgramOptions(frmMain& form, Settings& settings, SettingsStore& store, RecordingFlags& flags,
                   Dialogs& dialogs, const clsLocalizeControls& messages);
    ProgramOptions(const ProgramOptions&) = delete;
    ProgramOptions& operator=(const ProgramOptions&) = delete;

 private:
    void BindTable();
    void BindText(const SettingRow& row, TextBox& box);
    void BindDependents();
    void BindLists();
    void ChangeEncodeDelay();
    void ChangeBufferFlag();
    void BindAppSearch(size_t index, TextBox& name);

    /// Takes what a control says over into the settings, and writes it.
    void Keep(const SettingRow& row, const std::string& value);

    frmMain& Form;
    Settings& Options;
    SettingsStore& Store;
    RecordingFlags& Flags;
    Dialogs& Boxes;
    const clsLocalizeControls& Messages;
    bool BufferFlagTold = false;  ///< once in a process that the method acts from the next start on
};

}  // namespace Corvetape
