#pragma once

#include <cstdint>
#include <vector>

#include "platform/sound_source.h"

namespace Corvetape {

/// Instruments of the demo radio.
enum class DemoVoice : uint8_t { Sine, Triangle, Saw, Square, Organ, Bell, Kick, Snare, Hat };

/// A note to play. Times are seconds from the song's beginning.
struct DemoNote {
    double Second = 0;
    double Seconds = 0;  ///< until it is let go; drums have a length of their own
    DemoVoice Voice = DemoVoice::Sine;
    float Frequency = 440;  ///< hertz
    float Loudness = 0.1F;  ///< amplitude, 1 is full scale
    float Pan = 0;          ///< -1 left to 1 right
    float Attack = 0.005F;  ///< seconds to full loudness
    float Decay = 0.3F;     ///< seconds in which most of the way to Sustain is gone
    float Sustain = 0.5F;   ///< share of the loudness that is held
    float Release = 0.08F;  ///< seconds in which most of it is gone when it is let go
    float Echo = 0;         ///< share that is sent to the echo
};

/// How long a song is and how it moves, known without composing it.
struct DemoPlan {
    size_t Style = 0;
    double BeatSeconds = 0.5;
    int32_t BeatsPerBar = 4;
    int32_t Bars = 0;
    double Seconds = 0;  ///< 40 to 70, with the last chord
};

/// A composed song: its notes in the order of their beginnings.
struct DemoScore {
    DemoPlan Plan;
    float Drive = 1;  ///< how hard the mix is pushed into the limiter; above 1 it growls
    std::vector<DemoNote> Notes;
};

/// The plan, the notes and the names of a song, decided by the radio's seed and the song's number alone.
DemoPlan PlanDemoSong(uint64_t seed, uint64_t number);
DemoScore ComposeDemoSong(uint64_t seed, uint64_t number);
SourceMedia NameDemoSong(uint64_t seed, uint64_t number);

/// Length of the pause before a song, 1.0 to 2.5 s.
double DemoPauseBefore(uint64_t seed, uint64_t number);

}  // namespace Corvetape
