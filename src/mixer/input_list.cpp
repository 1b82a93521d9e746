#include "mixer/input_list.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "core/controls/message_texts.h"
#include "core/settings/settings_table.h"
#include "core/text/text.h"

namespace Corvetape {

namespace {

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

std::string InputName(const WaveInDevice& device) {
    std::string name = device.Name.substr(0, device.Name.find('\0'));
    std::ranges::replace_if(
        name, [](char each) { return each == '\r' || each == '\n'; }, ' ');
    return name;
}

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
    std::string names = ListDevices();
    if (list.Items().empty()) {
        ReportNoDevice();
        names = ListDevices();  // the user may have switched one on before the box was closed
    }
    if (list.Items().empty()) return false;
    const int32_t index = Parts.Settings.InputDevice;
    const bool within = index >= 0 && static_cast<size_t>(index) < list.Items().size();
    if (within && SameDevices(names, Parts.Settings.InputDeviceNames)) {
        list.Select(index);
    } else {
        SelectDefault(names);
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
    Listed = Parts.WaveIn.Devices();
    for (const WaveInDevice& device : Listed) {
        const std::string name = InputName(device);
        const std::string marked = device.IsDefault ? Say.Text(Message::DefaultInput.Key, {name}) : "";
        if (CanBeRecorded(device)) list.AddItem(marked.empty() ? name : marked, number);
        names += name + ";";
        ++number;
    }
    return names;
}

void InputList::ReportNoDevice() {
    const std::string text = Say.Text(Message::NoInput.Key);
    Say.Write(ReportKind::Info, Say.WithReason(text, Listed.Reason));
    Say.Box(text, DialogIcon::Critical);
}

/// A machine that lists its devices by their names has its default one anywhere among them.
int32_t InputList::DefaultEntry() const {
    const std::vector<ListItem>& entries = Parts.Form.cmbInputDevices.Items();
    const auto found = std::ranges::find_if(
        entries, [this](const ListItem& entry) { return Listed[static_cast<size_t>(entry.Data)].IsDefault; });
    return found == entries.end() ? 0 : static_cast<int32_t>(found - entries.begin());
}

void InputList::SelectDefault(const std::string& names) {
    Parts.Settings.InputDeviceNames = names;
    Parts.Form.tbsMain.Select("TAB_AUDIO");
    const int32_t chosen = DefaultEntry();
    Parts.Form.cmbInputDevices.Select(chosen);
    const std::string name = Parts.Form.cmbInputDevices.Items().at(static_cast<size_t>(chosen)).Text;
    const std::string text = Say.Text(Message::InputsChanged.Key, {name});
    Say.Write(ReportKind::Info, text);
    if (!Parts.Lifecycle.WizardRequested) Say.Box(text, DialogIcon::Exclamation);
}

void InputList::DeviceClicked() {
    frmMain& form = Parts.Form;
    CloseDevice();
    if (Ended) return;  // events are served while a device closes
    const int32_t index = form.cmbInputDevices.ListIndex();
    if (index < 0) return;  // a click that somebody raised on an empty list
    Open(static_cast<int32_t>(form.cmbInputDevices.Items().at(static_cast<size_t>(index)).Data));
    if (index != Parts.Settings.InputDevice) TakeOver(index);
    Parts.Store.WriteSetting("Mixer", "InputDeviceNames", Parts.Settings.InputDeviceNames);
}

void InputList::CloseDevice() {
    if (!Device.IsOpen()) return;
    Device.Close();
    for (CheckBox& box : Parts.Form.chkStartStop) box.Enabled(false);
}

bool InputList::OpenToListen(int32_t device) {
    return !Ended && device >= 0 && static_cast<bool>(Device.Open(static_cast<size_t>(device)));
}

void InputList::Open(int32_t device) {
    if (Ended || device < 0) return;
    if (const WaveInOpening opened = Device.Open(static_cast<size_t>(device)); !opened) {
        // Neither log nor box: the user has just chosen it, and chooses another one.
        const std::string name =
            static_cast<size_t>(device) < Listed.size() ? InputName(Listed[static_cast<size_t>(device)]) : "";
        Say.Show(Say.WithReason(Say.Text(Message::InputNotOpened.Key, {name}), opened.Reason));
        return;
    }
    for (CheckBox& box : Parts.Form.chkStartStop) box.Enabled(true);
}

void InputList::Reopen() {
    CloseDevice();
    Open(ChosenDevice);
}

std::string InputList::WaveInDeviceName() const {
    const auto device = static_cast<size_t>(ChosenDevice);
    return ChosenDevice >= 0 && device < Listed.size() ? Listed[device].Id : std::string();
}

void InputList::TakeOver(int32_t index) {
    const ListItem& chosen = Parts.Form.cmbInputDevices.Items().at(static_cast<size_t>(index));
    Parts.Settings.InputDevice = index;
    ChosenDevice = static_cast<int32_t>(chosen.Data);
    Parts.Store.WriteSetting("Mixer", "InputDevice", index);
    Changed.Raise();
}

}  // namespace Corvetape
