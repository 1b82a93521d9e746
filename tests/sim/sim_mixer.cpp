#include "sim/sim_mixer.h"

#include <algorithm>
#include <utility>

namespace Corvetape {

namespace {

SimControl MakeControl(uint32_t type, int32_t value, int32_t minimum, int32_t maximum) {
    SimControl control;
    control.Info.dwControlType = type;
    control.Info.Bounds.lMinimum = minimum;
    control.Info.Bounds.lMaximum = maximum;
    control.Value() = value;
    return control;
}

/// An open card. Ids of its controls count through all its lines.
class OpenCard : public MixerDevice {
 public:
    OpenCard(SimMixer& mixer, SimCard& card) : Owner(mixer), Card(card) {
        ++Owner.Opened;
        ++Owner.Opens;
    }
    ~OpenCard() override { --Owner.Opened; }
    OpenCard(const OpenCard&) = delete;
    OpenCard& operator=(const OpenCard&) = delete;

    MIXERCAPS Caps() override {
        if (Card.Gone) return {};
        return {Card.Name, static_cast<uint32_t>(Card.Destinations.size())};
    }

    std::optional<MIXERLINE> Destination(uint32_t destination) override {
        if (Card.Gone || destination >= Card.Destinations.size()) return std::nullopt;
        const SimDestination& found = Card.Destinations[destination];
        MIXERLINE line = Describe(found.Line, destination);
        line.dwComponentType = found.Type;
        line.cConnections = static_cast<uint32_t>(found.Sources.size());
        return line;
    }

    std::optional<MIXERLINE> Source(uint32_t destination, uint32_t source) override {
        if (Card.Gone || destination >= Card.Destinations.size()) return std::nullopt;
        const std::vector<SimLine>& sources = Card.Destinations[destination].Sources;
        if (source >= sources.size()) return std::nullopt;
        MIXERLINE line = Describe(sources[source], destination);
        line.dwSource = source;
        return line;
    }

    std::optional<std::vector<MIXERCONTROL>> Controls(const MIXERLINE& wanted) override {
        SimLine* const line = Find(wanted);
        if (line == nullptr || line->ControlsFail) return std::nullopt;
        std::vector<MIXERCONTROL> controls;
        for (const SimControl& each : line->Controls) {
            controls.push_back(each.Info);
            controls.back().dwControlID = IdOf(each);
        }
        return controls;
    }

    std::optional<std::vector<MIXERCONTROLDETAILS_LISTTEXT>> Items(const MIXERCONTROL& control) override {
        const SimControl* const found = Find(control.dwControlID).second;
        if (found == nullptr || found->Items.empty()) return std::nullopt;
        return found->Items;
    }

    std::optional<MixerValues> Values(const MIXERCONTROLDETAILS& details) override {
        const SimControl* const found = Find(details.dwControlID).second;
        if (found == nullptr || details.cChannels != 1) return std::nullopt;
        MixerValues values{};
        const size_t count =
            std::min({found->Slots.size(), values.size(), std::max<size_t>(details.cMultipleItems, 1)});
        std::copy_n(found->Slots.begin(), count, values.begin());
        return values;
    }

    bool SetValues(const MIXERCONTROLDETAILS& details, const MixerValues& values) override {
        auto [line, control] = Find(details.dwControlID);
        if (control == nullptr || details.cChannels != 1) return false;
        SimControl after = *control;
        const size_t count = std::min(after.Slots.size(), values.size());
        std::copy_n(values.begin(), count, after.Slots.begin());
        const bool multiple = details.cMultipleItems != 0;
        const SimMixerSet set{Card.Name, line->Name, control->Info.dwControlType,
                              multiple ? after.Chosen() : after.Value()};
        if (Owner.BeforeSet) Owner.BeforeSet(set);
        if (Card.Gone) return false;
        *control = after;
        Owner.Sets.push_back(set);
        return true;
    }

 private:
    static MIXERLINE Describe(const SimLine& from, uint32_t destination) {
        MIXERLINE line;
        line.dwDestination = destination;
        line.dwLineID = from.LineId;
        line.cControls = static_cast<uint32_t>(from.Controls.size());
        line.szName = from.Name;
        return line;
    }

