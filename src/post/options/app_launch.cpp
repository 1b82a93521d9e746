#include "post/options/app_launch.h"

#include <cstdint>

#include "core/log.h"
#include "core/text/shell_error.h"
#include "platform/processes.h"

namespace Corvetape {

namespace {

/// The highest result of opening a program that means failure.
constexpr int32_t LastLaunchError = 32;

}  // namespace

void LaunchApp(const std::string& path, const std::string& parameters, Processes& processes, Log& log) {
    log.WriteLog({"START", path, parameters});
    const std::string folder = path.substr(0, path.rfind('/') + 1);
    const int32_t result = processes.ShellOpen(path, parameters, folder);
    if (result <= LastLaunchError) log.WriteLog({"ERROR", ShellErrorText(result)});
}

}  // namespace Corvetape
