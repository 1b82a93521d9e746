#include "platform/linux/sound/pulse_wave_in.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include "platform/linux/sound/pulse_capture.h"
#include "platform/linux/sound/pulse_devices.h"

namespace Corvetape {
namespace {

/// Buffers that have been handed to the device, oldest first. Takes no memory in steady running.
class WaitingBuffers {
 public:
    WaitingBuffers() { Headers.reserve(1024); }

    void Add(WaveHeader& header) {
        if (Taken == Headers.size()) {
            Clear();
        } else if (Headers.size() == Headers.capacity() && Taken >= Headers.size() / 2) {
            Headers.erase(Headers.begin(), Headers.begin() + static_cast<std::ptrdiff_t>(Taken));
            Taken = 0;
        }
        Headers.push_back(&header);
    }
    WaveHeader* First() const { return Taken < Headers.size() ? Headers[Taken] : nullptr; }
    void Take() { ++Taken; }
    void Clear() {
        Headers.clear();
        Taken = 0;
    }

 private:
    std::vector<WaveHeader*> Headers;
    size_t Taken = 0;
};

/// The logic thread's side of an open source. Posted work holds it weakly, so it may go at any time, also
/// in the middle of a report.
class Receiver : public std::enable_shared_from_this<Receiver> {
 public:
    Receiver(EventLoop& eventLoop, BufferReturn returnMode, WaveInEvents wanted, size_t queueFrames,
             std::string device)
        : Road(queueFrames),
          Loop(eventLoop),
          Mode(returnMode),
          Events(std::move(wanted)),
          DeviceName(std::move(device)) {}

    /// Called by the capture thread: at most one piece of work is on its way to the loop.
    void Arrived() {
        if (Polled()) return;
        if (Road.Frames.Available() < BufferFrames && !Road.AnyNotice()) return;
        PostDelivery();
    }

    void AddBuffer(WaveHeader& header) {
        Waiting.Add(header);
        if (!Polled() && !Delivering && Road.Open && Road.Frames.Available() >= BufferFrames) PostDelivery();
    }

    void Forget() {
        ++Generation;
        Waiting.Clear();
        Road.Open = false;
        Road.Clear();
    }

    /// Fills at most `most` buffers and reports what is between them.
    void Deliver(size_t most) {
        const std::shared_ptr<Receiver> keep = shared_from_this();
        const uint64_t began = Generation;
        const bool outer = std::exchange(Delivering, true);
        for (size_t count = 0; count < most && began == Generation; ++count) {
            if (!ReportNotices(began)) break;
            WaveHeader* const header = Waiting.First();
            if (header == nullptr) break;
            const size_t frames = header->dwBufferLength / sizeof(Frame);
            if (Road.Frames.Available() < frames) break;
            Waiting.Take();
            Road.Frames.Pop({header->lpData, frames});
            header->dwBytesRecorded = static_cast<uint32_t>(frames * sizeof(Frame));
            header->dwFlags |= WHDR_DONE;
            if (!Polled() && Events.BufferDone) Events.BufferDone(*header);
        }
        Delivering = outer;
    }

    CaptureRoad Road;
    size_t BufferFrames = 0;

 private:
    bool Polled() const { return Mode == BufferReturn::PollByTimer || Mode == BufferReturn::PollPrecisely; }

    void PostDelivery() {
        if (IsPosted.exchange(true)) return;
        Loop.Post([weak = weak_from_this()] {
            if (const std::shared_ptr<Receiver> self = weak.lock()) self->Posted();
        });
    }

    void Posted() {
        IsPosted = false;
        if (Mode == BufferReturn::Loop) {
            Deliver(static_cast<size_t>(-1));
            return;
        }
        // One arrival, one event: whatever else the loop has to do comes in between.
        const uint64_t before = Road.Frames.Taken();
        Deliver(1);
        if (Road.Frames.Taken() != before) Arrived();
    }

