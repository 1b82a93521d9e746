#include "cli/input_choice.h"

#include <gtest/gtest.h>

#include <vector>

namespace Corvetape {
namespace {

const std::vector<WaveInDevice>& Devices() {
    static const std::vector<WaveInDevice> devices = {
        {"Monitor of Speakers", "speakers.monitor", WaveInKind::Monitor, 0, true},
        {"Monitor of Headset", "headset.monitor", WaveInKind::Monitor, 0, false},
        {"Line in", "line", WaveInKind::Input, 0, false},
        {"line in", "second", WaveInKind::Input, 0, false},
        DemoInput(),
    };
    return devices;
}

std::string Chosen(std::string_view words) {
    const InputChoice choice = ChooseInput(words, Devices());
    EXPECT_EQ(choice.FilePath, "");
    if (choice.Device) return Devices().at(*choice.Device).Id;
    EXPECT_NE(choice.Error, "");
    return choice.Error;
}

TEST(ChooseInput, NothingMeansTheDefaultDevice) {
    EXPECT_EQ(Chosen(""), "speakers.monitor");
}

TEST(ChooseInput, WithoutADefaultThereIsNoServer) {
    const std::vector<WaveInDevice> onlyDemo = {DemoInput()};
    EXPECT_EQ(ChooseInput("", onlyDemo).Error,
              "there is no default input to record from; try --input demo or --input file:PATH");
}

TEST(ChooseInput, ANumberIsThePlaceInTheList) {
    EXPECT_EQ(Chosen("0"), "speakers.monitor");
    EXPECT_EQ(Chosen("2"), "line");
    EXPECT_EQ(Chosen("4"), "demo");
    EXPECT_EQ(Chosen("5"), "there is no input 5; corvetape-cli devices lists them");
    EXPECT_EQ(Chosen("99999999999999999999"),
              "there is no input called '99999999999999999999'; corvetape-cli devices lists them");
}

TEST(ChooseInput, AnIdOrANameIsTakenExactlyFirst) {
    EXPECT_EQ(Chosen("headset.monitor"), "headset.monitor");
    EXPECT_EQ(Chosen("Line in"), "line");
    EXPECT_EQ(Chosen("line in"), "second");
    EXPECT_EQ(Chosen("demo"), "demo");
}

TEST(ChooseInput, ThenIgnoringCaseThenByAPart) {
    EXPECT_EQ(Chosen("MONITOR OF HEADSET"), "headset.monitor");
    EXPECT_EQ(Chosen("headset"), "headset.monitor");
    EXPECT_EQ(Chosen("Made-Up"), "demo");
}

TEST(ChooseInput, WordsThatFitNoneAreRefused) {
    EXPECT_EQ(Chosen("kitchen"), "there is no input called 'kitchen'; corvetape-cli devices lists them");
}

TEST(ChooseInput, OfWordsThatFitSeveralAllAreNamed) {
    EXPECT_EQ(Chosen("LINE IN"), "'LINE IN' fits several inputs: 2 Line in, 3 line in");
    EXPECT_EQ(Chosen("monitor"),
              "'monitor' fits several inputs: 0 Monitor of Speakers, 1 Monitor of Headset");
}

TEST(ChooseInput, FileStandsBeforeAPath) {
    const InputChoice choice = ChooseInput("file:/music/a show.wav", Devices());
    EXPECT_EQ(choice.FilePath, "/music/a show.wav");
    EXPECT_FALSE(choice.Device);
    EXPECT_EQ(choice.Error, "");
    EXPECT_EQ(ChooseInput("file:", Devices()).Error, "file: needs a path after it");
    EXPECT_EQ(ChooseInput("file:0", Devices()).FilePath, "0");
}

TEST(KindText, HasAWordForEachKind) {
    EXPECT_STREQ(KindText(WaveInKind::Monitor), "monitor");
    EXPECT_STREQ(KindText(WaveInKind::Input), "input");
    EXPECT_STREQ(KindText(WaveInKind::File), "file");
    EXPECT_STREQ(KindText(WaveInKind::Demo), "demo");
}

}  // namespace
}  // namespace Corvetape
