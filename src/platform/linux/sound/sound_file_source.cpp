#include "platform/linux/sound/sound_file_source.h"

#include <fcntl.h>
#include <sndfile.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <vector>

#include "platform/linux/files/descriptor.h"
#include "platform/linux/sound/resampler.h"
#include "platform/linux/sound/wave_file.h"

static_assert(std::endian::native == std::endian::little, "samples are taken as they lie in WAV files");

namespace Corvetape {
namespace {

constexpr uint32_t LowestRate = 1000;
constexpr uint32_t HighestRate = 1'000'000;

/// The file was long enough when it was opened.
constexpr const char* CutOffText = "the file could not be read to its end";

/// Frames as numbers from -1 to 1, one or two channels.
class Decoder {
 public:
    virtual ~Decoder() = default;
    virtual uint32_t Channels() const = 0;

    /// Fills whole frames of interleaved samples; returns how many frames. Fewer only at the end.
    virtual size_t Read(std::span<float> samples) = 0;
    virtual std::string Error() const { return {}; }
};

float Signed(const std::byte* bytes, size_t count) {
    uint32_t value = 0;
    for (size_t i = 0; i < count; ++i) value = value >> 8 | std::to_integer<uint32_t>(bytes[i]) << 24;
    return static_cast<float>(static_cast<double>(static_cast<int32_t>(value)) / 2147483648.0);
}

/// One sample of a WAV file: 8 bits are unsigned, all others signed.
float Sample(const std::byte* bytes, const WaveFileInfo& info) {
    if (info.IsFloat && info.BytesPerSample == 4) {
        float value = 0;
        std::memcpy(&value, bytes, sizeof value);
        return value;
    }
    if (info.IsFloat) {
        double value = 0;
        std::memcpy(&value, bytes, sizeof value);
        return static_cast<float>(value);
    }
    if (info.BytesPerSample == 1) {
        return static_cast<float>(std::to_integer<int>(bytes[0]) - 128) / 128.0F;
    }
    return Signed(bytes, info.BytesPerSample);
}

class WaveDecoder : public Decoder {
 public:
    WaveDecoder(Descriptor openFile, WaveFileInfo fileInfo)
        : File(std::move(openFile)), Header(std::move(fileInfo)) {}

    uint32_t Channels() const override { return Header.Channels; }

    size_t Read(std::span<float> samples) override {
        const size_t frameBytes = size_t{Header.BytesPerSample} * Header.Channels;
        const uint64_t left = Header.DataBytes - Done;
        const auto wanted =
            static_cast<size_t>(std::min<uint64_t>(samples.size() / Header.Channels * frameBytes, left));
        Bytes.resize(wanted);
        const size_t got = ReadAt(File.Number(), Header.DataOffset + Done, Bytes) / frameBytes;
        Done += got * frameBytes;
        CutOff = CutOff || got * frameBytes < wanted;
        for (size_t i = 0; i < got * Header.Channels; ++i) {
            samples[i] = Sample(Bytes.data() + i * Header.BytesPerSample, Header);
        }
        return got;
    }

    std::string Error() const override { return CutOff ? CutOffText : ""; }

 private:
    Descriptor File;
    WaveFileInfo Header;
    uint64_t Done = 0;
    bool CutOff = false;
    std::vector<std::byte> Bytes;
};

/// Keeps the standard error output quiet: the MPEG decoder of libsndfile writes its notes there, past
/// every setting.
class QuietDecoder {
 public:
    explicit QuietDecoder(bool needed) {
        if (!needed) return;
        Kept = Descriptor(fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3));
        const Descriptor nowhere(open("/dev/null", O_WRONLY | O_CLOEXEC));
        if (Kept && nowhere) dup2(nowhere.Number(), STDERR_FILENO);
    }
    ~QuietDecoder() {
        if (Kept) dup2(Kept.Number(), STDERR_FILENO);
    }
    QuietDecoder(const QuietDecoder&) = delete;
    QuietDecoder& operator=(const QuietDecoder&) = delete;

