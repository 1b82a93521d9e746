#include "platform/linux/sound/pulse_capture.h"

#include <pthread.h>
#include <sys/eventfd.h>
#include <time.h>

#include "platform/linux/loop/thread_signals.h"
#include "platform/program_name.h"

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
    : Wanted(std::move(wanted)),
      Road(roadToLoop),
      Arrived(std::move(arrivedCall)),
      Meter(Wanted.FramesPerSecond),
      Wake(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      Thread([this] { Run(); }) {}

PulseCapture::~PulseCapture() {
    Ending = true;
    const uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = write(Wake.Number(), &one, sizeof one);
    Thread.join();
}

std::string PulseCapture::WaitForStart(std::chrono::milliseconds limit) {
    std::unique_lock guard(AttemptLock);
    AttemptEnded.wait_for(guard, limit, [this] { return PresentAttempt != Attempt::Pending; });
    if (PresentAttempt == Attempt::Succeeded) return {};
    return pa_strerror(PresentAttempt == Attempt::Pending ? PA_ERR_TIMEOUT : AttemptError);
}

/// Why the server has refused what it was asked for last. Some failures are known to it by none.
int PulseCapture::ServerError() const {
    const int error = Context ? pa_context_errno(Context.get()) : PA_OK;
    return error != PA_OK ? error : PA_ERR_UNKNOWN;
}

void PulseCapture::Finish(Attempt result) {
    const std::lock_guard guard(AttemptLock);
    if (PresentAttempt != Attempt::Pending) return;
    PresentAttempt = result;
    AttemptError = AwayError != PA_OK ? AwayError : PA_ERR_UNKNOWN;
    AttemptEnded.notify_all();
}

void PulseCapture::Run() {
    LeaveSignalsToTheMainThread();
    pthread_setname_np(pthread_self(), "capture");
    Loop.reset(pa_mainloop_new());
    if (!Loop) {
        Finish(Attempt::Failed);
        return;
    }
    pa_mainloop_api* const api = pa_mainloop_get_api(Loop.get());
    pa_io_event* const end = api->io_new(
        api, Wake.Number(), PA_IO_EVENT_INPUT,
        [](pa_mainloop_api*, pa_io_event*, int, pa_io_event_flags_t, void*) {}, nullptr);
    while (!Ending) RunOnce();
    Disconnect();
    api->io_free(end);
    Loop.reset();
}

void PulseCapture::RunOnce() {
    int64_t now = Now();
    if (!Context && now >= NextAttempt) Connect();
    const int64_t wait = std::max<int64_t>(NextLook(now) - now, 0);
    if (pa_mainloop_prepare(Loop.get(), static_cast<int>(wait / 1000)) < 0) return;
    if (pa_mainloop_poll(Loop.get()) < 0 || pa_mainloop_dispatch(Loop.get()) < 0) return;
    const int64_t wokenUp = Now();
    // The thread has stood still itself, so nobody can say how long the device was silent: what has piled up
    // comes in several turns of the loop.
    if (wokenUp - now > wait + Second) LastArrival = wokenUp;
    now = wokenUp;
    Watch(now);
    if (!Broken) return;
    Disconnect();
    Finish(Attempt::Failed);
    NextAttempt = now + std::chrono::nanoseconds(Wanted.RetryInterval).count();
}

int64_t PulseCapture::NextLook(int64_t now) const {
    if (Broken) return now;
    return Context ? now + Second : NextAttempt;
}

void PulseCapture::Watch(int64_t now) {
    // The road may have been opened while nothing came.
    if (Away && !ReportedLost) ReportLost(AwayKind, true);
    if (!Context || Broken) return;
    if (!Accepting) {
        if (now - AttemptBegan > AttemptLimit) Break(WaveInIncidentKind::ServerLost, PA_ERR_TIMEOUT);
        return;
    }
    const int64_t silence = now - LastArrival;
    if (silence > SilenceMeansBroken) {
        Break(WaveInIncidentKind::DeviceLost, PA_ERR_TIMEOUT);
    } else if (silence > SilenceMeansLost) {
        ReportLost(WaveInIncidentKind::DeviceLost, false);
    }
}

void PulseCapture::Connect() {
    AttemptBegan = Now();
    Context.reset(pa_context_new(pa_mainloop_get_api(Loop.get()), ProgramTitle));
    if (!Context) {
        Break(WaveInIncidentKind::ServerLost, PA_ERR_INTERNAL);
        return;
    }
    pa_context_set_state_callback(Context.get(), ContextChanged, this);
    const char* const address = Wanted.Server.empty() ? nullptr : Wanted.Server.c_str();
    if (pa_context_connect(Context.get(), address, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) {
        Break(WaveInIncidentKind::ServerLost, ServerError());
    }
}

void PulseCapture::Disconnect() {
    Accepting = false;
    Broken = false;
    Question.reset();
    Stream.reset();
    Context.reset();
}

void PulseCapture::Break(WaveInIncidentKind kind, int error) {
    if (Broken) return;
    Broken = true;
    Accepting = false;
    // A server that is still gone at the next attempt says less than when it went.
    if (!Away || AwayError == PA_OK) AwayError = error;
    ReportLost(kind, true);
}

void PulseCapture::ContextChanged(pa_context* changed, void* user) {
    PulseCapture& self = Self(user);
    const pa_context_state_t state = pa_context_get_state(changed);
    if (!PA_CONTEXT_IS_GOOD(state)) {
        self.Break(WaveInIncidentKind::ServerLost, self.ServerError());
    } else if (state == PA_CONTEXT_READY) {
        // A server may give another source instead of a missing one, so the name is looked up first.
        self.Question.reset(
            pa_context_get_source_info_by_name(changed, self.Wanted.Source.c_str(), SourceAnswer, user));
    }
}

void PulseCapture::SourceAnswer(pa_context*, const pa_source_info* info, int end, void* user) {
    PulseCapture& self = Self(user);
    if (end < 0 || (info != nullptr && self.Wanted.Source != info->name)) {
        self.Break(WaveInIncidentKind::DeviceLost, PA_ERR_NOENTITY);
    } else if (info != nullptr && !self.Stream && !self.Broken) {
        self.CreateStream();
    }
}

void PulseCapture::CreateStream() {
    const pa_sample_spec format{PA_SAMPLE_S16LE, Wanted.FramesPerSecond, 2};
    pa_channel_map stereo;
    pa_channel_map_init_stereo(&stereo);
    Stream.reset(pa_stream_new(Context.get(), "Recording", &format, &stereo));
    if (!Stream) {
        Break(WaveInIncidentKind::DeviceLost, ServerError());
        return;
    }
    pa_stream_set_state_callback(Stream.get(), StreamChanged, this);
    pa_stream_set_read_callback(Stream.get(), StreamReadable, this);
    pa_stream_set_moved_callback(Stream.get(), StreamMoved, this);
    pa_stream_set_suspended_callback(Stream.get(), StreamSuspended, this);
    pa_buffer_attr sizes{};
    sizes.maxlength = static_cast<uint32_t>(-1);  // as much as the server keeps at all
    sizes.fragsize = static_cast<uint32_t>(Wanted.FramesPerBuffer * sizeof(Frame));
    const auto flags = static_cast<pa_stream_flags_t>(PA_STREAM_ADJUST_LATENCY | PA_STREAM_DONT_MOVE);
    if (pa_stream_connect_record(Stream.get(), Wanted.Source.c_str(), &sizes, flags) < 0) {
        Break(WaveInIncidentKind::DeviceLost, ServerError());
    }
}

void PulseCapture::StreamChanged(pa_stream* changed, void* user) {
    PulseCapture& self = Self(user);
    const pa_stream_state_t state = pa_stream_get_state(changed);
    if (state == PA_STREAM_READY) {
        self.StreamReady();
    } else if (!PA_STREAM_IS_GOOD(state)) {
        const bool serverIsThere = PA_CONTEXT_IS_GOOD(pa_context_get_state(self.Context.get()));
        self.Break(serverIsThere ? WaveInIncidentKind::DeviceLost : WaveInIncidentKind::ServerLost,
                   self.ServerError());
    }
}

void PulseCapture::StreamReady() {
    const char* const name = pa_stream_get_device_name(Stream.get());
    if (name == nullptr || Wanted.Source != name) {
        Break(WaveInIncidentKind::DeviceLost, PA_ERR_NOENTITY);
        return;
    }
    Accepting = true;
    LastArrival = Now();
    Finish(Attempt::Succeeded);
}

void PulseCapture::StreamMoved(pa_stream* moved, void* user) {
    PulseCapture& self = Self(user);
    const char* const name = pa_stream_get_device_name(moved);
    if (name == nullptr || self.Wanted.Source != name) {
        self.Break(WaveInIncidentKind::DeviceLost, PA_ERR_NOENTITY);
    }
}

void PulseCapture::StreamSuspended(pa_stream* suspended, void* user) {
    PulseCapture& self = Self(user);
    if (self.Accepting && pa_stream_is_suspended(suspended) > 0) {
        self.ReportLost(WaveInIncidentKind::DeviceLost, false);
    }
}

void PulseCapture::StreamReadable(pa_stream*, size_t, void* user) {
    Self(user).Read();
}

void PulseCapture::Read() {
    uint64_t frames = 0;
    // Frames of a stream that is not known to be the right one are thrown away.
    while (pa_stream_readable_size(Stream.get()) > 0) {
        const void* data = nullptr;
        size_t bytes = 0;
        if (pa_stream_peek(Stream.get(), &data, &bytes) < 0 || bytes == 0) break;
        if (Accepting) {
            Take(data, bytes / sizeof(Frame));
            frames += bytes / sizeof(Frame);
        }
        pa_stream_drop(Stream.get());
    }
    if (frames == 0) return;
    Account(frames);
    if (Delivering) Arrived();
}

void PulseCapture::BeginDelivering() {
    if (Delivering || !Road.Open) return;
    Delivering = true;
    Meter.Start(Now());
}

void PulseCapture::Take(const void* data, size_t frames) {
    Away = false;
    BeginDelivering();
    if (!Delivering) return;
    if (ReportedLost) {
        ReportedLost = false;
        Say(CaptureNotice::What::Back, AwayKind, 0);
    }
    if (data == nullptr) {  // a hole: the server says itself that these are missing
        Say(CaptureNotice::What::Incident, WaveInIncidentKind::Overrun, frames);
        return;
    }
    const std::span<const Frame> all(static_cast<const Frame*>(data), frames);
    const size_t taken = Road.Frames.Push(all);
    if (taken > 0 && Overflowed > 0) {
        Say(CaptureNotice::What::Incident, WaveInIncidentKind::Overrun, Overflowed);
        Overflowed = 0;
    }
    Overflowed += frames - taken;
}

void PulseCapture::Account(uint64_t frames) {
    LastArrival = Now();
    if (!Delivering) return;
    if (const std::optional<LossMeter::Loss> loss = Meter.Arrived(LastArrival, frames)) {
        Say(CaptureNotice::What::Incident, loss->Kind, loss->Frames);
        AwayError = PA_OK;
    }
}

void PulseCapture::ReportLost(WaveInIncidentKind kind, bool certain) {
    Away = true;
    AwayKind = kind;
    BeginDelivering();
    if (!Delivering) return;
    Meter.Interrupted(kind, certain);
    if (ReportedLost) return;
    ReportedLost = true;
    Say(CaptureNotice::What::Lost, kind, 0);
}

void PulseCapture::Say(CaptureNotice::What said, WaveInIncidentKind kind, uint64_t lostFrames) {
    CaptureNotice notice;
    notice.Said = said;
    notice.Kind = kind;
    notice.LostFrames = lostFrames;
    const bool hasReason = kind == WaveInIncidentKind::ServerLost || kind == WaveInIncidentKind::DeviceLost;
    notice.Error = hasReason ? AwayError : PA_OK;
    Road.Say(notice);
    Arrived();
}

}  // namespace Corvetape
