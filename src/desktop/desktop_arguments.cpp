#include "desktop/desktop_arguments.h"

namespace Corvetape {

namespace {

std::optional<RemoteButton> ButtonNamed(const QString& word) {
    if (word == "record") return RemoteButton::Record;
    if (word == "quit") return RemoteButton::Quit;
    return std::nullopt;
}

}  // namespace

DesktopArguments ReadDesktopArguments(const QStringList& words) {
    DesktopArguments arguments;
    for (qsizetype i = 0; i < words.size(); ++i) {
        const bool more = i + 1 < words.size();
        if (words[i] == "--home" && more) {
            arguments.Home = words[++i].toStdString();
        } else if (words[i] == "--input" && more && words[i + 1] == "demo") {
            arguments.Demo = true;
            ++i;
        } else if (words[i] == "--press" && more && ButtonNamed(words[i + 1])) {
            arguments.Press = ButtonNamed(words[++i]);
        } else {
            arguments.CommandLine += (arguments.CommandLine.empty() ? "" : " ") + words[i].toStdString();
        }
    }
    return arguments;
}

}  // namespace Corvetape
