#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "architecture/source_text.h"

namespace Corvetape::Architecture {

/// A place at which a rule of the house is broken.
struct Finding {
    std::string Path;
    size_t Line = 0;
    std::string Text;

    bool operator==(const Finding&) const = default;
};

inline constexpr size_t MostFileLines = 500;

/// A room of the house: a folder below src/.
struct Room {
    std::string_view Folder;
    std::vector<std::string_view> Uses;       ///< other rooms that it may include
    std::vector<std::string_view> Libraries;  ///< prefixes of headers that it may include beside the standard
    std::vector<std::string_view> HostFiles;  ///< prefixes of paths of files that may include any header
    bool Logic = true;                        ///< asks the machine through platform/ only
};

/// All rooms, from the lowest floor to the highest.
const std::vector<Room>& Rooms();

/// The room that a path below src/ is in: the longest folder that fits. Null if there is none.
const Room* RoomOf(std::string_view pathBelowSrc);

/// Includes that climb a floor, go to a neighbour, or reach for a header that the room may not know.
std::vector<Finding> WrongIncludes(const SourceFile& file);

/// Arrows that the build states and the table of rooms does not allow. `text` is src/CMakeLists.txt.
std::vector<Finding> WrongArrows(std::string_view text);

/// Words with which logic would reach past platform/ for a clock, a thread, a file or the surroundings.
std::vector<Finding> ReachesPastTheMachine(const SourceFile& file);

/// Tables (files named ..._table.h or ..._table.cpp) may be longer.
std::vector<Finding> LongFiles(const SourceFile& file);

/// Headers without a `///` line, and free functions in them that none explains.
std::vector<Finding> UnexplainedHeaders(const SourceFile& file);

std::vector<Finding> UsingNamespaceInHeaders(const SourceFile& file);

/// `new` and `delete`, where no widget tree owns what was made.
std::vector<Finding> RawOwnership(const SourceFile& file);

/// Marks of work that was left for later.
std::vector<Finding> OpenMarks(const SourceFile& file);

/// Tests that wait for real time instead of moving the simulated clock; those of the real machine may.
std::vector<Finding> SleepingTests(const SourceFile& file);

/// File and folder names that are not lower_snake_case.
std::vector<Finding> WrongFileNames(const SourceFile& file);

}  // namespace Corvetape::Architecture
