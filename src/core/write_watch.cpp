#include "core/write_watch.h"

#include "core/controls/message_texts.h"

#include <utility>

namespace Corvetape {

void WriteWatch::Look() {
    if (Store.HasFailed() && !std::exchange(SettingsReported, true))
        Report(Message::SettingsNotWritten.Key, Store.Ini().Path());
    if (Journal.HasFailed() && !std::exchange(LogReported, true))
        Report(Message::LogNotWritten.Key, Folders.Paths[2]);
}

void WriteWatch::Report(std::string_view key, const std::string& path) {
    Say.WriteAndShow(ReportKind::Error, Say.Text(key, {path}));
}

}  // namespace Corvetape
