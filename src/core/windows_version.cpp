#include "core/windows_version.h"

#include <cstdint>

namespace Corvetape {

namespace {

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

}  // namespace Corvetape
