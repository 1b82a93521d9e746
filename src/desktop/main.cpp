#include <QApplication>
#include <csignal>

#include "core/version.h"
#include "desktop/desktop.h"

int main(int count, char** words) {
    std::signal(SIGPIPE, SIG_IGN);  // a reader that goes away is no reason to lose a song
    const QApplication application(count, words);
    QApplication::setApplicationName("corvetape");
    QApplication::setApplicationDisplayName(Corvetape::ProgramTitle);
    QApplication::setDesktopFileName("corvetape");
    QApplication::setQuitOnLastWindowClosed(false);  // the program ends in its own order
    Corvetape::Desktop desktop(Corvetape::ReadDesktopArguments(QApplication::arguments().mid(1)));
    return desktop.Run();
}
