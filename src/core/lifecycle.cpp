#include "core/lifecycle.h"

#include <chrono>
#include <vector>

#include "core/text/numbers.h"
#include "core/text/placeholders.h"
#include "core/text/text.h"
#include "core/version.h"
#include "platform/clock.h"
#include "platform/event_loop.h"
#include "platform/folders.h"

namespace Corvetape {

namespace {

constexpr const char* RegistryFileName = "/registry.ini";

constexpr uint32_t OlderFamily = 1;
constexpr uint32_t NTFamily = 2;

std::string_view NTLetters(const SystemVersion& version) {
    switch (version.Major) {
        case 3:
        case 4:
            return "NT";
        case 5:
            return version.Minor == 0 ? "2K" : "XP";
        case 6:
            return "VI";
        default:
            return "";
    }
}

std::string_view OlderLetters(const SystemVersion& version) {
    switch (version.Minor) {
        case 0:
            return "95";
        case 10:
            return "98";
        case 90:
            return "ME";
        default:
            return "";
    }
}

}  // namespace

void PauseWithEvents(const Clock& clock, EventLoop& loop, float milliseconds) {
    PauseWithEvents(clock, loop, milliseconds, false);
}

void PauseWithEvents(const Clock& clock, EventLoop& loop, float milliseconds, const bool& ended) {
    constexpr float midnight = 84600.0F;
    constexpr std::chrono::milliseconds step(10);
    const float target = milliseconds / 1000.0F;
    const float start = SecondsSinceMidnight(clock.LocalNow());
    float now = start;
    do {
        loop.ProcessEvents();
        loop.Sleep(step);
        now = SecondsSinceMidnight(clock.LocalNow());
        if (!(now > start)) now += midnight;
    } while (now - start < target && !ended);
}

bool IsWindowsNT(const SystemVersion& version) {
    return version.Platform == NTFamily;
}

bool IsWindowsVista(const SystemVersion& version) {
    return IsWindowsNT(version) && version.Major == 6;
}

std::string WindowsTag(const SystemVersion& version, std::string_view separator) {
    if (version.Platform != NTFamily && version.Platform != OlderFamily) return {};
    std::string tag(version.Platform == NTFamily ? NTLetters(version) : OlderLetters(version));
    for (const uint32_t number : {version.Major, version.Minor, version.Build & 0xFFFF}) {
        tag.append(separator).append(std::to_string(number));
    }
    return tag;
}

std::string CommonDataFolder(Folders& folders) {
    return folders.ShellFolderPath(ShellFolder::CommonAppData) + "/" + ProgramShortName;
}

std::string UserRegistryFile(Folders& folders) {
    return folders.ShellFolderPath(ShellFolder::AppData) + "/" + ProgramShortName + RegistryFileName;
}

std::string MachineRegistryFile(Folders& folders) {
    return CommonDataFolder(folders) + RegistryFileName;
}

void ExtendSearchPath(Folders& folders, const Placeholders& placeholders,
                      const std::string& commonDataFolder) {
    const std::string path = placeholders.ExpandPlaceholders("%Path%");
    if (FindIgnoringCase(path, commonDataFolder) != std::string::npos) return;
    const bool missing = EqualIgnoringCase(path, "%Path%");
    const std::string extended =
        missing ? commonDataFolder : path + folders.SearchPathSeparator() + commonDataFolder;
    folders.SetEnvironment("PATH", extended);  // without it tools are still found beside the program
}

std::optional<WindowPosition> StoredPosition(std::string_view pos) {
    const std::vector<std::string> pieces = Split(pos, ';');
    if (pieces.size() < 4) return std::nullopt;
    const WindowPosition position{RoundToInt32(LeadingNumber(pieces[0])),
                                  RoundToInt32(LeadingNumber(pieces[1]))};
    if ((position.Left & position.Top) == 0) return std::nullopt;
    return position;
}

}  // namespace Corvetape
