#include "audio/capture.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <utility>

#include "core/controls/held.h"

namespace Corvetape {

namespace {

constexpr uint32_t CommonRate = 44'100;
constexpr uint32_t OpticalRate = 48'000;
constexpr double BufferSeconds = 0.05;

BufferReturn ModeOf(int32_t setting) {
    return setting >= 1 && setting <= 3 ? static_cast<BufferReturn>(setting) : BufferReturn::Loop;
}

bool IsPolled(BufferReturn mode) {
    return mode == BufferReturn::PollByTimer || mode == BufferReturn::PollPrecisely;
}

}  // namespace

/// What runs while the input is open. Handlers hold it while they run, so a capture may be closed, opened
/// again or destroyed from within them; what may have changed meanwhile is looked at after each call out.
struct Capture::Engine : std::enable_shared_from_this<Capture::Engine> {
    Engine(CaptureParts parts, CaptureEvents events) : Parts(parts), Events(std::move(events)) {}

    WaveInOpening Open(size_t device);
    void Prepare();
    void Close();
    void Shut();
    void StartPolling();
    void StopPolling();
    void Tick();
    void Poll();
    bool TakeFull(uint64_t opening);
    void BufferDone(const WaveHeader& header);
    bool ProcessBuffer(size_t index);
    void NoteArrival();
    void NoteIncident(const WaveInIncident& incident);
    void NoteEnd();
    WaveInEvents MakeEvents();

    CaptureParts Parts;
    CaptureEvents Events;
    uint32_t FramesPerBuffer = 0;
    BufferReturn Mode = BufferReturn::Loop;
    std::unique_ptr<WaveInStream> Stream;
    std::unique_ptr<LoopTimer> Timer;
    std::shared_ptr<std::vector<WaveBuffer>> Ring = std::make_shared<std::vector<WaveBuffer>>();
    size_t PollIndex = 0;
    int32_t MaxBuffersUsed = 0;
    float LastArrival = 0;          ///< seconds since midnight; 0: none yet
    uint64_t LostSinceLast = 0;     ///< frames lost since the last buffer
    uint32_t ChangesSinceLast = 0;  ///< changes of the device since the last buffer

