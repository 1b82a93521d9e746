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
    WaitingBuffers() { headers.reserve(1024); }

    void Add(WaveHeader& header) {
        if (taken == headers.size()) {
            Clear();
        } else if (headers.size() == headers.capacity() && taken >= headers.size() / 2) {
            headers.erase(headers.begin(), headers.begin() + static_cast<std::ptrdiff_t>(taken));
            taken = 0;
        }
        headers.push_back(&header);
    }
    WaveHeader* First() const { return taken < headers.size() ? headers[taken] : nullptr; }
    void Take() { ++taken; }
    void Clear() {
        headers.clear();
        taken = 0;
    }

 private:
    std::vector<WaveHeader*> headers;
    size_t taken = 0;
};

/// The logic thread's side of an open source. Posted work holds it weakly, so it may go at any time, also
/// in the middle of what it tells.
class Receiver : public std::enable_shared_from_this<Receiver> {
 public:
    Receiver(EventLoop& eventLoop, BufferReturn returnMode, WaveInEvents wanted, size_t queueFrames,
             std::string device)
        : Road(queueFrames),
          loop(eventLoop),
          mode(returnMode),
          events(std::move(wanted)),
          deviceName(std::move(device)) {}

    /// Called by the capture thread: at most one piece of work is on its way to the loop.
    void Arrived() {
        if (Polled()) return;
        if (Road.Frames.Available() < BufferFrames && !Road.AnyNotice()) return;
        PostDelivery();
    }

    void AddBuffer(WaveHeader& header) {
        waiting.Add(header);
        if (!Polled() && !delivering && Road.Open && Road.Frames.Available() >= BufferFrames) PostDelivery();
    }

    void Forget() {
        ++generation;
        waiting.Clear();
        Road.Open = false;
        Road.Clear();
    }

    /// Fills at most `most` buffers and tells what lies between them.
    void Deliver(size_t most) {
        const std::shared_ptr<Receiver> keep = shared_from_this();
        const uint64_t began = generation;
        const bool outer = std::exchange(delivering, true);
        for (size_t count = 0; count < most && began == generation; ++count) {
            if (!TellNotices(began)) break;
            WaveHeader* const header = waiting.First();
            if (header == nullptr) break;
            const size_t frames = header->dwBufferLength / sizeof(Frame);
            if (Road.Frames.Available() < frames) break;
            waiting.Take();
            Road.Frames.Pop({header->lpData, frames});
            header->dwBytesRecorded = static_cast<uint32_t>(frames * sizeof(Frame));
            header->dwFlags |= WHDR_DONE;
            if (!Polled() && events.BufferDone) events.BufferDone(*header);
        }
        delivering = outer;
    }

    CaptureRoad Road;
    size_t BufferFrames = 0;

 private:
    bool Polled() const { return mode == BufferReturn::PollByTimer || mode == BufferReturn::PollPrecisely; }

    void PostDelivery() {
        if (posted.exchange(true)) return;
        loop.Post([weak = weak_from_this()] {
            if (const std::shared_ptr<Receiver> self = weak.lock()) self->Posted();
        });
    }

    void Posted() {
        posted = false;
        if (mode == BufferReturn::Loop) {
            Deliver(static_cast<size_t>(-1));
            return;
        }
        // One arrival, one event: whatever else the loop has to do comes in between.
        const uint64_t before = Road.Frames.Taken();
        Deliver(1);
        if (Road.Frames.Taken() != before) Arrived();
    }

    /// False if the stream was reset by one of those who were told.
    bool TellNotices(uint64_t began) {
        while (const std::optional<CaptureNotice> notice = Road.NoticeWithin(BufferFrames)) {
            switch (notice->Said) {
                case CaptureNotice::What::Lost:
                case CaptureNotice::What::Back:
                    if (events.Availability) {
                        events.Availability(notice->Said == CaptureNotice::What::Lost);
                    }
                    break;
                case CaptureNotice::What::Incident:
                    if (events.Incident) events.Incident({notice->Kind, notice->LostFrames, deviceName});
                    break;
            }
            if (began != generation) return false;
        }
        return true;
    }

    EventLoop& loop;
    const BufferReturn mode;
    const WaveInEvents events;
    const std::string deviceName;
    WaitingBuffers waiting;
    uint64_t generation = 0;
    bool delivering = false;
    std::atomic<bool> posted{false};
};

class PulseWaveInStream : public WaveInStream {
 public:
    PulseWaveInStream(std::shared_ptr<Receiver> logicSide, PulseCapture::Target source)
        : receiver(std::move(logicSide)), target(std::move(source)) {
        receiver->BufferFrames = target.FramesPerBuffer;
    }
    ~PulseWaveInStream() override { Reset(); }
    PulseWaveInStream(const PulseWaveInStream&) = delete;
    PulseWaveInStream& operator=(const PulseWaveInStream&) = delete;

    bool Connect(std::chrono::milliseconds limit) {
        BeginCapture();
        return capture->WaitForStart(limit);
    }

    void AddBuffer(WaveHeader& header) override { receiver->AddBuffer(header); }

    bool Start() override {
        receiver->Road.Open = true;
        if (!capture) BeginCapture();
        return true;
    }

    void Reset() override {
        capture.reset();
        receiver->Forget();
    }

    void Deliver() override { receiver->Deliver(static_cast<size_t>(-1)); }

 private:
    void BeginCapture() {
        capture =
            std::make_unique<PulseCapture>(target, receiver->Road, [to = receiver.get()] { to->Arrived(); });
    }

    std::shared_ptr<Receiver> receiver;
    const PulseCapture::Target target;
    std::unique_ptr<PulseCapture> capture;  // goes before what it fills
};

}  // namespace

PulseWaveIn::PulseWaveIn(EventLoop& eventLoop) : PulseWaveIn(eventLoop, Options()) {}

PulseWaveIn::PulseWaveIn(EventLoop& eventLoop, Options wanted)
    : loop(eventLoop), options(std::move(wanted)) {}

std::vector<WaveInDevice> PulseWaveIn::Devices() {
    devices = ListPulseDevices(options.Server, options.ConnectLimit);
    return devices;
}

std::unique_ptr<WaveInStream> PulseWaveIn::Open(size_t device, const WaveFormat& format, BufferReturn mode,
                                                WaveInEvents events) {
    const bool knownRate = format.nSamplesPerSec == 44100 || format.nSamplesPerSec == 48000;
    if (device >= devices.size() || format != MakeWaveFormat(format.nSamplesPerSec) || !knownRate) {
        return nullptr;
    }
    PulseCapture::Target target;
    target.Server = options.Server;
    target.Source = devices[device].Id;
    target.FramesPerSecond = format.nSamplesPerSec;
    target.FramesPerBuffer = format.nAvgBytesPerSec / 4 / 20;
    target.RetryInterval = options.RetryInterval;
    const size_t queueFrames = static_cast<size_t>(options.QueueLength.count()) * format.nSamplesPerSec;
    auto stream = std::make_unique<PulseWaveInStream>(
        std::make_shared<Receiver>(loop, mode, std::move(events), queueFrames, devices[device].Name),
        std::move(target));
    if (!stream->Connect(options.OpenLimit)) return nullptr;
    return stream;
}

}  // namespace Corvetape
