#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace Corvetape::Bench {

/// What a program has cost.
struct Cost {
    double WallSeconds = 0;
    double ProcessorSeconds = 0;  ///< its own and of everything that it waited for
    double Megabytes = 0;         ///< most memory of the program itself at one time
    int ExitCode = 0;
};

/// A program to be measured. Its output goes to nowhere unless a file is named.
struct MeasuredCommand {
    std::vector<std::string> Words;  ///< the program is searched on the search path
    std::string Folder;
    std::string Output;
};

/// Runs a program to its end.
Cost Measure(const MeasuredCommand& command);

/// Each of a row of figures by itself: the median of several runs.
Cost MedianOf(std::vector<Cost> costs);

/// True if the search path has such a program.
bool IsInstalled(const std::string& program);

}  // namespace Corvetape::Bench
