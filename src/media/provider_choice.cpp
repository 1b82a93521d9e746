#include "media/provider_choice.h"

#include <utility>

namespace Corvetape {

ProviderChoice::ProviderChoice(ProviderHost& host, std::vector<ProviderFactory> factories)
    : Host(host), Factories(std::move(factories)) {}

bool ProviderChoice::HasSource() const {
    return !Host.Media.ProviderName.empty() && Host.Media.ProviderName != NoStationData;
}

bool ProviderChoice::Wanted() const {
    return !CurrentProvider || !HasSource();
}

void ProviderChoice::Choose() {
    for (const ProviderFactory& factory : Factories) {
        CurrentProvider.reset();  // it may empty the media data as it goes, which the next one fills
        CurrentProvider = factory();
        if (HasSource()) return;
    }
    CurrentProvider.reset();
    CurrentProvider = std::make_unique<clsProviderNull>(Host);
}

void ProviderChoice::SwitchOff() {
    CurrentProvider.reset();
    CurrentProvider = std::make_unique<clsProviderNull>(Host);
}

void ProviderChoice::Drop() {
    CurrentProvider.reset();
}

void ProviderChoice::GetStationData() {
    if (CurrentProvider) CurrentProvider->GetStationData();
}

void ProviderChoice::RestartRadio() {
    // Whether the source could be asked is its own matter; the silence that called for it goes on if not.
    if (CurrentProvider) static_cast<void>(CurrentProvider->RestartRadio());
}

}  // namespace Corvetape
