#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace Corvetape {

/// A program to start as a child that has nothing to do with this program's terminal.
struct ChildStart {
    std::string Program;                 ///< path of the file
    std::vector<std::string> Arguments;  ///< the first is the program's name
    std::string WorkingFolder;           ///< empty for this program's own
    int Nice = 0;                        ///< nice value at least, also if this program has raised its own
    int Keep = -1;                       ///< the one descriptor of ours that it keeps, by its number
};

struct StartedChild {
    pid_t Pid = -1;
    int Error = 0;  ///< errno of a failure; the child is gone then
    bool FolderFailed = false;
};

/// Starts it in a session of its own, with input and output to nowhere, no signals blocked or ignored, and
/// no open files of ours but the one it is to keep. Returns when the program has taken over, or could not.
StartedChild StartChild(const ChildStart& start);

}  // namespace Corvetape
