#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/files.h"
#include "platform/wave_in.h"

namespace Corvetape {

/// Bytes before the audio of a song file: RIFF header, format, head of the data.
inline constexpr uint32_t WavHeaderBytes = 44;

/// Longest text of one tag; longer ones are cut between two characters.
inline constexpr size_t MostTagBytes = 65'536;

/// Most audio bytes of one file: its sizes are 32 bits wide, and the tags must find room after the audio.
inline constexpr uint64_t MostWavDataBytes = 0xFFFF'FFFFU - WavHeaderBytes - 8 * MostTagBytes;

/// A tag of the LIST chunk: identifier of four letters and text. The text is written as it is, in UTF-8, the
/// code page of the system, in its exact length without a terminating zero.
struct InfoTag {
    std::string_view Id;
    std::string_view Text;
};

/// A WAV file of 16-bit stereo audio while it is written: "fmt ", "data", and "LIST" if there are tags.
///
/// Every Write reaches the file at once, and the sizes in the header are brought up to date at least every
/// five seconds of audio and after a failed Write, so that a file that nobody could finish plays up to
/// there. The disk is asked for it each time, without waiting, so that this holds after a power cut too.
/// After a failure each operation may be called again; it goes on where the good audio ends.
///
/// Audio of which it is not certain yet that it belongs to the file can be written ahead, after the end of
/// the audio that counts. A file that nobody could finish has that as well.
class WavFile {
 public:
    /// Makes a new file with its header. Fails also if something stands at the path.
    static Opened<WavFile> Create(Files& disk, const std::string& path, const WaveFormat& format);

    /// Goes on with a file that holds nothing but its header.
    WavFile(std::unique_ptr<File> output, const WaveFormat& format);

    /// Brings the header up to date if the file was not closed, as far as that goes.
    ~WavFile();
    WavFile(const WavFile&) = delete;
    WavFile& operator=(const WavFile&) = delete;

    /// Appends audio. On failure nothing counts as appended.
    FileResult Write(std::span<const Frame> frames);

    /// Writes audio after that which counts and that which was written ahead before. On failure it is as if
    /// it had not been called.
    FileResult WriteAhead(std::span<const Frame> frames);

    /// Lets audio that was written ahead count, from its beginning on, at most all of it.
    void Count(uint64_t bytes);

    /// Cuts off what was written ahead and does not count. A file that cannot be cut keeps it after the end
    /// that its header gives.
    void DropAhead();

    /// Audio that counts.
    uint64_t DataBytes() const { return AudioBytes; }

    /// Audio that was written ahead and does not count yet.
    uint64_t AheadBytes() const { return BytesAhead; }
    const WaveFormat& Format() const { return AudioFormat; }

    /// Takes audio off the end, at most all of it, and drops what was written ahead. The file is not cut:
    /// what is written next goes over it, or it stays after the end that the header gives.
    FileResult TakeOff(uint64_t bytes);

    /// Ends the audio: what was written ahead is dropped, and its size goes into the header. If that fails,
    /// the file can still be finished.
    FileResult FinishData();

    /// Appends the tags. If that fails, they do not count as part of the file.
    FileResult WriteInfo(std::span<const InfoTag> tags);

    /// Puts the size of the whole into the header.
    FileResult FinishRiff();

    /// Fails if the system reports late that something was not written.
    FileResult Close();

 private:
    FileResult Append(std::span<const std::byte> bytes);
    FileResult MoveTo(uint64_t position);
    uint64_t BytesWritten() const { return AudioBytes + BytesAhead; }
    void UpdateHeaderSometimes();
    FileResult UpdateHeader();

    std::unique_ptr<File> Output;  ///< none once closed
    WaveFormat AudioFormat;
    uint64_t AudioBytes = 0;     ///< that count
    uint64_t BytesAhead = 0;     ///< written after them
    bool AheadBroken = false;    ///< a part of a buffer may stand after that
    uint64_t BytesInHeader = 0;  ///< audio that the header gives
    uint64_t TagBytes = 0;       ///< of a complete LIST chunk
    bool AtEnd = true;           ///< the file's position is where the next audio goes
};

/// What a WAV file says of itself.
struct WavInfo {
    WaveFormat Format;
    uint64_t RiffBytes = 0;                                 ///< length of the file as its header gives it
    uint64_t DataStart = 0;                                 ///< where its audio begins
    uint64_t DataBytes = 0;                                 ///< of its audio, as its header gives it
    uint64_t FileBytes = 0;                                 ///< length of the file as it is
    std::vector<std::pair<std::string, std::string>> Tags;  ///< identifier and text, in their order
};

/// Reads the headers and tags of a WAV file; nothing if it is none or has neither format nor data.
std::optional<WavInfo> ReadWavInfo(Files& disk, const std::string& path);

/// Lets the header of a song file that a crash has left cover all audio that the file holds. A file that
/// was finished with tags stays as it is. False if it is no song file or cannot be changed.
bool RepairWavHeader(Files& disk, const std::string& path);

}  // namespace Corvetape
