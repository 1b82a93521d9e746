#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/mixer.h"

namespace Corvetape {

/// A control of a made-up card.
struct SimControl {
    MIXERCONTROL Info;
    std::vector<int32_t> Slots = {0};  ///< one, or one for each item
    std::vector<MIXERCONTROLDETAILS_LISTTEXT> Items;

    int32_t& Value() { return Slots.front(); }
    int32_t Value() const { return Slots.front(); }

    /// Index of the item that is on; the number of items if none is.
    int32_t Chosen() const;
};

SimControl MixerVolume(int32_t value, int32_t minimum = 0, int32_t maximum = 65535);
SimControl MixerMute(int32_t value);
SimControl MixerSwitch(int32_t value);

/// Any other control of one value.
SimControl MixerOther(int32_t value, int32_t minimum = 0, int32_t maximum = 65535);

/// A selector of source lines, by their ids; `chosen` is an index, and one beyond them means that none is on.
SimControl MixerSelector(const std::vector<uint32_t>& lineIds, size_t chosen = 0);

struct SimLine {
    std::string Name;
    uint32_t LineId = 0;
    std::vector<SimControl> Controls;
    bool ControlsFail = false;  ///< they are counted and cannot be fetched

    SimControl& Of(uint32_t type);  ///< the first control of the type, which must be there
};

struct SimDestination {
    uint32_t Type = MIXERLINE_COMPONENTTYPE_DST_WAVEIN;
    SimLine Line;
    std::vector<SimLine> Sources;
};

struct SimCard {
    std::string Name;
    std::string WaveInId;  ///< of the input that it belongs to; empty for none
    std::vector<SimDestination> Destinations;
    bool Gone = false;  ///< all calls on it fail, opening it too
};

/// A value that a control was given.
struct SimMixerSet {
    std::string Card;
    std::string Line;
    uint32_t ControlType = 0;
    int32_t Value = 0;  ///< index of the item for a selector

    bool operator==(const SimMixerSet&) const = default;
};

/// Made-up cards of any shape. They can be changed, or vanish, at any time, also while they are open.
class SimMixer : public Mixer {
 public:
    uint32_t CountDevices() override;
    std::unique_ptr<MixerDevice> Open(uint32_t device) override;
    std::unique_ptr<MixerDevice> OpenWaveIn(const std::string& input) override;

    /// Adds a card after the others. The reference stays good.
    SimCard& Add(SimCard card);

    /// An input with a volume and a switch for mute on its destination.
    SimCard& AddInput(const std::string& waveInId, int32_t volume = 65535, int32_t mute = 0);

    std::deque<SimCard> Cards;
    std::vector<SimMixerSet> Sets;  ///< everything that was set, in order
    size_t Opened = 0;              ///< devices that are open now
    size_t Opens = 0;               ///< devices that have been opened

    /// Called before a control is set: the place to let a card vanish in the middle of something.
    std::function<void(const SimMixerSet&)> BeforeSet;

    /// Called when a device is about to be opened.
    std::function<void(SimCard&)> BeforeOpen;
};

}  // namespace Corvetape
