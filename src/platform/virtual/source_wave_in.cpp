#include "platform/virtual/source_wave_in.h"

#include <algorithm>
#include <utility>

namespace Corvetape {

namespace {

uint32_t FormatBitOf(const WaveFormat& format) {
    if (format == MakeWaveFormat(44100)) return WAVE_FORMAT_4S16;
    if (format == MakeWaveFormat(48000)) return WAVE_FORMAT_48S16;
    return 0;
}

/// What the owner of a stream holds; the feed stays with the inputs.
class FeedStream : public WaveInStream {
 public:
    explicit FeedStream(SourceFeed& feed) : Feed(feed) {}
    ~FeedStream() override { Feed.Close(); }
    FeedStream(const FeedStream&) = delete;
    FeedStream& operator=(const FeedStream&) = delete;

    void AddBuffer(WaveHeader& header) override { Feed.AddBuffer(header); }
    bool Start() override { return Feed.Start(); }
    void Reset() override { Feed.Reset(); }
    void Deliver() override { Feed.Deliver(); }

 private:
    SourceFeed& Feed;
};

}  // namespace

SourceWaveIn::SourceWaveIn(Clock& clock, EventLoop& loop) : Time(clock), Loop(loop) {}

void SourceWaveIn::AddDevice(WaveInDevice device, SourceFactory source) {
    Entries.push_back({std::move(device), std::move(source)});
}

WaveInList SourceWaveIn::Devices() {
    WaveInList devices;
    Listed.clear();
    for (const Entry& entry : Entries) {
        devices.push_back(entry.Info);
        Listed.push_back(entry.Info.Id);
    }
    return devices;
}

OpenedWaveIn SourceWaveIn::Open(size_t device, const WaveFormat& format, BufferReturn mode,
                                WaveInEvents events) {
    if (device >= Listed.size()) return nullptr;
    const Entry* entry = Find(Listed[device]);
    if (entry == nullptr || (entry->Info.dwFormats & FormatBitOf(format)) == 0) return nullptr;

    FeedSetup setup;
    setup.Source = entry->Source(format.nSamplesPerSec);
    if (setup.Source == nullptr || setup.Source->FramesPerSecond() != format.nSamplesPerSec) return nullptr;
    setup.Device = entry->Info;
    setup.FramesPerSecond = format.nSamplesPerSec;
    setup.Mode = mode;
    setup.Events = std::move(events);
    Prepare(setup);

    LastOpened = &FreeFeed();
    LastOpened->Open(std::move(setup));
    return std::make_unique<FeedStream>(*LastOpened);
}

SourceMedia SourceWaveIn::NowPlaying() const {
    const SourceFeed* feed = OpenFeed();
    return feed == nullptr ? SourceMedia{} : feed->NowPlaying();
}

const SourceFeed* SourceWaveIn::OpenFeed() const {
    return LastOpened != nullptr && LastOpened->IsOpen() ? LastOpened : nullptr;
}

SourceWaveIn::Entry* SourceWaveIn::Find(const std::string& id) {
    const auto found = std::ranges::find(Entries, id, [](const Entry& entry) { return entry.Info.Id; });
    return found == Entries.end() ? nullptr : &*found;
}

void SourceWaveIn::Prepare(FeedSetup& /*setup*/) {}

SourceFeed& SourceWaveIn::FreeFeed() {
    const auto closed = std::ranges::find_if(Feeds, [](const auto& feed) { return !feed->IsOpen(); });
    if (closed != Feeds.end()) return **closed;
    return *Feeds.emplace_back(std::make_unique<SourceFeed>(Time, Loop));
}

}  // namespace Corvetape
