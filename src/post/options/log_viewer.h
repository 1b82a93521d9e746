#pragma once

#include <optional>
#include <string>

#include "core/controls/messages.h"
#include "core/settings/settings.h"
#include "forms/frm_main.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/event_loop.h"
#include "platform/files.h"

namespace Corvetape {

/// What the tab of the log works on. All of it outlives it.
struct LogViewerParts {
    frmMain& Form;
    const WorkingFolders& Folders;
    Corvetape::Files& Files;
    const Corvetape::Clock& Clock;
    EventLoop& Loop;
    Corvetape::Dialogs& Dialogs;
    const clsLocalizeControls& Messages;
};

/// Shows and deletes the files of the log on their tab. Lines are shown as they are.
class LogViewer {
 public:
    /// Attaches itself to cmdOpenLogFile, cmdDeleteLogFiles and tbsMain.
    explicit LogViewer(LogViewerParts parts);
    LogViewer(const LogViewer&) = delete;
    LogViewer& operator=(const LogViewer&) = delete;

    /// Asks for a log, beginning with today's; empty if the user takes none.
    std::string OpenLogFile();

    /// Reads a log into txtLogFile, with events served between its lines. It stays empty if the file cannot
    /// be read. Nothing while another one is being read.
    void ShowLogFile(const std::string& path);

    /// The tab is entered: today's log is read if none is on show, or if it is the one on show. Another one
    /// that the user has opened stays.
    void Enter();

 private:
    void Open();
    void Delete();
    std::string Today() const;
    std::string CaptionOf(const std::string& title) const;
    std::string Filter() const;

    LogViewerParts Parts;
    bool Reading = false;
};

}  // namespace Corvetape
