#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "core/media_state.h"

namespace Corvetape {

/// What became of a song's temporary file when it was closed.
enum class SongFate {
    Kept,      ///< handed on
    Short,     ///< wanted, but not longer than the least length
    Unwanted,  ///< nobody asked for it
    Aborted,   ///< broken off
};

/// How sure it is that a song begins or ends where it was cut.
enum class Certainty {
    None,    ///< nobody has asked
    Unsure,  ///< it may well be wrong
    Likely,
    Sure,
};

/// What a cut was found from, so that a correction by hand can teach its source.
struct CutOrigin {
    std::string Source;  ///< the name that its cuts are learned by
    int32_t Edge = 0;    ///< slots of 50 ms from the change of title to the cut
    bool Exact = false;  ///< the change is where a player says that its track began

    bool operator==(const CutOrigin&) const = default;
};

/// How far a song that was ended by everything that is known can be trusted.
struct SongTrust {
    Certainty Begin = Certainty::None;
    Certainty End = Certainty::None;
    std::optional<CutOrigin> BeginCut;  ///< nothing where no change of title has led to it
    std::optional<CutOrigin> EndCut;
    bool Mixed = false;            ///< two players were heard at once
    bool Sought = false;           ///< somebody has jumped within it
    bool AgainstEvidence = false;  ///< its end was taken from the titles alone
    int32_t Dropouts = 0;          ///< short holes in its sound
    int32_t PausesCut = 0;         ///< pauses of the player that were left out

    /// One of its cuts may well be wrong.
    bool IsUnsure() const { return Begin == Certainty::Unsure || End == Certainty::Unsure; }

    /// Nothing of what is known speaks against its being whole.
    bool IsClean() const { return !IsUnsure() && !Mixed && !Sought && Dropouts == 0; }

    bool operator==(const SongTrust&) const = default;
};

/// A song as its file was closed, for those who report on it.
struct ClosedSong {
    SongFate Fate = SongFate::Unwanted;
    uint64_t BeginFrame = 0;  ///< first frame of the file among all that any input has given
    uint64_t EndFrame = 0;    ///< one after the last frame that the file keeps
    uint64_t Frames = 0;      ///< frames in the file
    uint32_t FramesPerSecond = 44100;
    uint64_t LostFrames = 0;  ///< lost by the input, refused by the disk, or passed by unrecorded meanwhile
    uint32_t DeviceChanges = 0;  ///< times that the input went and came back meanwhile
    uint64_t ClippedSamples = 0;
    bool Whole = false;  ///< begun at a boundary, ended at one, and nothing of it was lost
    SongTrust Trust;
    bool Continues = false;    ///< closed because the file was full; the song goes on in a next file
    std::string TempPath;      ///< where the temporary file was
    STATIONANDSONGDATA Media;  ///< as handed over

    /// Wanted, but too short: worth a line. A pause of which all was taken off is not.
    bool IsTooShort() const { return Fate == SongFate::Short && Frames > 0; }
};

}  // namespace Corvetape
