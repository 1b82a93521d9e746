#include "core/opening.h"

#include "core/controls/message_texts.h"
#include "core/reporter.h"
#include "platform/processes.h"

namespace Corvetape {

namespace {

constexpr int32_t FileNotFound = 2;
constexpr int32_t FolderNotFound = 3;

/// What ShellOpen gives up to here is a failure.
constexpr int32_t LastFailure = 32;

void Report(const MessageText& message, const std::string& addressOrPath, Reporter& say) {
    const std::string text = say.Text(message.Key, {addressOrPath});
    say.Write(ReportKind::Error, text);
    say.Box(text, DialogIcon::Exclamation);
}

}  // namespace

void OpenOutside(const std::string& addressOrPath, Processes& programs, Reporter& say) {
    const int32_t result = programs.ShellOpen(addressOrPath, "", "");
    if (result > LastFailure) return;
    const bool missing = result == FileNotFound || result == FolderNotFound;
    Report(missing ? Message::NotThereToOpen : Message::NothingOpens, addressOrPath, say);
}

void ReportUnopened(Processes& programs, Reporter& say) {
    for (const std::string& each : programs.TakeUnopened()) Report(Message::NothingOpens, each, say);
}

}  // namespace Corvetape
