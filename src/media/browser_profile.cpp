#include "media/browser_profile.h"

#include <algorithm>
#include <array>

#include "core/text/text.h"
#include "media/text_decoding.h"
#include "platform/files.h"

namespace Corvetape {

namespace {

constexpr size_t BufferLength = 32767;
constexpr std::string_view ProfileMark = "- ";

struct RuleKey {
    const char* Key;
    MediaFieldRule ProviderProfile::*Rule;
};

constexpr auto RuleKeys = std::to_array<RuleKey>({
    {"Station", &ProviderProfile::Station},
    {"StationDesc", &ProviderProfile::StationDesc},
    {"Artist", &ProviderProfile::Artist},
    {"Title", &ProviderProfile::Title},
    {"Album", &ProviderProfile::Album},
    {"Cover", &ProviderProfile::Cover},
    {"Status", &ProviderProfile::Status},
    {"Restart", &ProviderProfile::Restart},
});

template <size_t Count>
std::array<std::string, Count> Parts(std::string_view value) {
    std::array<std::string, Count> parts;
    for (std::string& part : parts) {
        const size_t end = value.find(';');
        part = value.substr(0, end);
        if (end == std::string_view::npos) break;
        value.remove_prefix(end + 1);
    }
    return parts;
}

/// The names as a buffer of limited length gives them, each with its closing zero and one more after the
/// last: the last name may be cut.
std::vector<std::string> SectionNames(const Profile& file) {
    std::vector<std::string> names;
    size_t room = BufferLength - 2;
    for (const std::string& name : file.Sections()) {
        const std::string_view kept = CutText(name, room);
        names.emplace_back(kept);
        if (kept.size() < name.size() || kept.size() + 1 > room) break;
        room -= kept.size() + 1;
    }
    return names;
}

ProviderProfile ReadProfile(const Profile& file, const std::string& section) {
    const auto value = [&](const char* key) {
        return TextFromFile(file.ReadText(section, key, "", BufferLength - 1));
    };
    ProviderProfile profile;
    profile.Name = value("Name");
    const auto window = Parts<4>(value("Window&Doc"));
    profile.WindowClass = window[0];
    profile.WindowTitle = window[1];
    profile.DocTitle = window[2];
    profile.DocUrl = window[3];
    for (const RuleKey& key : RuleKeys) profile.*key.Rule = RuleFromText(value(key.Key));
    return profile;
}

}  // namespace

std::string ProfilePath(Files& files, const std::string& settingsFile, const std::string& programFolder) {
    const std::string own = settingsFile.substr(0, settingsFile.rfind('/') + 1) + ProfileFileName;
    return files.FileSize(own) ? own : programFolder + "/" + ProfileFileName;
}

MediaFieldRule RuleFromText(std::string_view value) {
    const auto parts = Parts<3>(value);
    return {parts[0], parts[1], parts[2]};
}

std::vector<ProviderProfile> ReadProfiles(const Profile& file) {
    std::vector<ProviderProfile> profiles;
    for (const std::string& section : SectionNames(file)) {
        if (section.starts_with(ProfileMark)) profiles.push_back(ReadProfile(file, section));
    }
    return profiles;
}

size_t CountUnreadProfiles(const Profile& file) {
    const auto isProfile = [](const std::string& section) { return section.starts_with(ProfileMark); };
    const auto count = [&](const std::vector<std::string>& names) {
        return static_cast<size_t>(std::ranges::count_if(names, isProfile));
    };
    return count(file.Sections()) - count(SectionNames(file));
}

}  // namespace Corvetape
