#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/system_info.h"

namespace Corvetape {

class Clock;
class EventLoop;
class Folders;
class Placeholders;

/// Waits at least `milliseconds` while events are handled every 10 ms. It may re-enter whoever waits.
///
/// The time is the single-precision time of day. One that is not greater than the start counts 84600 seconds
/// more, so that a wait across midnight lasts half an hour longer; the number stays as it is.
void PauseWithEvents(const Clock& clock, EventLoop& loop, float milliseconds);

/// The same, but over as soon as `ended` is true.
void PauseWithEvents(const Clock& clock, EventLoop& loop, float milliseconds, const bool& ended);

/// Platform 2 of the version record.
bool IsWindowsNT(const SystemVersion& version);

/// Major version 6 of it.
bool IsWindowsVista(const SystemVersion& version);

/// Two letters for the system, major version, minor version and the low 16 bits of the build, joined by
/// `separator`. The letters are empty for an unknown version, the whole text for an unknown platform.
std::string WindowsTag(const SystemVersion& version, std::string_view separator);

/// The folder for all users that external tools may lie in.
std::string CommonDataFolder(Folders& folders);

/// Where the two branches of the registry are kept.
std::string UserRegistryFile(Folders& folders);
std::string MachineRegistryFile(Folders& folders);

/// Puts `commonDataFolder` behind the search path of this process and of those that it starts, unless the
/// path holds that text already, ignoring case. Failures are ignored.
void ExtendSearchPath(Folders& folders, const Placeholders& placeholders,
                      const std::string& commonDataFolder);

struct WindowPosition {
    int32_t Left = 0;
    int32_t Top = 0;

    bool operator==(const WindowPosition&) const = default;
};

/// Where a stored "left;top;width;height" moves a window to. Nothing, and the window stays, if there are
/// fewer than four pieces, or if left and top have no bit in common; this odd test is kept.
std::optional<WindowPosition> StoredPosition(std::string_view pos);

}  // namespace Corvetape
