#pragma once

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

/// What is open, which profile finds what, and what each of its rules yields: the text as it was read, behind
/// the pattern, and decoded. Either of the two may be missing.
std::string ProfileReport(const std::vector<ProviderProfile>& profiles, Documents* documents,
                          Windows* windows, ProfileMatch how);

}  // namespace Corvetape
