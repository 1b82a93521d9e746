#include "sim/sim_wave_in.h"

#include <utility>

#include "sim/script_source.h"

namespace Corvetape {

namespace {

/// Frames that a clock at `rate` counts in a duration. A month of nanoseconds times a rate would not fit
/// into 64 bits, so whole seconds are split off.
uint64_t FramesIn(int64_t nanoseconds, uint32_t rate) {
    constexpr int64_t second = 1'000'000'000;
    const int64_t frames = nanoseconds / second * rate + nanoseconds % second * rate / second;
    return static_cast<uint64_t>(frames);
}

}  // namespace

void SimWaveIn::AddRadio(const std::string& name, RadioScript script, WaveInKind kind) {
    Radios[name] = {std::move(script), Time.MonotonicNanoseconds(), {}};
    WaveInDevice device;
    device.Name = name;
    device.Id = name;
    device.Kind = kind;
    device.IsDefault = Entries.empty();
    AddDevice(device, [this, name](uint32_t rate) { return TuneIn(name, rate); });
}

const std::shared_ptr<const RadioTimeline>& SimWaveIn::TimelineOf(Radio& radio, uint32_t framesPerSecond) {
    std::shared_ptr<const RadioTimeline>& timeline = radio.Timelines[framesPerSecond];
    if (timeline == nullptr) timeline = std::make_shared<RadioTimeline>(radio.Script, framesPerSecond);
    return timeline;
}

std::shared_ptr<const RadioTimeline> SimWaveIn::Timeline(const std::string& id, uint32_t framesPerSecond) {
    const auto radio = Radios.find(id);
    return radio == Radios.end() ? nullptr : TimelineOf(radio->second, framesPerSecond);
}

std::unique_ptr<SoundSource> SimWaveIn::TuneIn(const std::string& id, uint32_t framesPerSecond) {
    Radio& radio = Radios.at(id);
    const uint64_t frame = FramesIn(Time.MonotonicNanoseconds() - radio.OnAirSince, framesPerSecond);
    return std::make_unique<ScriptSource>(TimelineOf(radio, framesPerSecond), frame);
}

std::optional<uint64_t> SimWaveIn::RadioFrameOf(uint64_t delivered) const {
    const SourceFeed* feed = OpenFeed();
    if (feed == nullptr || !Radios.contains(feed->Device().Id)) return std::nullopt;
    return TunedAtFrame + feed->SourceFrameOf(delivered);
}

bool SimWaveIn::Reachable(const std::string& id) const {
    const auto condition = Conditions.find(id);
    return !ServerDead && (condition == Conditions.end() || !condition->second.Gone);
}

template <typename Action>
void SimWaveIn::ForFeedsOf(const std::string& id, Action action) {
    for (const auto& feed : Feeds) {
        if (feed->IsOpen() && feed->Device().Id == id) action(*feed);
    }
}

void SimWaveIn::Vanish(const std::string& id) {
    Conditions[id].Gone = true;
    ForFeedsOf(id, [](SourceFeed& feed) { feed.Interrupt(SourceFeed::Report::Yes); });
}

void SimWaveIn::Return(const std::string& id) {
    Conditions[id].Gone = false;
    if (ServerDead || Conditions[id].Stopped) return;
    ForFeedsOf(id, [](SourceFeed& feed) { feed.Resume(WaveInIncidentKind::DeviceLost); });
}

void SimWaveIn::Stop(const std::string& id) {
    Conditions[id].Stopped = true;
    ForFeedsOf(id, [](SourceFeed& feed) { feed.Interrupt(SourceFeed::Report::No); });
}

void SimWaveIn::Restart(const std::string& id, WaveInIncidentKind kind) {
    Conditions[id].Stopped = false;
    if (!Reachable(id)) return;
    ForFeedsOf(id, [kind](SourceFeed& feed) { feed.Resume(kind); });
}

void SimWaveIn::Hold(const std::string& id) {
    ForFeedsOf(id, [](SourceFeed& feed) { feed.Hold(); });
}

void SimWaveIn::Release(const std::string& id) {
    ForFeedsOf(id, [](SourceFeed& feed) { feed.Release(); });
}

void SimWaveIn::Lose(const std::string& id, uint64_t frames, WaveInIncidentKind kind) {
    ForFeedsOf(id, [frames, kind](SourceFeed& feed) { feed.Lose(frames, kind); });
}

void SimWaveIn::KillServer() {
    ServerDead = true;
    for (const auto& feed : Feeds) feed->Interrupt(SourceFeed::Report::Yes);
}

void SimWaveIn::RestartServer() {
    ServerDead = false;
    for (const auto& feed : Feeds) {
        const std::string id = feed->Device().Id;
        if (Reachable(id) && !Conditions[id].Stopped) feed->Resume(WaveInIncidentKind::ServerLost);
    }
}

void SimWaveIn::SetDrift(const std::string& id, int64_t millionths) {
    Conditions[id].Drift = millionths;
    ForFeedsOf(id, [millionths](SourceFeed& feed) { feed.SetDrift(millionths); });
}

void SimWaveIn::Refuse(const std::string& id) {
    Conditions[id].Refused = true;
}

void SimWaveIn::Admit(const std::string& id) {
    Conditions[id].Refused = false;
}

WaveInList SimWaveIn::Devices() {
    WaveInList devices;
    if (ServerDead) devices.Reason = ServerWords;
    Listed.clear();
    for (const Entry& entry : Entries) {
        if (!Reachable(entry.Info.Id)) continue;
        devices.push_back(entry.Info);
        Listed.push_back(entry.Info.Id);
    }
    return devices;
}

OpenedWaveIn SimWaveIn::Open(size_t device, const WaveFormat& format, BufferReturn mode,
                             WaveInEvents events) {
    if (device >= Listed.size()) return nullptr;
    const std::string id = Listed[device];
    const Condition condition = Conditions[id];
    if (!Reachable(id) || condition.Refused) return OpenedWaveIn::Refused(ServerWords);
    auto stream = SourceWaveIn::Open(device, format, mode, std::move(events));
    if (stream == nullptr) return nullptr;
    const auto radio = Radios.find(id);
    if (radio != Radios.end()) {
        TunedAtFrame =
            FramesIn(Time.MonotonicNanoseconds() - radio->second.OnAirSince, format.nSamplesPerSec);
    }
    if (condition.Stopped) {
        ForFeedsOf(id, [](SourceFeed& feed) { feed.Interrupt(SourceFeed::Report::No); });
    }
    return stream;
}

void SimWaveIn::Prepare(FeedSetup& setup) {
    setup.LossReason = ServerWords;
    setup.DriftMillionths = Conditions[setup.Device.Id].Drift;
    if (QueueLimitSeconds > 0) {
        setup.QueueLimitFrames = static_cast<uint64_t>(QueueLimitSeconds * setup.FramesPerSecond);
    }
}

}  // namespace Corvetape
