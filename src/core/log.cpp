#include "core/log.h"

#include <utility>

#include "core/text/date_format.h"
#include "core/text/text.h"
#include "platform/clock.h"
#include "platform/files.h"

namespace Corvetape {

namespace {

std::string JoinWithTabs(std::span<const std::string> fields) {
    std::string line;
    for (size_t i = 0; i < fields.size(); ++i) {
        if (i > 0) line += '\t';
        line += fields[i];
    }
    return line;
}

/// Doubled line feeds are halved in one pass only, so that three of them become two tabs.
std::string OneLine(const std::string& line) {
    return ReplaceAll(ReplaceAll(ReplaceAll(line, "\r", ""), "\n\n", "\n"), "\n", "\t");
}

}  // namespace

Log::Log(Files& files, const Clock& clock, const Settings& settings, const WorkingFolders& folders)
    : Disk(files), Time(clock), Options(settings), Folders(folders) {}

void Log::WriteLog(std::span<const std::string> fields) {
    if (Listener && !fields.empty()) Listener(fields[0], JoinWithTabs(fields.subspan(1)));
    Append("\t" + JoinWithTabs(fields));
}

void Log::WriteLog(std::initializer_list<std::string> fields) {
    WriteLog(std::span<const std::string>(fields.begin(), fields.size()));
}

void Log::WriteLog() {
    Append({});
}

void Log::Append(std::string line) {
    if (!Options.LogToFile) return;
    const std::string text = FormatDate("hh:nn:ss", Time.LocalNow()) + std::move(line);
    FileResult written = Disk.Append(FileName(), OneLine(text) + "\r\n");
    if (Failure) Failure = std::move(written);
}

std::string Log::FileName() const {
    return Folders.Paths[2] + "/" + FormatDate("yyyymmdd", Time.LocalNow()) + ".log";
}

}  // namespace Corvetape
