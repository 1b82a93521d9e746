#include "media/browser_notices.h"

#include "core/controls/message_texts.h"

#include <utility>

namespace Corvetape {

void BrowserNotices::WindowsWanted() {
    if (!std::exchange(WindowsReported, true))
        Say.Write(ReportKind::Info, Say.Text(Message::NoWindowTitles.Key));
}

void BrowserNotices::ProfilesUnread(const std::string& path, size_t unread) {
    if (std::exchange(ProfilesReported, true)) return;
    Say.Write(ReportKind::Error, Say.Text(Message::ProfilesNotRead.Key, {path, std::to_string(unread)}));
}

}  // namespace Corvetape
