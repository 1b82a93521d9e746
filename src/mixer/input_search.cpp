#include "mixer/input_search.h"

#include "core/controls/message_texts.h"
#include "mixer/mixer_line.h"

namespace Corvetape {

namespace {

constexpr int32_t FullVolume = 65535;

/// A line that is muted or switched off cannot be heard.
void SwitchOn(ChangedLine& line) {
    line.Set(MIXERCONTROL_CONTROLTYPE_MUTE, 0);
    line.Set(MIXERCONTROL_CONTROLTYPE_ONOFF, 0);
}

}  // namespace

/// Lets End reach the probe of the search that is under way.
class InputSearch::Session {
 public:
    explicit Session(InputSearch& search)
        : Search(search),
          Probe(search.Parts.Pause, search.Parts.Signal, search.Parts.Media, search.Parts.Wait) {
        Search.Probe = &Probe;
    }
    ~Session() { Search.Probe = nullptr; }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

 private:
    InputSearch& Search;
    InputProbe Probe;
};

InputSearch::InputSearch(InputSearchParts parts, Dialogs& boxes, const clsLocalizeControls& texts)
    : Parts(parts), Boxes(boxes), Texts(texts) {}

void InputSearch::End() {
    if (Probe != nullptr) Probe->PutBack();
}

std::string InputSearch::SearchInputLine() {
    const Session session(*this);
    const auto device = Parts.Mixers.OpenWaveIn(Parts.Inputs.WaveInDeviceName());
    if (!device) return {};
    const auto recording = FindWaveInLine(*device);
    return recording ? TryLines(*device, *recording) : std::string();
}

std::string InputSearch::TryLines(MixerDevice& device, const MIXERLINE& recording) {
    ChangedLine destination(Parts.Mixers, device, recording);
    SwitchOn(destination);
    for (uint32_t index = 0; index < recording.cConnections; ++index) {
        const auto source = device.Source(recording.dwDestination, index);
        const int32_t item = source ? ItemOf(device, recording, *source) : -1;
        if (item == -1) continue;
        ChangedLine line(Parts.Mixers, device, *source);
        line.Set(MIXERCONTROL_CONTROLTYPE_VOLUME, FullVolume);
        const bool selected = destination.Set(MIXERCONTROL_CONTROLTYPE_MUX, item);
        const Verdict verdict = selected ? Listen(source->szName) : Verdict::Silent;
        if (verdict == Verdict::Ended) return {};
        if (verdict == Verdict::Confirmed) return source->szName;
        Reject(line, verdict);
    }
    if (Parts.Settings.KeepRejectedInputs) destination.PutBack();
    return {};
}

/// The item of the recording line's selector that stands for a source; -1 if it is not listed there.
int32_t InputSearch::ItemOf(MixerDevice& device, const MIXERLINE& recording, const MIXERLINE& source) const {
    const MixerStep find{MixerMode::FindItem, MIXERCONTROL_CONTROLTYPE_MUX,
                         static_cast<int32_t>(source.dwLineID)};
    return Parts.Mixers.MixerLineAction(device, recording, find).value_or(-1);
}

std::string InputSearch::SearchInputDevice() {
    std::string found;
    {
        Parts.Inputs.CloseDevice();
        const Session session(*this);
        // A copy: the list may be filled anew while a question is open.
        const std::vector<WaveInDevice> inputs = Parts.Inputs.Devices();
        for (size_t id = 0; id < inputs.size() && found.empty() && !Parts.Wait.Ended(); ++id) {
            const auto number = static_cast<int32_t>(id);
            const auto device = Parts.Mixers.OpenWaveIn(inputs[id].Id);
            if (!Parts.Inputs.OpenToListen(number)) continue;
            if (device) found = TryDevice(InputName(inputs[id]), *device);
            if (!found.empty()) Parts.Inputs.WaveInDeviceId(number);
            if (!Parts.Wait.Ended()) Parts.Inputs.CloseDevice();
        }
    }
    if (!Parts.Wait.Ended()) Parts.Inputs.Reopen();
    return found;
}

std::string InputSearch::TryDevice(const std::string& name, MixerDevice& device) {
    const uint32_t count = device.Caps().cDestinations;
    for (uint32_t destination = 0; destination < count && !Parts.Wait.Ended(); ++destination) {
        const auto line = device.Destination(destination);
        if (!line || line->dwComponentType != MIXERLINE_COMPONENTTYPE_DST_WAVEIN) continue;
        std::string found = TryDestination(name, device, *line);
        if (!found.empty()) return found;
    }
    return {};
}

std::string InputSearch::TryDestination(const std::string& name, MixerDevice& device, const MIXERLINE& line) {
    ChangedLine changed(Parts.Mixers, device, line);
    SwitchOn(changed);
    std::vector<Port> ports = PortsOf(device, line);
    if (ports.empty()) ports.emplace_back();
    const bool audible = changed.Get(MIXERCONTROL_CONTROLTYPE_VOLUME) != -1;
    for (size_t i = 0; audible && i < ports.size(); ++i) {
        const Port& port = ports[i];
        if (port.Item != -1 && !changed.Set(MIXERCONTROL_CONTROLTYPE_MUX, port.Item)) continue;
        ChangedLine level(Parts.Mixers, device, line);  // a port may have a volume of its own
        level.Set(MIXERCONTROL_CONTROLTYPE_VOLUME, FullVolume);
        std::string input = port.Item == -1 ? name : name + ", " + port.Name;
        const Verdict verdict = Listen(input);
        if (verdict == Verdict::Ended) return {};
        if (verdict == Verdict::Confirmed) return input;
        Reject(level, verdict);
    }
    if (Parts.Settings.KeepRejectedInputs) changed.PutBack();
    return {};
}

std::vector<InputSearch::Port> InputSearch::PortsOf(MixerDevice& device, const MIXERLINE& line) const {
    std::vector<Port> ports;
    for (uint32_t index = 0; index < line.cConnections; ++index) {
        const auto source = device.Source(line.dwDestination, index);
        const int32_t item = source ? ItemOf(device, line, *source) : -1;
        if (item != -1) ports.push_back({item, source->szName});
    }
    return ports;
}

InputSearch::Verdict InputSearch::Listen(const std::string& name) {
    const bool heard = Probe->Hears();
    if (Parts.Wait.Ended()) return Verdict::Ended;
    if (!heard) return Verdict::Silent;
    const bool confirmed =
        Boxes.AskYesNo(Texts.FormatMsg(Message::IsThisTheInput.Key, {name}), DialogIcon::Information);
    if (Parts.Wait.Ended()) return Verdict::Ended;
    return confirmed ? Verdict::Confirmed : Verdict::Refused;
}

void InputSearch::Reject(ChangedLine& line, Verdict verdict) const {
    const bool keep = Parts.Settings.KeepRejectedInputs;
    if (keep) line.PutBack();
    if (!keep || verdict == Verdict::Refused) line.Set(MIXERCONTROL_CONTROLTYPE_VOLUME, 0);
}

}  // namespace Corvetape
