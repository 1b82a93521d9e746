#include "live/recorder.h"

#include <algorithm>
#include <cmath>

namespace Corvetape {

PulseTerms Patiently(const std::string& server) {
    constexpr std::chrono::seconds limit{30};
    return {.Server = server, .ConnectLimit = limit, .OpenLimit = limit};
}

Recorder::Recorder(LiveSession& liveSession, const std::string& server, BufferReturn returnMode,
                   uint32_t framesPerSecond)
    : session(liveSession),
      waveIn(liveSession.Loop, Patiently(server)),
      mode(returnMode),
      rate(framesPerSecond),
      memory(Buffers * rate / 20) {}

Recorder::Recorder(LiveSession& liveSession, const PulseTerms& options)
    : session(liveSession),
      waveIn(liveSession.Loop, options),
      mode(BufferReturn::Loop),
      rate(44100),
      memory(Buffers * rate / 20) {}

bool Recorder::Begin(const std::string& source) {
    const std::vector<WaveInDevice> devices = waveIn.Devices();
    const auto device = std::ranges::find(devices, source, &WaveInDevice::Id);
    if (device == devices.end()) return false;
    WaveInEvents events;
    events.BufferDone = [this](WaveHeader& header) { Take(header); };
    events.Incident = [this](const WaveInIncident& incident) { Incidents.push_back(incident); };
    events.Availability = [this](bool lost) {
        Lost.push_back(lost);
        LostAt.push_back(Frames.size());
        LostWhen.push_back(std::chrono::steady_clock::now());
    };
    stream = waveIn.Open(static_cast<size_t>(device - devices.begin()), MakeWaveFormat(rate), mode, events);
    if (!stream) return false;
    for (size_t i = 0; i < Buffers; ++i) {
        headers[i] = {};
        headers[i].lpData = memory.data() + i * rate / 20;
        headers[i].dwBufferLength = rate / 20 * 4;
        headers[i].dwUser = static_cast<uint32_t>(i);
        stream->AddBuffer(headers[i]);
    }
    next = 0;
    const bool precise = mode == BufferReturn::PollPrecisely;
    if (precise || mode == BufferReturn::PollByTimer) {
        timer = session.Loop.NewTimer([this] { Poll(); });
        timer->Start(std::chrono::milliseconds(precise ? 50 : 100),
                     precise ? TimerPrecision::Precise : TimerPrecision::Coarse);
    }
    return stream->Start();
}

void Recorder::End() {
    timer.reset();
    stream.reset();
}

bool Recorder::WaitForFrames(size_t count) {
    const size_t wanted = Frames.size() + count;
    const auto limit = std::chrono::milliseconds(count * 1000 / rate + 60'000);
    return session.WaitFor([&] { return Frames.size() >= wanted; }, limit);
}

double Recorder::Gap() const {
    return std::chrono::duration<double>(LostWhen.at(1) - LostWhen.at(0)).count();
}

double Recorder::Told() const {
    double frames = 0;
    for (const WaveInIncident& incident : Incidents) frames += static_cast<double>(incident.LostFrames);
    return frames / rate;
}

void Recorder::BeginAccount() {
    accountFrames = Frames.size();
    accountBegan = std::chrono::steady_clock::now();
}

double Recorder::Unaccounted() const {
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - accountBegan;
    return passed.count() - static_cast<double>(Frames.size() - accountFrames) / rate - Told();
}

bool Recorder::AccountIsEven(double tolerance) {
    const auto even = [&] { return std::abs(Unaccounted()) < tolerance; };
    if (!session.WaitFor(even, std::chrono::seconds(20))) return false;
    session.WaitFor([] { return false; }, std::chrono::milliseconds(1500));  // what is told late, comes now
    return session.WaitFor(even, std::chrono::seconds(5));
}

void Recorder::Take(WaveHeader& header) {
    const bool whole = header.dwBytesRecorded == header.dwBufferLength && (header.dwFlags & WHDR_DONE) != 0;
    if (!whole || header.dwUser != next) ++OddBuffers;
    next = (next + 1) % Buffers;
    Frames.insert(Frames.end(), header.lpData, header.lpData + header.dwBytesRecorded / sizeof(Frame));
    header.dwFlags = 0;
    header.dwBytesRecorded = 0;
    stream->AddBuffer(header);
}

void Recorder::Poll() {
    stream->Deliver();
    while ((headers[next].dwFlags & WHDR_DONE) != 0) {
        Take(headers[next]);
        stream->Deliver();
    }
}

}  // namespace Corvetape
