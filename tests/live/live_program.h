#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/program.h"
#include "cli/chosen_input.h"
#include "cli/hosts.h"
#include "live/session_bus.h"
#include "live/sound_server.h"
#include "platform/linux/browser/devtools_documents.h"
#include "platform/linux/players/mpris_players.h"
#include "platform/linux/sound/pulse_wave_in.h"
#include "support/live_session.h"
#include "support/temp_folder.h"

namespace Corvetape {

/// Documents that note how long a poll has waited for them.
class TimedDocuments : public Documents {
    template <typename Work>
    auto Timed(Work work) {
        struct Watch {
            TimedDocuments& Owner;
            std::chrono::steady_clock::time_point Begin = std::chrono::steady_clock::now();
            ~Watch() {
                Owner.Spent += std::chrono::steady_clock::now() - Begin;
                Owner.Longest = std::max(Owner.Longest, Owner.Spent);
            }
        } const watch{*this};
        return work();
    }

 public:
    void UsePorts(std::span<const uint16_t> ports) override { Inner.UsePorts(ports); }
    void BeginPoll() override {
        ++Polls;
        Spent = {};
        Timed([&] { Inner.BeginPoll(); });
    }
    std::vector<PageInfo> Pages() override {
        return Timed([&] { return Inner.Pages(); });
    }
    std::shared_ptr<Document> Open(const PageInfo& page) override {
        return Timed([&] { return Inner.Open(page); });
    }

    int Polls = 0;
    std::chrono::nanoseconds Longest{0};  ///< of all polls so far

 private:
    DevToolsDocuments Inner;
    std::chrono::nanoseconds Spent{0};
};

/// The whole program in the process of the test, so that its state can be seen. It records what a sound
/// server of its own plays, with the end of songs by media data, asks browsers and players, and leaves its
/// songs as they were recorded.
class LiveProgram {
 public:
    LiveProgram(LiveSession& session, SoundServer& server, SessionBus& bus)
        : Pulse(session.Loop, {.Server = server.Address()}),
          Input(Pulse, "radio.monitor"),
          Players(session.Loop, {.Bus = bus.Address()}),
          Host(Folder.Path()),
          Computer{Clock,          session.Loop,  Input,        Host.Mixer,  Host.Files,
                   Host.Processes, *Host.Folders, Host.Dialogs, Host.System, Host.Desktop,
                   &Pages,         nullptr,       &Players} {}

    /// Starts to record. `profiles` is the text of the file of that name, `ports` those of the browsers,
    /// `sources` the names of all sources that will be met.
    bool Start(const std::string& profiles, const std::string& ports, std::vector<std::string> sources,
               const std::vector<SettingOverride>& more = {}) {
        const std::string settings = Folder / "config/Corvet";
        std::filesystem::create_directories(settings);
        std::ofstream(settings + "/MSIE.ini") << profiles;
        RunOptions options;
        options.CommandLine = "-dontask";
        options.Overrides = {
            {"Mixer", "InputDevice", "0"},      {"Mixer", "InputDeviceNames", "Monitor of Radio;"},
            {"General", "Language", "english"}, {"Options", "EncodeOffline", "1"},
            {"Options", "NoStartupInfo", "1"},  {"Browser", "DevToolsPorts", ports}};
        options.Overrides.insert(options.Overrides.end(), more.begin(), more.end());
        sources.emplace_back("NoStationData");
        for (const std::string& source : sources) {
            options.Overrides.push_back({source, "EndOfSongDetection", "1"});
            options.Overrides.push_back({source, "IgnoreShortSongs", "1"});
        }
        if (OtherPages != nullptr) Computer.Documents = OtherPages;
        Computer.Browser = Browser;
        ProgramEvents events;
        events.SongTransferred = [this](const TransferredSong& song) { Songs.push_back(song); };
        events.SongClosed = [this](const ClosedSong& song) { LostFrames += song.LostFrames; };
        Running.emplace(Computer, std::move(options), events);
        if (!Running->Load()) return false;
        Running->Values().Form.chkStartStop[0].Value(1);
        return true;
    }

    const MediaState& Media() const { return Running->Values().Media; }
    bool Reads(const std::string& source, const std::string& title) const {
        return Media().ProviderName == source && Media().CurrentMedia.Song == title;
    }

    TimedDocuments Pages;
    Documents* OtherPages = nullptr;  ///< asked in the place of Pages
    WebView* Browser = nullptr;
    std::vector<TransferredSong> Songs;
    uint64_t LostFrames = 0;  ///< of all songs that were closed

 private:
    TempFolder Folder;
    PulseWaveIn Pulse;
    ChosenInput Input;
    MprisPlayers Players;
    LinuxClock Clock;
    HostParts Host;
    Machine Computer;

 public:
    std::optional<Program> Running;
};

}  // namespace Corvetape
