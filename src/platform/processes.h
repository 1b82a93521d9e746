#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace Corvetape {

/// The literal of four characters that separates the commands of a template: backslash, r, backslash, n.
inline constexpr std::string_view CommandSeparator = "\\r\\n";

enum class ParameterKind {
    Text,     ///< foreign text: reaches the command as data and is never read as one
    Options,  ///< part of the template: taken over as it stands
};

/// What a template's %1, %2, ... stand for.
struct TemplateParameter {
    ParameterKind Kind = ParameterKind::Text;
    std::string Value;
};

/// Commands as a user writes them, in the language of the machine's shell.
///
/// A template writes %N where it wants parameter N, and needs to know nothing of quoting: bare, inside
/// quotations or after an option's equals sign, the command receives exactly the value, within the word that
/// %N stands in. No value can become a command, end a quotation, split into words or be taken for another
/// parameter. One that begins with a hyphen gets a blank ahead of it where it would begin a word, so that
/// none can pass for an option. A percent sign with any other character after it is left alone.
///
/// Each separator, in any case of its letters, ends a command; the next one runs whether or not it succeeded.
struct CommandTemplate {
    std::string Text;
    std::vector<TemplateParameter> Parameters;  ///< the first is %1; at most nine count
};

/// A program with its arguments, each as it stands. It has succeeded if a line that it prints begins with
/// `PrintedLine`.
struct ProgramCall {
    std::vector<std::string> Arguments;  ///< the first is the program: a path, or a name to be searched for
    std::string PrintedLine;
};

/// Has the song file `Base` + ".wav" remembered as it is at this step, for DeleteSong.
struct RememberSong {
    std::string Base;
};

/// Deletes the files `Base` with any one extension but the note, if all commands have succeeded, the
/// remembered song file is still the same one, and `Base` and `Target` are in different folders.
struct DeleteSong {
    std::string Base;
    std::string Target;
};

/// Deletes the file `Note` if all commands have succeeded or the file `Made`, which names the finished music,
/// is there. Without the process of the number `Reader`, nobody is left to read `Made`, and it goes too.
struct DeleteNote {
    std::string Note;
    std::string Made;
    std::string Reader;
};

using JobStep = std::variant<CommandTemplate, ProgramCall, RememberSong, DeleteSong, DeleteNote>;

/// What all commands of a job find in their environment.
struct EnvironmentValue {
    std::string Name;
    std::string Value;
};

/// Commands to run one after another without a window. The machine makes of them what its shell understands,
/// or runs them itself. The job ends with the code of the first command that failed, 0 if none did.
struct HiddenJob {
    std::string Name;  ///< the caller's word for it, given back with the result
    std::vector<JobStep> Steps;
    std::string WorkingFolder;
    std::vector<std::string> ProgramFolders =
        {};  ///< searched for programs ahead of the search path, in order
    std::vector<EnvironmentValue> Environment = {};
};

struct JobResult {
    std::string Name;
    int32_t ExitCode = 0;  ///< as a shell shows it: 128 plus the signal for a killed one
};

class Processes {
 public:
    virtual ~Processes() = default;

    /// Whether the quotations and parentheses of a template are closed. If not, the shell would read what
    /// follows as part of them, and no job with it can be started.
    virtual bool IsWhole(const CommandTemplate& commands) const = 0;

    /// Starts the job at a low priority (nice 10), in a process group of its own, its input from nowhere. It
    /// runs on when the program ends. False if it could not be started.
    virtual bool StartHidden(const HiddenJob& job) = 0;

    /// Name of the process that StartHidden started last, as SystemInfo::RunIsAlive takes it. Empty if it is
    /// not known.
    virtual std::string StartedRun() { return {}; }

    /// Opens a program or document as a desktop would. Returns above 32 on success, else one of the codes
    /// that ShellErrorText knows (2: not found, 5: access denied, 11: not a program, ...).
    virtual int32_t ShellOpen(const std::string& path, const std::string& parameters,
                              const std::string& workingFolder) = 0;

    /// Addresses and documents that ShellOpen has handed to the desktop and that the desktop has failed to
    /// open since the last call.
    virtual std::vector<std::string> TakeUnopened() { return {}; }

    /// Hidden jobs that have not ended yet.
    virtual size_t Running() = 0;

    /// Results of the hidden jobs that have ended since the last call, in the order of their ends.
    virtual std::vector<JobResult> TakeFinished() = 0;

    /// Waits until no hidden job runs, at most `limit` of real time. True if none runs.
    virtual bool WaitForAll(std::chrono::milliseconds limit) = 0;
};

}  // namespace Corvetape
