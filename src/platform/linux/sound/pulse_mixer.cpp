#include "platform/linux/sound/pulse_mixer.h"

#include <algorithm>
#include <utility>

#include "platform/linux/sound/pulse_devices.h"

namespace Corvetape {
namespace {

constexpr std::chrono::milliseconds CallLimit{2000};
constexpr int32_t FullVolume = 65535;
constexpr uint32_t DestinationId = 0xFFFF0000;

enum ControlId : uint32_t { SelectorId, VolumeId, MuteId };

struct Port {
    std::string Name;
    std::string Description;
};

/// What the server reports of a source or a sink.
struct EndState {
    std::string Description;
    pa_cvolume Volume{};
    bool Muted = false;
    std::vector<Port> Ports;
    size_t ActivePort = 0;  ///< as many as there are: none
    bool There = false;
};

template <typename Info>
void EndAnswer(pa_context*, const Info* info, int end, void* user) {
    if (end != 0) return;
    auto& state = *static_cast<EndState*>(user);
    state.Description = info->description != nullptr ? info->description : info->name;
    state.Volume = info->volume;
    state.Muted = info->mute != 0;
    state.ActivePort = info->n_ports;
    for (uint32_t i = 0; i < info->n_ports; ++i) {
        const auto& port = *info->ports[i];
        state.Ports.push_back({port.name, port.description != nullptr ? port.description : port.name});
        if (info->active_port == info->ports[i]) state.ActivePort = i;
    }
    state.There = true;
}

void SuccessAnswer(pa_context*, int success, void* user) {
    *static_cast<bool*>(user) = success != 0;
}

int32_t ValueOf(const pa_cvolume& volume) {
    return static_cast<int32_t>(std::min<pa_volume_t>(pa_cvolume_max(&volume), FullVolume));
}

/// The volume of all channels that a value stands for, with the balance that the user has set.
pa_cvolume VolumeFor(int32_t value, const PulseVolumes& known) {
    if (value == ValueOf(known.Users)) return known.Users;
    const auto seen = known.Seen.find(value);
    if (seen != known.Seen.end() && seen->second.channels == known.Users.channels) return seen->second;
    pa_cvolume volume = known.Users;
    const auto wanted = static_cast<pa_volume_t>(value);
    pa_cvolume_scale(&volume, value >= FullVolume ? PA_VOLUME_NORM : wanted);
    return volume;
}

MIXERCONTROL MakeControl(ControlId id, uint32_t type, int32_t maximum, const char* name) {
    MIXERCONTROL control;
    control.dwControlID = id;
    control.dwControlType = type;
    control.Bounds.lMaximum = maximum;
    control.szName = name;
    return control;
}

/// A source or sink over its own connection. What it is like is asked for at the beginning.
class PulseMixerDevice : public MixerDevice {
 public:
    PulseMixerDevice(std::unique_ptr<PulseConnection> connection, PulseEnd wanted, PulseVolumes& known,
                     bool& serverIsSilent)
        : Server(std::move(connection)), End(std::move(wanted)), Volumes(known), Silent(serverIsSilent) {}

    /// False if there is no such source or sink.
    bool Ask() {
        EndState answer;
        const char* const name = End.Name.c_str();
        pa_context* const context = Server->Context();
        const bool asked = End.IsSource ? Server->Await(pa_context_get_source_info_by_name(
                                              context, name, EndAnswer<pa_source_info>, &answer))
                                        : Server->Await(pa_context_get_sink_info_by_name(
                                              context, name, EndAnswer<pa_sink_info>, &answer));
        if (!asked) Silent = true;
        if (!asked || !answer.There) return false;
        State = std::move(answer);
        const bool heard = HasVolume() && pa_cvolume_max(&State.Volume) > PA_VOLUME_MUTED;
        const bool ours = Volumes.Ours.channels != 0 && pa_cvolume_equal(&State.Volume, &Volumes.Ours) != 0;
        if (heard && !ours) NoteVolume();
        return true;
    }

    MIXERCAPS Caps() override { return {End.Name, 1}; }

    std::optional<MIXERLINE> Destination(uint32_t destination) override {
        if (destination != 0) return std::nullopt;
        MIXERLINE line;
        line.dwLineID = DestinationId;
        line.dwComponentType =
            End.IsSource ? MIXERLINE_COMPONENTTYPE_DST_WAVEIN : MIXERLINE_COMPONENTTYPE_DST_SPEAKERS;
        line.cConnections = static_cast<uint32_t>(State.Ports.size());
        line.cControls = static_cast<uint32_t>(AllControls().size());
        line.szName = State.Description;
        return line;
    }

    std::optional<MIXERLINE> Source(uint32_t destination, uint32_t source) override {
        if (destination != 0 || source >= State.Ports.size()) return std::nullopt;
        MIXERLINE line;
        line.dwSource = source;
        line.dwLineID = source;
        line.szName = State.Ports[source].Description;
        return line;
    }

    std::optional<std::vector<MIXERCONTROL>> Controls(const MIXERLINE& line) override {
        if (line.dwLineID != DestinationId) return std::vector<MIXERCONTROL>();
        return AllControls();
    }

    std::optional<std::vector<MIXERCONTROLDETAILS_LISTTEXT>> Items(const MIXERCONTROL& control) override {
        if (control.dwControlID != SelectorId) return std::nullopt;
        std::vector<MIXERCONTROLDETAILS_LISTTEXT> items;
        for (const Port& port : State.Ports) {
            items.push_back({static_cast<uint32_t>(items.size()), 0, port.Description});
        }
        return items;
    }

