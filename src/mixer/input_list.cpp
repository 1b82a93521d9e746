#include "mixer/input_list.h"

#include <cstddef>
#include <vector>

#include "core/settings/settings_table.h"
#include "core/text/text.h"

namespace Corvetape {

namespace {

std::string UpToNul(const std::string& name) {
    return name.substr(0, name.find('\0'));
}

bool CanBeRecorded(const WaveInDevice& device) {
    return (device.dwFormats & (WAVE_FORMAT_4S16 | WAVE_FORMAT_48S16)) != 0;
}

/// A long text of names comes back cut from the settings file. Without this the choice of a user with many
/// devices would be lost at each start.
bool SameDevices(const std::string& names, const std::string& stored) {
    const SettingRow* row = FindSetting("Mixer", "InputDeviceNames");
    return names == stored || CutCharacters(names, row->Limit()) == stored;
}

}  // namespace

InputList::InputList(InputListParts parts, InputDevice& device, Reporter& say)
    : Parts(parts), Device(device), Say(say) {
    Parts.Form.cmbInputDevices.Click.Connect([this] { DeviceClicked(); });
    Parts.Form.chk48kHz.Click.Connect([this] {
        // The new rate takes effect when the device is opened next.
        Parts.Settings.SPDIF48kHz = Parts.Form.chk48kHz.Value() != 0;
        Parts.Store.WriteSetting("Mixer", "SPDIF48kHz", Parts.Form.chk48kHz.Value());
    });
    Parts.Form.chkMixerAutoUpdate.Click.Connect([this] {
        Parts.Settings.AutoUpdate = Parts.Form.chkMixerAutoUpdate.Value() != 0;
        Parts.Store.WriteSetting("Mixer", "AutoUpdate", Parts.Form.chkMixerAutoUpdate.Value());
    });
}

bool InputList::FillInputDevices() {
    ComboBox& list = Parts.Form.cmbInputDevices;
    const std::string names = ListDevices();
    if (list.Items().empty()) {
        ReportNoDevice();
        return false;
    }
    const int32_t index = Parts.Settings.InputDevice;
    const bool within = index >= 0 && static_cast<size_t>(index) < list.Items().size();
    if (within && SameDevices(names, Parts.Settings.InputDeviceNames)) {
        list.Select(index);
    } else {
        SelectFirst(names);
    }
    ChosenDevice =
        static_cast<int32_t>(list.Items().at(static_cast<size_t>(Parts.Settings.InputDevice)).Data);
    return true;
}

/// Fills the list. The names of all devices, also of those that cannot be recorded from, each with a ";".
std::string InputList::ListDevices() {
    ComboBox& list = Parts.Form.cmbInputDevices;
    list.Clear();
    std::string names;
    int64_t number = 0;
    for (const WaveInDevice& device : Parts.WaveIn.Devices()) {
        const std::string name = UpToNul(device.Name);
        if (CanBeRecorded(device)) list.AddItem(name, number);
        names += name + ";";
        ++number;
    }
    return names;
}

void InputList::ReportNoDevice() {
    const std::string text = Say.Text("902");
    Say.Write(ReportKind::Info, text);
    Say.Box(text, DialogIcon::Critical);
}

void InputList::SelectFirst(const std::string& names) {
    Parts.Settings.InputDeviceNames = names;
    Parts.Form.tbsMain.Select("TAB_AUDIO");
    Parts.Form.cmbInputDevices.Select(0);
    const std::string text = Say.Text("901");
    Say.Write(ReportKind::Info, text);
    if (!Parts.Lifecycle.WizardRequested) Say.Box(text, DialogIcon::Exclamation);
}

void InputList::DeviceClicked() {
    frmMain& form = Parts.Form;
    if (Device.IsOpen()) {
        Device.Close();
        for (CheckBox& box : form.chkStartStop) box.Enabled(false);
    }
    if (Ended) return;  // events are served while a device closes
    const int32_t index = form.cmbInputDevices.ListIndex();
    if (index < 0) return;  // a click that somebody raised on an empty list
    const int64_t device = form.cmbInputDevices.Items().at(static_cast<size_t>(index)).Data;
    if (device >= 0 && Device.Open(static_cast<size_t>(device))) {
        for (CheckBox& box : form.chkStartStop) box.Enabled(true);
    }
    if (index != Parts.Settings.InputDevice) TakeOver(index);
    Parts.Store.WriteSetting("Mixer", "InputDeviceNames", Parts.Settings.InputDeviceNames);
}

void InputList::TakeOver(int32_t index) {
    const ListItem& chosen = Parts.Form.cmbInputDevices.Items().at(static_cast<size_t>(index));
    Parts.Settings.InputDevice = index;
    ChosenDevice = static_cast<int32_t>(chosen.Data);
    Parts.Store.WriteSetting("Mixer", "InputDevice", index);
    Changed.Raise();
}

}  // namespace Corvetape
