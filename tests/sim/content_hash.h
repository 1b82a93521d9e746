#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "platform/wave_in.h"

namespace Corvetape {

/// A running 64-bit hash of bytes, at about the speed of memory. The value depends on the bytes alone, not
/// on the portions they were added in. Tells contents apart; no protection against an adversary.
class ContentHash {
 public:
    void Add(std::span<const std::byte> bytes);
    void Add(std::string_view text) { Add(std::as_bytes(std::span(text))); }
    void Add(std::span<const Frame> frames) { Add(std::as_bytes(frames)); }
    void Add(uint64_t number) { Add(std::as_bytes(std::span(&number, 1))); }

    /// The hash of everything added so far; more can be added afterwards.
    uint64_t Value() const;

 private:
    static constexpr size_t BlockBytes = 32;

    void AddBlock(const std::byte* block);

    std::array<uint64_t, 4> Lanes = {1, 2, 3, 4};
    std::array<std::byte, BlockBytes> Rest{};
    size_t RestBytes = 0;
    uint64_t Length = 0;
};

/// The hash of one run of bytes or frames.
template <typename Content>
uint64_t HashOf(const Content& content) {
    ContentHash hash;
    hash.Add(content);
    return hash.Value();
}

}  // namespace Corvetape
