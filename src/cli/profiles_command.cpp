#include <fmt/format.h>
#include <signal.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QUrl>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <memory>
#include <thread>

#include "cli/commands.h"
#include "cli/hosts.h"
#include "cli/interrupt.h"
#include "cli/output.h"
#include "cli/profile_report.h"
#include "cli/run_support.h"
#include "core/settings/registry.h"
#include "core/settings/settings_store.h"
#include "core/text/placeholders.h"
#include "media/devtools_ports.h"
#include "platform/linux/browser/devtools_documents.h"
#include "platform/linux/browser/x11_windows.h"

namespace Corvetape {

namespace {

using std::chrono::milliseconds;

/// The settings that the recorder would have.
struct ProfileSettings {
    std::string Path;
    std::string Ports;
};

ProfileSettings SettingsOf(const ProfilesArguments& arguments, HostParts& host, const Clock& clock) {
    LinuxFolders& folders = *host.Folders;
    RegistryBranches registry(host.Files, "", "");
    const Placeholders placeholders(clock, folders, registry);
    const SettingsStore store(host.Files, folders, registry, placeholders, host.System.Version());
    ProfileSettings settings;
    settings.Path = !arguments.File.empty()
                        ? arguments.File
                        : ProfilePath(host.Files, store.Ini().Path(), folders.ProgramFolder());
    settings.Ports = !arguments.Ports.empty()
                         ? arguments.Ports
                         : store.Ini().ReadText("Browser", "DevToolsPorts", UsualDevToolsPort);
    return settings;
}

/// A browser without a window that shows one file and reaches nothing else. Nothing of it is left at the end,
/// neither a process nor a file.
class PageBrowser {
 public:
    PageBrowser() : Folder(QDir::tempPath() + "/corvetape-page-XXXXXX") {}

    /// The port that it answers at; 0 if it cannot be started.
    uint16_t Start(const std::string& program, const std::string& page) {
        if (!Folder.isValid()) return 0;
        QStringList words{"--headless",
                          "--remote-debugging-port=0",
                          "--user-data-dir=" + Folder.path(),
                          "--disable-gpu",
                          "--no-first-run",
                          "--disable-background-networking",
                          "--disable-component-update",
                          "--disable-sync",
                          "--host-resolver-rules=MAP * ~NOTFOUND"};
        words += qEnvironmentVariable("CORVETAPE_BROWSER_FLAGS").split(' ', Qt::SkipEmptyParts);
        const QFileInfo file(QString::fromStdString(page));
        words.append(QUrl::fromLocalFile(file.absoluteFilePath()).toString(QUrl::FullyEncoded));
        Process.setStandardOutputFile(QProcess::nullDevice());
        Process.setStandardErrorFile(QProcess::nullDevice());
        // The browser forgets files of its own there when it is ended.
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("TMPDIR", Folder.path());
        Process.setProcessEnvironment(environment);
        Process.setChildProcessModifier([] { setpgid(0, 0); });
        Process.start(QString::fromStdString(program), words);
        if (!Process.waitForStarted()) return 0;
        Group = static_cast<pid_t>(Process.processId());
        const std::string portFile = Folder.filePath("DevToolsActivePort").toStdString();
        constexpr int tries = 200;
        for (int i = 0; i < tries && Process.state() == QProcess::Running; ++i) {
            uint16_t port = 0;
            if (std::ifstream(portFile) >> port) return port;
            std::this_thread::sleep_for(milliseconds(100));
            Process.waitForFinished(1);  // notices an end
        }
        return 0;
    }

    ~PageBrowser() {
        Process.terminate();
        if (!Process.waitForFinished(3000)) Process.kill();
        Process.waitForFinished(3000);
        EndGroup();
    }

 private:
    /// The browser's helpers may outlive it for a moment and put files into a folder that is being removed.
    void EndGroup() const {
        if (Group <= 0) return;
        constexpr int tries = 200;
        for (int i = 0; i < tries && kill(-Group, SIGKILL) == 0; ++i) {
            std::this_thread::sleep_for(milliseconds(10));
        }
    }

    QTemporaryDir Folder;
    QProcess Process;
    pid_t Group = 0;  ///< of processes, the browser and its helpers
};

std::string FindBrowser(Folders& folders) {
    for (const char* name : {"chromium", "chromium-browser", "google-chrome", "microsoft-edge", "brave"}) {
        if (const auto path = folders.FindProgram(name)) return *path;
    }
    return "";
}

/// True once the file is loaded and the browser reports its title, too. A browser begins with an empty page
/// that has the same place in its list.
bool IsThere(const PageInfo& page, Document& document) {
    const std::string title = document.Title().value_or("");
    return document.Url().starts_with("file:") && (title.empty() || title == page.Title) &&
           document.Evaluate("document.readyState") == "complete";
}

int ReportPage(const ProfilesArguments& arguments, ProfileTrial trial, HostParts& host) {
    if (!host.Files.FileSize(arguments.Page)) return Fail(arguments.Page + ": no such file");
    const std::string program = FindBrowser(*host.Folders);
    if (program.empty()) return Fail("--page needs a browser of the Chromium family, and none is installed");
    PageBrowser browser;
    const uint16_t port = browser.Start(program, arguments.Page);
    if (port == 0) {
        return Fail("the browser " + program +
                    " could not be started; CORVETAPE_BROWSER_FLAGS can name flags that it needs");
    }
    trial.How = ProfileMatch::AnyAddress;
    DevToolsDocuments documents({port});
    constexpr int tries = 100;
    for (int i = 0; i < tries; ++i) {
        documents.BeginPoll();
        const auto pages = documents.Pages();
        const auto document = pages.empty() ? nullptr : documents.Open(pages.front());
        if (document && IsThere(pages.front(), *document)) break;
        std::this_thread::sleep_for(milliseconds(50));
    }
    Print(stdout, ProfileReport(trial, &documents, nullptr));
    return ExitDone;
}

}  // namespace

int RunProfiles(const ProfilesArguments& arguments) {
    const Interrupt interrupt;
    int count = 0;
    const QCoreApplication application(count, nullptr);
    HostParts host(arguments.Home);
    const LinuxClock clock;
    const ProfileSettings settings = SettingsOf(arguments, host, clock);
    if (!host.Files.FileSize(settings.Path)) return Fail(settings.Path + ": no such file");
    if (const size_t unread = CountUnreadProfiles(Profile(host.Files, settings.Path)); unread > 0) {
        ReportLine(fmt::format("{}: {} profiles are not read; the list of their names is full", settings.Path,
                               unread));
    }
    const std::vector<uint16_t> ports = DevToolsPorts(settings.Ports);
    const auto trial = [&] {
        return ProfileTrial{settings.Path, ReadProfiles(Profile(host.Files, settings.Path)), ports};
    };
    if (!arguments.Page.empty()) return ReportPage(arguments, trial(), host);

    DevToolsDocuments documents(ports);
    X11Windows windows;
    std::string last;
    do {
        const std::string report = ProfileReport(trial(), &documents, &windows);
        if (report != last) Print(stdout, (last.empty() ? "" : "\n") + report + "\n");
        last = report;
        if (arguments.Watch) std::this_thread::sleep_for(milliseconds(500));
    } while (arguments.Watch && !Interrupt::Wanted());
    return ExitDone;
}

}  // namespace Corvetape
