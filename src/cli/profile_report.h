#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "media/browser_profile.h"
#include "platform/documents.h"
#include "platform/windows.h"

namespace Corvetape {

/// How profiles are held against what is open.
enum class ProfileMatch {
    AsRecorded,  ///< as the recorder does
    AnyAddress,  ///< for pages that were saved: only the title of the page counts, and no windows
};

/// The profiles that are tried, and where.
struct ProfileTrial {
    std::string Path;  ///< the file that they come from
    std::vector<ProviderProfile> Profiles;
    std::vector<uint16_t> Ports;  ///< at which browsers are asked for their pages
    ProfileMatch How = ProfileMatch::AsRecorded;
};

/// What is open, which profile the recorder would read, which finds what or why it finds nothing, and what
/// each rule yields: the text as it was read, after the pattern, and decoded. Either of the two may be
/// missing.
std::string ProfileReport(const ProfileTrial& trial, Documents* documents, Windows* windows);

}  // namespace Corvetape
