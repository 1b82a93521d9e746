#include "support/measured_radio.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <span>
#include <string_view>

#include "audio/analyze.h"

namespace Corvetape::Bench {

namespace {

constexpr size_t FramesPerSlot = JoinedRate / 20;

struct FileHead {
    uint64_t FeatureBytes = sizeof(SlotFeatures);
    uint64_t Slots = 0;
    uint64_t Joins = 0;
};

template <typename Items>
void Write(std::ofstream& file, const Items& items) {
    file.write(reinterpret_cast<const char*>(items.data()),
               static_cast<std::streamsize>(items.size() * sizeof(items[0])));
}

template <typename Items>
void Read(std::ifstream& file, Items& items, uint64_t count) {
    items.resize(count);
    file.read(reinterpret_cast<char*>(items.data()), static_cast<std::streamsize>(count * sizeof(items[0])));
}

/// The frames of a WAV file of 16-bit stereo.
std::vector<Frame> FramesOfWav(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    const size_t data = bytes.find("data");
    if (data == std::string::npos) return {};
    const std::string_view samples = std::string_view(bytes).substr(data + 8);
    std::vector<Frame> frames(samples.size() / sizeof(Frame));
    std::memcpy(frames.data(), samples.data(), frames.size() * sizeof(Frame));
    return frames;
}

}  // namespace

MeasuredRadio MeasureRadio(const MadeRadio& radio, StationSound station, const WorkFolder& work) {
    MeasuredRadio measured;
    measured.Joins = radio.Joins;
    const std::string path = work / "measured.wav";
    if (!WriteRadio(radio, station, work, path)) return measured;
    const std::vector<Frame> frames = FramesOfWav(path);
    FeatureMeter meter(JoinedRate);
    for (size_t at = 0; at + FramesPerSlot <= frames.size(); at += FramesPerSlot) {
        const std::span<const Frame> slot = std::span(frames).subspan(at, FramesPerSlot);
        const Loudness loudness = MeasurePeaks(slot);
        measured.Slots.push_back(meter.Measure(slot));
        measured.Levels.push_back(std::max(loudness.MaxLeft, loudness.MaxRight));
    }
    return measured;
}

bool Keep(const MeasuredRadio& radio, const std::string& path) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    const FileHead head{sizeof(SlotFeatures), radio.Slots.size(), radio.Joins.size()};
    Write(file, std::span(&head, 1));
    for (const RadioJoin& join : radio.Joins) Write(file, std::array{join.OldEnd, join.NewBegin});
    Write(file, radio.Slots);
    Write(file, radio.Levels);
    return bool{file.flush()};
}

MeasuredRadio ReadMeasured(const std::string& path, const JoinKind& kind) {
    MeasuredRadio radio;
    std::ifstream file(path, std::ios::binary);
    FileHead head;
    file.read(reinterpret_cast<char*>(&head), sizeof(head));
    if (!file || head.FeatureBytes != sizeof(SlotFeatures)) return radio;
    std::vector<double> times;
    Read(file, times, 2 * head.Joins);
    for (size_t join = 0; join < head.Joins; ++join) {
        radio.Joins.push_back({times[2 * join], times[2 * join + 1], kind});
    }
    Read(file, radio.Slots, head.Slots);
    Read(file, radio.Levels, head.Slots);
    if (!file) radio.Slots.clear();
    return radio;
}

}  // namespace Corvetape::Bench
