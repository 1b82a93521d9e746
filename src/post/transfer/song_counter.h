#pragma once

#include <cstdint>

#include "core/settings/registry.h"

namespace Corvetape {

/// Counts all songs that were ever handed over, of all runs as far as they are known.
class SongCounter {
 public:
    /// `registry` outlives it and keeps the total.
    explicit SongCounter(RegistryBranches& registry) : Registry(registry) {}

    /// Reads the total, once, at the start of the program.
    void Load();

    /// One song more: the total, which is its number. Without a registry that can be written it goes on from
    /// the last one; the largest number is followed by the smallest.
    int32_t Next();

    int32_t Total() const { return Count; }

 private:
    RegistryBranches& Registry;
    int32_t Count = 0;
};

}  // namespace Corvetape
