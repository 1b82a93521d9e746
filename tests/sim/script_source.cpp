#include "sim/script_source.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <utility>

#include "platform/virtual/sim_random.h"
#include "sim/frame_stamp.h"

namespace Corvetape {

namespace {

using Making = RadioTimeline::Run::Making;

constexpr uint32_t GainOne = 65536;

/// How loud a frame of a song is, in 65536ths.
int32_t GainAt(const RadioTimeline::SongShape& shape, uint64_t position, uint64_t length) {
    uint64_t gain = GainOne;
    if (position < shape.FadeInFrames) gain = position * GainOne / shape.FadeInFrames;
    const uint64_t left = length - position;
    if (left < shape.FadeOutFrames) gain = std::min(gain, left * GainOne / shape.FadeOutFrames);
    return static_cast<int32_t>(gain);
}

int16_t AddScaled(int16_t sum, int16_t sample, int32_t gain) {
    const int32_t scaled = static_cast<int32_t>(int64_t{sample} * gain / GainOne);
    return static_cast<int16_t>(std::clamp(sum + scaled, -32768, 32767));
}

/// Copies `frames.size()` frames from an endlessly repeated block.
void CopyRound(const std::vector<Frame>& block, uint64_t from, std::span<Frame> frames) {
    auto at = static_cast<size_t>(from % block.size());
    while (!frames.empty()) {
        const size_t part = std::min(frames.size(), block.size() - at);
        std::copy_n(block.begin() + static_cast<std::ptrdiff_t>(at), part, frames.begin());
        frames = frames.subspan(part);
        at = 0;
    }
}

/// Where in its block a sound begins. Multiplying by an odd number keeps neighbouring seeds apart.
uint64_t PlaceOf(uint64_t seed) {
    return seed * 12'347;
}

}  // namespace

ScriptSource::ScriptSource(std::shared_ptr<const RadioTimeline> timeline, uint64_t firstFrame)
    : Timeline(std::move(timeline)) {
    Blocks.reserve(MostBlocks);
    Seek(firstFrame);
}

ScriptSource::ScriptSource(const RadioScript& script, uint32_t framesPerSecond)
    : ScriptSource(std::make_shared<RadioTimeline>(script, framesPerSecond)) {}

size_t ScriptSource::Read(std::span<Frame> frames) {
    const auto& runs = Timeline->Runs();
    size_t done = 0;
    while (done < frames.size() && RunIndex < runs.size()) {
        const RadioTimeline::Run& run = runs[RunIndex];
        const auto part = static_cast<size_t>(std::min<uint64_t>(frames.size() - done, run.End - Next));
        FillRun(run, frames.subspan(done, part));
        done += part;
        Next += part;
        if (Next == run.End) ++RunIndex;
    }
    return done;
}

void ScriptSource::Skip(uint64_t frames) {
    const uint64_t last = Timeline->IsEndless() ? Next + frames : Timeline->Length();
    Seek(std::min(Next + frames, std::max(last, Next)));
}

void ScriptSource::Seek(uint64_t frame) {
    Next = frame;
    const auto& runs = Timeline->Runs();
    const auto run = std::ranges::upper_bound(runs, frame, {}, &RadioTimeline::Run::End);
    RunIndex = static_cast<size_t>(run - runs.begin());
}

SourceMedia ScriptSource::NowPlaying() const {
    return Timeline->MediaAt(Next == 0 ? 0 : Next - 1);
}

void ScriptSource::FillRun(const RadioTimeline::Run& run, std::span<Frame> frames) {
    switch (run.How) {
        case Making::Zeros:
            std::ranges::fill(frames, Frame{});
            return;
        case Making::Noise:
            CopyRound(BlockOf(SongSound::Noise, run.Peak, run.Peak), PlaceOf(run.Seed) + Next - run.Begin,
                      frames);
            return;
        case Making::Song:
        case Making::Mixed:
            break;
    }
    if (Timeline->IsStamped()) {
        for (size_t at = 0; at < frames.size(); ++at) frames[at] = StampOf(Next + at);
    } else if (run.How == Making::Song) {
        const RadioTimeline::SongShape& shape = Timeline->ShapeOf(run.Song);
        CopyRound(BlockOf(shape.Sound, shape.PeakLeft, shape.PeakRight),
                  PlaceOf(shape.Seed) + Next - Timeline->Songs()[run.Song].Begin, frames);
    } else {
        std::ranges::fill(frames, Frame{});
        AddFaded(run.Song, frames);
        AddFaded(run.Song + 1, frames);
    }
}

/// Adds what a song gives to the stretch from Next on, if it sounds there at all.
void ScriptSource::AddFaded(size_t song, std::span<Frame> frames) {
    if (song >= Timeline->Songs().size()) return;
    const ScriptedSong& where = Timeline->Songs()[song];
    const RadioTimeline::SongShape& shape = Timeline->ShapeOf(song);
    const std::vector<Frame>& block = BlockOf(shape.Sound, shape.PeakLeft, shape.PeakRight);
    for (size_t at = 0; at < frames.size(); ++at) {
        const uint64_t frame = Next + at;
        if (frame < where.Begin || frame >= where.End) continue;
        const uint64_t position = frame - where.Begin;
        const int32_t gain = GainAt(shape, position, where.End - where.Begin);
        const Frame sound = block[(PlaceOf(shape.Seed) + position) % block.size()];
        frames[at].Left = AddScaled(frames[at].Left, sound.Left, gain);
        frames[at].Right = AddScaled(frames[at].Right, sound.Right, gain);
    }
}

const std::vector<Frame>& ScriptSource::BlockOf(SongSound sound, int16_t peakLeft, int16_t peakRight) {
    for (const Block& block : Blocks) {
        if (block.Sound == sound && block.PeakLeft == peakLeft && block.PeakRight == peakRight) {
            return block.Samples;
        }
    }
    Block* block = nullptr;
    if (Blocks.size() < MostBlocks) {
        block = &Blocks.emplace_back();
    } else {
        block = &Blocks[OldestBlock];
        OldestBlock = (OldestBlock + 1) % MostBlocks;
    }
    block->Sound = sound;
    block->PeakLeft = peakLeft;
    block->PeakRight = peakRight;
    Make(*block);
    return block->Samples;
}

void ScriptSource::Make(Block& block) {
    block.Samples.resize(BlockFrames);
    switch (block.Sound) {
        case SongSound::Noise:
            return MakeNoise(block);
        case SongSound::Tone:
            return MakeNotes(block, 1);
        case SongSound::Chord:
            return MakeNotes(block, 3);
        case SongSound::Speech:
            return MakeSpeech(block);
    }
}

/// Every 10 ms at 44.1 kHz, and so in every buffer, a sample reaches the peak: levels are exact.
void ScriptSource::MakeNoise(Block& block) {
    constexpr size_t peakEvery = 441;
    SimRandom random(4711);
    const auto sample = [&random](int16_t peak) {
        return static_cast<int16_t>(random.Between(int64_t{-peak}, int64_t{peak}));
    };
    for (Frame& frame : block.Samples) frame = {sample(block.PeakLeft), sample(block.PeakRight)};
    for (size_t at = 0; at < block.Samples.size(); at += peakEvery) {
        block.Samples[at] = {block.PeakLeft, static_cast<int16_t>(-block.PeakRight)};
    }
}

/// Both sides are the same, and two syllables in the block are followed by pauses at a fiftieth of their
/// level.
void ScriptSource::MakeSpeech(Block& block) {
    constexpr size_t syllable = BlockFrames / 2;
    constexpr size_t spoken = syllable * 13 / 20;
    constexpr int64_t pause = 50;
    SimRandom random(815);
    for (size_t at = 0; at < block.Samples.size(); ++at) {
        const int64_t peak = at % syllable < spoken ? block.PeakLeft : block.PeakLeft / pause;
        const auto sample = static_cast<int16_t>(random.Between(-peak, peak));
        block.Samples[at] = {sample, sample};
    }
}

/// Notes with a whole number of periods in the block, so that it repeats without a click.
void ScriptSource::MakeNotes(Block& block, size_t notes) {
    constexpr std::array<double, 3> periodsLeft = {327, 412, 490};
    constexpr std::array<double, 3> periodsRight = {245, 327, 388};
    std::vector<std::array<double, 2>> sums(block.Samples.size());
    std::array<double, 2> highest = {0, 0};
    for (size_t at = 0; at < sums.size(); ++at) {
        const double angle =
            2 * std::numbers::pi * static_cast<double>(at) / static_cast<double>(sums.size());
        for (size_t note = 0; note < notes; ++note) {
            sums[at][0] += std::sin(angle * periodsLeft[note]);
            sums[at][1] += std::sin(angle * periodsRight[note]);
        }
        for (size_t side = 0; side < 2; ++side)
            highest[side] = std::max(highest[side], std::abs(sums[at][side]));
    }
    for (size_t at = 0; at < sums.size(); ++at) {
        block.Samples[at] = {static_cast<int16_t>(std::lround(sums[at][0] / highest[0] * block.PeakLeft)),
                             static_cast<int16_t>(std::lround(sums[at][1] / highest[1] * block.PeakRight))};
    }
}

}  // namespace Corvetape