 private:
    Descriptor Kept;
};

class LibraryDecoder : public Decoder {
 public:
    /// Nothing inside if libsndfile cannot open the file.
    static std::unique_ptr<LibraryDecoder> Open(const std::string& path) {
        auto decoder = std::unique_ptr<LibraryDecoder>(new LibraryDecoder);
        const QuietDecoder quiet(true);
        decoder->File.reset(sf_open(path.c_str(), SFM_READ, &decoder->Info));
        if (!decoder->File) return nullptr;
        decoder->IsMpeg = (decoder->Info.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_MPEG;
        return decoder;
    }

    uint32_t Channels() const override { return static_cast<uint32_t>(Info.channels); }

    size_t Read(std::span<float> samples) override {
        const QuietDecoder quiet(IsMpeg);
        const size_t wanted = samples.size() / Channels();
        size_t got = 0;
        while (got < wanted) {
            const sf_count_t some = sf_readf_float(File.get(), samples.data() + got * Channels(),
                                                   static_cast<sf_count_t>(wanted - got));
            // The next call forgets what went wrong in this one.
            if (FirstError == SF_ERR_NO_ERROR) FirstError = sf_error(File.get());
            if (some <= 0) break;
            got += static_cast<size_t>(some);
        }
        return got;
    }

    std::string Error() const override {
        return FirstError == SF_ERR_NO_ERROR ? "" : sf_error_number(FirstError);
    }

    SourceMedia Tags() const {
        SourceMedia tags;
        tags.Artist = Tag(SF_STR_ARTIST);
        tags.Song = Tag(SF_STR_TITLE);
        tags.Album = Tag(SF_STR_ALBUM);
        return tags;
    }

    SF_INFO Info{};

 private:
    struct Closer {
        void operator()(SNDFILE* open) const { sf_close(open); }
    };

    LibraryDecoder() = default;

    std::string Tag(int number) const {
        const char* const text = sf_get_string(File.get(), number);
        return text != nullptr ? TagText(text) : "";
    }

    std::unique_ptr<SNDFILE, Closer> File;
    bool IsMpeg = false;
    int FirstError = SF_ERR_NO_ERROR;
};

/// True if the last page of an Ogg file is cut off, or does not say that it is the last one.
bool OggEndIsMissing(int descriptor, uint64_t fileSize) {
    constexpr uint64_t mostOfAPage =
        65'307;  // its header with the longest table, and 255 pieces of 255 bytes
    constexpr size_t headerBytes = 27;
    constexpr size_t flagsAt = 5;
    constexpr std::byte lastPage{4};
    const uint64_t begin = fileSize - std::min(fileSize, mostOfAPage);
    std::vector<std::byte> bytes(static_cast<size_t>(fileSize - begin));
    bytes.resize(ReadAt(descriptor, begin, bytes));
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const size_t page = text.rfind("OggS");
    if (page == std::string_view::npos || bytes.size() - page < headerBytes) return true;
    const auto pieces = std::to_integer<size_t>(bytes[page + headerBytes - 1]);
    size_t end = page + headerBytes + pieces;
    if (end > bytes.size()) return true;
    for (size_t i = page + headerBytes; i < page + headerBytes + pieces; ++i) {
        end += std::to_integer<size_t>(bytes[i]);
    }
    return end > bytes.size() || (bytes[page + flagsAt] & lastPage) == std::byte{0};
}

int16_t Sample16(float value) {
    const float scaled = value * 32768.0F;
    if (scaled >= 32767.0F) return 32767;
    if (scaled <= -32768.0F) return -32768;
    return std::isnan(scaled) ? int16_t{0} : static_cast<int16_t>(std::lrintf(scaled));
}

/// What a file turned out to be when it was opened.
struct OpenedFile {
    SoundFileProblem Problem = SoundFileProblem::None;
    std::string Why;
    std::unique_ptr<Decoder> Samples;
    Descriptor Direct;  // instead of Samples: 16-bit stereo, to be read as it is there
    WaveFileInfo Wave;
    uint32_t Rate = 0;
    uint32_t Channels = 0;
    uint32_t BitsPerSample = 0;  // 0 where the format has none
    uint64_t Frames = 0;
    bool EndMissing = false;
    SourceMedia Tags;
};

OpenedFile Failed(SoundFileProblem problem, const std::string& why) {
    OpenedFile failed;
    failed.Problem = problem;
    failed.Why = why;
    return failed;
}

/// True if the file begins as one of the known formats does, so that a failure is one of its header.
bool LooksLikeSound(int descriptor) {
    std::array<std::byte, 12> head{};
    ReadAt(descriptor, 0, head);
    const std::string_view begin(reinterpret_cast<const char*>(head.data()), 4);
    constexpr std::array<std::string_view, 10> known = {"RIFF", "RF64", "RIFX", "fLaC", "OggS",
                                                        "FORM", ".snd", "caff", "riff", "wvpk"};
    return std::ranges::find(known, begin) != known.end() || begin.starts_with("ID3");
}

uint32_t BitsOf(int libraryFormat) {
    switch (libraryFormat & SF_FORMAT_SUBMASK) {
        case SF_FORMAT_PCM_S8:
        case SF_FORMAT_PCM_U8:
            return 8;
        case SF_FORMAT_PCM_16:
            return 16;
        case SF_FORMAT_PCM_24:
            return 24;
        case SF_FORMAT_PCM_32:
        case SF_FORMAT_FLOAT:
            return 32;
        case SF_FORMAT_DOUBLE:
            return 64;
        default:
            return 0;
    }
}

OpenedFile OpenByLibrary(const std::string& path, int descriptor, uint64_t fileSize) {
    std::unique_ptr<LibraryDecoder> decoder = LibraryDecoder::Open(path);
    if (!decoder) {
        return LooksLikeSound(descriptor)
                   ? Failed(SoundFileProblem::BrokenHeader, "its header is broken")
                   : Failed(SoundFileProblem::NotASoundFile,
                            "not a sound file that can be read, such as WAV, FLAC, Ogg or MP3");
    }
    OpenedFile opened;
    opened.Rate = static_cast<uint32_t>(std::max(decoder->Info.samplerate, 0));
    opened.Channels = decoder->Channels();
    opened.BitsPerSample = BitsOf(decoder->Info.format);
    opened.Frames = static_cast<uint64_t>(std::max<sf_count_t>(decoder->Info.frames, 0));
    opened.EndMissing =
        (decoder->Info.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_OGG && OggEndIsMissing(descriptor, fileSize);
    opened.Tags = decoder->Tags();
    opened.Samples = std::move(decoder);
    return opened;
}

OpenedFile OpenByPath(const std::string& path) {
    Descriptor file(Uninterrupted([&] { return open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC); }));
    struct stat status {};
    if (!file && (errno == ENOENT || errno == ENOTDIR)) {
        return Failed(SoundFileProblem::NotFound, "no such file");
    }
    if (!file || fstat(file.Number(), &status) != 0) {
        return Failed(SoundFileProblem::CannotBeRead, std::string("cannot be opened: ") + strerror(errno));
    }
    if (S_ISDIR(status.st_mode)) return Failed(SoundFileProblem::CannotBeRead, "is a folder");
    if (!S_ISREG(status.st_mode)) return Failed(SoundFileProblem::CannotBeRead, "is not a file on a disk");
    const WaveFileReading wave = ReadWaveFileInfo(file.Number(), static_cast<uint64_t>(status.st_size));
    if (wave.State == WaveFileState::Broken) {
        return Failed(SoundFileProblem::BrokenHeader, "its header is broken");
    }
    if (wave.State != WaveFileState::Usable) {
        return OpenByLibrary(path, file.Number(), static_cast<uint64_t>(status.st_size));
    }
    OpenedFile opened;
    opened.Wave = wave.Info;
    opened.Rate = wave.Info.FramesPerSecond;
    opened.Channels = wave.Info.Channels;
    opened.BitsPerSample = wave.Info.BytesPerSample * 8U;
    opened.Frames = wave.Info.DataBytes / (uint64_t{wave.Info.BytesPerSample} * wave.Info.Channels);
    opened.Tags = wave.Info.Tags;
    opened.Direct = std::move(file);
    return opened;
}

OpenedFile OpenChecked(const std::string& path) {
    OpenedFile opened = OpenByPath(path);
    if (opened.Problem != SoundFileProblem::None) return opened;
    if (opened.Channels > 2) {
        return Failed(SoundFileProblem::TooManyChannels, "has " + std::to_string(opened.Channels) +
                                                             " channels; only mono and stereo can be used");
    }
    if (opened.Channels == 0 || opened.Rate < LowestRate || opened.Rate > HighestRate) {
        return Failed(SoundFileProblem::BrokenHeader, "its header is broken");
    }
    if (opened.Frames == 0) return Failed(SoundFileProblem::NoFrames, "there is no sound in it");
    return opened;
}

}  // namespace

/// Where the frames come from, and their way into 16 bits.
class SoundFileSource::Feed {
 public:
    Feed(OpenedFile openedFile, uint32_t rate) : Opened(std::move(openedFile)) {
        const WaveFileInfo& wave = Opened.Wave;
        const bool asItIs = Opened.Direct && wave.Channels == 2 && wave.BytesPerSample == 2 &&
                            !wave.IsFloat && Opened.Rate == rate;
        if (asItIs) {
            posix_fadvise(Opened.Direct.Number(), 0, 0, POSIX_FADV_SEQUENTIAL);
            return;
        }
        if (Opened.Direct) Opened.Samples = std::make_unique<WaveDecoder>(std::move(Opened.Direct), wave);
        if (Opened.Rate == rate) return;
        Converter = std::make_unique<Resampler>(
            Opened.Rate, rate, [this](std::span<float> interleaved) { return ReadStereo(interleaved); });
    }

