#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/mixer.h"

namespace Corvetape {

/// Where a line is met on the way through all devices. All numbers are indices.
struct MixerPlace {
    uint32_t Device = 0;
    uint32_t Destination = 0;
    std::optional<uint32_t> Source;  ///< nothing for the destination itself
};

/// Name of a control: "C", the numbers of its line's place and `control`, its index in the line, each with at
/// least two digits. "C000103" is on a destination, "C00010205" on a source.
std::string MixerKey(const MixerPlace& place, uint32_t control);

/// Visits the lines of an open device: each destination before its sources. `visit` takes the line and its
/// place, and returns false to end the walk; the result is false then too. What the device does not give is
/// passed over.
template <typename Visit>
bool WalkLines(MixerDevice& device, uint32_t number, Visit visit) {
    const uint32_t destinations = device.Caps().cDestinations;
    for (uint32_t destination = 0; destination < destinations; ++destination) {
        const std::optional<MIXERLINE> line = device.Destination(destination);
        if (!line) continue;
        if (!visit(*line, MixerPlace{number, destination, std::nullopt})) return false;
        for (uint32_t source = 0; source < line->cConnections; ++source) {
            const std::optional<MIXERLINE> from = device.Source(destination, source);
            if (from && !visit(*from, MixerPlace{number, destination, source})) return false;
        }
    }
    return true;
}

/// The same for all devices, one after the other. `visit` takes the device before line and place.
template <typename Visit>
bool WalkMixers(Mixer& mixer, Visit visit) {
    const uint32_t devices = mixer.CountDevices();
    for (uint32_t number = 0; number < devices; ++number) {
        const std::unique_ptr<MixerDevice> device = mixer.Open(number);
        if (!device) continue;
        const bool whole = WalkLines(*device, number, [&](const MIXERLINE& line, const MixerPlace& place) {
            return visit(*device, line, place);
        });
        if (!whole) return false;
    }
    return true;
}

}  // namespace Corvetape
