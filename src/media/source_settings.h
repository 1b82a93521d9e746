#pragma once

#include <string>

namespace Corvetape {

/// The settings that are kept for each source of media data. Rooms above this one keep them.
class SourceSettings {
 public:
    virtual ~SourceSettings() = default;

    /// Reads the settings of a source and shows them; nothing happens for the one that was loaded last.
    virtual void LoadProviderSettings(const std::string& providerName) = 0;

    /// Validates what is shown and stores it under the present source.
    virtual void StoreProviderSettings() = 0;
};

}  // namespace Corvetape
