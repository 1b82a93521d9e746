#pragma once

#include <string>

namespace Corvetape {

class Processes;
class Reporter;

/// Opens an address, a file or a folder in the program that the user has for it. What cannot be opened is
/// reported in the log and in a box, from which the user can copy it.
void OpenOutside(const std::string& addressOrPath, Processes& programs, Reporter& say);

/// Reports what the desktop has taken since and could not open after all. Called once a second.
void ReportUnopened(Processes& programs, Reporter& say);

}  // namespace Corvetape
