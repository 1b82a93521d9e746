#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "app/program.h"
#include "cli/arguments.h"
#include "cli/song_printer.h"
#include "cli/terminal_line.h"
#include "platform/linux/sound/sound_file_source.h"

namespace Corvetape {

/// Adds what a command line sets for its run to what its user sets; the user's come last and win.
std::vector<SettingOverride> MakeOverrides(std::vector<SettingOverride> own,
                                           const CommonArguments& arguments);

/// Prints one line on the error output.
void ReportLine(const std::string& line);

/// The same, with the exit code of a failure.
int Fail(const std::string& line);

/// What a sound file has to be converted from to be recorded at `framesPerSecond`, as one line with its
/// path; nothing if it is taken as it is.
std::optional<std::string> ConversionText(const std::string& path, const SoundFileFormat& format,
                                          uint32_t framesPerSecond);

/// Why nothing could be recorded with the settings as they are loaded; nothing if all is well. Looks at
/// the media data, the two folders and the chosen format.
std::optional<std::string> FindObstacle(Program& program, Files& files);

/// The events of a program that go to the printer, and its notices, which go to the error output. Whatever is
/// printed takes the line away first.
ProgramEvents EventsTo(SongPrinter& printer, TerminalLine& line);

/// Waits until all encoders have ended and reports their results.
void WaitForEncoders(Program& program, Processes& processes);

/// Waits until there is room for one more encoder on this machine: a recording that passes faster than its
/// songs can be encoded must not start them all at once.
void WaitForEncoderRoom(Processes& processes);

/// True if the program or the printer has an error to answer for.
bool Failed(const Program& program, const SongPrinter& printer);

/// True if a song could not be written. Recording has stopped, and nobody is there who could begin it again.
bool RecordingFailed(const Program& program);

/// Where the songs of a run end up: the folder of the music, or that of the temporary songs if nothing is
/// encoded.
const std::string& FolderOfSongs(const State& state);

/// "1 song kept in /music", "3 songs kept in /music, 2 of them not as music files".
std::string KeptText(const SongPrinter& printer, const std::string& folder);

}  // namespace Corvetape
