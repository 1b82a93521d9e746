#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <span>
#include <string>
#include <vector>

#include "platform/wave_in.h"

namespace Corvetape {

/// Noise that never repeats, from a seed; up to 8000 loud. Its first and last frames
/// are louder than all others, and unlike each other.
inline std::vector<Frame> Noise(size_t frames, uint32_t seed) {
    std::vector<Frame> noise(frames);
    uint64_t state = seed * 2654435761ULL + 1;
    const auto sample = [&state] {
        state = state * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<int16_t>(static_cast<int32_t>(state >> 40) % 16000 - 8000);
    };
    for (Frame& frame : noise) frame = {sample(), sample()};
    noise.front() = {9001, -9001};
    noise.back() = {-9001, 9001};
    return noise;
}

/// A plain 16-bit stereo WAV.
inline void WriteWave(const std::string& path, std::span<const Frame> frames, uint32_t framesPerSecond) {
    std::string header = "RIFF....WAVEfmt ................data....";
    header.insert(16, "....");
    const auto put = [&header](size_t at, uint32_t value, size_t count) {
        std::memcpy(header.data() + at, &value, count);
    };
    const auto bytes = static_cast<uint32_t>(frames.size_bytes());
    put(4, bytes + 36, 4);
    put(16, 16, 4);
    put(20, 1, 2);
    put(22, 2, 2);
    put(24, framesPerSecond, 4);
    put(28, framesPerSecond * 4, 4);
    put(32, 4, 2);
    put(34, 16, 2);
    put(40, bytes, 4);
    std::ofstream file(path, std::ios::binary);
    file << header;
    file.write(reinterpret_cast<const char*>(frames.data()), static_cast<std::streamsize>(bytes));
}

/// From the first frame to the last that is not silent on both channels.
inline std::span<const Frame> WithoutSilenceAround(std::span<const Frame> frames) {
    const auto sounds = [](const Frame& frame) { return frame != Frame{}; };
    const auto first = std::ranges::find_if(frames, sounds);
    const auto last = std::find_if(frames.rbegin(), frames.rend(), sounds).base();
    if (first == frames.end()) return {};
    return {first, last};
}

/// "equal", or where the two first differ and how long they are.
inline std::string Comparison(std::span<const Frame> expected, std::span<const Frame> actual) {
    const auto [left, right] = std::ranges::mismatch(expected, actual);
    if (left == expected.end() && right == actual.end()) return "equal";
    return "differs at frame " + std::to_string(left - expected.begin()) + ", expected " +
           std::to_string(expected.size()) + " frames and got " + std::to_string(actual.size());
}

}  // namespace Corvetape
