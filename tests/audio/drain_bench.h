#pragma once

#include <gtest/gtest.h>

#include "audio/drain.h"
#include "audio/song_bench.h"

namespace Corvetape::Test {

inline constexpr int32_t Loud = 9000;

/// A ring of which every buffer can be recognised in the file that it was written to.
class Drains : public testing::Test, protected SongBench {
 protected:
    Drains() : Drain({Ring, Cut, Pause, Flags, Writer}) {
        Pause.EndOfSongDetection = EndOfSong::MediaData;
        Pause.EndOfSongThreshold = {3000, 3000};
        Flags.RecordCurrentSong = true;
        Ring.Open(400, BufferFrames);
    }

    /// So many more buffers come in, all of one level.
    void Arrive(int32_t count, int32_t level = Loud) {
        for (int32_t i = 0; i < count; ++i) {
            Ring.SetLevel(level);
            Ring.Put(NumberedBuffer(Next++));
        }
    }

    /// A change is noticed now.
    void RaiseCut() {
        Cut.CutPending = true;
        Cut.CutIndex = Ring.AudioWriteIndex;
    }

    void SetLevel(int32_t number, int32_t level) {
        Ring.AudioLevels[static_cast<size_t>(Ring.Wrapped(number))] = level;
    }

    /// What the present song's file holds so far, by buffers.
    int64_t Written() const { return Writer.SongBytes() / BufferBytes; }

    AudioRing Ring;
    AudioDrain Drain;
};

}  // namespace Corvetape::Test