    template <typename Visit>
    void ForAllLines(Visit visit) {
        if (Card.Gone) return;
        for (SimDestination& each : Card.Destinations) {
            visit(each.Line);
            for (SimLine& source : each.Sources) visit(source);
        }
    }

    /// The line that answers to an id.
    SimLine* Find(const MIXERLINE& wanted) {
        SimLine* found = nullptr;
        ForAllLines([&](SimLine& line) {
            if (line.LineId == wanted.dwLineID && line.Name == wanted.szName) found = &line;
        });
        return found;
    }

    uint32_t IdOf(const SimControl& wanted) {
        uint32_t id = 0;
        uint32_t next = 0;
        ForAllLines([&](SimLine& line) {
            for (const SimControl& each : line.Controls) {
                if (&each == &wanted) id = next;
                ++next;
            }
        });
        return id;
    }

    std::pair<SimLine*, SimControl*> Find(uint32_t id) {
        std::pair<SimLine*, SimControl*> found{nullptr, nullptr};
        uint32_t next = 0;
        ForAllLines([&](SimLine& line) {
            for (SimControl& each : line.Controls) {
                if (next++ == id) found = {&line, &each};
            }
        });
        return found;
    }

    SimMixer& Owner;
    SimCard& Card;
};

}  // namespace

int32_t SimControl::Chosen() const {
    const auto on = std::ranges::find_if(Slots, [](int32_t slot) { return slot != 0; });
    return static_cast<int32_t>(on - Slots.begin());
}

SimControl MixerVolume(int32_t value, int32_t minimum, int32_t maximum) {
    return MakeControl(MIXERCONTROL_CONTROLTYPE_VOLUME, value, minimum, maximum);
}

SimControl MixerMute(int32_t value) {
    return MakeControl(MIXERCONTROL_CONTROLTYPE_MUTE, value, 0, 1);
}

SimControl MixerSwitch(int32_t value) {
    return MakeControl(MIXERCONTROL_CONTROLTYPE_ONOFF, value, 0, 1);
}

SimControl MixerOther(int32_t value, int32_t minimum, int32_t maximum) {
    constexpr uint32_t bass = 0x50030002;
    return MakeControl(bass, value, minimum, maximum);
}

SimControl MixerSelector(const std::vector<uint32_t>& lineIds, size_t chosen) {
    const auto count = static_cast<uint32_t>(lineIds.size());
    SimControl control =
        MakeControl(MIXERCONTROL_CONTROLTYPE_MUX, 0, 0, count == 0 ? 0 : static_cast<int32_t>(count) - 1);
    control.Info.fdwControl = MIXERCONTROL_CONTROLF_MULTIPLE;
    control.Info.cMultipleItems = count;
    control.Slots.assign(count, 0);
    if (chosen < count) control.Slots[chosen] = 1;
    for (const uint32_t id : lineIds) control.Items.push_back({id, 0, "line " + std::to_string(id)});
    return control;
}

SimControl& SimLine::Of(uint32_t type) {
    return *std::ranges::find_if(Controls,
                                 [type](const SimControl& each) { return each.Info.dwControlType == type; });
}

uint32_t SimMixer::CountDevices() {
    return static_cast<uint32_t>(Cards.size());
}

std::unique_ptr<MixerDevice> SimMixer::Open(uint32_t device) {
    if (device >= Cards.size()) return nullptr;
    if (BeforeOpen) BeforeOpen(Cards[device]);
    if (Cards[device].Gone) return nullptr;
    return std::make_unique<OpenCard>(*this, Cards[device]);
}

std::unique_ptr<MixerDevice> SimMixer::OpenWaveIn(const std::string& input) {
    const auto found = std::ranges::find(Cards, input, &SimCard::WaveInId);
    if (input.empty() || found == Cards.end()) return nullptr;
    return Open(static_cast<uint32_t>(found - Cards.begin()));
}

SimCard& SimMixer::Add(SimCard card) {
    Cards.push_back(std::move(card));
    return Cards.back();
}

SimCard& SimMixer::AddInput(const std::string& waveInId, int32_t volume, int32_t mute) {
    SimDestination destination;
    destination.Line = {waveInId, 0xFFFF0000, {MixerVolume(volume), MixerMute(mute)}};
    return Add({waveInId, waveInId, {destination}});
}

}  // namespace Corvetape
