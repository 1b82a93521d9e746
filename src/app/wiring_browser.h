#pragma once

#include <vector>

#include "media/provider_choice.h"

namespace Corvetape {

struct ProgramParts;

/// Adds the browser provider, if this run asks browsers or windows.
void AddBrowserFactory(ProgramParts& parts, std::vector<ProviderFactory>& factories);

}  // namespace Corvetape
