#pragma once

#include <QPointer>
#include <memory>
#include <optional>
#include <string>

#include "app/program.h"
#include "desktop/desktop_arguments.h"
#include "desktop/desktop_scheme.h"
#include "desktop/end_signals.h"
#include "desktop/qt_desktop.h"
#include "desktop/qt_dialogs.h"
#include "desktop/toolkit_language.h"
#include "forms/form_boxes.h"
#include "platform/linux/browser/devtools_documents.h"
#include "platform/linux/browser/joined_documents.h"
#include "platform/linux/browser/radio_browser.h"
#include "platform/linux/browser/x11_windows.h"
#include "platform/linux/files/linux_files.h"
#include "platform/linux/files/linux_folders.h"
#include "platform/linux/loop/linux_clock.h"
#include "platform/linux/loop/qt_loop.h"
#include "platform/linux/players/mpris_players.h"
#include "platform/linux/players/mpris_service.h"
#include "platform/linux/processes/linux_processes.h"
#include "platform/linux/processes/linux_system.h"
#include "platform/linux/sound/pulse_mixer.h"
#include "platform/linux/sound/pulse_wave_in.h"
#include "platform/linux/web/linux_http.h"
#include "platform/mixer.h"
#include "platform/virtual/source_players.h"
#include "platform/virtual/source_wave_in.h"
#include "recording/media_keys.h"
#include "recording/run_songs.h"
#include "recording/signal_trace.h"
#include "ui/cover_bar.h"
#include "ui/help_window.h"
#include "ui/main_window.h"

namespace Corvetape {

/// The desktop program: this machine, the recorder on it, and its window. Made on the thread of the
/// QApplication and gone before it.
class DesktopProgram : private FormBoxes, private HelpPages {
 public:
    explicit DesktopProgram(DesktopArguments arguments);
    ~DesktopProgram() override;
    DesktopProgram(const DesktopProgram&) = delete;
    DesktopProgram& operator=(const DesktopProgram&) = delete;

    /// Runs until the program has ended. The exit code of the process.
    int Run();

    /// The window; null until the start has come to it.
    MainWindow* Window() { return Shown.get(); }

 private:
    /// Questions of the program over its window.
    void Ask(dlgProvider& dialog) override;
    std::string AskLanguage(const std::string& fitting) override;

    bool IsSecond();
    bool ChooseInput();
    Machine ThisMachine();
    RunOptions Options();
    ProgramEvents Events();
    void MakeWindow();
    std::string FittingLanguage();
    void WatchTheEnd();

    /// The user or the system wants the end, by a signal or with the session.
    void EndWanted();

    /// The help is the manual; the assistant is not there yet.
    void SetUrl(const std::string& page, bool online) override;

    DesktopArguments Arguments;
    LinuxClock Clock;
    QtLoop Loop;
    LinuxFiles Files;
    LinuxProcesses Processes;
    std::unique_ptr<LinuxFolders> Folders;
    ToolkitLanguage Toolkit;
    QtDialogs Dialogs;
    LinuxSystemInfo System;
    QtDesktop Screen;
    PulseWaveIn Pulse;
    PulseMixer Volumes;
    SourceWaveIn Radio;
    NoMixer Silent;  ///< of the radio, which has no volume
    bool Demo = false;
    SourcePlayers RadioTitles;
    MprisPlayers MediaPlayers;
    MprisService Presence;
    LinuxHttp Web;
    RadioBrowser Browser;
    DevToolsDocuments OtherBrowsers;
    JoinedDocuments Documents;
    X11Windows AllWindows;
    std::unique_ptr<Program> Recorder;
    RunSongs Songs;
    std::unique_ptr<SignalTrace> Trace;
    std::unique_ptr<CoverPictures> Covers;
    std::unique_ptr<HelpKeys> Keys;
    std::unique_ptr<UiParts> Ui;
    std::unique_ptr<MainWindow> Shown;
    std::unique_ptr<MediaKeys> Media;
    DesktopScheme Scheme;
    EndSignals Requests;
    bool EndsEarly = false;  ///< the end was wanted before the main loop
    QPointer<HelpWindow> Help;
};

}  // namespace Corvetape
