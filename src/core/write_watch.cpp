#include "core/write_watch.h"

#include <utility>

namespace Corvetape {

void WriteWatch::Look() {
    if (Store.HasFailed() && !std::exchange(SettingsReported, true)) Report("877", Store.Ini().Path());
    if (Journal.HasFailed() && !std::exchange(LogReported, true)) Report("878", Folders.Paths[2]);
}

void WriteWatch::Report(const char* key, const std::string& path) {
    Say.WriteAndShow(ReportKind::Error, Say.Text(key, {path}));
}

}  // namespace Corvetape
