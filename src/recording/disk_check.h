#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "audio/recording_flags.h"
#include "core/deferred_messages.h"
#include "core/lifecycle_flags.h"
#include "core/settings/settings.h"
#include "forms/frm_main.h"
#include "platform/files.h"

namespace Corvetape {

struct DiskCheckParts {
    frmMain& Form;
    Corvetape::Files& Files;
    const Corvetape::Settings& Settings;
    const WorkingFolders& Folders;
    RecordingFlags& Flags;
    DeferredMessages& Messages;
};

struct DiskCheckActions {
    std::function<std::string(const std::string& key, std::span<const std::string> arguments)> FormatMsg;
    std::function<void(const std::string& kind, const std::string& text)> WriteLog;
    std::function<void(const std::string& text)> ErrorBox;  ///< not called by an unattended program
};

/// Which limit a disk has come down to.
enum class DiskLimit { None, OneDrive, TempFolder, MusicFolder };

/// Free space of the two folders in bytes.
struct DiskSpace {
    uint64_t Temp = 0;
    uint64_t Music = 0;
    bool OneDrive = false;  ///< both folders are on it
};

/// Holds the space against the limits in MB. On one drive both limits have to find room.
DiskLimit FindDiskLimit(const Settings& settings, const DiskSpace& space);

/// The watch over the disk space: a full disk ends the recording with the running song.
class DiskCheck {
 public:
    DiskCheck(DiskCheckParts parts, DiskCheckActions actions);

    /// Once a minute. False if a folder cannot be asked: the program ends.
    bool Run();

    /// There is room for a recording. False also if a folder cannot be asked.
    bool HasRoom(uint32_t bytesPerSecond);

    /// Between the minutes: runs the reaction at once if the space left in the temporary folder is enough for
    /// less than ten minutes at `bytesPerSecond`. A folder that cannot be asked is left to Run.
    void RunIfShort(uint32_t bytesPerSecond);

 private:
    /// Space for each folder that temporary songs go to, or the folder that could not be asked.
    struct Spaces {
        std::vector<DiskSpace> Each;
        std::string Refused;
    };

    std::vector<std::string> TempFolders() const;
    Spaces Measure() const;
    DiskLimit LimitOf(const Spaces& spaces) const;
    std::string Text(const std::string& key, std::initializer_list<std::string> arguments) const;
    bool Check();
    void Report(const std::string& text);
    bool Applies() const;
    void React(DiskLimit limit);

    DiskCheckParts Parts;
    DiskCheckActions Actions;
};

}  // namespace Corvetape
