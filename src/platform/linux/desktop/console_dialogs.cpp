#include "platform/linux/desktop/console_dialogs.h"

#include <unistd.h>

#include "platform/linux/desktop/one_line.h"

namespace Corvetape {

ConsoleDialogs::ConsoleDialogs(std::FILE* output) : Stream(output) {}

void ConsoleDialogs::ShowMessage(const std::string& text, DialogIcon icon) {
    const char* const kind = icon == DialogIcon::Critical      ? "error: "
                             : icon == DialogIcon::Exclamation ? "warning: "
                                                               : "";
    std::fprintf(Stream, "%s%s\n", kind, OneLine(text).c_str());
    std::fflush(Stream);
}

void ConsoleDialogs::ShowTitled(const std::string& title, const std::string& text, DialogIcon icon) {
    ShowMessage(title + ": " + text, icon);
}

bool ConsoleDialogs::AskYesNo(const std::string& text, DialogIcon icon) {
    ShowMessage(text, icon);
    return false;
}

void ConsoleDialogs::Beep() {
    if (isatty(fileno(Stream)) == 0) return;
    std::fputc('\a', Stream);
    std::fflush(Stream);
}

std::optional<std::string> ConsoleDialogs::BrowseForFolder(const std::string&, const std::string&) {
    return std::nullopt;
}

std::optional<std::string> ConsoleDialogs::OpenFile(const std::string&, const std::string&,
                                                    const std::string&) {
    return std::nullopt;
}

}  // namespace Corvetape
