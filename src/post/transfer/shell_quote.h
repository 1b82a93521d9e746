#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Corvetape {

/// The literal of four characters that separates the commands of a template: backslash, r, backslash, n.
inline constexpr std::string_view CommandSeparator = "\\r\\n";

/// The value as one word of /bin/sh that stands for itself, whatever bytes it holds. A NUL, which no
/// argument can carry, is left out.
std::string ShellWord(std::string_view value);

enum class ParameterKind {
    Text,     ///< foreign text: reaches the command as data and is never read by the shell
    Options,  ///< part of the template: taken over as it stands
};

/// What a template's %1, %2, ... stand for.
struct TemplateParameter {
    ParameterKind Kind = ParameterKind::Text;
    std::string Value;
};

/// One command line for /bin/sh, put together from command templates.
///
/// A template writes %N where it wants parameter N, and needs to know nothing of quoting. Text parameters
/// are laid into shell variables ahead of all commands, each as one quoted word, and %N becomes a
/// reference to its variable, quoted as the place asks for it: bare, inside double or single quotes, or
/// after an option's equals sign, the command receives exactly the value, within the word that %N stands
/// in. As the shell only ever sees the name of the variable, no value can become a command, end a
/// quotation, split into words or be taken for another parameter.
///
/// A value that begins with a hyphen gets a blank ahead of it where it would begin a word, so that no
/// value can pass for an option. A word that has text ahead of %N, such as --title=%4, needs and gets none.
///
/// A template that hands its text to another interpreter ("sh -c", "eval") is on its own.
///
/// Each command separator, in any case of its letters, ends a command; the next one runs whether or not it
/// succeeded. The script ends with the code of the first command that failed, 0 if none did.
class ShellScript {
 public:
    /// Folders to be searched for programs ahead of the search path, the first one first.
    explicit ShellScript(std::span<const std::string> programFolders);

    /// Lets all commands see a value under this name in their environment.
    void Export(const std::string& name, std::string_view value);

    /// Adds the commands of a template. `parameters[0]` is %1; at most nine count. A percent sign with any
    /// other character after it is left alone. False, and nothing is added, for a template whose
    /// quotations or parentheses are not closed: the shell would read what follows as part of them.
    [[nodiscard]] bool AddTemplate(std::string_view text, std::span<const TemplateParameter> parameters);

    /// Has the song file `base` + ".wav" remembered as it is from here on, for DeleteIfAllSucceeded.
    void RememberSong(const std::string& base);

    /// Deletes at the end the files of the name `base` with any one extension, if all commands succeeded,
    /// the remembered song file is still the same one, and `base` and `target` are in different folders.
    void DeleteIfAllSucceeded(const std::string& base, const std::string& target);

    /// Deletes the note of the song at the end, if all commands succeeded or the file `made`, which tells of
    /// the finished music, is there. Without the process of the number `reader`, nobody is left to read what
    /// `made` tells, and it goes too.
    void DeleteNoteIfMade(const std::string& note, const std::string& made, const std::string& reader);

    /// The whole command line.
    std::string Text() const;

 private:
    std::string Declare(std::string_view value);

    std::string Preamble;
    std::string Declarations;
    std::string Commands;
    int32_t Variables = 0;
};

}  // namespace Corvetape
