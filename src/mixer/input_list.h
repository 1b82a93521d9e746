#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "audio/input_device.h"
#include "core/controls/event.h"
#include "core/lifecycle_flags.h"
#include "core/reporter.h"
#include "core/settings/settings.h"
#include "core/settings/settings_store.h"
#include "forms/frm_main.h"
#include "platform/wave_in.h"

namespace Corvetape {

/// The state and the devices that the list works on. All of it outlives the list.
struct InputListParts {
    frmMain& Form;
    Corvetape::WaveIn& WaveIn;
    Corvetape::Settings& Settings;  ///< InputDevice is the index of the chosen entry
    SettingsStore& Store;
    const LifecycleFlags& Lifecycle;  ///< an unattended program shows no boxes
};

/// The name of an input as people see it: up to its first NUL, in one line. The settings file keeps no
/// others, and a name that came back changed would count as another device at each start.
std::string InputName(const WaveInDevice& device);

/// The inputs that can be recorded from, as cmbInputDevices lists them. Selecting an entry is what opens a
/// device; the program has no other start for it.
class InputList {
 public:
    /// Attaches itself to cmbInputDevices, chk48kHz and chkMixerAutoUpdate.
    InputList(InputListParts parts, InputDevice& device, Reporter& say);

    /// Lists the devices in the order of the machine and selects the one chosen last. If the devices have
    /// changed it selects the one that the machine marks as its default, or the first one. False, with
    /// nothing selected, if none of them can give 16-bit stereo at 44.1 or 48 kHz.
    bool FillInputDevices();

    /// Another entry than the one before was chosen, and its device opened.
    Event<> Changed;

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
    void ReportNoDevice();
    void SelectDefault(const std::string& names);
    int32_t DefaultEntry() const;
    void DeviceClicked();
    void Open(int32_t device);
    void TakeOver(int32_t index);

    InputListParts Parts;
    InputDevice& Device;
    Reporter& Say;
    WaveInList Listed;
    int32_t ChosenDevice = 0;
    bool Ended = false;
};

}  // namespace Corvetape
