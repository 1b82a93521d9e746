// The interfaces of a machine are included ahead of the headers of Windows, as a machine for it would do: a
// name that both have is a constant of ours up to there, and a macro of the system's after it.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>

#include "platform/mixer.h"
#include "platform/wave_in.h"

namespace Corvetape {
namespace {

constexpr std::array<uint32_t, 10> Ours = {MIXERLINE_COMPONENTTYPE_DST_SPEAKERS,
                                           MIXERLINE_COMPONENTTYPE_DST_WAVEIN,
                                           MIXERCONTROL_CONTROLTYPE_ONOFF,
                                           MIXERCONTROL_CONTROLTYPE_MUTE,
                                           MIXERCONTROL_CONTROLTYPE_VOLUME,
                                           MIXERCONTROL_CONTROLTYPE_MUX,
                                           MIXERCONTROL_CONTROLF_MULTIPLE,
                                           WAVE_FORMAT_4S16,
                                           WAVE_FORMAT_48S16,
                                           WHDR_DONE};

}  // namespace
}  // namespace Corvetape

// The second needs the first.
#include <windows.h>

#include <mmsystem.h>

namespace Corvetape {
namespace {

TEST(SystemNames, ConstantsOfTheMachineHaveTheValuesOfWindows) {
    constexpr std::array<uint32_t, 10> systems = {MIXERLINE_COMPONENTTYPE_DST_SPEAKERS,
                                                  MIXERLINE_COMPONENTTYPE_DST_WAVEIN,
                                                  MIXERCONTROL_CONTROLTYPE_ONOFF,
                                                  MIXERCONTROL_CONTROLTYPE_MUTE,
                                                  MIXERCONTROL_CONTROLTYPE_VOLUME,
                                                  MIXERCONTROL_CONTROLTYPE_MUX,
                                                  MIXERCONTROL_CONTROLF_MULTIPLE,
                                                  WAVE_FORMAT_4S16,
                                                  WAVE_FORMAT_48S16,
                                                  WHDR_DONE};
    EXPECT_EQ(Ours, systems);
}

}  // namespace
}  // namespace Corvetape
