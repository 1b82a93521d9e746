#include "media/provider_choice.h"

#include <utility>

#include "core/controls/held.h"

namespace Corvetape {

ProviderChoice::ProviderChoice(ProviderHost& host, CoverImages& covers, std::vector<ProviderMaker*> makers)
    : Host(host), Covers(covers), Makers(std::move(makers)) {}

bool ProviderChoice::HasSource() const {
    return !Host.Media.ProviderName.empty() && Host.Media.ProviderName != NoStationData;
}

bool ProviderChoice::Wanted() const {
    return !CurrentProvider || !HasSource();
}

template <typename Work>
void ProviderChoice::Guarded(Work work) {
    if (Busy) return;
    {
        const Held busy(Busy);
        work();
    }
    Fulfil(std::exchange(Late, Wish::None));
}

void ProviderChoice::Choose() {
    Guarded([this] { Find(); });
}

void ProviderChoice::Find() {
    for (ProviderMaker* maker : Makers) {
        CurrentProvider.reset();  // it may empty the media data as it goes, which the next one fills
        CurrentProvider = maker->Make();
        if (CurrentProvider && HasSource()) return;
    }
    CurrentProvider.reset();
    CurrentProvider = std::make_unique<clsProviderNull>(Host);
}

void ProviderChoice::Fulfil(Wish wish) {
    if (wish == Wish::None) return;
    if (Busy) {
        Late = wish;
        return;
    }
    CurrentProvider.reset();
    if (wish == Wish::SwitchOff) CurrentProvider = std::make_unique<clsProviderNull>(Host);
}

void ProviderChoice::SwitchOff() {
    Fulfil(Wish::SwitchOff);
}

void ProviderChoice::Drop() {
    Fulfil(Wish::Drop);
}

void ProviderChoice::GetStationData() {
    Guarded([this] {
        if (CurrentProvider) CurrentProvider->GetStationData();
    });
}

void ProviderChoice::Refresh() {
    if (!Host.Media.StationDataEnabled) return;
    GetStationData();
    LoadImage();
}

void ProviderChoice::RestartRadio() {
    Guarded([this] {
        // Whether the source could be asked is its own matter; the silence that called for it goes on if not.
        if (CurrentProvider) static_cast<void>(CurrentProvider->RestartRadio());
    });
}

}  // namespace Corvetape
