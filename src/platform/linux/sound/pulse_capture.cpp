#include "platform/linux/sound/pulse_capture.h"

#include <pthread.h>
#include <sys/eventfd.h>
#include <time.h>

#include "platform/linux/loop/thread_signals.h"

namespace Corvetape {
namespace {

constexpr int64_t Millisecond = 1'000'000;
constexpr int64_t Second = 1000 * Millisecond;

/// An attempt to connect that has come to nothing by then is given up.
constexpr int64_t AttemptLimit = 5 * Second;

/// A running stream delivers 20 times a second. After the first time the device counts as lost, after the
/// second one the connection is made anew.
constexpr int64_t SilenceMeansLost = 2 * Second;
constexpr int64_t SilenceMeansBroken = 10 * Second;

int64_t Now() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return int64_t{now.tv_sec} * Second + now.tv_nsec;
}

PulseCapture& Self(void* user) {
    return *static_cast<PulseCapture*>(user);
}

}  // namespace

PulseCapture::PulseCapture(Target wanted, CaptureRoad& roadToLoop, std::function<void()> arrivedCall)
    : target(std::move(wanted)),
      road(roadToLoop),
      arrived(std::move(arrivedCall)),
      meter(target.FramesPerSecond),
      wake(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      thread([this] { Run(); }) {}

PulseCapture::~PulseCapture() {
    ending = true;
    const uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = write(wake.Number(), &one, sizeof one);
    thread.join();
}

bool PulseCapture::WaitForStart(std::chrono::milliseconds limit) {
    std::unique_lock guard(attemptLock);
    attemptEnded.wait_for(guard, limit, [this] { return attempt != Attempt::Pending; });
    return attempt == Attempt::Succeeded;
}

void PulseCapture::Finish(Attempt result) {
    const std::lock_guard guard(attemptLock);
    if (attempt != Attempt::Pending) return;
    attempt = result;
    attemptEnded.notify_all();
}

void PulseCapture::Run() {
    LeaveSignalsToTheMainThread();
    pthread_setname_np(pthread_self(), "capture");
    loop.reset(pa_mainloop_new());
    if (!loop) {
        Finish(Attempt::Failed);
        return;
    }
    pa_mainloop_api* const api = pa_mainloop_get_api(loop.get());
    pa_io_event* const end = api->io_new(
        api, wake.Number(), PA_IO_EVENT_INPUT,
        [](pa_mainloop_api*, pa_io_event*, int, pa_io_event_flags_t, void*) {}, nullptr);
    while (!ending) RunOnce();
    Disconnect();
    api->io_free(end);
    loop.reset();
}

void PulseCapture::RunOnce() {
    int64_t now = Now();
    if (!context && now >= nextAttempt) Connect();
    const int64_t wait = std::max<int64_t>(NextLook(now) - now, 0);
    if (pa_mainloop_prepare(loop.get(), static_cast<int>(wait / 1000)) < 0) return;
    if (pa_mainloop_poll(loop.get()) < 0 || pa_mainloop_dispatch(loop.get()) < 0) return;
    const int64_t wokenUp = Now();
    // The thread has stood still itself, so nobody can say how long the device was silent: what has piled up
    // comes in several turns of the loop.
    if (wokenUp - now > wait + Second) lastArrival = wokenUp;
    now = wokenUp;
    Watch(now);
    if (!broken) return;
    Disconnect();
    Finish(Attempt::Failed);
    nextAttempt = now + std::chrono::nanoseconds(target.RetryInterval).count();
}

int64_t PulseCapture::NextLook(int64_t now) const {
    if (broken) return now;
    return context ? now + Second : nextAttempt;
}

void PulseCapture::Watch(int64_t now) {
    // The road may have been opened while nothing came.
    if (away && !toldLost) TellLost(awayKind, true);
    if (!context || broken) return;
    if (!accepting) {
        if (now - attemptBegan > AttemptLimit) Break(WaveInIncidentKind::ServerLost);
        return;
    }
    const int64_t silence = now - lastArrival;
    if (silence > SilenceMeansBroken) {
        Break(WaveInIncidentKind::DeviceLost);
    } else if (silence > SilenceMeansLost) {
        TellLost(WaveInIncidentKind::DeviceLost, false);
    }
}

void PulseCapture::Connect() {
    attemptBegan = Now();
    context.reset(pa_context_new(pa_mainloop_get_api(loop.get()), "Corvetape"));
    if (!context) {
        Break(WaveInIncidentKind::ServerLost);
        return;
    }
    pa_context_set_state_callback(context.get(), ContextChanged, this);
    const char* const address = target.Server.empty() ? nullptr : target.Server.c_str();
    if (pa_context_connect(context.get(), address, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) {
        Break(WaveInIncidentKind::ServerLost);
    }
}

void PulseCapture::Disconnect() {
    accepting = false;
    broken = false;
    question.reset();
    stream.reset();
    context.reset();
}

void PulseCapture::Break(WaveInIncidentKind kind) {
    if (broken) return;
    broken = true;
    accepting = false;
    TellLost(kind, true);
}

void PulseCapture::ContextChanged(pa_context* changed, void* user) {
    PulseCapture& self = Self(user);
    const pa_context_state_t state = pa_context_get_state(changed);
    if (!PA_CONTEXT_IS_GOOD(state)) {
        self.Break(WaveInIncidentKind::ServerLost);
    } else if (state == PA_CONTEXT_READY) {
        // A server may give another source instead of a missing one, so the name is looked up first.
        self.question.reset(
            pa_context_get_source_info_by_name(changed, self.target.Source.c_str(), SourceAnswer, user));
    }
}

void PulseCapture::SourceAnswer(pa_context*, const pa_source_info* info, int end, void* user) {
    PulseCapture& self = Self(user);
    if (end < 0 || (info != nullptr && self.target.Source != info->name)) {
        self.Break(WaveInIncidentKind::DeviceLost);
    } else if (info != nullptr && !self.stream && !self.broken) {
        self.CreateStream();
    }
}

void PulseCapture::CreateStream() {
    const pa_sample_spec format{PA_SAMPLE_S16LE, target.FramesPerSecond, 2};
    pa_channel_map stereo;
    pa_channel_map_init_stereo(&stereo);
    stream.reset(pa_stream_new(context.get(), "Recording", &format, &stereo));
    if (!stream) {
        Break(WaveInIncidentKind::DeviceLost);
        return;
    }
    pa_stream_set_state_callback(stream.get(), StreamChanged, this);
    pa_stream_set_read_callback(stream.get(), StreamReadable, this);
    pa_stream_set_moved_callback(stream.get(), StreamMoved, this);
    pa_stream_set_suspended_callback(stream.get(), StreamSuspended, this);
    pa_buffer_attr sizes{};
    sizes.maxlength = static_cast<uint32_t>(-1);  // as much as the server keeps at all
    sizes.fragsize = static_cast<uint32_t>(target.FramesPerBuffer * sizeof(Frame));
    const auto flags = static_cast<pa_stream_flags_t>(PA_STREAM_ADJUST_LATENCY | PA_STREAM_DONT_MOVE);
    if (pa_stream_connect_record(stream.get(), target.Source.c_str(), &sizes, flags) < 0) {
        Break(WaveInIncidentKind::DeviceLost);
    }
}

void PulseCapture::StreamChanged(pa_stream* changed, void* user) {
    PulseCapture& self = Self(user);
    const pa_stream_state_t state = pa_stream_get_state(changed);
    if (state == PA_STREAM_READY) {
        self.StreamReady();
    } else if (!PA_STREAM_IS_GOOD(state)) {
        const bool serverIsThere = PA_CONTEXT_IS_GOOD(pa_context_get_state(self.context.get()));
        self.Break(serverIsThere ? WaveInIncidentKind::DeviceLost : WaveInIncidentKind::ServerLost);
    }
}

void PulseCapture::StreamReady() {
    const char* const name = pa_stream_get_device_name(stream.get());
    if (name == nullptr || target.Source != name) {
        Break(WaveInIncidentKind::DeviceLost);
        return;
    }
    accepting = true;
    lastArrival = Now();
    Finish(Attempt::Succeeded);
}

void PulseCapture::StreamMoved(pa_stream* moved, void* user) {
    PulseCapture& self = Self(user);
    const char* const name = pa_stream_get_device_name(moved);
    if (name == nullptr || self.target.Source != name) self.Break(WaveInIncidentKind::DeviceLost);
}

void PulseCapture::StreamSuspended(pa_stream* suspended, void* user) {
    PulseCapture& self = Self(user);
    if (self.accepting && pa_stream_is_suspended(suspended) > 0) {
        self.TellLost(WaveInIncidentKind::DeviceLost, false);
    }
}

void PulseCapture::StreamReadable(pa_stream*, size_t, void* user) {
    Self(user).Read();
}

void PulseCapture::Read() {
    uint64_t frames = 0;
    // Frames of a stream that is not known to be the right one are thrown away.
    while (pa_stream_readable_size(stream.get()) > 0) {
        const void* data = nullptr;
        size_t bytes = 0;
        if (pa_stream_peek(stream.get(), &data, &bytes) < 0 || bytes == 0) break;
        if (accepting) {
            Take(data, bytes / sizeof(Frame));
            frames += bytes / sizeof(Frame);
        }
        pa_stream_drop(stream.get());
    }
    if (frames == 0) return;
    Account(frames);
    if (delivering) arrived();
}

void PulseCapture::BeginDelivering() {
    if (delivering || !road.Open) return;
    delivering = true;
    meter.Start(Now());
}

void PulseCapture::Take(const void* data, size_t frames) {
    away = false;
    BeginDelivering();
    if (!delivering) return;
    if (toldLost) {
        toldLost = false;
        Say(CaptureNotice::What::Back, awayKind, 0);
    }
    if (data == nullptr) {  // a hole: the server says itself that these are missing
        Say(CaptureNotice::What::Incident, WaveInIncidentKind::Overrun, frames);
        return;
    }
    const std::span<const Frame> all(static_cast<const Frame*>(data), frames);
    const size_t taken = road.Frames.Push(all);
    if (taken > 0 && overflowed > 0) {
        Say(CaptureNotice::What::Incident, WaveInIncidentKind::Overrun, overflowed);
        overflowed = 0;
    }
    overflowed += frames - taken;
}

void PulseCapture::Account(uint64_t frames) {
    lastArrival = Now();
    if (!delivering) return;
    if (const std::optional<LossMeter::Loss> loss = meter.Arrived(lastArrival, frames)) {
        Say(CaptureNotice::What::Incident, loss->Kind, loss->Frames);
    }
}

void PulseCapture::TellLost(WaveInIncidentKind kind, bool certain) {
    away = true;
    awayKind = kind;
    BeginDelivering();
    if (!delivering) return;
    meter.Interrupted(kind, certain);
    if (toldLost) return;
    toldLost = true;
    Say(CaptureNotice::What::Lost, kind, 0);
}

void PulseCapture::Say(CaptureNotice::What said, WaveInIncidentKind kind, uint64_t lostFrames) {
    CaptureNotice notice;
    notice.Said = said;
    notice.Kind = kind;
    notice.LostFrames = lostFrames;
    road.Say(notice);
    arrived();
}

}  // namespace Corvetape
