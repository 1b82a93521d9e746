#pragma once

#include <string>
#include <vector>

#include "audio/drain.h"
#include "audio/song_writer.h"
#include "recording/session.h"
#include "sim/sim_machine.h"

namespace Corvetape::Test {

/// A session with a real song writer and a real ring on the simulated disk. Songs are begun and ended by
/// hand; everything else is done by pressing controls.
class SessionRig {
 public:
    SessionRig()
        : Writer({Machine.Files, Flags, Signal, Pause, Media, Messages, Cut},
                 {Format, Options, Folders, [] { return std::string("song"); }}, Events()),
          Drain({Ring, Cut, Pause, Flags, Writer}),
          Recording({Form, Flags, Cut, Media, Pause, Signal, Ring, Writer}, Actions()) {
        Machine.Files.MakeFolder("/home/user/temp");
        Folders.SongTempFolder = "/home/user/temp";
        Flags.RecordingEnabled = true;
        Pause.IgnoreShortSongs = 1;
        Pause.PauseBuffers = 1;
        Ring.Open(400, FramesPerBuffer);
        Form.chkStartStop[0].Enabled(true);
        Form.chkStartStop[1].Enabled(true);
        Form.txtRecordingPeriod.Text("60");
    }

    /// So many buffers of sound, or of silence, come in, the way that the mode sends them.
    void Play(int buffers, bool silent = false) {
        for (int i = 0; i < buffers; ++i) {
            SignalBuffer buffer;
            buffer.lpData = Sound.data();
            buffer.dwBytesRecorded = static_cast<uint32_t>(FramesPerBuffer * sizeof(Frame));
            buffer.StreamPosition = Signal.FramesReceived;
            Signal.FramesReceived += FramesPerBuffer;
            Signal.SilentBufferCount = silent ? Signal.SilentBufferCount + 1 : 0;
            if (Pause.EndOfSongDetection == EndOfSong::Silence) {
                Writer.WriteBufferToSong(buffer, false);
            } else {
                Ring.SetLevel(silent ? 0 : 1000);
                Ring.Put(buffer);
                if (i % 20 == 19) Drain.DrainAudioRing(false);
            }
        }
    }

    /// The song in the file comes to its end, the way that the mode ends it.
    void EndSong() {
        if (Pause.EndOfSongDetection == EndOfSong::Silence) {
            Signal.InPause = true;
            SignalBuffer buffer;
            buffer.lpData = Sound.data();
            buffer.dwBytesRecorded = static_cast<uint32_t>(FramesPerBuffer * sizeof(Frame));
            Writer.WriteBufferToSong(buffer, true);
            Signal.InPause = false;
        } else {
            Cut.CutPending = true;
            Cut.CutIndex = Ring.AudioWriteIndex;
            Play(80);
            Drain.DrainAudioRing(true);
        }
        Recording.ShowFlags();
    }

    static constexpr uint32_t FramesPerBuffer = 2205;

    SimMachine Machine;
    frmMain Form;
    RecordingFlags Flags;
    SignalState Signal;
    PauseSettings Pause;
    MediaState Media;
    CutState Cut;
    AudioRing Ring;
    Settings Options;
    WorkingFolders Folders;
    DeferredMessages Messages;
    WaveFormat Format = MakeWaveFormat(44100);
    std::vector<Frame> Sound = std::vector<Frame>(FramesPerBuffer, Frame{1000, 1000});

    std::vector<SongFate> Closed;
    int64_t ClosedBuffers = 0;  ///< length of the last one
    int ResumesAsked = 0;
    int ZeroMinutesRefused = 0;
    int StatesShown = 0;
    bool RefusePeriod = false;
    int32_t PeriodStored = 0;

    SongWriter Writer;
    AudioDrain Drain;
    Session Recording;

 private:
    SongEvents Events() {
        SongEvents events;
        events.SongClosed = [this](const ClosedSong& song) {
            Closed.push_back(song.Fate);
            ClosedBuffers = static_cast<int64_t>(song.Frames) / FramesPerBuffer;
        };
        return events;
    }

    SessionActions Actions() {
        SessionActions actions;
        actions.CutNow = [this] { Drain.DrainAudioRing(true); };
        actions.ResumeRecording = [this] { ++ResumesAsked; };
        actions.RefuseZeroMinutes = [this] { ++ZeroMinutesRefused; };
        actions.ShowRecordingState = [this] { ++StatesShown; };
        actions.StorePeriod = [this](int32_t minutes) { PeriodStored = minutes; };
        actions.PeriodRefused = [this] { return RefusePeriod; };
        return actions;
    }
};

}  // namespace Corvetape::Test
