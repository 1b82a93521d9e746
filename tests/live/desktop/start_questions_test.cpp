// The program with its window as a process, before its main loop: where no sound server answers it asks.
#include <gtest/gtest.h>
#include <signal.h>

#include <QCoreApplication>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "live/session_bus.h"
#include "support/temp_folder.h"

namespace Corvetape {
namespace {

using namespace std::chrono_literals;

constexpr auto Patient = 90s;

class StartQuestions : public testing::Test {
 protected:
    StartQuestions() {
        std::filesystem::create_directory(Folder / "run");
        std::filesystem::permissions(Folder / "run", std::filesystem::perms::owner_all);
        std::filesystem::create_directory(Folder / "user");
    }

    TestProcess::Start Program(const std::vector<std::string>& words) const {
        TestProcess::Start start;
        start.Command = {QCoreApplication::applicationDirPath().toStdString() + "/corvetape", "--home",
                         Folder / "home"};
        start.Command.insert(start.Command.end(), words.begin(), words.end());
        start.Environment = {{"PULSE_SERVER", "unix:" + (Folder / "none")},
                             {"DBUS_SESSION_BUS_ADDRESS", Bus.Address()},
                             {"XDG_RUNTIME_DIR", Folder / "run"},
                             {"HOME", Folder / "user"},
                             {"LC_ALL", "C.UTF-8"},
                             {"QT_QPA_PLATFORM", "offscreen"},
                             {"DISPLAY", ""}};
        start.Output = Folder / "printed";
        return start;
    }

    /// The place of the one program is claimed before anything is asked.
    bool AwaitClaim() {
        return Session.WaitFor(
            [this] {
                for (const auto& entry : std::filesystem::directory_iterator(Folder / "home", Gone)) {
                    if (entry.is_socket(Gone)) return true;
                }
                return false;
            },
            Patient);
    }

    std::string Log() const {
        std::ostringstream log;
        std::error_code gone;
        for (const auto& entry : std::filesystem::directory_iterator(Folder / "home/config/Corvet", gone)) {
            if (entry.path().extension() == ".log") log << std::ifstream(entry.path()).rdbuf();
        }
        return log.str();
    }

    LiveSession Session;
    SessionBus Bus{Session};
    const TempFolder Folder;
    std::error_code Gone;
};

TEST_F(StartQuestions, ThatOfTheDemoRadioEndsByARequestOfTheSystemAndNothingIsLeft) {
    TestProcess program(Program({}));
    ASSERT_TRUE(AwaitClaim());
    EXPECT_EQ(program.Wait(1s), std::nullopt) << "the question waits";
    program.Signal(SIGTERM);
    EXPECT_EQ(program.Wait(Patient), 0);
    EXPECT_EQ(Log(), "");
}

TEST_F(StartQuestions, ASecondStartAsksNothing) {
    TestProcess first(Program({}));
    ASSERT_TRUE(AwaitClaim());
    TestProcess second(Program({}));
    EXPECT_EQ(second.Wait(Patient), 0);
    EXPECT_EQ(first.Wait(0s), std::nullopt);
    first.Signal(SIGTERM);
    EXPECT_EQ(first.Wait(Patient), 0);
}

TEST_F(StartQuestions, APressThatDoesNotReachTheProgramFailsAndSaysSo) {
    TestProcess program(Program({}));  // asks still, and is not on the bus
    ASSERT_TRUE(AwaitClaim());
    for (const char* button : {"record", "quit"}) {
        TestProcess::Start press = Program({"--press", button});
        press.Output = Folder / "pressed";
        EXPECT_EQ(TestProcess(press).Wait(Patient), 1) << button;
        std::ostringstream said;
        said << std::ifstream(Folder / "pressed").rdbuf();
        EXPECT_NE(said.str().find("does not answer"), std::string::npos) << said.str();
    }
    program.Signal(SIGTERM);
    EXPECT_EQ(program.Wait(Patient), 0);
    EXPECT_EQ(TestProcess(Program({"--press", "quit"})).Wait(Patient), 0) << "nothing runs";
}

TEST_F(StartQuestions, ThatOfTheLanguageEndsInOrderAndStoresNoAnswer) {
    TestProcess program(Program({"--input", "demo"}));
    ASSERT_TRUE(AwaitClaim());
    EXPECT_EQ(program.Wait(1s), std::nullopt) << "the question waits";
    program.Signal(SIGTERM);
    EXPECT_EQ(program.Wait(Patient), 0);
    std::ostringstream settings;
    settings << std::ifstream(Folder / "home/config/Corvet/Corvet.ini").rdbuf();
    EXPECT_EQ(settings.str().find("Language="), std::string::npos) << settings.str();
    EXPECT_NE(Log().find("END"), std::string::npos) << Log();
}

}  // namespace
}  // namespace Corvetape
