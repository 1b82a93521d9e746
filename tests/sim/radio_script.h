#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/sound_source.h"

namespace Corvetape {

/// Highest magnitude of a sample for a level in dB below full scale, rounded; -70 gives 10.
int16_t AmplitudeOf(double decibelsFullScale);

/// What a scripted song sounds like.
enum class SongSound : uint8_t {
    Noise,   ///< dense and level; every 10 ms of it reach the peak
    Tone,    ///< one note a channel
    Chord,   ///< three notes a channel
    Speech,  ///< in the middle of the image, with a pause of 0.13 s after each 0.24 s, not quite silent
};

/// A stretch inside a song that is nearly silent, but is no pause between songs.
struct ScriptRest {
    double AtSecond = 0;  ///< from the song's beginning
    double Seconds = 0.3;
    double NoiseFloorDb = -70;
};

struct ScriptSong {
    double Seconds = 60;  ///< with its rests, fades and overlap
    uint64_t Seed = 1;    ///< 32768 seeds in a row give different frames, of noise at least
    int16_t PeakLeft = 12000;
    int16_t PeakRight = 12000;
    SongSound Sound = SongSound::Noise;
    double FadeInSeconds = 0;
    double FadeOutSeconds = 0;
    double OverlapSeconds = 0;      ///< a song that follows at once begins so much earlier, cross-fading
    std::vector<ScriptRest> Rests;  ///< in order, not touching one another or the song's ends
    SourceMedia Media;
};

/// A radio as a list of what it plays, in order. Lengths are seconds of the radio's own clock.
class RadioScript {
 public:
    RadioScript& Song(ScriptSong song);

    /// Noise of a low level between songs.
    RadioScript& Pause(double seconds, double noiseFloorDb = -70);

    /// Zeros.
    RadioScript& Silence(double seconds);

    /// A short burst of noise.
    RadioScript& Click(int16_t peak, double seconds = 0.002);

    /// After the last item: the end (the default), or silence for ever.
    RadioScript& SilenceForever();

    /// Songs carry the numbers of their frames instead of their sound (see StampOf).
    RadioScript& Stamped();

    /// The radio's clock runs so many millionths faster than the recorder's: everything gets shorter.
    RadioScript& Drift(int64_t millionths);

    enum class ItemKind : uint8_t { Song, Pause, Silence, Click };
    struct Item {
        ItemKind Kind = ItemKind::Silence;
        double Seconds = 0;
        int16_t Peak = 0;
        ScriptSong Song;
    };

    std::vector<Item> Items;
    bool IsEndless = false;
    bool IsStamped = false;
    int64_t DriftMillionths = 0;
};

/// A song as it is in the radio's frames.
struct ScriptedSong {
    uint64_t Begin = 0;
    uint64_t End = 0;  ///< one after its last frame
    SourceMedia Media;

    bool operator==(const ScriptedSong&) const = default;
};

/// A script laid out in frames of one rate. Never changes; shared by the sources that play it.
class RadioTimeline {
 public:
    RadioTimeline(const RadioScript& script, uint32_t framesPerSecond);

    /// The truth: every song with its first and last frame, in order.
    const std::vector<ScriptedSong>& Songs() const { return AllSongs; }

    /// Frames up to the end of the last item.
    uint64_t Length() const { return Frames; }

    uint32_t FramesPerSecond() const { return Rate; }

    /// What plays at a frame; between songs what played last, at first nothing.
    SourceMedia MediaAt(uint64_t frame) const;

    /// A stretch that is made in one way.
    struct Run {
        enum class Making : uint8_t { Zeros, Noise, Song, Mixed };

        Making How = Making::Zeros;
        uint64_t Begin = 0;
        uint64_t End = 0;
        int16_t Peak = 0;   ///< of noise
        uint64_t Seed = 0;  ///< of noise
        size_t Song = 0;    ///< number of the song; of two that overlap the earlier
    };
    const std::vector<Run>& Runs() const { return AllRuns; }

    /// What the frames of a song are made from.
    struct SongShape {
        uint64_t Seed = 0;
        int16_t PeakLeft = 0;
        int16_t PeakRight = 0;
        SongSound Sound = SongSound::Noise;
        uint64_t FadeInFrames = 0;
        uint64_t FadeOutFrames = 0;
    };
    const SongShape& ShapeOf(size_t song) const { return Shapes[song]; }

    bool IsEndless() const { return Endless; }
    bool IsStamped() const { return StampSongs; }

 private:
    uint64_t FramesOf(double seconds) const;
    void AddSong(const ScriptSong& song, uint64_t overlapBefore, uint64_t overlapAfter);
    void AddSongRuns(const ScriptSong& song, uint64_t begin, uint64_t end);
    void AddRun(Run::Making how, uint64_t end, int16_t peak = 0);

    uint32_t Rate;
    double EffectiveRate;  ///< frames in a second of the radio's clock
    bool Endless;
    bool StampSongs;
    uint64_t Frames = 0;
    std::vector<Run> AllRuns;
    std::vector<SongShape> Shapes;
    std::vector<ScriptedSong> AllSongs;
};

/// What a random radio is drawn from.
struct RandomRadioOptions {
    uint64_t Seed = 1;
    double Seconds = 3600;  ///< at least so long; the last song is played to its end
    double ShortestSong = 120;
    double LongestSong = 300;
    double ShortestPause = 1.0;
    double LongestPause = 2.5;
    double NoiseFloorDb = -70;
    double RestChance = 0;  ///< that a song has rests, one to three of them
    double ShortestRest = 0.1;
    double LongestRest = 0.4;
    double ClickChance = 0;    ///< that a pause has a click in its middle
    double OverlapChance = 0;  ///< that a song runs into the next one without a pause
    double OverlapSeconds = 3;
    double JingleChance = 0;  ///< that a piece of 5 to 20 s without a title comes before a song
    bool Stamped = false;
    std::vector<int16_t> Peaks = {3000, 8000, 12000, 20000, 30000};  ///< levels of the songs
};

/// A long radio by chance, but the same one for the same options. It begins and ends with a pause; no two
/// songs share title and artist.
RadioScript RandomRadio(const RandomRadioOptions& options);

}  // namespace Corvetape
