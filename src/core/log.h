#pragma once

#include <functional>
#include <initializer_list>
#include <span>
#include <string>

#include "core/settings/settings.h"
#include "platform/file_result.h"

namespace Corvetape {

class Clock;
class Files;

/// The daily journal, `LogFilePath`/yyyymmdd.log: a line of time, tab, kind, tab, further fields, CR LF.
/// Each line opens, appends and closes; a line that cannot be written is lost.
class Log {
 public:
    /// All of them must outlive it. LogToFile and the folder are looked at for each line.
    Log(Files& files, const Clock& clock, const Settings& settings, const WorkingFolders& folders);

    /// One line of these fields, the kind first. Line breaks in them become tabs.
    void WriteLog(std::span<const std::string> fields);
    void WriteLog(std::initializer_list<std::string> fields);

    /// A line that holds only the time.
    void WriteLog();

    /// For a command line that shows what is logged: kind, and the further fields with tabs between them,
    /// line breaks as they are. Called also while LogToFile is off.
    std::function<void(const std::string& kind, const std::string& text)> Listener;

    /// How the first line that is lost was lost; good as long as none is.
    const FileResult& FirstFailure() const { return Failure; }

    /// Today's file.
    std::string FileName() const;

 private:
    void Append(std::string line);

    Files& Disk;
    const Clock& Time;
    const Settings& Options;
    const WorkingFolders& Folders;
    FileResult Failure;
};

}  // namespace Corvetape
