#include <fmt/format.h>

#include <QCoreApplication>
#include <chrono>
#include <filesystem>
#include <system_error>

#include "cli/commands.h"
#include "cli/hosts.h"
#include "cli/output.h"
#include "cli/recut_choice.h"
#include "cli/run_support.h"
#include "core/settings/registry.h"
#include "core/settings/settings_store.h"
#include "core/text/placeholders.h"
#include "platform/linux/desktop/one_line.h"

namespace Corvetape {

namespace {

/// The settings of the recorder, as far as a song is cut by them.
struct RecutSettings {
    Settings Options;
    WorkingFolders Folders;
    MediaState Media;
};

RecutSettings LoadSettings(HostParts& host, const Clock& clock) {
    RecutSettings loaded;
    RegistryBranches registry(host.Files, "", "");
    const Placeholders placeholders(clock, *host.Folders, registry);
    SettingsStore store(host.Files, *host.Folders, registry, placeholders, host.System.Version());
    store.LoadSettings({loaded.Options, loaded.Folders, loaded.Media}, {}, {});
    return loaded;
}

/// One command line.
class RecutRun {
 public:
    RecutRun(const RecutArguments& arguments, HostParts& host, const Clock& clock)
        : Arguments(arguments),
          Host(host),
          Loaded(LoadSettings(host, clock)),
          Store(host.Files, clock, Loaded.Options, Loaded.Folders, host.System.RunName()),
          Learned(host.Files, FolderOfLearnedCuts(*host.Folders), Loaded.Options),
          Recut({host.Files, host.Processes, Loaded.Options, Loaded.Folders, Store, Learned,
                 host.System.RunName()}) {}

    int Run() {
        Store.DropOld();
        const std::vector<KeptMargins> all = Store.List();
        if (Arguments.Song.empty()) return List(all);
        std::error_code none;
        const auto path = std::filesystem::absolute(Arguments.Song, none);
        std::vector<KeptMargins> found = FindSongs(Host.Files, all, path.lexically_normal().string());
        if (found.empty()) found = FindSongs(Host.Files, all, Arguments.Song);
        if (found.empty()) return Fail(Unknown(all.empty()));
        if (Arguments.List) return List(found);
        if (found.size() > 1) {
            return Fail(fmt::format("{} songs are called {}; give the path of the music file", found.size(),
                                    Arguments.Song));
        }
        return Cut(found.front());
    }

 private:
    std::string Unknown(bool nothingKept) const {
        const std::string name = "no song " + Arguments.Song + " can be cut again; ";
        if (nothingKept)
            return name + "margins are kept of songs with an unsure cut only, and there are none";
        return name + "--list shows those that can";
    }

    int List(const std::vector<KeptMargins>& songs) {
        for (const KeptMargins& each : songs) {
            Print(stdout, RecutLines({each, Recut.RoomOf(each), Store.SecondsLeft(each)}));
        }
        if (songs.empty()) ReportLine("no song is kept with its margins");
        return ExitDone;
    }

    int Cut(const KeptMargins& song) {
        const std::string name = NameOf(song);
        if (std::string why = Recut.Begin(song, {Arguments.Begin, Arguments.End}); !why.empty()) {
            return Fail(name + " is not cut again: " + why);
        }
        while (!Recut.JobName().empty()) {
            Host.Processes.WaitForAll(std::chrono::milliseconds(500));
            for (const JobResult& result : Host.Processes.TakeFinished()) {
                if (std::string why = Recut.End(result); !why.empty()) {
                    return Fail(name + " is not cut again: " + why + " The log of the encoders is " +
                                Loaded.Folders.Paths[2] + "/encode.log");
                }
            }
        }
        Print(stdout, fmt::format("cut again: {}\n", OneLine(Recut.MusicFile())));
        return ExitDone;
    }

    const RecutArguments& Arguments;
    HostParts& Host;
    RecutSettings Loaded;
    MarginStore Store;
    LearnedCuts Learned;
    SongRecut Recut;
};

}  // namespace

int RunRecut(const RecutArguments& arguments) {
    int count = 0;
    const QCoreApplication application(count, nullptr);
    HostParts host(arguments.Home);
    const LinuxClock clock;
    return RecutRun(arguments, host, clock).Run();
}

}  // namespace Corvetape
