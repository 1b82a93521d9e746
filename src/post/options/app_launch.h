#pragma once

#include <string>

namespace Corvetape {

class Log;
class Processes;

/// Launches the start or the stop application, which are both logged as "START". A failure is one more line
/// in the log. Neither text is expanded; the working folder is that of the program.
void LaunchApp(const std::string& path, const std::string& parameters, Processes& processes, Log& log);

}  // namespace Corvetape
