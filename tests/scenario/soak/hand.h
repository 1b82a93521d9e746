#pragma once

#include <string>

#include "platform/virtual/sim_random.h"
#include "scenario/soak/book.h"

namespace Corvetape::Test {

/// Whether a seed plays the end of song "Automatic" too: two of five do, and all if the environment has
/// CORVETAPE_AUTOMATIC.
bool PlaysAutomatic(uint64_t seed);

/// A restless user on a failing machine, who presses whatever there is, in any order, while files, devices
/// and the clock fail. Everything follows from the seed alone.
class Hand {
 public:
    /// Presses "Automatic" only if the seed plays it.
    Hand(World& world, Book& book, uint64_t seed)
        : Radio(world), Notes(book), Chance(MixSeed(seed, 3)), Automatic(PlaysAutomatic(seed)) {}

    /// Does one thing.
    void Act();

    /// Adds a song that was closed to the story.
    void NoteSong(const HeardSong& song);

    /// Puts everything back in order, so that the rest can be recorded.
    void Restore();

    /// What was done, one thing a line, with its second.
    const std::string& Story() const { return Done; }

 private:
    void PressRecording();
    void ChangeMode();
    void PressAny();
    void DisturbDevice();
    void DisturbDisk();
    void DisturbClock();
    void DisturbDeviceBy(int64_t which);
    void ReleaseDevice();
    bool IsOutOfReach(const Control& control) const;
    std::string StateText();
    void Say(const std::string& what);

    World& Radio;
    Book& Notes;
    SimRandom Chance;
    bool Automatic = false;
    std::string Done;
};

}  // namespace Corvetape::Test
