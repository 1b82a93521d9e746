#include "mixer/mixer_walk.h"

namespace Corvetape {

namespace {

std::string TwoDigits(uint32_t number) {
    const std::string digits = std::to_string(number);
    return digits.size() < 2 ? "0" + digits : digits;
}

}  // namespace

std::string MixerKey(const MixerPlace& place, uint32_t control) {
    std::string key = "C" + TwoDigits(place.Device) + TwoDigits(place.Destination);
    if (place.Source) key += TwoDigits(*place.Source);
    return key + TwoDigits(control);
}

}  // namespace Corvetape
