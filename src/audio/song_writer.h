#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "audio/closed_song.h"
#include "audio/cut_state.h"
#include "audio/pause_settings.h"
#include "audio/recording_flags.h"
#include "audio/signal_state.h"
#include "audio/wav_file.h"
#include "audio/wave_buffer.h"
#include "core/controls/event.h"
#include "core/controls/message_texts.h"
#include "core/deferred_messages.h"
#include "core/media_state.h"
#include "core/settings/settings.h"
#include "platform/clock.h"
#include "platform/files.h"

namespace Corvetape {

/// Error numbers of the song file, which are the keys of their messages too.
inline constexpr int32_t ErrorCreatingSong = Message::SongNotCreated.Number();
inline constexpr int32_t ErrorClosingSong = Message::SongNotFinished.Number();
inline constexpr int32_t ErrorWritingSong = Message::SongNotWritten.Number();

/// Most audio bytes of a song in one file, 6.5 hours at 44.1 kHz. What the format can hold beyond that is
/// room for the longest ring, whose audio is written ahead after the song's.
inline constexpr uint64_t MostSongBytes = MostWavDataBytes - (uint64_t{128} << 20U);

/// The state that a song file follows and changes. All of it outlives the writer.
struct SongParts {
    Files& Disk;
    RecordingFlags& Flags;
    SignalState& Signal;
    const PauseSettings& Pause;
    MediaState& Media;
    DeferredMessages& Messages;
    const CutState& Cut;  ///< the song that it has ended is kept and named as it says
};

/// Where song files go, how they are named and what they hold. The references outlive the writer.
struct SongPlace {
    const WaveFormat& Format;  ///< of the open input; a song whose format changes goes on in a next file
    const Corvetape::Settings& Settings;  ///< StoreCoverImage, MusicFileTemplate
    const WorkingFolders& Folders;        ///< SongTempFolder

    /// A file is named after the present date and time, by Settings::MusicFileTemplate[0], with `NamePrefix`
    /// before it. Where a file of that name exists, "-2", "-3", ... is added, so that no recorded song is
    /// written over.
    const Clock& Time;
    std::string NamePrefix = {};

    /// Most audio bytes of one file; 0 or more than MostSongBytes: MostSongBytes.
    uint64_t MaxSongBytes = 0;
};

/// A file that could not be made, written or finished.
struct SongFailure {
    int32_t Number = 0;  ///< one of the three above
    std::string Path;
    int32_t Code = 0;    ///< the system's
    std::string Reason;  ///< the number and the system's own words

    bool operator==(const SongFailure&) const = default;
};

/// What a song writer reports. Those that are not set are left out. They may not call the writer.
struct SongEvents {
    std::function<void(const std::string& path)> SongBegun;  ///< a file was made, maybe ahead of its song
    std::function<void(const ClosedSong&)> SongClosed;       ///< at every close, kept or not
    std::function<void(const std::string& basePath)> StoreCover;  ///< path of the song without ".wav"
    std::function<void()> QuitWanted;  ///< a song was discarded that the end of the program waited for
    std::function<void(const SongFailure&)> Failed;  ///< recording has stopped; once a file and kind
};

/// How a song came to its end.
enum class SongEnd {
    Boundary,  ///< at a pause or a cut: the next one begins where this one ended
    Stopped,   ///< by the user or the end of the program
};

/// The temporary WAV file of the song that plays. Everything that plays is written; the flags decide at the
/// close whether the file stays.
///
/// A failure ends the recording (RecordingEnabled) and is kept for the end of the program, the first one
/// only. What was written stays readable. The file stays open then, and the song goes on in it if recording
/// is enabled again.
class SongWriter {
 public:
    SongWriter(SongParts parts, SongPlace place, SongEvents events);
    ~SongWriter();
    SongWriter(const SongWriter&) = delete;
    SongWriter& operator=(const SongWriter&) = delete;

    /// A song was closed and kept, and this is its record: the delay of its transfer begins. May not call the
    /// writer.
    Event<const STATIONANDSONGDATA&> SongKept;

    /// The way of a buffer with the end of song by silence: begins a file if none is open, writes, and closes
    /// after the song's last buffer (`end`). False if a file could not be made: the program is to end.
    bool WriteBufferToSong(const SignalBuffer& buffer, bool end);

    /// What became of a buffer.
    enum class Written {
        Yes,
        Failed,  ///< recording has ended; the buffer is not in the file
        NoFile,  ///< a next file could not be made: the program is to end
    };

    /// Writes a buffer into the open file. A file that is full goes over to a next one before it.
    Written WriteBuffer(const SignalBuffer& buffer);

    /// Writes a buffer that waits in the ring after the song's audio, where it outlives this process, and
    /// returns its mark. WriteBuffer knows it by that and lets it count without writing it again. Without an
    /// open file the next song's is made, which does not count as open until CreateSongFile takes it over.
    ///
    /// Nothing if the file is full or the disk refuses it. That is reported by WriteBuffer if it still holds
    /// then.
    std::optional<AheadMark> WriteAhead(const SignalBuffer& buffer);

