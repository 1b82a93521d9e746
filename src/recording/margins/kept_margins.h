#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "audio/closed_song.h"
#include "core/media_state.h"
#include "core/settings/settings.h"
#include "platform/files.h"

namespace Corvetape {

/// What is kept of a song that may have been cut in the wrong place, so that it can be cut again: the song as
/// it was recorded, some seconds of what was heard before and after it, and this note of it.
///
/// The files are in the folder "margins" of the temporary songs and are called `Base` and ".song.wav",
/// ".before.wav", ".after.wav", ".jpg" for the cover, and ".note". Of all but the song and the note each may
/// be missing. The note is made first and goes last, so that nothing is left that nobody knows of.
struct KeptMargins {
    std::string Base;      ///< name of its files; the note does not hold it
    std::string Run;       ///< name of the run that recorded it
    int64_t KeptAt = 0;    ///< seconds of the local calendar since 1970
    std::string TempSong;  ///< the temporary song, without folder and extension
    STATIONANDSONGDATA Media;
    Certainty Begin = Certainty::None;
    Certainty End = Certainty::None;
    std::optional<CutOrigin> BeginCut;
    std::optional<CutOrigin> EndCut;

    // Since it was handed on.
    std::string MusicFile;    ///< the music file, or the temporary song if that stays; empty before
    bool MusicKnown = false;  ///< the file of that name is surely this song's
    std::string Job;          ///< of its encoder
    int32_t Encoder = -1;     ///< row of the encoders; -1 for a song that stays as it was recorded
    int32_t Quality = 0;
    bool Normalize = false;

    // Since it was cut again: frames by which its cuts lie later than they were recorded.
    int64_t BeginMoved = 0;
    int64_t EndMoved = 0;
};

/// Frames of the three pieces that follow one another.
struct MarginLengths {
    uint64_t Before = 0;
    uint64_t Song = 0;
    uint64_t After = 0;
    uint32_t FramesPerSecond = 44100;
};

/// The folder of all margins.
std::string MarginFolder(const WorkingFolders& folders);

/// Path of one of the files, such as ".song.wav".
std::string MarginFile(const WorkingFolders& folders, const std::string& base, const std::string& ending);

/// The note as text: one section of a settings file.
std::string MarginNoteText(const KeptMargins& margins);

/// Reads a note; nothing if there is none, or none of a song.
std::optional<KeptMargins> ReadMarginNote(Files& disk, const WorkingFolders& folders,
                                          const std::string& base);

/// How much there is of it; nothing if the song itself is missing or damaged.
std::optional<MarginLengths> MeasureMargins(Files& disk, const WorkingFolders& folders,
                                            const std::string& base);

}  // namespace Corvetape
