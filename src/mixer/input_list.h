#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "core/controls/messages.h"
#include "core/lifecycle_flags.h"
#include "core/log.h"
#include "core/media_state.h"
#include "core/settings/settings.h"
#include "core/settings/settings_store.h"
#include "forms/frm_main.h"
#include "platform/dialogs.h"
#include "platform/wave_in.h"

namespace Corvetape {

/// The state and the devices that the list works on. All of it outlives the list.
struct InputListParts {
    frmMain& Form;
    Corvetape::WaveIn& WaveIn;
    Corvetape::Settings& Settings;  ///< InputDevice is the index of the chosen entry
    SettingsStore& Store;
    const MediaState& Media;
};

/// How the list tells that the devices are gone or others. All of it outlives the list.
struct InputListNotices {
    Corvetape::Log& Log;
    Corvetape::Dialogs& Dialogs;
    const clsLocalizeControls& Messages;
    const LifecycleFlags& Lifecycle;  ///< an unattended program shows no boxes
};

/// The capture device, and what follows from the choice of another one. All are set.
struct InputListActions {
    std::function<bool()> CaptureOpen;               ///< true while a device is open
    std::function<bool(int32_t device)> OpenWaveIn;  ///< false if the device cannot be opened
    std::function<void()> CloseWaveIn;
    std::function<void()> GetStationData;  ///< asks the present provider
    std::function<void(const std::string& cover)> LoadImage;
};

/// The name of an input as people see it: up to its first NUL, in one line. The settings file keeps no
/// others, and a name that came back changed would count as another device at each start.
std::string InputName(const WaveInDevice& device);

/// The inputs that can be recorded from, as cmbInputDevices lists them. Selecting an entry is what opens a
/// device; the program has no other start for it.
class InputList {
 public:
    /// Attaches itself to cmbInputDevices, chk48kHz and chkMixerAutoUpdate.
    InputList(InputListParts parts, InputListNotices notices, InputListActions actions);

    /// Lists the devices in the order of the machine and selects the one chosen last. If the devices have
    /// changed it selects the one that the machine marks as its default, or the first one. False, with
    /// nothing selected, if none of them can give 16-bit stereo at 44.1 or 48 kHz.
    bool FillInputDevices();

    /// The program ends: nothing is opened from now on, also not by a change that waits for its closing.
    void End() { Ended = true; }

    /// Number of the device of the chosen entry, as WaveIn counts them. It stays at the last one chosen if
    /// there are no devices any more.
    int32_t WaveInDeviceId() const { return ChosenDevice; }

    /// Another device is to be recorded from; it is not opened.
    void WaveInDeviceId(int32_t device) { ChosenDevice = device; }

    /// The devices as they were listed last; their places are their numbers.
    const std::vector<WaveInDevice>& Devices() const { return Listed; }

    /// Stable name of the device of the chosen entry; empty if it is not listed any more.
    std::string WaveInDeviceName() const;

    /// Closes the device. No recording can begin until Reopen, or until an entry is selected.
    void CloseDevice();

    /// Opens a device to listen to it. False if it cannot be opened.
    bool OpenToListen(int32_t device);

    /// Opens the chosen device again, and lets recordings begin if that succeeds.
    void Reopen();

 private:
    std::string ListDevices();
    void TellNoDevice();
    void SelectDefault(const std::string& names);
    int32_t DefaultEntry() const;
    void DeviceClicked();
    void Open(int32_t device);
    void TakeOver(int32_t index);

    InputListParts Parts;
    InputListNotices Notices;
    InputListActions Actions;
    std::vector<WaveInDevice> Listed;
    int32_t ChosenDevice = 0;
    bool Ended = false;
};

}  // namespace Corvetape
