#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "cli/setting_argument.h"

namespace Corvetape {

/// Exit codes of the program.
inline constexpr int ExitDone = 0;
inline constexpr int ExitFailed = 1;
inline constexpr int ExitUsage = 2;

/// What both recording commands take.
struct CommonArguments {
    std::vector<SettingArgument> Settings;
    std::string Home;  ///< empty: the user's own folders
    bool Json = false;
    int32_t Mode = 3;  ///< how the end of a song is noticed, as the settings count it
};

struct DevicesArguments {
    bool Json = false;
};

struct MixerArguments {
    bool Json = false;
};

struct ProfilesArguments {
    std::string File;   ///< empty: the one that the recorder would read
    std::string Page;   ///< a saved page to try; empty: what is open
    std::string Ports;  ///< of browsers, between ";"; empty: as the settings say
    std::string Home;
    bool Watch = false;
};

struct RecordArguments : CommonArguments {
    std::string Input;  ///< number, name, "demo" or "file:PATH"; empty: the default one
    std::optional<int32_t> Songs;
    std::optional<int32_t> Seconds;
    std::optional<int32_t> Minutes;  ///< timed recording
    double Speed = 1;
    bool Next = false;
    bool Quit = false;
};

struct SplitArguments : CommonArguments {
    std::vector<std::string> Files;
    std::string Out;
    std::string Media;
};

struct RecutArguments {
    std::string Song;  ///< empty: all, with List
    std::string Home;
    double Begin = 0;  ///< seconds by which the begin moves; above 0 it is later
    double End = 0;
    bool List = false;
};

/// Help or version was asked for, or the words are off: what to print and the exit code. What is off is
/// reported in one line, without a line end.
struct ArgumentsAnswer {
    int ExitCode = ExitDone;
    std::string Text;
};

using Arguments = std::variant<DevicesArguments, MixerArguments, ProfilesArguments, RecordArguments,
                               RecutArguments, SplitArguments, ArgumentsAnswer>;

/// Reads the command line.
Arguments ReadArguments(int count, const char* const* words);

}  // namespace Corvetape
