#pragma once

#include <cstdint>
#include <string>

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

/// The inputs that can be recorded from, as cmbInputDevices lists them. Selecting an entry is what opens a
/// device; the program has no other start for it.
class InputList {
 public:
    /// Attaches itself to cmbInputDevices, chk48kHz and chkMixerAutoUpdate.
    InputList(InputListParts parts, InputDevice& device, Reporter& say);

    /// Lists the devices in the order of the machine and selects the one chosen last, or the first one if the
    /// devices have changed. False, with nothing selected, if none of them can give 16-bit stereo at 44.1 or
    /// 48 kHz.
    bool FillInputDevices();

    /// Another entry than the one before was chosen, and its device opened.
    Event<> Changed;

    /// The program ends: nothing is opened from now on, also not by a change that waits for its closing.
    void End() { Ended = true; }

    /// Number of the device of the chosen entry, as WaveIn counts them. It stays at the last one chosen if
    /// there are no devices any more.
    int32_t WaveInDeviceId() const { return ChosenDevice; }

 private:
    std::string ListDevices();
    void ReportNoDevice();
    void SelectFirst(const std::string& names);
    void DeviceClicked();
    void TakeOver(int32_t index);

    InputListParts Parts;
    InputDevice& Device;
    Reporter& Say;
    int32_t ChosenDevice = 0;
    bool Ended = false;
};

}  // namespace Corvetape
