#pragma once

#include <string>

#include "audio/capture.h"
#include "audio/drain.h"
#include "audio/input_device.h"
#include "audio/route.h"
#include "audio/song_writer.h"
#include "sim/sim_machine.h"

namespace Corvetape::Test {

/// The way of the sound from a simulated input to a song's file, as far as others open, close or empty it.
/// What arrives goes to `target` alone, if
/// there is one.
class SignalChain {
 public:
    SignalChain(SimMachine& machine, SignalState& signal, const PauseSettings& pause, MediaState& media)
        : SignalChain(machine, machine.WaveIn, signal, pause, media) {}

    SignalChain(SimMachine& machine, WaveIn& inputs, SignalState& signal, const PauseSettings& pause,
                MediaState& media, BufferTarget* target = nullptr)
        : Input(
              {inputs, machine.Loop, machine.Clock, Options, signal, Ring, target != nullptr ? *target : Ear},
              {}),
          Writer({machine.Files, Flags, signal, pause, media, Messages, Cut},
                 {Format, Options, Folders, machine.Clock}, {}),
          Drain({Ring, Cut, pause, Flags, Writer}),
          Targets(Writer, Drain),
          Device(Input, Targets, Requests) {
        Folders.SongTempFolder = "/home/user";
        Requests.End.Connect([this] { ++Ends; });
    }

    /// What arrives is not listened to.
    class Deaf : public BufferTarget {
     public:
        bool Handle(WaveBuffer&) override { return true; }
    };

    Deaf Unheard;
    BufferTarget& Ear = Unheard;
    Settings Options;
    WorkingFolders Folders;
    RecordingFlags Flags;
    CutState Cut;
    AudioRing Ring;
    DeferredMessages Messages;
    WaveFormat Format = MakeWaveFormat(44100);
    ProgramRequests Requests;
    int Ends = 0;  ///< how often the program was to end
    Capture Input;
    SongWriter Writer;
    AudioDrain Drain;
    SongTargets Targets;
    InputDevice Device;
};

}  // namespace Corvetape::Test