    /// False if the stream was reset by one of the listeners.
    bool ReportNotices(uint64_t began) {
        while (const std::optional<CaptureNotice> notice = Road.NoticeWithin(BufferFrames)) {
            switch (notice->Said) {
                case CaptureNotice::What::Lost:
                case CaptureNotice::What::Back:
                    if (Events.Availability) {
                        Events.Availability(notice->Said == CaptureNotice::What::Lost);
                    }
                    break;
                case CaptureNotice::What::Incident:
                    if (Events.Incident) Report(*notice);
                    break;
            }
            if (began != Generation) return false;
        }
        return true;
    }

    void Report(const CaptureNotice& notice) const {
        const char* const words = notice.Error != 0 ? pa_strerror(notice.Error) : "";
        Events.Incident({notice.Kind, notice.LostFrames, DeviceName, words});
    }

    EventLoop& Loop;
    const BufferReturn Mode;
    const WaveInEvents Events;
    const std::string DeviceName;
    WaitingBuffers Waiting;
    uint64_t Generation = 0;
    bool Delivering = false;
    std::atomic<bool> IsPosted{false};
};

class PulseWaveInStream : public WaveInStream {
 public:
    PulseWaveInStream(std::shared_ptr<Receiver> logicSide, PulseCapture::Target source)
        : LogicSide(std::move(logicSide)), Wanted(std::move(source)) {
        LogicSide->BufferFrames = Wanted.FramesPerBuffer;
    }
    ~PulseWaveInStream() override { Reset(); }
    PulseWaveInStream(const PulseWaveInStream&) = delete;
    PulseWaveInStream& operator=(const PulseWaveInStream&) = delete;

    /// Empty if it runs; else why not.
    std::string Connect(std::chrono::milliseconds limit) {
        BeginCapture();
        return Capture->WaitForStart(limit);
    }

    void AddBuffer(WaveHeader& header) override { LogicSide->AddBuffer(header); }

    bool Start() override {
        LogicSide->Road.Open = true;
        if (!Capture) BeginCapture();
        return true;
    }

    void Reset() override {
        Capture.reset();
        LogicSide->Forget();
    }

    void Deliver() override { LogicSide->Deliver(static_cast<size_t>(-1)); }

 private:
    void BeginCapture() {
        Capture = std::make_unique<PulseCapture>(Wanted, LogicSide->Road,
                                                 [to = LogicSide.get()] { to->Arrived(); });
    }

    std::shared_ptr<Receiver> LogicSide;
    const PulseCapture::Target Wanted;
    std::unique_ptr<PulseCapture> Capture;  // goes before what it fills
};

}  // namespace

PulseWaveIn::PulseWaveIn(EventLoop& eventLoop) : PulseWaveIn(eventLoop, PulseTerms()) {}

PulseWaveIn::PulseWaveIn(EventLoop& eventLoop, PulseTerms wanted)
    : Loop(eventLoop), Choice(std::move(wanted)) {}

WaveInList PulseWaveIn::Devices() {
    WaveInList list = ListPulseDevices(Choice.Server, Choice.ConnectLimit);
    Listed.assign(list.begin(), list.end());
    return list;
}

OpenedWaveIn PulseWaveIn::Open(size_t device, const WaveFormat& format, BufferReturn mode,
                               WaveInEvents events) {
    const bool knownRate = format.nSamplesPerSec == 44100 || format.nSamplesPerSec == 48000;
    if (device >= Listed.size() || format != MakeWaveFormat(format.nSamplesPerSec) || !knownRate) {
        return nullptr;
    }
    PulseCapture::Target target;
    target.Server = Choice.Server;
    target.Source = Listed[device].Id;
    target.FramesPerSecond = format.nSamplesPerSec;
    target.FramesPerBuffer = format.nAvgBytesPerSec / 4 / 20;
    target.RetryInterval = Choice.RetryInterval;
    const size_t queueFrames = static_cast<size_t>(Choice.QueueLength.count()) * format.nSamplesPerSec;
    auto stream = std::make_unique<PulseWaveInStream>(
        std::make_shared<Receiver>(Loop, mode, std::move(events), queueFrames, Listed[device].Name),
        std::move(target));
    if (std::string problem = stream->Connect(Choice.OpenLimit); !problem.empty()) {
        return OpenedWaveIn::Refused(std::move(problem));
    }
    return stream;
}

}  // namespace Corvetape
