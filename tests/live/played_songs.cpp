#include "live/played_songs.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <numbers>

#include "audio/wav_file.h"
#include "live/live_recording.h"
#include "live/tone_edges.h"
#include "platform/linux/files/linux_files.h"

namespace Corvetape {

namespace {

constexpr double FramesPerSecond = 44100;

/// A soft tone that rises by so much says which moment of a song this is.
constexpr double StepSeconds = 0.05;
constexpr int FirstPeriods = 3000;
constexpr int PeriodsPerStep = 50;
constexpr int Steps = static_cast<int>(PositionSeconds / StepSeconds);

/// Windows at an edge that are asked for their moment.
constexpr size_t AskedWindows = 10;

constexpr double FullScale = 32767;

int ToneOf(const PlayedSong& song) {
    return (song.Number - 1) % SongTones + 1;
}

size_t FramesOf(double seconds) {
    return static_cast<size_t>(std::llround(seconds * FramesPerSecond));
}

double Sine(int periodsPerSecond, size_t frame) {
    return std::sin(2 * std::numbers::pi * periodsPerSecond * static_cast<double>(frame) / FramesPerSecond);
}

/// Noise of its own for each song and side, -1 to 1; that of every second song is dull.
class Noise {
 public:
    Noise(int number, int side)
        : state(static_cast<uint32_t>(number * 2 + side) * 2'654'435'761U + 1), dull(number % 2 == 0) {}

    double Next() {
        state ^= state << 13U;
        state ^= state >> 17U;
        state ^= state << 5U;
        const double white = static_cast<double>(state) / 2'147'483'648.0 - 1;
        last = dull ? 0.9 * last + 0.3 * white : white;
        return last;
    }

 private:
    uint32_t state;
    bool dull;
    double last = 0;
};

int16_t Sample(double value) {
    return static_cast<int16_t>(std::lround(std::clamp(value, -1.0, 1.0) * FullScale));
}

void AddSong(std::vector<Frame>& sound, const PlayedSong& song) {
    Noise left(song.Number, 0);
    Noise right(song.Number, 1);
    for (size_t frame = 0; frame < FramesOf(song.Seconds); ++frame) {
        const int step = static_cast<int>(static_cast<double>(frame) / FramesPerSecond / StepSeconds);
        const double both = 0.3 * Sine(TonePeriods * ToneOf(song), frame) +
                            0.02 * Sine(FirstPeriods + PeriodsPerStep * step, frame);
        sound.push_back({Sample(both + 0.05 * left.Next()), Sample(both + 0.05 * right.Next())});
    }
}

/// A voice in the middle of the image, with the pauses between its words, in which the room is heard.
void AddTalk(std::vector<Frame>& sound, double seconds) {
    constexpr size_t word = 10'584;  // 0.24 s
    constexpr size_t pause = 5'733;  // 0.13 s
    Noise room(1, 0);
    for (size_t frame = 0; frame < FramesOf(seconds); ++frame) {
        double value = 0.012 * room.Next();
        if (frame % (word + pause) < word) {
            value += 0.2 * (Sine(TonePeriods * TalkTone, frame) + 0.5 * Sine(1750, frame));
        }
        sound.push_back({Sample(value), Sample(value)});
    }
}

/// The moment of a song that a window has, as its step.
int StepOf(const Frame* window) {
    int loudest = 0;
    double most = 0;
    for (int step = 0; step < Steps; ++step) {
        const double power = PowerOf(window, FirstPeriods + PeriodsPerStep * step);
        if (power <= most) continue;
        most = power;
        loudest = step;
    }
    return loudest;
}

/// Where in its song a window of a recording begins, by it and others of the same tone up to `last`.
double PositionOf(const std::vector<Frame>& frames, const std::vector<int>& tones, size_t first, size_t last,
                  size_t window) {
    std::vector<double> positions;
    for (size_t each = first; each <= last; ++each) {
        if (tones[each] != tones[window]) continue;
        const double middle = (StepOf(&frames[each * WindowFrames]) + 0.5) * StepSeconds - WindowSeconds / 2;
        positions.push_back(middle -
                            WindowSeconds * (static_cast<double>(each) - static_cast<double>(window)));
    }
    const auto half = positions.begin() + static_cast<std::ptrdiff_t>(positions.size() / 2);
    std::nth_element(positions.begin(), half, positions.end());
    return *half;
}

}  // namespace

std::vector<Frame> SoundOf(std::span<const PlayedSong> songs) {
    std::vector<Frame> sound;
    for (const PlayedSong& song : songs) {
        AddSong(sound, song);
        AddTalk(sound, song.TalkAfter);
        sound.resize(sound.size() + FramesOf(song.SilenceAfter));
    }
    return sound;
}

PlayedEdges EdgesOf(const std::string& waveFile, const PlayedSong& song) {
    const std::vector<Frame> frames = FramesOfWave(waveFile);
    const std::vector<int> tones = TonesOf(frames);
    const int tone = ToneOf(song);
    const auto found = std::ranges::find(tones, tone);
    if (found == tones.end()) return {song.Seconds, song.Seconds, 0, 0};
    const auto first = static_cast<size_t>(found - tones.begin());
    const auto last =
        static_cast<size_t>(std::find(tones.rbegin(), tones.rend(), tone).base() - tones.begin()) - 1;
    const ToneEdges heard = EdgesOf(tones, tone);
    const double begin = PositionOf(frames, tones, first, std::min(first + AskedWindows, last), first);
    const double end =
        WindowSeconds + PositionOf(frames, tones, last - std::min(AskedWindows, last - first), last, last);
    return {std::max(begin, 0.0), std::max(song.Seconds - end, 0.0), heard.ForeignAtBegin,
            heard.ForeignAtEnd};
}

std::string NameOf(const PlayedSong& song) {
    const std::string text = std::to_string(song.Number);
    return "Band " + text + " - Song " + text;
}

void WriteWave(const std::string& path, const std::vector<Frame>& sound) {
    std::filesystem::remove(path);
    LinuxFiles disk;
    const auto file = WavFile::Create(disk, path, MakeWaveFormat(44100));
    EXPECT_TRUE(file && file->Write(sound) && file->FinishData() && file->FinishRiff() && file->Close());
}

std::string TaggedFileOf(const PlayedSong& song, const std::string& folder) {
    const std::string text = std::to_string(song.Number);
    const std::string waveFile = folder + "/song" + text + ".wav";
    const std::string file = folder + "/song" + text + ".flac";
    WriteWave(waveFile, SoundOf({&song, 1}));
    RunToEnd({"ffmpeg", "-y", "-loglevel", "error", "-i", waveFile, "-metadata", "artist=Band " + text,
              "-metadata", "title=Song " + text, file},
             {}, folder + "/output");
    return file;
}

std::vector<IcySong> StreamOf(std::span<const PlayedSong> songs, const std::string& folder) {
    constexpr double bytesPerSecond = 16'000;
    const std::string waveFile = folder + "/stream.wav";
    const std::string stream = folder + "/stream.mp3";
    WriteWave(waveFile, SoundOf(songs));
    RunToEnd({"ffmpeg", "-y", "-loglevel", "error", "-i", waveFile, "-b:a", "128k", "-write_xing", "0",
              "-id3v2_version", "0", stream},
             {}, folder + "/output");
    const std::string bytes = Content(stream);

    std::vector<IcySong> parts = {{}};
    size_t sent = 0;
    const auto sendUpTo = [&](size_t end) {
        parts.back().Sound = bytes.substr(sent, end - sent);
        parts.back().Seconds = static_cast<double>(end - sent) / bytesPerSecond;
        sent = end;
    };
    double begin = 0;
    for (const PlayedSong& song : songs) {
        const auto titled = static_cast<size_t>((begin + song.TitleLate) * bytesPerSecond);
        begin += song.Seconds + song.TalkAfter + song.SilenceAfter;
        sendUpTo(std::min(titled, bytes.size()));
        parts.push_back({NameOf(song), {}, 0});
    }
    sendUpTo(bytes.size());
    return parts;
}

}  // namespace Corvetape
