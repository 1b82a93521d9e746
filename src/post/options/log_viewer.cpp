#include "post/options/log_viewer.h"

#include <string_view>
#include <vector>

#include "core/controls/held.h"
#include "core/controls/message_texts.h"
#include "core/text/date_format.h"
#include "core/text/numbers.h"

namespace Corvetape {

namespace {

constexpr uint64_t LargestLog = 64ULL * 1024 * 1024;
constexpr size_t DateLength = 8;
constexpr std::string_view CaptionKey = Message::LogFileCaption.Key;

/// The digits of a date with hyphens between year, month and day; fewer characters stand at the right.
std::string WithHyphens(std::string_view title) {
    std::string date(title.substr(0, DateLength));
    date.insert(0, DateLength - date.size(), ' ');
    return date.substr(0, 4) + "-" + date.substr(4, 2) + "-" + date.substr(6);
}

}  // namespace

LogViewer::LogViewer(LogViewerParts parts) : Parts(parts) {
    Parts.Form.cmdOpenLogFile.Click.Connect([this] { Open(); });
    Parts.Form.cmdDeleteLogFiles.Click.Connect([this] { Delete(); });
    Parts.Form.tbsMain.Click.Connect([this] {
        if (Parts.Form.tbsMain.SelectedKey() == "TAB_LOGFILE") Enter();
    });
}

std::string LogViewer::Today() const {
    return FormatDate("yyyymmdd", Parts.Clock.LocalNow()) + ".log";
}

std::string LogViewer::Filter() const {
    return Parts.Messages.FormatMsg(Message::LogFilter.Key, {std::string(1, '\0')});
}

std::string LogViewer::OpenLogFile() {
    const std::string start = Parts.Folders.Paths[2] + "/" + Today();
    return Parts.Dialogs.OpenFile(Parts.Messages.FormatMsg(Message::ChooseLog.Key), Filter(), start)
        .value_or("");
}

void LogViewer::Open() {
    const std::string path = OpenLogFile();
    if (path.empty()) return;
    Parts.Form.fraLogFile.Caption(CaptionOf(path.substr(path.rfind('/') + 1)));
    ShowLogFile(path);
}

/// Logs are named after their day; a name that does not begin with a number is shown as it is.
std::string LogViewer::CaptionOf(const std::string& title) const {
    const std::string begin = Parts.Messages.FormatMsg(CaptionKey) + "- ";
    return begin + (LeadingNumber(title) == 0 ? title + " " : WithHyphens(title));
}

void LogViewer::ShowLogFile(const std::string& path) {
    if (Reading) return;
    const Held reading(Reading);
    frmMain& form = Parts.Form;
    form.cmdOpenLogFile.Enabled(false);
    form.txtLogFile.Text("");
    const auto content = Parts.Files.ReadAll(path, LargestLog);
    std::string text;
    std::string_view rest = content ? std::string_view(*content) : std::string_view();
    while (!rest.empty()) {
        const size_t end = rest.find('\n');
        std::string_view line = rest.substr(0, end);
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
        if (line.ends_with('\r')) line.remove_suffix(1);
        text.append(line).append("\r\n");
        Parts.Loop.ProcessEvents();
        Parts.Loop.ProcessEvents();
    }
    form.txtLogFile.Text(text);
    form.cmdOpenLogFile.Enabled(true);
}

void LogViewer::Delete() {
    const std::string title = Parts.Messages.FormatMsg(Message::ChooseLogsToDelete.Key);
    const auto chosen = Parts.Dialogs.OpenFiles(title, Filter(), Parts.Folders.Paths[2] + "/");
    for (const std::string& path : chosen) Parts.Files.Delete(path);  // one that stays is still in the list
}

void LogViewer::Enter() {
    const std::string& caption = Parts.Form.fraLogFile.Caption();
    const size_t hyphen = caption.find('-');
    const std::string shown = hyphen == std::string::npos || hyphen + 2 > caption.size()
                                  ? std::string()
                                  : caption.substr(hyphen + 2);
    const std::string today = Today();
    if (!Parts.Form.txtLogFile.Text().empty() && shown != WithHyphens(today)) return;
    Parts.Form.fraLogFile.Caption(CaptionOf(today));
    ShowLogFile(Parts.Folders.Paths[2] + "/" + today);
}

}  // namespace Corvetape