    /// True for the mark that the next buffer is written after.
    bool IsEndOfAhead(const AheadMark& mark) const;

    /// Forgets what was written ahead and does not count.
    void DropAhead();

    /// Begins a file, or only names it if recording is not enabled. False if it could not be made.
    bool CreateSongFile();

    /// Ends the song: trims the pause off with the end of song by silence, hands it on or deletes it by the
    /// flags, and lets the flags go on to the next song. Always true.
    bool CloseSongFile(SongEnd how = SongEnd::Stopped);

    /// Breaks the song off: recording ends and its file is deleted.
    void AbortSong();

    /// The song that plays ends without its pause, as the signal has ended: the close takes nothing off.
    void EndWithoutPause() { PauseNeverCame = true; }

    /// Takes the silence that is heard now off the end of the song, as far as its file holds it.
    void TakeSilenceOff();

    /// Number of the first frame of the silence that is heard now, among all that any input has given.
    uint64_t SilenceBegin() const;

    /// The next song begins at a boundary though no file was open to be closed there.
    void NoteBoundary() { NextBeginsAtBoundary = true; }

    bool SongFileOpen() const { return SongFile != nullptr && !MadeAhead; }

    /// There is a file, of the song that is open or one that was made ahead of its song.
    bool HasSongFile() const { return SongFile != nullptr; }

    /// Audio bytes of the song's present file.
    int64_t SongBytes() const { return BytesOfSong; }

    /// Name of the present or last file without folder and extension.
    const std::string& SongBaseName() const { return BaseName; }

    /// Empty if no file was begun since the last close.
    const std::string& SongFilePath() const { return FilePath; }

    /// Bytes of the last good write, or the system's number of the last failure.
    int32_t LastMmioResult() const { return LastResult; }

    /// The number of the first failure since the program started, and its file; 0 if there was none.
    int32_t SongFileError() const { return FirstError; }
    const std::string& SongFileErrorPath() const { return FirstErrorPath; }

 private:
    /// From a place in the file on, its audio is what came without a gap from a position on.
    struct Stretch {
        uint64_t FileFrame = 0;
        uint64_t Position = 0;
    };

    /// What is noted of the song's present file.
    struct Notes {
        uint64_t BeginFrame = 0;
        uint64_t EndFrame = 0;
        std::optional<uint64_t> FramesAfterGap;  ///< since some were last missing; nothing if none were
        uint64_t LostFrames = 0;
        uint32_t DeviceChanges = 0;
        uint64_t ClippedSamples = 0;
        bool Begun = false;  ///< a buffer has come, whether or not it could be written
        bool BegunAtBoundary = false;
        bool Unbroken = true;
        bool Failing = false;  ///< the last buffer could not be written
        std::vector<Stretch> Stretches;
    };

    /// How a file was named: by the stamp, from the second of that stamp on with its number.
    struct NumberedName {
        std::string Stamp;
        int32_t Number = 0;
    };

    void NameFile();
    void TakeNextNumber();
    FileResult MakeFile();
    void DeleteFileMadeAhead();
    bool OpenFile();
    void BeginSong();
    FileResult WriteOrCount(const SignalBuffer& buffer);
    bool GoOnInNextFile();
    bool MustGoOn(size_t bytes) const;
    bool IsLargestBy(const FileResult& result) const;
    void Begin(const SignalBuffer& buffer);
    void Note(const SignalBuffer& buffer);
    void TakePauseOff();
    void TakeOff(int64_t bytes);
    void TakeEndedMedia();
    bool IsWanted() const;
    bool EndsProgram() const;
    uint64_t FramesBefore(uint64_t position) const;
    SongFate Fate() const;
    void Keep(int32_t part);
    void WriteInfoChunk(std::span<const std::string_view> ids, std::span<const std::string> texts);
    void DeleteSongFiles();
    ClosedSong Describe(SongFate fate) const;
    void ForgetFile();
    void RaiseError(int32_t number, const FileResult& failure);

    SongParts Parts;
    SongPlace Place;
    SongEvents Events;

    std::unique_ptr<WavFile> SongFile;
    bool MadeAhead = false;     ///< nobody has begun the song of this file yet
    uint64_t AheadStretch = 0;  ///< of the audio that was written ahead last
    int64_t BytesOfSong = 0;
    std::string BaseName;
    std::string FilePath;
    NumberedName Name;  ///< of the present or last file
    NumberedName Kept;  ///< of the last one that was kept
    bool PauseNeverCame = false;
    Notes Present;
    int32_t FullFiles = 0;  ///< files of this song that were closed because they were full
    int64_t BytesInFullFiles = 0;
    bool NextBeginsAtBoundary = false;

    int32_t LastResult = 0;
    int32_t FirstError = 0;
    std::string FirstErrorPath;
    SongFailure LastReported;
};

}  // namespace Corvetape
