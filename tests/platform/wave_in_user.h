#pragma once

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "platform/wave_in.h"

namespace Corvetape {

/// An owner of buffers as the recorder is one: gives every buffer back at once, unless it is told to keep
/// them, and collects what it got.
class WaveInUser {
 public:
    static constexpr size_t Buffers = 30;

    explicit WaveInUser(uint32_t rate = 44100) : Rate(rate), Headers(Buffers) {
        for (size_t index = 0; index < Buffers; ++index) {
            Samples.emplace_back(rate / 20);
            Headers[index].lpData = Samples[index].data();
            Headers[index].dwBufferLength = rate / 20 * 4;
            Headers[index].dwUser = static_cast<uint32_t>(index);
        }
    }

    WaveInEvents Events() {
        WaveInEvents events;
        events.BufferDone = [this](WaveHeader& header) { Take(header); };
        events.Incident = [this](const WaveInIncident& incident) {
            Incidents.push_back(incident);
            if (OnIncident) OnIncident();
        };
        events.Availability = [this](bool lost) { Availabilities.push_back(lost); };
        events.Ended = [this] { ++Ends; };
        return events;
    }

    bool Open(WaveIn& waveIn, size_t device = 0, BufferReturn mode = BufferReturn::Loop) {
        waveIn.Devices();
        Stream = waveIn.Open(device, MakeWaveFormat(Rate), mode, Events());
        if (Stream == nullptr) return false;
        for (WaveHeader& header : Headers) Stream->AddBuffer(header);
        return Stream->Start();
    }

    /// A polling tick of modes 1 and 2.
    void Poll() {
        Stream->Deliver();
        while ((Headers[PollIndex].dwFlags & WHDR_DONE) != 0) {
            WaveHeader& header = Headers[PollIndex];
            PollIndex = (PollIndex + 1) % Buffers;
            Take(header);
        }
    }

    /// Those that wait for their poll.
    size_t FullBuffers() const {
        return static_cast<size_t>(std::ranges::count_if(
            Headers, [](const WaveHeader& header) { return (header.dwFlags & WHDR_DONE) != 0; }));
    }

    void Take(WaveHeader& header) {
        Order.push_back(header.dwUser);
        Sizes.push_back(header.dwBytesRecorded);
        DoneFlags = DoneFlags && (header.dwFlags & WHDR_DONE) != 0;
        if (Collect) Got.insert(Got.end(), header.lpData, header.lpData + header.dwBytesRecorded / 4);
        if (KeepBuffers) return;
        header.dwFlags = 0;
        if (Stream != nullptr) Stream->AddBuffer(header);
    }

    uint32_t Rate;
    std::unique_ptr<WaveInStream> Stream;
    std::vector<std::vector<Frame>> Samples;
    std::vector<WaveHeader> Headers;
    size_t PollIndex = 0;
    bool KeepBuffers = false;
    bool Collect = true;

    std::vector<Frame> Got;
    std::vector<uint32_t> Order;
    std::vector<uint32_t> Sizes;
    bool DoneFlags = true;  ///< every buffer came with WHDR_DONE
    std::vector<WaveInIncident> Incidents;
    std::function<void()> OnIncident;
    std::vector<bool> Availabilities;
    size_t Ends = 0;
};

}  // namespace Corvetape
