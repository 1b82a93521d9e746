#include "cli/arguments.h"

#include <CLI/CLI.hpp>
#include <map>
#include <sstream>

#include "cli/recut_choice.h"
#include "core/text/numbers.h"
#include "core/version.h"

namespace Corvetape {

namespace {

/// The words of one command line on their way into the structs.
struct Words {
    DevicesArguments Devices;
    MixerArguments Mixer;
    ProfilesArguments Profiles;
    RecordArguments Record;
    RecutArguments Recut;
    SplitArguments Split;
    std::string RecutBegin;
    std::string RecutEnd;
    std::vector<std::string> RecordSettings;
    std::vector<std::string> SplitSettings;
};

/// An empty name would mean no folder of its own.
std::string AFolder(const std::string& text) {
    return text.empty() ? "The name of the folder is empty" : "";
}

std::string ASpeed(const std::string& text) {
    const auto speed = NumberFromText(text);
    const bool fits = speed && *speed >= 0.1 && *speed <= 1000;
    return fits ? "" : "Value " + text + " is no number from 0.1 to 1000";
}

/// One of the words of --mode, which have become numbers here.
std::string AMode(const std::string& text) {
    const bool known = text.size() == 1 && text[0] >= '0' && text[0] <= '3';
    return known ? "" : text + " is none of auto, silence, titles and time";
}

/// The range is in the message about a number outside of it; in the help it would be read as part of the
/// word.
CLI::Validator Numbers(int32_t least, int32_t most) {
    return CLI::Range(least, most).description("");
}

void AddCommon(CLI::App& command, CommonArguments& arguments, std::vector<std::string>& settings) {
    command.add_option("--set", settings, "A setting for this run (repeatable); section Source: any source")
        ->type_name("SECTION.KEY=VALUE")
        ->allow_extra_args(false);
    command.add_option("--home", arguments.Home, "Keep settings, logs, temporary and music files below DIR")
        ->check(AFolder)
        ->type_name("DIR");
    command.add_flag("--json", arguments.Json, "Print one JSON object for each closed song");
    static const std::map<std::string, int32_t> modes = {
        {"silence", 0}, {"titles", 1}, {"time", 2}, {"auto", 3}};
    command
        .add_option("--mode", arguments.Mode, "End of songs: by everything that is known, or by one thing")
        ->transform(CLI::Transformer(modes).description(""))
        ->check(AMode)
        ->type_name("auto|silence|titles|time");
}

void AddRecord(CLI::App& app, Words& words) {
    CLI::App* command = app.add_subcommand("record", "Record what an input plays, cut into songs");
    RecordArguments& to = words.Record;
    command->add_option("--input", to.Input, "Number or name of an input, demo, or file:PATH")
        ->type_name("INPUT");
    command->add_option("--songs", to.Songs, "End when so many songs have been kept")
        ->check(Numbers(1, 1'000'000))
        ->type_name("N");
    command->add_option("--seconds", to.Seconds, "End after so many seconds of the input")
        ->check(Numbers(1, 100'000'000))
        ->type_name("N");
    command->add_option("--for", to.Minutes, "Stop recording after so many minutes, at the end of the song")
        ->check(Numbers(1, 1440))
        ->type_name("MINUTES");
    command->add_option("--speed", to.Speed, "Run demo and file inputs so many times faster")
        ->check(ASpeed)
        ->type_name("FACTOR");
    command->add_flag("--next", to.Next, "Begin with the next song instead of the current one");
    command->add_flag("--quit", to.Quit, "End at the end of the last song");
    AddCommon(*command, to, words.RecordSettings);
}

void AddSplit(CLI::App& app, Words& words) {
    CLI::App* command = app.add_subcommand("split", "Cut sound files into songs");
    SplitArguments& to = words.Split;
    command->add_option("FILE", to.Files, "Sound files to cut")->required()->type_name("");
    command->add_option("--out", to.Out, "Put the songs into DIR")->check(AFolder)->type_name("DIR");
    command->add_option("--media", to.Media, "Table of seconds,station,artist,title,album")->type_name("CSV");
    AddCommon(*command, to, words.SplitSettings);
}

void AddProfiles(CLI::App& app, Words& words) {
    CLI::App* command = app.add_subcommand("profiles", "Show what the profiles of web radios read now");
    ProfilesArguments& to = words.Profiles;
    command->add_option("FILE", to.File, "Profiles to try instead of the recorder's own");
    CLI::Option* watch = command->add_flag("--watch", to.Watch, "Show it again at each change, until Ctrl-C");
    command->add_option("--page", to.Page, "Try a saved page in a browser without a window")
        ->type_name("FILE.html")
        ->excludes(watch);
    command->add_option("--ports", to.Ports, "DevTools ports of browsers, between \";\"")->type_name("LIST");
    command->add_option("--home", to.Home, "Keep settings below DIR")->check(AFolder)->type_name("DIR");
}

void AddRecut(CLI::App& app, Words& words) {
    CLI::App* command = app.add_subcommand("recut", "Cut a song again that was cut in the wrong place");
    RecutArguments& to = words.Recut;
    const auto seconds = [](const std::string& text) {
        return SecondsToMove(text) ? "" : "Value " + text + " is no number of seconds";
    };
    command->add_option("SONG", to.Song, "Path or name of its music file, or its title");
    command->add_option("--begin", words.RecutBegin, "Let it begin so many seconds later, or earlier (-S)")
        ->check(seconds)
        ->type_name("+-S");
    command->add_option("--end", words.RecutEnd, "Let it end so many seconds later, or earlier (-S)")
        ->check(seconds)
        ->type_name("+-S");
    command->add_flag("--list", to.List, "List the songs that can be cut again, and how far");
    command->add_option("--home", to.Home, "Keep settings, logs, temporary and music files below DIR")
        ->check(AFolder)
        ->type_name("DIR");
}

/// The song and its seconds, or why they make no sense.
Arguments FinishRecut(const Words& words) {
    RecutArguments recut = words.Recut;
    recut.Begin = SecondsToMove(words.RecutBegin).value_or(0);
    recut.End = SecondsToMove(words.RecutEnd).value_or(0);
    if (recut.List) return recut;
    if (recut.Song.empty()) {
        return ArgumentsAnswer{ExitUsage,
                               "SONG is missing; corvetape-cli recut --list shows which there are"};
    }
    if (recut.Begin == 0 && recut.End == 0) {
        return ArgumentsAnswer{ExitUsage, "--begin or --end has to say by how many seconds the cut moves"};
    }
    return recut;
}

/// The settings of a command, or the reason why one is refused.
std::optional<std::string> TakeSettings(const std::vector<std::string>& texts, CommonArguments& arguments) {
    for (const std::string& text : texts) {
        auto read = ReadSettingArgument(text);
        if (auto* error = std::get_if<std::string>(&read)) return *error;
        arguments.Settings.push_back(std::get<SettingArgument>(std::move(read)));
    }
    return std::nullopt;
}

template <typename Command>
Arguments Finish(const std::vector<std::string>& texts, Command& command) {
    if (auto error = TakeSettings(texts, command)) return ArgumentsAnswer{ExitUsage, *error};
    return command;
}

}  // namespace

Arguments ReadArguments(int count, const char* const* words) {
    CLI::App app("Records music from the sound card or from files and cuts it into songs.", "corvetape-cli");
    app.set_version_flag("--version", std::string(ProgramTitle) + " " + ProgramVersion);
    app.require_subcommand(1);
    Words read;
    CLI::App* devices = app.add_subcommand("devices", "List what can be recorded from");
    devices->add_flag("--json", read.Devices.Json, "Print one JSON object for each input");
    CLI::App* mixer = app.add_subcommand("mixer", "List the volumes and switches of the sound server");
    mixer->add_flag("--json", read.Mixer.Json, "Print one JSON object for each of them");
    AddProfiles(app, read);
    AddRecord(app, read);
    AddRecut(app, read);
    AddSplit(app, read);
    try {
        app.parse(count, words);
    } catch (const CLI::ParseError& answer) {
        std::ostringstream out;
        std::ostringstream error;
        const bool asked = app.exit(answer, out, error) == 0;
        if (asked) return ArgumentsAnswer{ExitDone, out.str()};
        const std::vector<std::string> rest = app.remaining();
        const bool noCommand = app.get_subcommands().empty() && !rest.empty() && !rest[0].starts_with('-');
        const std::string reason = noCommand ? "There is no command '" + rest[0] + "'" : answer.what();
        const auto commands = app.get_subcommands();
        const std::string command = commands.empty() ? "" : " " + commands.front()->get_name();
        return ArgumentsAnswer{ExitUsage, reason + "; corvetape-cli" + command + " --help tells more"};
    }
    if (app.got_subcommand("mixer")) return read.Mixer;
    if (app.got_subcommand("profiles")) return read.Profiles;
    if (app.got_subcommand("record")) return Finish(read.RecordSettings, read.Record);
    if (app.got_subcommand("recut")) return FinishRecut(read);
    if (app.got_subcommand("split")) return Finish(read.SplitSettings, read.Split);
    return read.Devices;
}

}  // namespace Corvetape