    uint64_t Generation = 0;  ///< counts every opening and closing
    bool Hooked = false;      ///< buffers that arrive as events are taken
    bool Polling = false;     ///< a tick is running
    bool Taking = false;      ///< full buffers are being handled
    int32_t TakenInTick = 0;  ///< buffers
    bool Gone = false;        ///< the capture was destroyed; nothing of the program is touched any more
};

WaveInOpening Capture::Engine::Open(size_t device) {
    if (Stream) Close();
    if (Gone) return {false, {}};
    Shut();  // an event of the closing may have opened another device
    WaveFormat& format = Parts.Signal.Format;
    format = MakeWaveFormat(Parts.Settings.SPDIF48kHz ? OpticalRate : CommonRate);
    Mode = ModeOf(Parts.Settings.PollRecordingBuffers);
    ++Generation;
    OpenedWaveIn opened = Parts.WaveIn.Open(device, format, Mode, MakeEvents());
    if (!opened) return {false, std::move(opened.Reason)};
    Stream = std::move(opened);
    FramesPerBuffer = FramesPerBufferOf(format);
    Prepare();
    for (WaveBuffer& buffer : *Ring) Stream->AddBuffer(buffer);
    Parts.Ring.Open(Parts.Settings.AudioBuffers, FramesPerBuffer);
    if (!Stream->Start()) {
        Shut();
        return {false, {}};
    }
    StartPolling();
    return {};
}

void Capture::Engine::Prepare() {
    // A handler that is running still works on the buffers of the opening before.
    if (Ring.use_count() > 1) Ring = std::make_shared<std::vector<WaveBuffer>>();
    Ring->resize(static_cast<size_t>(std::clamp(Parts.Settings.RecordingBuffers, 1, MostRecordingBuffers)));
    uint32_t index = 0;
    for (WaveBuffer& buffer : *Ring) {
        buffer.Samples.resize(FramesPerBuffer);
        buffer.lpData = buffer.Samples.data();
        buffer.dwBufferLength = FramesPerBuffer * static_cast<uint32_t>(sizeof(Frame));
        buffer.dwBytesRecorded = 0;
        buffer.dwUser = index++;
        buffer.dwFlags = 0;
    }
    Parts.Signal.FramesOfEarlierInputs += std::exchange(Parts.Signal.FramesReceived, 0);
    LostSinceLast = 0;
    LastArrival = 0;  // while the input was closed nothing had to wait
    ChangesSinceLast = 0;
}

void Capture::Engine::StartPolling() {
    Hooked = !IsPolled(Mode);
    if (Hooked) return;
    Timer = Parts.Loop.NewTimer([engine = weak_from_this()] {
        if (const auto self = engine.lock()) self->Tick();
    });
    if (Mode == BufferReturn::PollByTimer) {
        Timer->Start(std::chrono::milliseconds(Parts.Settings.Interval), TimerPrecision::Coarse);
    } else {
        Timer->Start(std::chrono::milliseconds(PrecisePeriodMs), TimerPrecision::Precise);
    }
}

void Capture::Engine::StopPolling() {
    Hooked = false;
    Timer.reset();
}

void Capture::Engine::Close() {
    StopPolling();
    if (Stream) {
        // Whoever opens or closes in the events between the steps has done the rest of this.
        const uint64_t opening = Generation;
        Parts.Loop.ProcessEvents();
        if (Generation != opening) return;
        Stream->Reset();
        Parts.Loop.ProcessEvents();
        if (Generation != opening) return;
        PollIndex = 0;
        Stream.reset();
        ++Generation;
        Parts.Loop.ProcessEvents();
        if (Generation != opening + 1) return;
    }
    Parts.Signal.PeakLeft = 0;
    Parts.Signal.PeakRight = 0;
}

void Capture::Engine::Shut() {
    StopPolling();
    if (Stream) Stream->Reset();
    Stream.reset();
    PollIndex = 0;
    ++Generation;
}

WaveInEvents Capture::Engine::MakeEvents() {
    // What a device still says after it was closed, or after another was opened, is not for this opening.
    const auto guarded = [engine = weak_from_this(), opening = Generation](auto action) {
        return [engine, opening, action](auto&&... arguments) {
            const auto self = engine.lock();
            if (self && self->Generation == opening) action(*self, arguments...);
        };
    };
    WaveInEvents events;
    events.BufferDone = guarded([](Engine& self, const WaveHeader& header) { self.BufferDone(header); });
    events.Incident = guarded([](Engine& self, const WaveInIncident& what) { self.NoteIncident(what); });
    events.Availability = guarded([](Engine& self, bool lost) {
        // How much was lost is reported only when it is known, which may be buffers later.
        self.LastArrival = 0;
        if (self.Events.Availability) self.Events.Availability(lost);
    });
    events.Ended = guarded([](Engine& self) { self.NoteEnd(); });
    return events;
}

void Capture::Engine::BufferDone(const WaveHeader& header) {
    if (!Hooked) return;  // the closing has begun: what comes back now is neither analysed nor written
    const uint64_t opening = Generation;
    if (ProcessBuffer(header.dwUser) && Generation == opening) NoteArrival();
}

bool Capture::Engine::ProcessBuffer(size_t index) {
    const auto ring = Ring;
    if (index >= ring->size()) return true;
    WaveBuffer& buffer = (*ring)[index];
    buffer.dwBytesRecorded = std::min(buffer.dwBytesRecorded, buffer.dwBufferLength);
    const uint64_t opening = Generation;
    if (const size_t frames = FramesOf(buffer).size(); frames > 0) {
        buffer.StreamPosition = Parts.Signal.FramesOfEarlierInputs + Parts.Signal.FramesReceived;
        buffer.FramesLostBefore = std::exchange(LostSinceLast, 0);
        buffer.DeviceChangesBefore = std::exchange(ChangesSinceLast, 0);
        Parts.Signal.FramesReceived += frames;
        if (!Parts.Target.Handle(buffer)) {
            if (Events.Fatal && !Gone) Events.Fatal();
            return false;
        }
    }
    if (Generation == opening && Stream) {
        buffer.dwFlags = 0;
        Stream->AddBuffer(buffer);  // only now: a slow disk eats the device's queue
    }
    return true;
}

void Capture::Engine::NoteArrival() {
    const float now = SecondsSinceMidnight(Parts.Clock.LocalNow());
    const float before = std::exchange(LastArrival, now);
    // 0 stands for no arrival yet, and a clock that stands earlier than before has passed midnight.
    if (before == 0.0F || before > now) return;
    const double buffers = std::nearbyint(static_cast<double>(now - before) / BufferSeconds + 1.0);
    if (buffers > std::numeric_limits<int16_t>::max()) return;  // the mark is 16 bits wide
    MaxBuffersUsed = std::max(MaxBuffersUsed, static_cast<int32_t>(buffers));
}

void Capture::Engine::Tick() {
    if (Polling || !Stream) return;
    Polling = true;
    try {
        Poll();
    } catch (...) {
        // Something that nobody foresaw, such as memory that ran out. The input stays open, but is not
        // polled any more until it is opened again: better no signal than the same failure in every tick.
        StopPolling();
    }
    Polling = false;
}

void Capture::Engine::Poll() {
    const uint64_t opening = Generation;
    TakenInTick = 0;
    Stream->Deliver();
    if (TakeFull(opening)) MaxBuffersUsed = std::max(MaxBuffersUsed, TakenInTick);
}

/// Handles the buffers that are full. False if the program is to end or the input is not the same any more.
bool Capture::Engine::TakeFull(uint64_t opening) {
    if (Taking) return Generation == opening;  // a handler runs the loop while it has a buffer
    const Held taking(Taking);
    while (Generation == opening && ((*Ring)[PollIndex].dwFlags & WHDR_DONE) != 0) {
        if (!ProcessBuffer(PollIndex) || Generation != opening) return false;
        PollIndex = (PollIndex + 1) % Ring->size();
        ++TakenInTick;
    }
    return Generation == opening;
}

void Capture::Engine::NoteIncident(const WaveInIncident& incident) {
    const uint64_t opening = Generation;
    if (IsPolled(Mode)) {
        // What is full was heard before the loss, though nobody has polled it yet.
        if (Polling) {
            static_cast<void>(TakeFull(opening));  // an end of the program is reported there
        } else {
            Tick();
        }
        if (Generation != opening) return;
    }
    Parts.Signal.FramesLost += incident.LostFrames;
    LostSinceLast += incident.LostFrames;
    const bool wentAndCame =
        incident.Kind == WaveInIncidentKind::DeviceLost || incident.Kind == WaveInIncidentKind::ServerLost;
    if (wentAndCame) ++ChangesSinceLast;
    // The next buffer comes late because there was none, and not because buffers had to wait.
    if (incident.Kind != WaveInIncidentKind::Overrun) LastArrival = 0;
    // Nobody knows what played in the meantime, so it does not count as silence.
    const uint64_t lostSeconds = incident.LostFrames / Parts.Signal.Format.nSamplesPerSec;
    const int64_t sinceSound = int64_t{Parts.Clock.TimeGetTime()} / 1000 - Parts.Signal.SilenceStartSecond;
    if (sinceSound > 0) {
        Parts.Signal.SilenceStartSecond +=
            static_cast<int32_t>(std::min(lostSeconds, static_cast<uint64_t>(sinceSound)));
    }
    if (Events.DeviceIncident) Events.DeviceIncident(incident);
}

void Capture::Engine::NoteEnd() {
    const uint64_t opening = Generation;
    if (IsPolled(Mode)) Tick();  // the last buffers may still wait for their poll
    if (Generation == opening && Events.Ended) Events.Ended();
}

Capture::Capture(CaptureParts parts, CaptureEvents events)
    : Self(std::make_shared<Engine>(parts, std::move(events))) {}

Capture::~Capture() {
    Self->Shut();
    Self->Gone = true;
}

WaveInOpening Capture::OpenWaveIn(size_t device) {
    const auto running = Self;
    return running->Open(device);
}

void Capture::CloseWaveIn() {
    const auto running = Self;
    running->Close();
}

bool Capture::ProcessBuffer(size_t index) {
    const auto running = Self;
    return running->ProcessBuffer(index);
}

bool Capture::IsOpen() const {
    return Self->Stream != nullptr;
}
const WaveFormat& Capture::Format() const {
    return Self->Parts.Signal.Format;
}
uint32_t Capture::FramesPerBuffer() const {
    return Self->FramesPerBuffer;
}
const std::vector<WaveBuffer>& Capture::RecordingRing() const {
    return *Self->Ring;
}
size_t Capture::PollIndex() const {
    return Self->PollIndex;
}
int32_t& Capture::MaxBuffersUsed() {
    return Self->MaxBuffersUsed;
}

}  // namespace Corvetape
