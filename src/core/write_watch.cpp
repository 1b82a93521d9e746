#include "core/write_watch.h"

#include "core/controls/message_texts.h"

#include <utility>

namespace Corvetape {

void WriteWatch::Look() {
    const FileResult& settings = Store.FirstFailure();
    if (!settings && !std::exchange(SettingsReported, true)) {
        Report(Message::SettingsNotWritten.Key, {Store.Ini().Path(), settings.Reason()});
    }
    const FileResult& log = Journal.FirstFailure();
    if (!log && !std::exchange(LogReported, true)) {
        Report(Message::LogNotWritten.Key, {Folders.Paths[2], log.Reason()});
    }
}

void WriteWatch::Report(std::string_view key, std::initializer_list<std::string> arguments) {
    Say.WriteAndShow(ReportKind::Error, Say.Text(key, arguments));
}

}  // namespace Corvetape
