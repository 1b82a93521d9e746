#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "audio/capture.h"
#include "platform/virtual/sim_clock.h"
#include "platform/virtual/sim_loop.h"
#include "platform/wave_in.h"

namespace Corvetape::Test {

/// A device that does what the test says, and notes what is asked of it.
class ScriptedWaveIn : public WaveIn {
 public:
    WaveInList Devices() override { return std::vector<WaveInDevice>(Count); }

    OpenedWaveIn Open(size_t device, const WaveFormat& format, BufferReturn mode,
                      WaveInEvents events) override {
        Asked += "open" + std::to_string(device) + " ";
        if (device >= Count) return nullptr;
        Format = format;
        Mode = mode;
        Events = std::move(events);
        Queue.clear();
        ++OpenStreams;
        return std::make_unique<Stream>(*this);
    }

    /// Fills the first queued buffer, as far as `frames` go. Nothing if the queue is empty.
    WaveHeader* Fill(size_t frames = 1U << 20U) {
        if (Queue.empty()) return nullptr;
        WaveHeader* header = Queue.front();
        Queue.erase(Queue.begin());
        const size_t room = header->dwBufferLength / sizeof(Frame);
        header->dwBytesRecorded = static_cast<uint32_t>(std::min(frames, room) * sizeof(Frame));
        for (size_t i = 0; i < room; ++i) header->lpData[i] = {Value, Value};
        ++Value;
        return header;
    }

    /// A buffer arrives as an event.
    void Arrive(size_t frames = 1U << 20U) {
        if (WaveHeader* header = Fill(frames)) {
            header->dwFlags |= WHDR_DONE;
            Events.BufferDone(*header);
        }
    }

    size_t Count = 2;
    bool Starts = true;
    int32_t Due = 0;  ///< buffers that the next Deliver fills
    std::function<void()> OnDeliver;
    std::function<void()> OnReset;
    std::function<void()> OnClose;
    int16_t Value = 1;
    std::string Asked;
    WaveFormat Format;
    BufferReturn Mode = BufferReturn::Loop;
    WaveInEvents Events;
    std::vector<WaveHeader*> Queue;
    int32_t OpenStreams = 0;

 private:
    class Stream : public WaveInStream {
     public:
        explicit Stream(ScriptedWaveIn& owner) : Owner(owner) {}
        ~Stream() override {
            Owner.Asked += "close ";
            if (Owner.OnClose) Owner.OnClose();
            --Owner.OpenStreams;
        }
        void AddBuffer(WaveHeader& header) override {
            Owner.Asked += "add" + std::to_string(header.dwUser) + " ";
            Owner.Queue.push_back(&header);
        }
        bool Start() override {
            Owner.Asked += "start ";
            return Owner.Starts;
        }
        void Reset() override {
            Owner.Asked += "reset ";
            if (Owner.OnReset) Owner.OnReset();
            Owner.Queue.clear();
        }
        void Deliver() override {
            if (Owner.OnDeliver) Owner.OnDeliver();
            for (; Owner.Due > 0 && !Owner.Queue.empty(); --Owner.Due) Owner.Fill()->dwFlags |= WHDR_DONE;
        }

     private:
        ScriptedWaveIn& Owner;
    };
};

/// A capture on that device.
class CaptureBench : private BufferTarget {
 public:
    CaptureBench() {
        Options.RecordingBuffers = 5;
        Options.AudioBuffers = 8;
        MakeCapture();
    }

    void MakeCapture() {
        Made = std::make_unique<Capture>(CaptureParts{Device, Loop, Clock, Options, Signal, Ring, *this},
                                         MakeEvents());
    }

    Capture& Input() { return *Made; }
    BufferTarget& Target() { return *this; }

    void Advance(int32_t milliseconds) { Loop.RunFor(std::chrono::milliseconds(milliseconds)); }

    /// A buffer arrives so many milliseconds after the one before.
    void ArriveAfter(int32_t milliseconds) {
        Advance(milliseconds);
        Device.Arrive();
    }

    std::string TakeAsked() { return std::exchange(Device.Asked, ""); }

    SimClock Clock;
    SimLoop Loop{Clock};
    Settings Options;
    SignalState Signal;
    AudioRing Ring;
    ScriptedWaveIn Device;

    std::function<bool(WaveBuffer&)> OnBuffer = [](WaveBuffer&) { return true; };
    std::function<void()> OnFatal = [] {};
    std::vector<int16_t> Heard;        ///< first sample of each buffer
    std::vector<uint64_t> Positions;   ///< StreamPosition of each buffer
    std::vector<uint64_t> LostBefore;  ///< FramesLostBefore of each buffer
    int32_t Fatals = 0;
    int32_t Ends = 0;
    std::vector<uint64_t> Incidents;
    std::string Availability;
    std::unique_ptr<Capture> Made;

 private:
    bool Handle(WaveBuffer& buffer) override {
        Heard.push_back(buffer.Samples.front().Left);
        Positions.push_back(buffer.StreamPosition);
        LostBefore.push_back(buffer.FramesLostBefore);
        return OnBuffer(buffer);
    }

    CaptureEvents MakeEvents() {
        CaptureEvents events;
        events.Fatal = [this] {
            ++Fatals;
            OnFatal();
        };
        events.DeviceIncident = [this](const WaveInIncident& what) { Incidents.push_back(what.LostFrames); };
        events.Availability = [this](bool lost) { Availability += lost ? "gone " : "back "; };
        events.Ended = [this] { ++Ends; };
        return events;
    }
};

}  // namespace Corvetape::Test