    size_t Read(std::span<Frame> frames) {
        if (!Opened.Samples) return ReadAsItIs(frames);
        size_t done = 0;
        while (done < frames.size()) {
            const std::span<float> part =
                std::span(Block).first(std::min(Block.size(), (frames.size() - done) * 2));
            const size_t got = Converter ? Converter->Read(part) : ReadStereo(part);
            for (size_t i = 0; i < got; ++i) {
                frames[done + i] = {Sample16(part[2 * i]), Sample16(part[2 * i + 1])};
            }
            done += got;
            if (got < part.size() / 2) break;
        }
        return done;
    }

    std::string Error() const {
        if (Opened.Samples) return Opened.Samples->Error();
        return CutOff ? CutOffText : "";
    }

 private:
    size_t ReadAsItIs(std::span<Frame> frames) {
        const uint64_t left = Opened.Wave.DataBytes - DirectBytes;
        const std::span<std::byte> bytes = std::as_writable_bytes(frames);
        const auto wanted = static_cast<size_t>(std::min<uint64_t>(bytes.size(), left));
        const size_t got =
            ReadAt(Opened.Direct.Number(), Opened.Wave.DataOffset + DirectBytes, bytes.first(wanted)) /
            sizeof(Frame);
        DirectBytes += got * sizeof(Frame);
        CutOff = CutOff || got * sizeof(Frame) < wanted;
        return got;
    }

