#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/processes.h"

namespace Corvetape {

/// The value as one word of /bin/sh that stands for itself, whatever bytes it holds. A NUL, which no
/// argument can carry, is left out.
std::string ShellWord(std::string_view value);

/// One command line for /bin/sh, put together from the steps of a job.
///
/// Text parameters of a template are laid into shell variables ahead of all commands, each as one quoted
/// word, and %N becomes a reference to its variable, quoted as the place asks for it. As the shell only ever
/// sees the name of the variable, no value can become a command. A template that hands its text to another
/// interpreter ("sh -c", "eval") is on its own.
///
/// The script ends with the code of the first command that failed, 0 if none did.
class ShellScript {
 public:
    /// Folders to be searched for programs ahead of the search path, the first one first.
    explicit ShellScript(std::span<const std::string> programFolders);

    /// Lets all commands see a value under this name in their environment.
    void Export(const std::string& name, std::string_view value);

    /// Adds a step. False, and nothing is added, for a template whose quotations or parentheses are not
    /// closed: the shell would read what follows as part of them. A NUL, which no argument can carry, is left
    /// out of all values.
    [[nodiscard]] bool Add(const CommandTemplate& commands);
    [[nodiscard]] bool Add(const ProgramCall& call);
    [[nodiscard]] bool Add(const RememberSong& step);
    [[nodiscard]] bool Add(const DeleteSong& step);
    [[nodiscard]] bool Add(const DeleteNote& step);

    /// The whole command line.
    std::string Text() const;

 private:
    std::string Declare(std::string_view value);

    std::string Preamble;
    std::string Declarations;
    std::string Commands;
    int32_t Variables = 0;
};

/// The command line of a whole job; nothing if one of its templates is not closed.
std::optional<std::string> ShellLine(const HiddenJob& job);

}  // namespace Corvetape
