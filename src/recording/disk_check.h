#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "audio/recording_flags.h"
#include "core/deferred_messages.h"
#include "core/reporter.h"
#include "core/settings/settings.h"
#include "forms/frm_main.h"
#include "platform/files.h"
#include "platform/wave_in.h"
#include "recording/margins/margin_store.h"

namespace Corvetape {

struct DiskCheckParts {
    frmMain& Form;
    Corvetape::Files& Files;
    const Corvetape::Settings& Settings;
    const WorkingFolders& Folders;
    RecordingFlags& Flags;
    DeferredMessages& Messages;
    MarginStore& Margins;  ///< what it keeps goes first where the disk gets short
};

/// Which limit a disk has come down to.
enum class DiskLimit { None, OneDrive, TempFolder, MusicFolder };

/// Free space of the two folders in bytes.
struct DiskSpace {
    uint64_t Temp = 0;
    uint64_t Music = 0;
    bool OneDrive = false;  ///< both folders are on it
};

/// What is left until the watch ends the recording.
struct RoomLeft {
    uint64_t FreeBytes = 0;  ///< of the folder that gets full first
    uint64_t Seconds = 0;    ///< of sound, as it comes from the input
};

/// Holds the space against the limits in MB. On one drive both limits have to find room.
DiskLimit FindDiskLimit(const Settings& settings, const DiskSpace& space);

/// The watch over the disk space: a full disk ends the recording with the running song.
class DiskCheck {
 public:
    /// All of it outlives the check. `format` is that of the open input.
    DiskCheck(DiskCheckParts parts, const WaveFormat& format, Reporter& say)
        : Parts(parts), Format(format), Say(say) {}

    /// Once a second: the check once a minute, the look at the reserve in all other seconds. False if a
    /// folder cannot be asked: the program ends.
    bool Tick();

    /// Once a minute. False if a folder cannot be asked: the program ends.
    bool Run();

    /// There is room for a recording. False also if a folder cannot be asked.
    bool HasRoom();

    /// Nothing if a folder cannot be asked.
    std::optional<RoomLeft> Room() const;

    /// Between the minutes: runs the reaction at once if the space left in the temporary folder is enough for
    /// less than ten minutes of sound. A folder that cannot be asked is left to Run.
    void RunIfShort();

 private:
    /// Space for each folder that temporary songs go to, or the folder that could not be asked.
    struct Spaces {
        std::vector<DiskSpace> Each;
        std::string Refused;
    };

    std::vector<std::string> TempFolders() const;
    Spaces Measure() const;
    Spaces MeasureWithoutMargins();
    std::string FindShortFolder(uint64_t bytes) const;
    DiskLimit LimitOf(const Spaces& spaces) const;
    bool Check();
    void Report(const std::string& text);
    bool Applies() const;
    void React(DiskLimit limit);

    DiskCheckParts Parts;
    const WaveFormat& Format;
    Reporter& Say;
    int16_t Second = 0;  ///< of the minute
};

}  // namespace Corvetape
