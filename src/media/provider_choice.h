#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "media/provider.h"

namespace Corvetape {

/// Makes a provider; the provider sets ProviderName if it has found its source.
using ProviderFactory = std::function<std::unique_ptr<clsProvider>()>;

/// Holds the present provider and finds another one while none has a source.
///
/// A provider may ask the user something, and events go on while that box is open. Choices and polls that
/// come meanwhile do nothing, and a provider is not taken away before it is done.
class ProviderChoice {
 public:
    /// `factories` are tried in their order; the null provider stands behind them all.
    ProviderChoice(ProviderHost& host, std::vector<ProviderFactory> factories);

    /// True while no provider has a source, so that the choice has to run.
    bool Wanted() const;

    /// Creates provider after provider until one has found its source.
    void Choose();

    /// Media data were switched off: nothing is asked any more. A switched-off source is the null provider.
    void SwitchOff();

    /// The source was switched on again: the next choice creates a provider.
    void Drop();

    /// Polls the present provider. Nothing without one.
    void GetStationData();
    void RestartRadio();

 private:
    enum class Wish { None, Drop, SwitchOff };

    bool HasSource() const;
    void Find();
    void Fulfil(Wish wish);

    /// Lets a provider work, then carries out what was wanted of it meanwhile.
    template <typename Work>
    void Guarded(Work work);

    ProviderHost& Host;
    std::vector<ProviderFactory> Factories;
    std::unique_ptr<clsProvider> CurrentProvider;
    bool Busy = false;  ///< a provider is at work
    Wish Late = Wish::None;
};

}  // namespace Corvetape
