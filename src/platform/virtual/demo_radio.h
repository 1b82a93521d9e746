#pragma once

#include <cstdint>
#include <memory>

#include "platform/sound_source.h"

namespace Corvetape {

class DemoSynth;

/// The frames of a song of the demo radio.
struct DemoSong {
    uint64_t Begin = 0;
    uint64_t End = 0;  ///< one after its last frame; its sound has died away there
    SourceMedia Media;

    bool operator==(const DemoSong&) const = default;
};

/// An endless radio for people without a sound server: made-up music by made-up bands, generated on the fly.
/// Songs last 40 to 70 s, with pauses of 1.0 to 2.5 s at -70 dBFS between them; it begins with a pause. The
/// first six songs have six styles; after that they come in ever new order and shape. The same seed gives
/// the same frames at a rate.
class DemoRadio : public SoundSource {
 public:
    explicit DemoRadio(uint64_t seed, uint32_t framesPerSecond = 44100);
    ~DemoRadio() override;
    DemoRadio(const DemoRadio&) = delete;
    DemoRadio& operator=(const DemoRadio&) = delete;

    uint32_t FramesPerSecond() const override { return Rate; }

    /// Always fills all frames.
    size_t Read(std::span<Frame> frames) override;

    /// Between songs what played last; before the first one the station alone.
    SourceMedia NowPlaying() const override;

    /// Where a song is and what it is called, counted from 0, also ahead of time.
    DemoSong Song(uint64_t number) const;

 private:
    DemoSong SongAfter(uint64_t end, uint64_t number) const;
    void Pass(uint64_t frames);

    uint64_t Seed;
    uint32_t Rate;
    uint64_t Next = 0;    ///< number of the frame that Read gives next
    uint64_t Number = 0;  ///< the song that plays or comes next
    DemoSong Current;
    SourceMedia Media;
    std::unique_ptr<DemoSynth> Synth;  ///< only while a song plays
};

}  // namespace Corvetape
