#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Corvetape::Testing {

struct ShellRun {
    std::string Output;
    int32_t ExitCode = -1;  ///< -1 if it was killed or could not be started
};

/// Runs the command line in the real /bin/sh and waits for it.
ShellRun RunShell(const std::string& commandLine);

/// What `printf '%s\0' ...` printed, argument by argument.
std::vector<std::string> PrintedArguments(const ShellRun& run);

}  // namespace Corvetape::Testing
