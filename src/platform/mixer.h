#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Corvetape {

/// What a destination line feeds.
inline constexpr uint32_t MIXERLINE_COMPONENTTYPE_DST_SPEAKERS = 4;
inline constexpr uint32_t MIXERLINE_COMPONENTTYPE_DST_WAVEIN = 7;

/// What a control does.
inline constexpr uint32_t MIXERCONTROL_CONTROLTYPE_ONOFF = 0x20010001;
inline constexpr uint32_t MIXERCONTROL_CONTROLTYPE_MUTE = 0x20010002;
inline constexpr uint32_t MIXERCONTROL_CONTROLTYPE_VOLUME = 0x50030001;
inline constexpr uint32_t MIXERCONTROL_CONTROLTYPE_MUX = 0x70010001;  ///< selects one of the source lines

/// Flag of a control with several items, of which one is on.
inline constexpr uint32_t MIXERCONTROL_CONTROLF_MULTIPLE = 2;

/// Slots through which the values of one control pass: one a control, or one for each item.
inline constexpr size_t MixerSlots = 51;
using MixerValues = std::array<int32_t, MixerSlots>;

struct MIXERCAPS {
    std::string szPname;  ///< stable name of the device on this machine
    uint32_t cDestinations = 0;
};

/// A destination, or a source that leads to one.
struct MIXERLINE {
    uint32_t dwDestination = 0;
    uint32_t dwSource = 0;
    uint32_t dwLineID = 0;
    uint32_t dwComponentType = 0;
    uint32_t cConnections = 0;  ///< sources that lead to a destination
    uint32_t cControls = 0;
    std::string szName;  ///< for people
};

struct MIXERCONTROL {
    uint32_t dwControlID = 0;
    uint32_t dwControlType = 0;
    uint32_t fdwControl = 0;
    uint32_t cMultipleItems = 0;
    struct {
        int32_t lMinimum = 0;
        int32_t lMaximum = 0;
    } Bounds;
    std::string szName;  ///< for people
};

/// Which control, and how its slots are meant.
struct MIXERCONTROLDETAILS {
    uint32_t dwControlID = 0;
    uint32_t cChannels = 1;       ///< 1: all channels alike
    uint32_t cMultipleItems = 0;  ///< slots that count; 0: the first one alone, as the value of the control
};

/// An item of a control. In a selector, dwParam1 is the id of the source line that the item stands for.
struct MIXERCONTROLDETAILS_LISTTEXT {
    uint32_t dwParam1 = 0;
    uint32_t dwParam2 = 0;
    std::string szName;
};

/// An open mixer device; destroying it closes it. The device may vanish at any moment: calls then give
/// nothing, or false. None takes more than two seconds.
class MixerDevice {
 public:
    virtual ~MixerDevice() = default;

    virtual MIXERCAPS Caps() = 0;
    virtual std::optional<MIXERLINE> Destination(uint32_t destination) = 0;
    virtual std::optional<MIXERLINE> Source(uint32_t destination, uint32_t source) = 0;

    /// All controls of a line, whose indices are their places in the result.
    virtual std::optional<std::vector<MIXERCONTROL>> Controls(const MIXERLINE& line) = 0;

    /// The items of a control, in the order of their slots.
    virtual std::optional<std::vector<MIXERCONTROLDETAILS_LISTTEXT>> Items(const MIXERCONTROL& control) = 0;

    /// Items beyond the last slot are left out.
    virtual std::optional<MixerValues> Values(const MIXERCONTROLDETAILS& details) = 0;
    virtual bool SetValues(const MIXERCONTROLDETAILS& details, const MixerValues& values) = 0;
};

/// The mixer devices of the machine, in an order that depends on their names alone.
class Mixer {
 public:
    virtual ~Mixer() = default;

    /// Counts the devices anew. Their numbers are good until the next count.
    virtual uint32_t CountDevices() = 0;

    /// Null if there is no such device, or not any more.
    virtual std::unique_ptr<MixerDevice> Open(uint32_t device) = 0;

    /// The mixer device of an input, by WaveInDevice::Id. Null if the input has none.
    virtual std::unique_ptr<MixerDevice> OpenWaveIn(const std::string& input) = 0;
};

/// For programs that leave the mixer of their user alone.
class NoMixer : public Mixer {
 public:
    uint32_t CountDevices() override { return 0; }
    std::unique_ptr<MixerDevice> Open(uint32_t /*device*/) override { return nullptr; }
    std::unique_ptr<MixerDevice> OpenWaveIn(const std::string& /*input*/) override { return nullptr; }
};

}  // namespace Corvetape
