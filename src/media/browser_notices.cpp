#include "media/browser_notices.h"

#include <utility>

namespace Corvetape {

void BrowserNotices::WindowsWanted() {
    if (!std::exchange(WindowsReported, true)) Say.Write(ReportKind::Info, Say.Text("865"));
}

void BrowserNotices::ProfilesUnread(const std::string& path, size_t unread) {
    if (std::exchange(ProfilesReported, true)) return;
    Say.Write(ReportKind::Error, Say.Text("879", {path, std::to_string(unread)}));
}

}  // namespace Corvetape
