// What users, files and machines do wrong, and what the window makes of it.
#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "core/settings/settings_table.h"
#include "ui/ui_world.h"

namespace Corvetape::Test {
namespace {

/// Types a text into a field in place of what is in it, and leaves the field.
void TypeAndLeave(QLineEdit& field, const QString& text) {
    field.selectAll();
    field.insert(text);
    emit field.editingFinished();
}

const std::vector<QString> Nonsense{"",
                                    "abc",
                                    "-1",
                                    "0",
                                    "99999999999999999999",
                                    "1e9",
                                    "0x10",
                                    "1,5",
                                    " 7 ",
                                    "%1 %s",
                                    "../../../etc/passwd",
                                    QString(5000, 'x'),
                                    "\u00e4",
                                    "\r\n",
                                    "a=b;[x]|\"",
                                    "%Title%",
                                    QString::fromUtf8("\xF0\x9F\x8E\xB5")};

TEST(BadInput, NonsenseInATextBoxEndsNothingAndReachesNoNumber) {
    UiWorld world;
    world.RunFor(5);
    int fields = 0;
    for (QLineEdit* field : world.Window->findChildren<QLineEdit*>()) {
        if (field->isReadOnly() || !field->objectName().startsWith("txt")) continue;
        ++fields;
        const QString before = field->text();
        for (const QString& text : Nonsense) {
            TypeAndLeave(*field, text);
            world.RunFor(1);
            ASSERT_TRUE(world.Recorder->Running()) << field->objectName().toStdString();
        }
        TypeAndLeave(*field, before);
    }
    EXPECT_GE(fields, 15);
    const Settings& options = world.Recorder->Values().Options;
    EXPECT_GE(options.LowTempSpace, 0);
    EXPECT_GT(world.Recorder->Values().Pause.QuitAfterSilence, 0);
    world.Find<QPushButton>("cmdStartStop")->click();
    EXPECT_EQ(world.Form().chkStartStop[0].Value(), 1);
}

/// A settings file in which every key has nonsense, another one for each seed.
std::string NonsenseSettings(uint32_t seed) {
    std::mt19937 random(seed);
    const auto value = [&random] {
        const QString& text =
            Nonsense.at(std::uniform_int_distribution<size_t>(0, Nonsense.size() - 1)(random));
        return text.left(300).remove('\r').remove('\n').toStdString();
    };
    std::string text;
    for (const SettingRow& row : SettingsTable()) {
        // The texts of the window are not what is tried here, and the encoder would ask for its page.
        if (row.Key == "Language" || row.Key == "NoStartupInfo") continue;
        text += "[" + std::string(row.Section) + "]\r\n" + std::string(row.Key) + "=" + value() + "\r\n";
    }
    for (const ProviderSettingRow& row : ProviderSettingsTable()) {
        for (const char* section : {"Mixer", "MixerWindows Media Player", "Windows Media Player"})
            text += "[" + std::string(section) + "]\r\n" + std::string(row.Key) + "=" + value() + "\r\n";
    }
    return text;
}

TEST(BadInput, NonsenseInEveryKeyOfTheSettingsLeavesAWindowThatWorks) {
    for (uint32_t seed = 1; seed <= 12; ++seed) {
        UiWorld world("english", {}, NonsenseSettings(seed));
        ASSERT_TRUE(world.Loaded) << "seed " << seed;
        world.RunFor(10);
        for (const std::string& key : world.TabKeys()) {
            world.Form().tbsMain.Select(key);
            world.RunFor(1);
        }
        EXPECT_TRUE(world.Recorder->Running()) << "seed " << seed;
        EXPECT_TRUE(world.Find<QPushButton>("cmdStartStop")->isEnabled()) << "seed " << seed;
    }
}

TEST(BadInput, ANumberThatIsRefusedKeepsTheKeyboardAndSaysWhy) {
    UiWorld world;
    world.Window->show();
    world.RunFor(5);
    world.Form().tbsMain.Select("TAB_PAUSE");
    const size_t boxes = world.Computer.Dialogs.Boxes.size();
    auto* const field = world.Find<QLineEdit>("txtLengthOfPause");
    TypeAndLeave(*field, "abc");
    EXPECT_TRUE(field->property("refused").toBool());
    EXPECT_EQ(world.Computer.Dialogs.Boxes.size(), boxes + 1);
    TypeAndLeave(*field, "500");
    EXPECT_FALSE(field->property("refused").toBool());
}

TEST(BadInput, APageWithARefusedNumberStaysUntilTheNumberIsRight) {
    UiWorld world;
    world.Window->show();
    QApplication::setActiveWindow(world.Window.get());
    world.RunFor(5);
    world.Form().tbsMain.Select("TAB_PAUSE");
    auto* const field = world.Find<QLineEdit>("txtIgnoreShortSongs");
    field->setFocus();
    ASSERT_TRUE(field->hasFocus());
    field->selectAll();
    QTest::keyClicks(field, "abc");
    const size_t boxes = world.Computer.Dialogs.Boxes.size();
    auto* const page = world.Find<QToolButton>("TAB_OPTIONS1");
    QTest::mouseClick(page, Qt::LeftButton);
    EXPECT_TRUE(field->property("refused").toBool());
    EXPECT_EQ(world.Computer.Dialogs.Boxes.size(), boxes + 1);
    EXPECT_EQ(world.Form().tbsMain.SelectedKey(), "TAB_PAUSE");
    EXPECT_FALSE(page->isChecked());
    EXPECT_TRUE(field->hasFocus());
    QTest::mouseClick(page, Qt::LeftButton);
    EXPECT_EQ(world.Form().tbsMain.SelectedKey(), "TAB_PAUSE") << "nothing was typed since";
    EXPECT_EQ(world.Computer.Dialogs.Boxes.size(), boxes + 2);
    field->selectAll();
    QTest::keyClicks(field, "30");
    QTest::mouseClick(page, Qt::LeftButton);
    EXPECT_EQ(world.Form().tbsMain.SelectedKey(), "TAB_OPTIONS1");
    EXPECT_EQ(world.Computer.Dialogs.Boxes.size(), boxes + 2);
}

TEST(BadInput, AnInputThatGoesIsSaidAtOnceAndItsReturnToo) {
    UiWorld world;
    world.RunFor(20);
    world.Find<QPushButton>("cmdStartStop")->click();
    const auto* const message = world.Find<QLabel>("lblStatus_1");
    const auto* const state = world.Find<QLabel>("lblPresentState");
    const QString before = state->text();
    world.Computer.WaveIn.Vanish("demo");
    world.RunFor(1);
    EXPECT_EQ(message->text(), "The input is gone. Recording goes on as soon as it is back.");
    world.RunFor(5);
    EXPECT_NE(state->text(), before);
    world.Computer.WaveIn.Return("demo");
    world.RunFor(2);
    EXPECT_EQ(message->text(), "The input is back. Recording goes on.");
    world.RunFor(2);
    EXPECT_EQ(state->text(), before);
    EXPECT_TRUE(world.Recorder->Running());
}

TEST(BadInput, SettingsThatCannotBeWrittenAreReportedInTheWindow) {
    UiWorld world;
    world.RunFor(5);
    world.Computer.Files.AddFault({"*Corvet.ini", {}, EACCES});
    world.Form().chkDelTemp.Press();
    world.RunFor(2);
    EXPECT_TRUE(world.Find<QLabel>("lblStatus_1")->text().startsWith("The settings could not be written"));
    EXPECT_TRUE(world.Recorder->Running());
}

TEST(BadInput, AFileOfTextsWithMissingAndDoubledKeysLeavesAWindowThatWorks) {
    UiWorld world("broken", "100=Hello\n100=Twice\n1326=|Only a tool tip\n=nothing\nnonsense\n1149=:1150\n");
    ASSERT_TRUE(world.Loaded);
    world.RunFor(5);
    ASSERT_EQ(world.Computer.Dialogs.Boxes.size(), 1U);
    EXPECT_NE(world.Computer.Dialogs.Boxes[0].Text.find("Item 100 exists twice"), std::string::npos);
    for (const std::string& key : world.TabKeys()) {
        world.Form().tbsMain.Select(key);
        world.RunFor(1);
    }
    world.Find<QPushButton>("cmdStartStop")->click();
    EXPECT_EQ(world.Form().chkStartStop[0].Value(), 1);
    EXPECT_FALSE(world.Find<QPushButton>("cmdQuickRecord")->text().isEmpty()) << "its own English text";
}

TEST(BadInput, AFolderThatDoesNotExistIsSaidWhereItIsTyped) {
    UiWorld world;
    world.RunFor(5);
    const std::string before = world.Recorder->Values().Folders.Paths[1];
    auto* const field = world.Find<QLineEdit>("txtPath_1");
    TypeAndLeave(*field, "/nowhere");
    EXPECT_TRUE(field->property("refused").toBool());
    ASSERT_FALSE(world.Computer.Dialogs.Boxes.empty());
    EXPECT_EQ(world.Computer.Dialogs.Boxes.back().Text,
              "This folder does not exist. Please choose another one.");
    EXPECT_EQ(world.Recorder->Values().Folders.Paths[1], before);
}

}  // namespace
}  // namespace Corvetape::Test
