#pragma once

#include <memory>
#include <vector>

#include "media/cover_images.h"
#include "media/provider.h"

namespace Corvetape {

/// Makes providers of one kind.
class ProviderMaker {
 public:
    virtual ~ProviderMaker() = default;

    /// The provider sets ProviderName if it has found its source. Null if this run does not ask that kind.
    virtual std::unique_ptr<clsProvider> Make() = 0;
};

/// Holds the present provider and finds another one while none has a source.
///
/// A provider may ask the user something, and events go on while that box is open. Choices and polls that
/// come meanwhile do nothing, and a provider is not taken away before it is done.
class ProviderChoice {
 public:
    /// `makers` are tried in their order, and after them the null provider. All of them outlive it.
    ProviderChoice(ProviderHost& host, CoverImages& covers, std::vector<ProviderMaker*> makers);

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

    /// Asks for the picture of what plays.
    void LoadImage() { Covers.LoadImage(Host.Media.CurrentMedia.Cover); }

    /// Polls, and asks for the picture, while media data are on.
    void Refresh();

 private:
    enum class Wish { None, Drop, SwitchOff };

    bool HasSource() const;
    void Find();
    void Fulfil(Wish wish);

    /// Lets a provider work, then carries out what was wanted of it meanwhile.
    template <typename Work>
    void Guarded(Work work);

    ProviderHost& Host;
    CoverImages& Covers;
    std::vector<ProviderMaker*> Makers;
    std::unique_ptr<clsProvider> CurrentProvider;
    bool Busy = false;  ///< a provider is at work
    Wish Late = Wish::None;
};

}  // namespace Corvetape
