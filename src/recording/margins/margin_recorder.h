#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "audio/closed_song.h"
#include "platform/wave_in.h"
#include "recording/margins/margin_store.h"

namespace Corvetape {

/// Collects what is heard before and after each song, and has it kept for those whose cuts are unsure.
///
/// What came before a song waits in the memory, since nobody knows yet how the song will end: nothing is
/// written for a song that is cut well.
class MarginRecorder {
 public:
    /// What is kept of each neighbour at most.
    static constexpr int64_t MostSeconds = 15;

    /// Outlives it. Without `keeps` nothing is kept.
    MarginRecorder(MarginStore& store, bool keeps) : Store(store), Keeps(keeps) {}

    /// A song begins, after so much of its neighbour.
    void SongBegins(std::vector<Frame> before) { Before = std::move(before); }

    /// A song was closed. A part of one that was too large for a file is left alone.
    void SongClosed(const ClosedSong& song);

    /// The song that was closed last is kept, and nothing of what came after it was added yet.
    bool WantsAfter() const { return !Base.empty(); }

    /// What was heard after that song; once.
    void SongFollowedBy(const std::vector<Frame>& after);

 private:
    MarginStore& Store;
    bool Keeps = false;
    std::vector<Frame> Before;
    std::string Base;  ///< of the files of the song that was closed last
    uint32_t FramesPerSecond = 44100;
};

}  // namespace Corvetape
