#pragma once

#include <optional>
#include <string>

#include "core/settings/settings.h"
#include "forms/encoder_page.h"
#include "platform/files.h"

namespace Corvetape {

/// Makes a folder with its parents. False if it is not there afterwards.
bool MakeFolders(Files& files, const std::string& folder);

/// Makes a folder that the user has named, and tries whether files can be made in it. Otherwise one clear
/// line.
std::optional<std::string> FolderObstacle(Files& files, const std::string& folder);

/// Why no music file could be made in the format that the settings choose: there is no such format or
/// quality, or a tool that it needs is not on this machine, as the enabled options of `page` say.
std::optional<std::string> FormatObstacle(const Settings& settings, const EncoderPage& page);

}  // namespace Corvetape
