#pragma once

#include <cstddef>
#include <cstdint>

namespace Corvetape {

/// Mixes two numbers into one that looks unlike both. Equal arguments give equal results, everywhere.
constexpr uint64_t MixSeed(uint64_t a, uint64_t b) {
    uint64_t mixed = a * 0x9E3779B97F4A7C15U + (b ^ 0xD1B54A32D192ED03U);
    for (unsigned shift = 29; shift <= 32; ++shift) {
        mixed ^= mixed >> shift;
        mixed *= 0xD6E8FEB86659FD93U;
    }
    return mixed ^ (mixed >> 32U);
}

/// A sequence of random numbers that its seed decides alone, whatever the library or compiler. Cheap to
/// make and to copy.
class SimRandom {
 public:
    explicit SimRandom(uint64_t seed) : Seed(seed) {}

    uint64_t Next() { return MixSeed(Seed, ++Count); }

    /// 0 to limit - 1; 0 for a limit of 0.
    uint64_t Below(uint64_t limit) { return limit == 0 ? 0 : Next() % limit; }

    /// `lowest` to `highest`, both included.
    int64_t Between(int64_t lowest, int64_t highest) {
        if (highest <= lowest) return lowest;
        return lowest + static_cast<int64_t>(Below(static_cast<uint64_t>(highest - lowest) + 1));
    }

    /// 0 up to, not including, 1.
    double Unit() { return static_cast<double>(Next() >> 11U) * 0x1p-53; }

    double Between(double lowest, double highest) { return lowest + (highest - lowest) * Unit(); }

    /// True `chance` times out of 1.
    bool Chance(double chance) { return Unit() < chance; }

    template <typename Items>
    const auto& Pick(const Items& items) {
        return items[static_cast<size_t>(Below(items.size()))];
    }

 private:
    uint64_t Seed;
    uint64_t Count = 0;
};

}  // namespace Corvetape
