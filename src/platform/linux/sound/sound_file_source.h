#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/sound_source.h"

namespace Corvetape {

/// Why a sound file cannot be used.
enum class SoundFileProblem {
    None,
    NotFound,
    CannotBeRead,     ///< a folder, a device, no permission
    NotASoundFile,    ///< none of the known formats
    BrokenHeader,     ///< a known format whose description of itself makes no sense
    NoFrames,         ///< nothing to hear in it
    TooManyChannels,  ///< more than two
};

/// What could not be read of a sound file that was opened.
struct SoundFileDamage {
    double MissingSeconds = 0;  ///< 0: not known, or below a tenth
    std::string Why;            ///< in a few words; may be empty
};

/// How the sound is stored in a file.
struct SoundFileFormat {
    uint32_t FramesPerSecond = 0;
    uint32_t Channels = 0;
    uint32_t BitsPerSample = 0;  ///< 0 where samples have no width of their own, as in Ogg and MP3

    bool operator==(const SoundFileFormat&) const = default;
};

/// A sound file as 16-bit stereo at a wanted rate: WAV (also RF64, unfinished and cut off ones), FLAC,
/// Ogg, MP3 and what else libsndfile reads. One channel is doubled. Another rate is converted with an error
/// below -90 dB; the same file always gives the same frames.
///
/// A 16-bit stereo WAV at the wanted rate is read straight into the caller's memory.
class SoundFileSource : public SoundSource {
 public:
    struct Result {
        std::unique_ptr<SoundFileSource> Source;  ///< empty on failure
        SoundFileProblem Problem = SoundFileProblem::None;
        std::string Error;  ///< one line for the user, with the path
    };

    /// `framesPerSecond` is the rate that Read shall give.
    static Result Open(const std::string& path, uint32_t framesPerSecond);

    /// Of the file itself; what Read gives may be converted.
    const SoundFileFormat& Format() const { return FileFormat; }

    /// Rate of the file itself, 0 if it is not known: lets the caller choose the better rate to open at.
    static uint32_t NativeRate(const std::string& path);

    ~SoundFileSource() override;

    uint32_t FramesPerSecond() const override { return Rate; }
    size_t Read(std::span<Frame> frames) override;

    /// The file's own tags.
    SourceMedia NowPlaying() const override { return Media; }

    /// About how many frames Read will give in all; compressed files may be off by a little.
    uint64_t TotalFrames() const { return FrameCount; }

    /// Why Read ended before the end of the file; empty if it did not.
    std::string ReadError() const;

    /// What is wrong with the file, as far as it has been read; nothing if all of it came. Asked when Read
    /// has come to the end.
    std::optional<SoundFileDamage> Damage() const;

 private:
    class Feed;
    SoundFileSource() = default;

    uint32_t Rate = 0;
    SoundFileFormat FileFormat;
    uint64_t FrameCount = 0;
    uint64_t GivenFrames = 0;
    bool LengthKnown = true;
    bool EndMissing = false;
    SourceMedia Media;
    std::unique_ptr<Feed> Frames;
};

}  // namespace Corvetape
