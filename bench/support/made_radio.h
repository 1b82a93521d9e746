#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/virtual/sim_random.h"
#include "platform/wave_in.h"
#include "support/found_songs.h"
#include "support/joined_music.h"
#include "support/work_folder.h"

namespace Corvetape::Bench {

/// Where one song of a made-up radio becomes the next. Seconds from the beginning of the radio.
struct RadioJoin {
    double OldEnd = 0;    ///< in a fade this is after NewBegin
    double NewBegin = 0;  ///< between them is a gap, or somebody speaks
    JoinKind Kind;

    double Middle() const { return (OldEnd + NewBegin) / 2; }
};

struct MadeRadio {
    std::vector<Frame> Sound;
    std::vector<RadioJoin> Joins;
};

/// Sentences that espeak-ng speaks with several voices.
class SpeechShelf {
 public:
    /// Speaks them into the folder; none of them are there if the program is not installed.
    explicit SpeechShelf(const WorkFolder& work);

    size_t Size() const { return Sentences.size(); }

    /// 4 to 8 s without silence at either end.
    std::span<const Frame> Sentence(size_t number) const { return Sentences[number]; }

 private:
    std::vector<std::vector<Frame>> Sentences;
};

/// What radios are made of. Speech is needed for kinds of joins with talk alone.
struct RadioShelves {
    const MusicShelf& Music;
    const SpeechShelf& Speech;
};

/// Silence before the first song, in seconds.
inline constexpr double RadioLeadIn = 3;

/// A radio of songs of some 49 s, each joined in one of the `kinds` by chance. A song is the first 28 s of
/// one and its last 21 s: what is searched round a change of title reaches neither from the join to that
/// splice nor over it.
MadeRadio ComposeRadio(const RadioShelves& shelves, size_t joins, std::span<const JoinKind> kinds,
                       SimRandom& random);

/// What a station does to its sound.
struct StationSound {
    bool ByMp3 = false;        ///< 128 kbit/s
    bool GainControl = false;  ///< slow
};

/// Writes the radio as WAV through a limiter and what else the station has. False if the disk, ffmpeg or its
/// encoder refuses. A file of that name is replaced.
bool WriteRadio(const MadeRadio& radio, StationSound station, const WorkFolder& work,
                const std::string& path);

/// What the changes of title of a radio mean, and how late they are.
struct TitleDelay {
    enum class Meaning : uint8_t { Middle, NewBegin };
    Meaning Means = Meaning::Middle;
    double Delay = 0;  ///< seconds, the same for all songs of a radio
    double Jitter = 0.8;
};

/// When the title of each song comes, the first one included. Seconds.
std::vector<double> TitleTimes(const MadeRadio& radio, const TitleDelay& delay, SimRandom& random);

/// Writes a media table with a title of its own for each song. False if the disk refuses.
bool WriteTitles(const std::vector<double>& times, const std::string& path);

/// A join without a cut nearer than this was missed. Seconds.
inline constexpr double FarthestCut = 10;

/// How far the nearest cut is from a join, in seconds, at most FarthestCut: from the middle of a fade or gap;
/// where somebody speaks, from either end of the talk.
double NearestError(const std::vector<FoundSong>& found, const RadioJoin& join);

/// The kinds of joins that cuts without a gap are measured by.
std::span<const JoinKind> RadioKinds();

}  // namespace Corvetape::Bench
