#include "platform/linux/sound/sound_file_source.h"

#include <gtest/gtest.h>
#include <sndfile.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <numbers>

#include "platform/linux/processes/linux_processes.h"
#include "support/temp_folder.h"
#include "support/test_sound.h"

namespace Corvetape {
namespace {

constexpr uint32_t Unknown = 0xFFFFFFFF;

std::string Little(uint64_t value, size_t bytes) {
    std::string text;
    for (size_t i = 0; i < bytes; ++i) text += static_cast<char>(value >> (8 * i));
    return text;
}

std::string Chunk(const std::string& name, const std::string& body, std::optional<uint32_t> size = {}) {
    const auto stated = size.value_or(static_cast<uint32_t>(body.size()));
    return name + Little(stated, 4) + body + (body.size() % 2 != 0 && !size ? std::string(1, '\0') : "");
}

std::string Format(uint32_t coding, uint32_t channels, uint32_t rate, uint32_t bits) {
    const uint32_t align = channels * ((bits + 7) / 8);
    return Chunk("fmt ", Little(coding, 2) + Little(channels, 2) + Little(rate, 4) + Little(rate * align, 4) +
                             Little(align, 2) + Little(bits, 2));
}

std::string Riff(const std::string& chunks, const std::string& form = "RIFF") {
    return form + Little(chunks.size() + 4, 4) + "WAVE" + chunks;
}

std::string Raw(std::span<const Frame> frames) {
    return {reinterpret_cast<const char*>(frames.data()), frames.size_bytes()};
}

constexpr double ToneStep = 2 * std::numbers::pi * 440 / 44100;

/// A second of 440 Hz.
std::vector<Frame> Tone() {
    std::vector<Frame> tone(44100);
    for (size_t i = 0; i < tone.size(); ++i) {
        const auto value = static_cast<int16_t>(12000 * std::sin(ToneStep * static_cast<double>(i)));
        tone[i] = {value, value};
    }
    return tone;
}

/// How much of the tone is in the left channel, whatever its phase.
double LevelOfTone(std::span<const Frame> frames) {
    double cosine = 0;
    double sine = 0;
    constexpr size_t Count = 22'050;  // whole waves
    for (size_t i = 0; i < Count; ++i) {
        cosine += frames[i + 10'000].Left * std::cos(ToneStep * static_cast<double>(i));
        sine += frames[i + 10'000].Left * std::sin(ToneStep * static_cast<double>(i));
    }
    return std::hypot(cosine, sine) * 2 / Count;
}

class SoundFileSourceTest : public testing::Test {
 protected:
    void Put(const std::string& content) const {
        std::filesystem::remove(
            path);  // a file that is emptied and filled again would go to the disk each time
        std::ofstream(path, std::ios::binary) << content;
    }

    std::vector<Frame> ReadAll(uint32_t rate = 44100, size_t block = 2205) {
        SoundFileSource::Result opened = SoundFileSource::Open(path, rate);
        EXPECT_NE(opened.Source, nullptr) << opened.Error;
        if (!opened.Source) return {};
        EXPECT_EQ(opened.Problem, SoundFileProblem::None);
        EXPECT_EQ(opened.Source->FramesPerSecond(), rate);
        total = opened.Source->TotalFrames();
        media = opened.Source->NowPlaying();
        std::vector<Frame> frames;
        std::vector<Frame> part(block);
        for (size_t got = block; got == block;) {
            got = opened.Source->Read(part);
            frames.insert(frames.end(), part.begin(), part.begin() + static_cast<std::ptrdiff_t>(got));
        }
        readError = opened.Source->ReadError();
        return frames;
    }

    /// The whole line that the user gets, less the path.
    std::string Why(SoundFileProblem problem) {
        const SoundFileSource::Result opened = SoundFileSource::Open(path, 44100);
        EXPECT_EQ(opened.Source, nullptr);
        EXPECT_EQ(opened.Problem, problem);
        EXPECT_TRUE(opened.Error.starts_with(path + ": ")) << opened.Error;
        return opened.Error.substr(std::min(path.size() + 2, opened.Error.size()));
    }

    /// Writes through libsndfile.
    void Encode(int format, std::span<const Frame> frames, int rate = 44100) const {
        SF_INFO info{};
        info.samplerate = rate;
        info.channels = 2;
        info.format = format;
        SNDFILE* const file = sf_open(path.c_str(), SFM_WRITE, &info);
        ASSERT_NE(file, nullptr) << sf_strerror(nullptr);
        sf_set_string(file, SF_STR_TITLE, "Sch\xc3\xb6n");
        sf_set_string(file, SF_STR_ARTIST, "Artist");
        sf_set_string(file, SF_STR_ALBUM, "Album");
        // In pieces, because the Vorbis encoder keeps a whole piece on the stack.
        for (size_t at = 0; at < frames.size(); at += 4096) {
            const auto count = static_cast<sf_count_t>(std::min<size_t>(4096, frames.size() - at));
            ASSERT_EQ(sf_writef_short(file, &frames[at].Left, count), count);
        }
        sf_close(file);
    }

    const std::vector<Frame> noise = Noise(20'000, 1);
    TempFolder folder;
    const std::string path = folder / "song.wav";
    uint64_t total = 0;
    SourceMedia media;
    std::string readError;
};

TEST_F(SoundFileSourceTest, AWavAtTheWantedRateComesBitForBit) {
    WriteWave(path, noise, 44100);
    EXPECT_EQ(Comparison(noise, ReadAll()), "equal");
    EXPECT_EQ(total, noise.size());
    EXPECT_EQ(readError, "");
    for (const size_t block : {1, 7, 4096, 100'000}) {
        EXPECT_EQ(Comparison(noise, ReadAll(44100, block)), "equal") << block;
    }
    EXPECT_EQ(SoundFileSource::NativeRate(path), 44100u);
}

TEST_F(SoundFileSourceTest, ChunksOfOddLengthAndUnknownNamesArePassedOver) {
    Put(Riff(Chunk("JUNK", "abc") + Format(1, 2, 44100, 16) + Chunk("fact", "12345") +
             Chunk("data", Raw(noise)) + Chunk("tail", "x")));
    EXPECT_EQ(Comparison(noise, ReadAll()), "equal");
}

TEST_F(SoundFileSourceTest, TheExtensibleFormatIsUnderstood) {
    const std::string format = Little(0xFFFE, 2) + Little(2, 2) + Little(44100, 4) + Little(176400, 4) +
                               Little(4, 2) + Little(16, 2) + Little(22, 2) + Little(16, 2) + Little(3, 4) +
                               Little(1, 2) + std::string("\0\0\0\0\x10\0\x80\0\0\xaa\0\x38\x9b\x71", 14);
    Put(Riff(Chunk("fmt ", format) + Chunk("data", Raw(noise))));
    EXPECT_EQ(Comparison(noise, ReadAll()), "equal");
}

TEST_F(SoundFileSourceTest, AFileWhoseLengthWasNeverFilledInPlaysToItsEnd) {
    for (const uint32_t stated : {0u, Unknown}) {
        Put("RIFF" + Little(stated, 4) + "WAVE" + Format(1, 2, 44100, 16) +
            Chunk("data", Raw(noise), stated));
        EXPECT_EQ(Comparison(noise, ReadAll()), "equal") << stated;
    }
    std::vector<Frame> quiet(1000);
    Put(Riff(Format(1, 2, 44100, 16) + Chunk("data", Raw(quiet), 0)));
    EXPECT_EQ(ReadAll().size(), 1000u) << "silence is no chunk";
}

TEST_F(SoundFileSourceTest, ACutOffFilePlaysAsFarAsItGoes) {
    const std::string whole = Riff(Format(1, 2, 44100, 16) + Chunk("data", Raw(noise)));
    for (const size_t missing : {1, 2, 3, 4, 5, 40'001}) {
        Put(whole.substr(0, whole.size() - missing));
        const size_t frames = noise.size() - (missing + 3) / 4;
        EXPECT_EQ(Comparison(std::span(noise).first(frames), ReadAll()), "equal") << missing;
        EXPECT_EQ(total, frames);
    }
}

TEST_F(SoundFileSourceTest, Rf64StatesItsLengthInAChunkOfItsOwn) {
    const std::string sizes =
        Little(0, 8) + Little(Raw(noise).size(), 8) + Little(noise.size(), 8) + Little(0, 4);
    const std::string chunks =
        Format(1, 2, 44100, 16) + Chunk("data", Raw(noise), Unknown) + Chunk("tail", "junk");
    Put(Riff(Chunk("ds64", sizes) + chunks, "RF64"));
    EXPECT_EQ(Comparison(noise, ReadAll()), "equal");
    Put(Riff(Chunk("ds64", Little(0, 8) + Little(UINT64_MAX, 8) + std::string(12, '\0')) + chunks, "RF64"));
    EXPECT_EQ(ReadAll().size(), noise.size() + 3) << "a length past the end means up to the end";
}

TEST_F(SoundFileSourceTest, EveryWayToWriteASampleGivesTheSame16Bits) {
    struct Coding {
        uint32_t Number;
        uint32_t Bits;
    };
    for (const auto [coding, bits] : {Coding{1, 24}, Coding{1, 32}, Coding{3, 32}, Coding{3, 64}}) {
        std::string data;
        for (const Frame& frame : noise) {
            for (const int16_t sample : {frame.Left, frame.Right}) {
                const double value = sample / 32768.0;
                if (coding == 1) {
                    data +=
                        Little(static_cast<uint64_t>(static_cast<uint32_t>(sample) << (bits - 16)), bits / 8);
                } else if (bits == 32) {
                    const auto number = static_cast<float>(value);
                    data.append(reinterpret_cast<const char*>(&number), 4);
                } else {
                    data.append(reinterpret_cast<const char*>(&value), 8);
                }
            }
        }
        Put(Riff(Format(coding, 2, 44100, bits) + Chunk("data", data)));
        EXPECT_EQ(Comparison(noise, ReadAll()), "equal") << coding << " " << bits;
    }
}

TEST_F(SoundFileSourceTest, EightBitsAreUnsignedAndFillTheUpperByte) {
    Put(Riff(Format(1, 2, 44100, 8) + Chunk("data", std::string("\x80\x00\xff\x81", 4))));
    const std::vector<Frame> wanted = {{0, -32768}, {127 * 256, 256}};
    EXPECT_EQ(Comparison(wanted, ReadAll()), "equal");
}

TEST_F(SoundFileSourceTest, OneChannelIsDoubled) {
    std::vector<Frame> wanted;
    std::string data;
    for (const Frame& frame : noise) {
        wanted.push_back({frame.Left, frame.Left});
        data += Little(static_cast<uint16_t>(frame.Left), 2);
    }
    Put(Riff(Format(1, 1, 44100, 16) + Chunk("data", data)));
    EXPECT_EQ(Comparison(wanted, ReadAll()), "equal");
}

TEST_F(SoundFileSourceTest, FloatsBeyondFullScaleAreClippedAndNonsenseIsSilence) {
    std::string data;
    for (const float value : {1.5F, -1.5F, std::nanf(""), 0.99999F, INFINITY, -INFINITY}) {
        data.append(reinterpret_cast<const char*>(&value), 4);
    }
    Put(Riff(Format(3, 2, 44100, 32) + Chunk("data", data)));
    const std::vector<Frame> wanted = {{32767, -32768}, {0, 32767}, {32767, -32768}};
    EXPECT_EQ(Comparison(wanted, ReadAll()), "equal");
}

TEST_F(SoundFileSourceTest, FlacComesBitForBitWithItsTags) {
    Encode(SF_FORMAT_FLAC | SF_FORMAT_PCM_16, noise);
    EXPECT_EQ(Comparison(noise, ReadAll()), "equal");
    EXPECT_EQ(total, noise.size());
    EXPECT_EQ(media, (SourceMedia{"", "Artist", "Sch\xc3\xb6n", "Album", ""}));
}

TEST_F(SoundFileSourceTest, OggSoundsLikeWhatItWasMadeOfAndHasItsTags) {
    Encode(SF_FORMAT_OGG | SF_FORMAT_VORBIS, Tone());
    const std::vector<Frame> out = ReadAll();
    EXPECT_EQ(out.size(), 44100u);
    EXPECT_NEAR(LevelOfTone(out), 12000, 200);
    EXPECT_EQ(media, (SourceMedia{"", "Artist", "Sch\xc3\xb6n", "Album", ""}));
}

TEST_F(SoundFileSourceTest, Mp3SoundsLikeWhatItWasMadeOfAndHasItsTags) {
    const std::string plain = folder / "plain.wav";
    WriteWave(plain, Tone(), 44100);
    LinuxProcesses processes;
    processes.StartHidden({"lame",
                           {ProgramCall{{"lame", "--quiet", "--tt", "Song", "--ta", "Artist", "--tl", "Album",
                                         "plain.wav", "song.wav"},
                                        ""}},
                           folder.Path()});
    ASSERT_TRUE(processes.WaitForAll(std::chrono::seconds(20)));
    ASSERT_EQ(processes.TakeFinished().at(0).ExitCode, 0) << "is lame installed?";
    const std::vector<Frame> out = ReadAll();
    EXPECT_NEAR(static_cast<double>(out.size()), 44100, 3000);
    EXPECT_NEAR(LevelOfTone(out), 12000, 1000);
    EXPECT_EQ(media, (SourceMedia{"", "Artist", "Song", "Album", ""}));
    // Nothing of the decoder's own messages about a cut off file reaches the user's terminal.
    std::filesystem::resize_file(path, 5000);
    testing::internal::CaptureStderr();
    ReadAll();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(SoundFileSourceTest, AnotherRateIsConverted) {
    for (const uint32_t rate : {22050u, 48000u, 96000u}) {
        std::vector<Frame> sine(rate);
        for (size_t i = 0; i < sine.size(); ++i) {
            const double value = 30000 * std::sin(2 * std::numbers::pi * 1000 * static_cast<double>(i) /
                                                  static_cast<double>(rate));
            sine[i] = {static_cast<int16_t>(std::lrint(value)), 0};
        }
        WriteWave(path, sine, rate);
        const std::vector<Frame> out = ReadAll();
        ASSERT_EQ(out.size(), 44100u);
        EXPECT_EQ(total, 44100u);
        EXPECT_EQ(SoundFileSource::NativeRate(path), rate);
        int worst = 0;
        for (size_t i = 500; i < 43'000; ++i) {
            const double value =
                30000 * std::sin(2 * std::numbers::pi * 1000 * static_cast<double>(i) / 44100);
            worst = std::max(worst, std::abs(out[i].Left - static_cast<int>(std::lrint(value))));
            EXPECT_EQ(out[i].Right, 0);
        }
        EXPECT_LE(worst, 1) << rate;
    }
}

TEST_F(SoundFileSourceTest, TagsOfAWavAreRead) {
    const std::string list = "INFO" + Chunk("IART", std::string("B\xc3\xa4nd\0", 6)) + Chunk("INAM", "Odd") +
                             Chunk("ICMT", "comment") + Chunk("IPRD", std::string("Sm\xf6rg\x80\0\0", 8));
    const SourceMedia wanted{"", "B\xc3\xa4nd", "Odd", "Sm\xc3\xb6rg\xe2\x82\xac", ""};
    Put(Riff(Format(1, 2, 44100, 16) + Chunk("data", Raw(noise)) + Chunk("LIST", list)));
    EXPECT_EQ(Comparison(noise, ReadAll()), "equal");
    EXPECT_EQ(media, wanted);
    Put(Riff(Chunk("LIST", list) + Format(1, 2, 44100, 16) + Chunk("data", Raw(noise))));
    ReadAll();
    EXPECT_EQ(media, wanted);
    Put(Riff(Chunk("LIST",
                   "INFOIART\xff\xff\xff\x7f"
                   "abc") +
             Format(1, 2, 44100, 16) + Chunk("data", Raw(noise))));
    ReadAll();
    EXPECT_EQ(media.Artist, "abc") << "a length past the list's end";
}

TEST_F(SoundFileSourceTest, AMissingFileIsReported) {
    EXPECT_EQ(Why(SoundFileProblem::NotFound), "no such file");
    EXPECT_EQ(SoundFileSource::NativeRate(path), 0u);
}

TEST_F(SoundFileSourceTest, WhatIsNoFileIsReported) {
    std::filesystem::create_directory(path);
    EXPECT_EQ(Why(SoundFileProblem::CannotBeRead), "is a folder");
    std::filesystem::remove(path);
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_EQ(Why(SoundFileProblem::CannotBeRead), "is not a file on a disk");
}

TEST_F(SoundFileSourceTest, WhatIsNoSoundIsReported) {
    for (const std::string& content : {std::string(), std::string("hello world\n"), std::string(50'000, '\0'),
                                       std::string("RIFF\0\0\0\0AVI LIST", 16)}) {
        Put(content);
        const SoundFileSource::Result opened = SoundFileSource::Open(path, 44100);
        EXPECT_EQ(opened.Source, nullptr);
        EXPECT_FALSE(opened.Error.empty());
    }
    Put("hello world\n");
    EXPECT_EQ(Why(SoundFileProblem::NotASoundFile),
              "not a sound file that can be read, such as WAV, FLAC, Ogg or MP3");
    Put("");
    EXPECT_EQ(Why(SoundFileProblem::NotASoundFile),
              "not a sound file that can be read, such as WAV, FLAC, Ogg or MP3");
}

TEST_F(SoundFileSourceTest, ABrokenHeaderIsReported) {
    const std::string data = Chunk("data", Raw(noise));
    const std::vector<std::string> broken = {
        "RIFF" + Little(4, 4) + "WAVE",
        Riff(Format(1, 2, 44100, 16)),
        Riff(data),
        Riff(Format(1, 0, 44100, 16) + data),
        Riff(Format(1, 2, 0, 16) + data),
        Riff(Format(1, 2, 44100, 0) + data),
        Riff(Format(1, 2, 44100, 40) + data),
        Riff(Format(3, 2, 44100, 16) + data),
        Riff(Format(1, 2, 4'000'000, 16) + data),
        Riff(Chunk("fmt ", "short") + data),
        Riff(std::string(100'000, '\0')),
        "fLaC" + std::string("\0\0\0\x22", 4) + std::string(60, 'a'),
        "OggS" + std::string(70, 'a'),
    };
    for (size_t i = 0; i < broken.size(); ++i) {
        SCOPED_TRACE(i);
        Put(broken[i]);
        EXPECT_EQ(Why(SoundFileProblem::BrokenHeader), "its header is broken");
    }
}

TEST_F(SoundFileSourceTest, AFileWithoutFramesIsReported) {
    Put(Riff(Format(1, 2, 44100, 16) + Chunk("data", "")));
    EXPECT_EQ(Why(SoundFileProblem::NoFrames), "there is no sound in it");
    Put(Riff(Format(1, 2, 44100, 16) + Chunk("data", "abc")));
    EXPECT_EQ(Why(SoundFileProblem::NoFrames), "there is no sound in it");
    Put(Riff(Format(1, 2, 44100, 16) + Chunk("data", "") + Chunk("LIST", "INFO")));
    EXPECT_EQ(Why(SoundFileProblem::NoFrames), "there is no sound in it") << "chunks are no samples";
}

TEST_F(SoundFileSourceTest, MoreThanTwoChannelsAreReported) {
    Put(Riff(Format(1, 6, 44100, 16) + Chunk("data", std::string(1200, 'x'))));
    EXPECT_EQ(Why(SoundFileProblem::TooManyChannels), "has 6 channels; only mono and stereo can be used");
}

TEST_F(SoundFileSourceTest, AFileThatShrinksWhileItIsReadSaysSo) {
    WriteWave(path, noise, 44100);
    const SoundFileSource::Result opened = SoundFileSource::Open(path, 44100);
    std::vector<Frame> part(10'000);
    EXPECT_EQ(opened.Source->Read(part), 10'000u);
    EXPECT_EQ(opened.Source->ReadError(), "");
    ASSERT_EQ(truncate(path.c_str(), 44 + 4 * 12'000), 0);
    EXPECT_EQ(opened.Source->Read(part), 2'000u);
    EXPECT_EQ(opened.Source->ReadError(), "the file could not be read to its end");
}

TEST_F(SoundFileSourceTest, NoHeaderMakesItReadOutside) {
    const std::string whole = Riff(Chunk("LIST", "INFOIART\4\0\0\0abc") + Format(1, 2, 44100, 16) +
                                   Chunk("data", Raw(noise).substr(0, 400)));
    uint64_t state = 1;
    for (int round = 0; round < 3000; ++round) {
        std::string content = whole;
        for (int change = 0; change < 4; ++change) {
            state = state * 6364136223846793005ULL + 1442695040888963407ULL;
            content[static_cast<size_t>(state >> 33) % 100] = static_cast<char>(state >> 24);
        }
        Put(content.substr(0, 20 + (state >> 40) % content.size()));
        const SoundFileSource::Result opened = SoundFileSource::Open(path, 44100);
        if (!opened.Source) continue;
        std::vector<Frame> part(500);
        EXPECT_LE(opened.Source->Read(part), 500u);
    }
}

}  // namespace
}  // namespace Corvetape