    size_t ReadStereo(std::span<float> interleaved) {
        if (Opened.Channels == 2) return Opened.Samples->Read(interleaved);
        const size_t got = Opened.Samples->Read(interleaved.first(interleaved.size() / 2));
        for (size_t i = got; i-- > 0;) interleaved[2 * i] = interleaved[2 * i + 1] = interleaved[i];
        return got;
    }

    OpenedFile Opened;
    std::unique_ptr<Resampler> Converter;
    uint64_t DirectBytes = 0;
    bool CutOff = false;
    std::array<float, 8192> Block{};
};

SoundFileSource::Result SoundFileSource::Open(const std::string& path, uint32_t framesPerSecond) {
    OpenedFile opened = OpenChecked(path);
    if (opened.Problem != SoundFileProblem::None) {
        return {nullptr, opened.Problem, path + ": " + opened.Why};
    }
    std::unique_ptr<SoundFileSource> source(new SoundFileSource);
    source->Rate = framesPerSecond;
    source->FileFormat = {opened.Rate, opened.Channels, opened.BitsPerSample};
    source->Media = opened.Tags;
    source->LengthKnown = opened.Frames < static_cast<uint64_t>(SF_COUNT_MAX);
    source->EndMissing = opened.EndMissing;
    const uint64_t begun = opened.Frames % opened.Rate * framesPerSecond;  // of the last second
    source->FrameCount =
        opened.Frames / opened.Rate * framesPerSecond + (begun + opened.Rate - 1) / opened.Rate;
    source->Frames = std::make_unique<Feed>(std::move(opened), framesPerSecond);
    return {std::move(source), SoundFileProblem::None, ""};
}

uint32_t SoundFileSource::NativeRate(const std::string& path) {
    const OpenedFile opened = OpenChecked(path);
    return opened.Problem == SoundFileProblem::None ? opened.Rate : 0;
}

SoundFileSource::~SoundFileSource() = default;

size_t SoundFileSource::Read(std::span<Frame> frames) {
    const size_t got = Frames->Read(frames);
    GivenFrames += got;
    return got;
}

std::optional<SoundFileDamage> SoundFileSource::Damage() const {
    SoundFileDamage damage{0, Frames->Error()};
    // Decoders that cut padding off are off by less.
    const uint64_t least = Rate / 10;
    if (LengthKnown && GivenFrames + least < FrameCount) {
        damage.MissingSeconds = static_cast<double>(FrameCount - GivenFrames) / Rate;
    }
    if (EndMissing && damage.Why.empty()) damage.Why = "the end of the file is missing";
    if (damage.MissingSeconds == 0 && damage.Why.empty()) return std::nullopt;
    return damage;
}

std::string SoundFileSource::ReadError() const {
    return Frames->Error();
}

}  // namespace Corvetape
