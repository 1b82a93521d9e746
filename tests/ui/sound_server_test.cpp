// The window and a sound server that is not there, comes later, or goes in the middle of a song.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLabel>
#include <QListView>
#include <QPushButton>

#include "ui/ui_world.h"

namespace Corvetape::Test {
namespace {

using testing::HasSubstr;

std::string Status(UiWorld& world) {
    return world.Find<QLabel>("lblStatus_1")->text().toStdString();
}

std::string StateShown(UiWorld& world) {
    return world.Find<QLabel>("lblPresentState")->text().toStdString();
}

std::string Boxes(const UiWorld& world) {
    std::string texts;
    for (const ShownBox& box : world.Computer.Dialogs.Boxes) texts += box.Text + "\n";
    return texts;
}

TEST(SoundServer, WithoutOneTheWindowSaysWhatToDoAndEnds) {
    UiWorld world;
    world.Computer.WaveIn.KillServer();
    world.RunFor(3);
    EXPECT_THAT(Boxes(world), HasSubstr("No input to record from was found"));
    EXPECT_FALSE(world.Recorder->Running());
}

TEST(SoundServer, ThatComesWithinTheFirstSecondIsInTime) {
    UiWorld world;
    world.Computer.WaveIn.KillServer();
    world.Computer.Loop.RunFor(std::chrono::milliseconds(500));
    world.Computer.WaveIn.RestartServer();
    world.RunFor(5);
    EXPECT_EQ(Boxes(world), "");
    EXPECT_EQ(StateShown(world), "Listening - nothing is kept");
}

TEST(SoundServer, ThatRefusesTheInputAtFirstIsUsedWhenTheInputIsChosenAgain) {
    UiWorld world;
    world.Computer.WaveIn.Refuse("demo");
    world.RunFor(5);
    EXPECT_EQ(StateShown(world), "No input to record from");
    EXPECT_FALSE(world.Find<QWidget>("chkStartStop_0")->isEnabled());
    world.Computer.WaveIn.Admit("demo");
    world.Form().cmbInputDevices.Select(0);
    world.RunFor(2);
    EXPECT_EQ(StateShown(world), "Listening - nothing is kept");
    world.Find<QPushButton>("cmdStartStop")->click();
    EXPECT_EQ(StateShown(world), "Recording - kept from its beginning");
}

TEST(SoundServer, ThatGoesInTheMiddleOfASongIsReportedAtOnceAndAgainWhenItIsBack) {
    UiWorld world;
    world.RunFor(5);
    world.Form().chkStartStop[1].Value(1);
    world.RunFor(75);
    ASSERT_EQ(StateShown(world), "Recording - kept from its beginning");
    world.Computer.WaveIn.KillServer();
    world.RunFor(1);
    EXPECT_EQ(Status(world), "The input is gone. Recording goes on as soon as it is back.");
    world.RunFor(4);
    EXPECT_EQ(StateShown(world), "No more sound from the input");
    world.Computer.WaveIn.RestartServer();
    world.RunFor(2);
    EXPECT_EQ(Status(world), "The input is back. Recording goes on.");
    EXPECT_EQ(StateShown(world), "Recording - kept from its beginning");
    EXPECT_EQ(Boxes(world), "");
    world.RunFor(90);
    const QAbstractItemModel* const songs = world.Find<QListView>("songs")->model();
    bool missing = false;
    for (int row = 0; row < songs->rowCount(); ++row) {
        missing = missing ||
                  songs->index(row, 0).data(Qt::AccessibleTextRole).toString().contains("sound is missing");
    }
    EXPECT_TRUE(missing);
}

}  // namespace
}  // namespace Corvetape::Test
