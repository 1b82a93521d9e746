#include "cli/printed_notices.h"

#include <utility>

namespace Corvetape {

namespace {

std::string WithoutDigits(std::string text) {
    std::erase_if(text, [](char letter) { return letter >= '0' && letter <= '9'; });
    return text;
}

}  // namespace

void PrintedNotices::Logged(const std::string& kind, const std::string& text) {
    if (kind != "INFO" && kind != "ERROR") return;
    if (std::exchange(JustShown, {}) == text) return;
    JustLogged = text;
    if (!std::exchange(IsReported, false)) Print(text);
}

void PrintedNotices::Status(const std::string& text) {
    const std::string before = std::exchange(Shown, text);
    const bool countsOn = WithoutDigits(text) == WithoutDigits(before);
    if (text.empty() || countsOn || std::exchange(JustLogged, {}) == text) return;
    JustShown = text;
    Print(text);
}

}  // namespace Corvetape
