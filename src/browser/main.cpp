#include <QApplication>
#include <QIcon>
#include <cstdio>

#include "browser/demo_station.h"
#include "browser/radio_page.h"
#include "browser/radio_window.h"
#include "browser/recorder_link.h"
#include "browser/sandbox.h"
#include "platform/browser_protocol.h"
#include "platform/program_name.h"

namespace {

constexpr int WrongUse = 2;
constexpr int NoSandbox = 3;

/// Without a sandbox a page of a stranger could do whatever the user can.
int Refuse(Corvetape::RecorderLink& recorder) {
    recorder.Send({{Corvetape::BrowserProtocol::Kind, Corvetape::BrowserProtocol::Refused}});
    recorder.Flush();
    return NoSandbox;
}

QStringList Words(int count, char** words) {
    QStringList list;
    for (int i = 1; i < count; ++i) list << QString::fromLocal8Bit(words[i]);
    return list;
}

}  // namespace

int main(int count, char** words) {
    using namespace Corvetape;
    const auto arguments = ReadBrowserArguments(Words(count, words));
    if (!arguments) {
        std::fputs("corvetape-browser is started by corvetape, which shows stations in it.\n", stderr);
        return WrongUse;
    }
    const bool sandbox = SandboxWorks();
    if (!sandbox && arguments->WithoutSandbox) SwitchSandboxOff();
    DemoStation::Announce();
    QCoreApplication::setApplicationName("corvetape-browser");
    QCoreApplication::setApplicationVersion("1");
    const QApplication application(count, words);
    RecorderLink recorder(arguments->Socket);
    if (!recorder.Open()) return WrongUse;
    if (!sandbox && !arguments->WithoutSandbox) return Refuse(recorder);

    QApplication::setDesktopFileName(Corvetape::ProgramEntryName);
    QApplication::setWindowIcon(QIcon(":/corvetape.svg"));
    RadioProfile profile;
    DemoStation station(QCoreApplication::applicationDirPath() + "/radio");
    profile.installUrlSchemeHandler(DemoStation::Scheme, &station);
    RadioWindow window(recorder, profile);
    QObject::connect(&recorder, &RecorderLink::NavigateWanted, &window, &RadioWindow::Navigate);
    QObject::connect(&recorder, &RecorderLink::EvaluateWanted, &window, &RadioWindow::Evaluate);
    QObject::connect(&recorder, &RecorderLink::CaptionsCame, &window, &RadioWindow::ShowCaptions);
    QObject::connect(&recorder, &RecorderLink::Ended, &application, &QApplication::quit);
    return QApplication::exec();
}