    std::optional<MixerValues> Values(const MIXERCONTROLDETAILS& details) override {
        MixerValues values{};
        if (details.dwControlID == VolumeId) values[0] = ValueOf(State.Volume);
        if (details.dwControlID == MuteId) values[0] = State.Muted ? 1 : 0;
        if (details.dwControlID == SelectorId && State.ActivePort < values.size()) {
            values[State.ActivePort] = State.ActivePort < State.Ports.size() ? 1 : 0;
        }
        return values;
    }

    bool SetValues(const MIXERCONTROLDETAILS& details, const MixerValues& values) override {
        Server->GiveTime(CallLimit);
        switch (details.dwControlID) {
            case VolumeId:
                return SetVolume(values[0]);
            case MuteId:
                return SetMute(values[0] != 0);
            case SelectorId:
                return SetPort(static_cast<size_t>(std::ranges::find(values, 1) - values.begin()));
            default:
                return false;
        }
    }

 private:
    bool HasVolume() const { return pa_cvolume_valid(&State.Volume) != 0; }

    std::vector<MIXERCONTROL> AllControls() const {
        std::vector<MIXERCONTROL> controls;
        if (!State.Ports.empty()) {
            const auto count = static_cast<uint32_t>(State.Ports.size());
            MIXERCONTROL selector = MakeControl(SelectorId, MIXERCONTROL_CONTROLTYPE_MUX,
                                                static_cast<int32_t>(count) - 1, "Port");
            selector.fdwControl = MIXERCONTROL_CONTROLF_MULTIPLE;
            selector.cMultipleItems = count;
            controls.push_back(selector);
        }
        if (HasVolume()) {
            controls.push_back(MakeControl(VolumeId, MIXERCONTROL_CONTROLTYPE_VOLUME, FullVolume, "Volume"));
        }
        controls.push_back(MakeControl(MuteId, MIXERCONTROL_CONTROLTYPE_MUTE, 1, "Mute"));
        return controls;
    }

    void NoteVolume() {
        Volumes.Users = State.Volume;
        if (pa_cvolume_max(&State.Volume) <= PA_VOLUME_NORM)
            Volumes.Seen[ValueOf(State.Volume)] = State.Volume;
    }

    bool SetVolume(int32_t value) {
        // Without one that was ever heard, or with other channels by now, there is no balance to keep.
        if (Volumes.Users.channels != State.Volume.channels) Volumes.Users = State.Volume;
        const pa_cvolume wanted = VolumeFor(value, Volumes);
        bool done = false;
        const char* const name = End.Name.c_str();
        const auto set =
            End.IsSource ? pa_context_set_source_volume_by_name : pa_context_set_sink_volume_by_name;
        if (!Await(set(Server->Context(), name, &wanted, SuccessAnswer, &done)) || !done) return false;
        State.Volume = wanted;
        Volumes.Ours = wanted;
        return true;
    }

    bool SetMute(bool muted) {
        bool done = false;
        const char* const name = End.Name.c_str();
        const auto set = End.IsSource ? pa_context_set_source_mute_by_name : pa_context_set_sink_mute_by_name;
        if (!Await(set(Server->Context(), name, muted ? 1 : 0, SuccessAnswer, &done)) || !done) return false;
        State.Muted = muted;
        return true;
    }

    bool SetPort(size_t index) {
        if (index >= State.Ports.size()) return false;
        if (index == State.ActivePort) return true;
        bool done = false;
        const char* const name = End.Name.c_str();
        const char* const port = State.Ports[index].Name.c_str();
        const auto set = End.IsSource ? pa_context_set_source_port_by_name : pa_context_set_sink_port_by_name;
        if (!Await(set(Server->Context(), name, port, SuccessAnswer, &done)) || !done) return false;
        return Ask();  // the port may have a volume of its own
    }

    bool Await(pa_operation* question) {
        const bool answered = Server->Await(question);
        if (!answered) Silent = true;
        return answered;
    }

    std::unique_ptr<PulseConnection> Server;
    const PulseEnd End;
    EndState State;
    PulseVolumes& Volumes;
    bool& Silent;
};

}  // namespace

PulseMixer::PulseMixer(std::string address) : Server(std::move(address)) {}
PulseMixer::~PulseMixer() = default;

uint32_t PulseMixer::CountDevices() {
    Ends.clear();
    Silent = false;
    const std::unique_ptr<PulseConnection> connection = PulseConnection::To(Server, CallLimit);
    if (!connection) return 0;
    for (const WaveInDevice& device : ListPulseDevices(*connection)) Ends.push_back({true, device.Id});
    for (const std::string& sink : ListPulseSinks(*connection)) Ends.push_back({false, sink});
    return static_cast<uint32_t>(Ends.size());
}

std::unique_ptr<MixerDevice> PulseMixer::Open(uint32_t device) {
    return device < Ends.size() && !Silent ? OpenEnd(Ends[device]) : nullptr;
}

std::unique_ptr<MixerDevice> PulseMixer::OpenWaveIn(const std::string& input) {
    return input.empty() ? nullptr : OpenEnd({true, input});
}

std::unique_ptr<MixerDevice> PulseMixer::OpenEnd(const PulseEnd& end) {
    std::unique_ptr<PulseConnection> connection = PulseConnection::To(Server, CallLimit);
    if (!connection) {
        Silent = true;
        return nullptr;
    }
    PulseVolumes& known = Volumes[(end.IsSource ? "source " : "sink ") + end.Name];
    auto device = std::make_unique<PulseMixerDevice>(std::move(connection), end, known, Silent);
    if (!device->Ask()) return nullptr;
    return device;
}

}  // namespace Corvetape
