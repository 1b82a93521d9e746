#pragma once

#include <string>
#include <vector>

#include "audio/drain.h"
#include "audio/route.h"
#include "audio/song_writer.h"
#include "core/settings/registry.h"
#include "core/text/placeholders.h"
#include "recording/countdown.h"
#include "recording/session.h"
#include "sim/sim_machine.h"
#include "support/noted_reports.h"

namespace Corvetape::Test {

/// A session with a real song writer and a real ring on the simulated disk. Songs are begun and ended by
/// hand; everything else is done by pressing controls.
class SessionRig {
 public:
    SessionRig()
        : Writer({Machine.Files, Flags, Signal, Pause, Media, Messages, Cut},
                 {Format, Options, Folders, Machine.Clock}, Events()),
          Drain({Ring, Cut, Pause, Flags, Writer}) {
        Options.MusicFileTemplate[0] = "\"song\"";
        Machine.Files.MakeFolder("/home/user/temp");
        Folders.SongTempFolder = "/home/user/temp";
        Flags.RecordingEnabled = true;
        Pause.IgnoreShortSongs = 1;
        Pause.PauseBuffers = 1;
        Ring.Open(400, FramesPerBuffer);
        Form.chkStartStop[0].Enabled(true);
        Form.chkStartStop[1].Enabled(true);
        Form.txtRecordingPeriod.Text("60");
        Requests.End.Connect([this] { ++Unloads; });
    }

    /// A buffer of sound.
    SignalBuffer Buffer() {
        SignalBuffer buffer;
        buffer.lpData = Sound.data();
        buffer.dwBytesRecorded = static_cast<uint32_t>(FramesPerBuffer * sizeof(Frame));
        return buffer;
    }

    /// So many buffers of sound, or of silence, come in, the way that the mode sends them.
    void Play(int buffers, bool silent = false) {
        for (int i = 0; i < buffers; ++i) {
            SignalBuffer buffer = Buffer();
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
            Writer.WriteBufferToSong(Buffer(), true);
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

    /// True if somebody was told since the last look that nothing is recorded without media data.
    bool WasRefused() {
        const bool refused = Form.lblStatus[1].Caption() == "#871";
        Form.lblStatus[1].Caption("");
        return refused;
    }

    std::vector<SongFate> Closed;
    int64_t ClosedBuffers = 0;  ///< length of the last one
    int Unloads = 0;            ///< how often the program was to end
    ProgramRequests Requests;
    LifecycleFlags Lifecycle;
    RegistryBranches Registry{Machine.Files, "/home/user/user.reg", "/home/user/machine.reg"};
    Placeholders Expansion{Machine.Clock, Machine.Folders, Registry};
    SettingsStore Store{Machine.Files, Machine.Folders, Registry, Expansion, Machine.System.Version()};
    NotedReports Reports{Machine, Form,
                         "100=#100\n705=#705 %1\n706=#706\n707=#707 %1\n708=#708 %1\n814=#814 %1\n"
                         "860=#860 %1\n862=#862 %1\n870=#870 %1\n871=#871\n802=#802\n890=#890 %1\n"};
    frmQuickButtons PlainBar;
    frmCoverButtons CoverBar;

    SongWriter Writer;
    AudioDrain Drain;
    SongTargets Songs{Writer, Drain};
    MarginStore Margins{Machine.Files, Machine.Clock, Options, Folders, "run-1"};
    DiskCheck Disk{{Form, Machine.Files, Options, Folders, Flags, Messages, Margins}, Format, Reports.Say};
    RecordingLook Look{Form, PlainBar, CoverBar, Reports.Texts};
    SilenceNotice Notice{Flags, Signal, Reports.Say};
    RecordingResume Resumption{{Flags, Media, Messages, Writer, Disk, Notice}, Reports.Say};
    TimedPieces Pieces{{Pause, Media, Flags, Cut, Ring, Writer, Drain}, Requests};
    Session Recording{{Form, Flags, Media, Pieces, Look, Resumption}};
    Countdown Period{Form, Flags, Options, Store, Machine.Dialogs, Reports.Texts};

 private:
    SongEvents Events() {
        SongEvents events;
        events.SongClosed = [this](const ClosedSong& song) {
            Closed.push_back(song.Fate);
            ClosedBuffers = static_cast<int64_t>(song.Frames) / FramesPerBuffer;
        };
        return events;
    }
};

}  // namespace Corvetape::Test
