#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/wave_in.h"

namespace Corvetape {

/// Id of the built-in radio in the list of inputs.
inline constexpr const char* DemoInputId = "demo";

/// The entry of the list that shows the built-in radio; it comes last.
WaveInDevice DemoInput();

/// What the words after --input mean in a list of devices.
struct InputChoice {
    std::optional<size_t> Device;  ///< index in the list
    std::string FilePath;          ///< a sound file instead
    std::string Error;             ///< one clear line if neither
};

/// "demo", "file:PATH", a number of the list, an id, or a name: exactly, else ignoring case, else the only
/// one that holds the words. Nothing at all means the default device.
InputChoice ChooseInput(std::string_view words, std::span<const WaveInDevice> devices);

/// "monitor", "input", "file" or "demo".
const char* KindText(WaveInKind kind);

}  // namespace Corvetape
