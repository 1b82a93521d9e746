#include "core/reporter.h"

#include <span>

#include "core/controls/controls.h"
#include "core/controls/message_texts.h"
#include "core/controls/messages.h"
#include "core/lifecycle_flags.h"
#include "core/log.h"

namespace Corvetape {

std::string Reporter::Text(std::string_view key, std::initializer_list<std::string> arguments) const {
    return Texts.FormatMsg(key, std::span(arguments.begin(), arguments.size()));
}

std::string Reporter::WithReason(const std::string& text, const std::string& serverSays) const {
    return serverSays.empty() ? text : Text(Message::ServerSays.Key, {text, serverSays});
}

void Reporter::Write(ReportKind kind, const std::string& text) {
    Journal.WriteLog({kind == ReportKind::Info ? "INFO" : "ERROR", text});
}

void Reporter::Show(const std::string& text) {
    Status.Caption(text);
}

void Reporter::WriteAndShow(ReportKind kind, const std::string& text) {
    Write(kind, text);
    Show(text);
}

void Reporter::Box(const std::string& text, DialogIcon icon) {
    if (!Lifecycle.DontAsk) Boxes.ShowMessage(text, icon);
}

void Reporter::TitledBox(const std::string& title, const std::string& text, DialogIcon icon) {
    if (!Lifecycle.DontAsk) Boxes.ShowTitled(title, text, icon);
}

}  // namespace Corvetape
