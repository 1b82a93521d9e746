#include "support/made_hour.h"

#include <cstddef>
#include <cstdio>
#include <span>
#include <vector>

#include "audio/wav_file.h"
#include "platform/linux/files/linux_files.h"
#include "platform/virtual/sim_random.h"
#include "sim/script_source.h"

namespace Corvetape::Bench {

namespace {

constexpr uint64_t SongsInAnHour = 18;
constexpr double Hour = 3600;
constexpr size_t FramesPerBlock = 65536;

void AddRests(ScriptSong& song, SimRandom& random) {
    for (double at = 20; at < song.Seconds - 20; at += random.Between(20.0, 60.0)) {
        song.Rests.push_back({at, random.Between(0.1, 0.4), -70});
    }
}

}  // namespace

std::shared_ptr<const RadioTimeline> MakeHour(const HourOptions& options) {
    SimRandom random(options.Seed);
    RadioScript script;
    double left = Hour;
    for (uint64_t number = 0; number < SongsInAnHour; ++number) {
        const double pause = random.Between(1.0, 2.5);
        ScriptSong song;
        song.Seconds = left / static_cast<double>(SongsInAnHour - number) - pause;
        song.Seed = options.Seed * 100 + number;
        song.Sound = static_cast<SongSound>(number % 3);
        song.Media = {"Made-up FM", "Artist " + std::to_string(number), "Title " + std::to_string(number), "",
                      ""};
        if (options.Rests) AddRests(song, random);
        left -= song.Seconds + pause;
        script.Song(std::move(song));
        script.Pause(pause);
    }
    return std::make_shared<const RadioTimeline>(script, HourRate);
}

bool WriteHour(const std::shared_ptr<const RadioTimeline>& hour, const std::string& path) {
    LinuxFiles disk;
    const auto file = WavFile::Create(disk, path, MakeWaveFormat(HourRate));
    if (!file) return false;
    ScriptSource source(hour);
    std::vector<Frame> block(FramesPerBlock);
    for (size_t got = block.size(); got == block.size();) {
        got = source.Read(block);
        if (!file->Write(std::span(block).first(got))) return false;
    }
    return file->FinishData() && file->FinishRiff() && file->Close();
}

}  // namespace Corvetape::Bench
