#include "sim/content_hash.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "platform/virtual/sim_random.h"

namespace Corvetape {

namespace {

constexpr uint64_t Spread = 0x9FB21C651E98DF25U;

uint64_t WordAt(const std::byte* bytes) {
    uint64_t word;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

}  // namespace

// Four lanes that do not wait for one another keep the multiplier busy.
void ContentHash::AddBlock(const std::byte* block) {
    for (size_t lane = 0; lane < Lanes.size(); ++lane) {
        Lanes[lane] = std::rotl((Lanes[lane] ^ WordAt(block + lane * 8)) * Spread, 29);
    }
}

void ContentHash::Add(std::span<const std::byte> bytes) {
    Length += bytes.size();
    if (RestBytes > 0) {
        const size_t part = std::min(BlockBytes - RestBytes, bytes.size());
        std::copy_n(bytes.begin(), part, Rest.begin() + static_cast<std::ptrdiff_t>(RestBytes));
        RestBytes += part;
        bytes = bytes.subspan(part);
        if (RestBytes < BlockBytes) return;
        AddBlock(Rest.data());
        RestBytes = 0;
    }
    while (bytes.size() >= BlockBytes) {
        AddBlock(bytes.data());
        bytes = bytes.subspan(BlockBytes);
    }
    std::copy_n(bytes.begin(), bytes.size(), Rest.begin());
    RestBytes = bytes.size();
}

uint64_t ContentHash::Value() const {
    ContentHash last = *this;
    std::fill(last.Rest.begin() + static_cast<std::ptrdiff_t>(RestBytes), last.Rest.end(), std::byte{0});
    last.AddBlock(last.Rest.data());
    uint64_t value = MixSeed(Length, 0);
    for (const uint64_t lane : last.Lanes) value = MixSeed(value, lane);
    return value;
}

}  // namespace Corvetape
