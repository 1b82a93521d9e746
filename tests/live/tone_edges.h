#pragma once

#include <string>
#include <vector>

#include "platform/wave_in.h"

namespace Corvetape {

/// Windows of 20 ms, in which tones of whole multiples of 50 periods a second do not disturb one another.
inline constexpr size_t WindowFrames = 882;
inline constexpr double WindowSeconds = 0.02;

/// Songs have the tones 1 to 4, and whoever speaks between them has the fifth: 200 periods a second for each.
inline constexpr int TonePeriods = 200;
inline constexpr int SongTones = 4;
inline constexpr int TalkTone = 5;

/// What of a file is the tone of a song, and what of others is at its ends.
struct ToneEdges {
    double OwnSeconds = 0;
    double ForeignAtBegin = 0;
    double ForeignAtEnd = 0;
};

/// The frames of a WAV file of 16-bit stereo at 44.1 kHz; none if there is no such file.
std::vector<Frame> FramesOfWave(const std::string& waveFile);

/// The power of a tone in the window that begins there, on the left.
double PowerOf(const Frame* window, int periodsPerSecond);

/// The loudest tone of each window; 0 where there is none.
std::vector<int> TonesOf(const std::vector<Frame>& frames);

/// Windows before the first one of a tone that have another one, as seconds; the same after its last one.
ToneEdges EdgesOf(const std::vector<int>& tones, int tone);

}  // namespace Corvetape
