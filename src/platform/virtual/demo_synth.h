#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "platform/virtual/demo_score.h"
#include "platform/wave_in.h"

namespace Corvetape {

/// Plays a score. Never clips; the last 0.6 s fade to silence. What it gives does not depend on the portions
/// in which it is asked for.
class DemoSynth {
 public:
    /// `frames` is the length of the song at `framesPerSecond`.
    DemoSynth(DemoScore score, uint32_t framesPerSecond, uint64_t frames);
    ~DemoSynth();
    DemoSynth(const DemoSynth&) = delete;
    DemoSynth& operator=(const DemoSynth&) = delete;

    /// Fills `frames` with what comes next; silence after the song's end.
    void Read(std::span<Frame> frames);

 private:
    static constexpr size_t BlockFrames = 256;
    struct Voice;
    struct Block {
        std::array<float, BlockFrames> Left{};
        std::array<float, BlockFrames> Right{};
        std::array<float, BlockFrames> Echo{};
    };

    void RenderBlock();
    void BeginNotes();
    void Play(Voice& voice);
    void AddEcho();
    void Finish();
    float Noise();

    DemoScore Score;
    double Rate;
    uint64_t Length;
    uint64_t BlockBegin = 0;  ///< frame of the song that the next block begins with
    size_t NextNote = 0;
    std::vector<Voice> Voices;
    Block Mix;
    std::array<std::vector<float>, 2> EchoLines;  ///< left and right, fed into one another
    size_t EchoAt = 0;
    uint32_t NoiseState = 0x2545F491;
    std::array<Frame, BlockFrames> Ready{};
    size_t ReadyAt = BlockFrames;  ///< first frame of Ready that was not read yet
};

}  // namespace Corvetape
