#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "platform/sound_source.h"
#include "sim/radio_script.h"

namespace Corvetape {

/// Plays a timeline. Sound is copied from blocks made beforehand, at about the speed of memory, so a day of
/// radio passes in seconds. Frame n of a timeline is the same whoever reads it and however he got there.
class ScriptSource : public SoundSource {
 public:
    explicit ScriptSource(std::shared_ptr<const RadioTimeline> timeline, uint64_t firstFrame = 0);
    ScriptSource(const RadioScript& script, uint32_t framesPerSecond);

    uint32_t FramesPerSecond() const override { return Timeline->FramesPerSecond(); }
    size_t Read(std::span<Frame> frames) override;
    void Skip(uint64_t frames) override;
    SourceMedia NowPlaying() const override;

    /// Number of the frame that Read gives next.
    uint64_t Position() const { return Next; }

    /// Goes on from any frame, also backward.
    void Seek(uint64_t frame);

    const RadioTimeline& Truth() const { return *Timeline; }

 private:
    /// Frames in a block. Sound repeats after them, each song beginning at a place of its own.
    static constexpr size_t BlockFrames = 32768;

    /// Blocks that are kept; songs of more levels and sounds make them anew.
    static constexpr size_t MostBlocks = 12;

    struct Block {
        SongSound Sound = SongSound::Noise;
        int16_t PeakLeft = 0;
        int16_t PeakRight = 0;
        std::vector<Frame> Samples;
    };

    static void Make(Block& block);
    static void MakeNoise(Block& block);
    static void MakeNotes(Block& block, size_t notes);
    static void MakeSpeech(Block& block);
    const std::vector<Frame>& BlockOf(SongSound sound, int16_t peakLeft, int16_t peakRight);

    void FillRun(const RadioTimeline::Run& run, std::span<Frame> frames);
    void AddFaded(size_t song, std::span<Frame> frames);

    std::shared_ptr<const RadioTimeline> Timeline;
    uint64_t Next = 0;
    size_t RunIndex = 0;
    std::vector<Block> Blocks;
    size_t OldestBlock = 0;
};

}  // namespace Corvetape
