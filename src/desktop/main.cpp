#include <QApplication>
#include <csignal>
#include <cstdio>
#include <utility>

#include "core/version.h"
#include "desktop/desktop_program.h"
#include "desktop/press.h"
#include "desktop/usage.h"
#include "platform/linux/players/mpris_players.h"

namespace {

constexpr const char* Unreached =
    "corvetape: the program runs, but does not answer on the session bus; nothing was pressed\n";

QStringList Words(int count, char** words) {
    QStringList list;
    for (int i = 1; i < count; ++i) list << QString::fromLocal8Bit(words[i]);
    return list;
}

int Print(const Corvetape::DesktopAnswer& answer) {
    std::fputs(answer.Text.c_str(), answer.ExitCode == 0 ? stdout : stderr);
    return answer.ExitCode;
}

}  // namespace

int main(int count, char** words) {
    std::signal(SIGPIPE, SIG_IGN);  // a reader that goes away is no reason to lose a song
    // Help is also for those who have no display.
    if (const auto answer = Corvetape::AnswerTo(Words(count, words))) return Print(*answer);
    const QApplication application(count, words);
    QApplication::setApplicationName(Corvetape::ProgramEntryName);
    // No display name: the toolkit would put it after titles that begin with it.
    QApplication::setDesktopFileName(Corvetape::ProgramEntryName);
    QApplication::setQuitOnLastWindowClosed(false);  // the program ends in its own order
    const QStringList own = QApplication::arguments().mid(1);
    if (const auto answer = Corvetape::AnswerToUnknown(own)) return Print(*answer);
    Corvetape::DesktopArguments arguments = Corvetape::ReadDesktopArguments(own);
    if (arguments.Press) {
        if (Corvetape::PressRemotely(*arguments.Press, Corvetape::SessionBusAddress())) return 0;
        if (Corvetape::RunsUnreached(arguments.Home)) return Print({Unreached, 1});
        if (*arguments.Press == Corvetape::RemoteButton::Quit) return 0;  // nothing runs
        arguments.CommandLine += " -auto";
    }
    Corvetape::DesktopProgram desktop(std::move(arguments));
    return desktop.Run();
}
