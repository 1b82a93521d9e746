#include "cli/arguments.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <utility>

#include "core/version.h"

namespace Corvetape {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

Arguments Read(std::vector<const char*> words) {
    words.insert(words.begin(), "corvetape-cli");
    return ReadArguments(static_cast<int>(words.size()), words.data());
}

template <typename Command>
Command Good(std::vector<const char*> words) {
    const Arguments read = Read(std::move(words));
    if (const auto* command = std::get_if<Command>(&read)) return *command;
    const auto* answer = std::get_if<ArgumentsAnswer>(&read);
    ADD_FAILURE() << (answer ? answer->Text : "another command");
    return {};
}

ArgumentsAnswer Answer(std::vector<const char*> words) {
    const Arguments read = Read(std::move(words));
    if (const auto* answer = std::get_if<ArgumentsAnswer>(&read)) return *answer;
    ADD_FAILURE() << "the words were taken";
    return {};
}

TEST(ReadArguments, RecordWithoutOptionsHasItsDefaults) {
    const auto record = Good<RecordArguments>({"record"});
    EXPECT_EQ(record.Input, "");
    EXPECT_FALSE(record.Songs);
    EXPECT_FALSE(record.Seconds);
    EXPECT_FALSE(record.Minutes);
    EXPECT_EQ(record.Speed, 1.0);
    EXPECT_FALSE(record.Next);
    EXPECT_FALSE(record.Quit);
    EXPECT_FALSE(record.Json);
    EXPECT_EQ(record.Home, "");
    EXPECT_TRUE(record.Settings.empty());
}

TEST(ReadArguments, SongsEndByEverythingThatIsKnownUnlessAModeIsNamed) {
    EXPECT_EQ(Good<RecordArguments>({"record"}).Mode, 3);
    EXPECT_EQ(Good<SplitArguments>({"split", "a.wav"}).Mode, 3);
    constexpr std::array<std::pair<const char*, int32_t>, 4> modes = {
        {{"silence", 0}, {"titles", 1}, {"time", 2}, {"auto", 3}}};
    for (const auto& [name, mode] : modes) {
        EXPECT_EQ(Good<RecordArguments>({"record", "--mode", name}).Mode, mode) << name;
    }
    EXPECT_EQ(Answer({"record", "--mode", "magic"}).ExitCode, ExitUsage);
}

TEST(ReadArguments, RecordTakesAllItsOptions) {
    const auto record = Good<RecordArguments>({"record",
                                               "--input",
                                               "demo",
                                               "--songs",
                                               "3",
                                               "--seconds",
                                               "60",
                                               "--for",
                                               "90",
                                               "--speed",
                                               "2.5",
                                               "--next",
                                               "--quit",
                                               "--set",
                                               "Options.Encoder=1",
                                               "--set",
                                               "Source.LengthOfPause=500",
                                               "--home",
                                               "h",
                                               "--json"});
    EXPECT_EQ(record.Input, "demo");
    EXPECT_EQ(record.Songs, 3);
    EXPECT_EQ(record.Seconds, 60);
    EXPECT_EQ(record.Minutes, 90);
    EXPECT_EQ(record.Speed, 2.5);
    EXPECT_TRUE(record.Next);
    EXPECT_TRUE(record.Quit);
    EXPECT_TRUE(record.Json);
    EXPECT_EQ(record.Home, "h");
    EXPECT_THAT(record.Settings, ElementsAre(SettingArgument{"Options", "Encoder", "1"},
                                             SettingArgument{"Source", "LengthOfPause", "500"}));
}

TEST(ReadArguments, SplitTakesFilesAndAllItsOptions) {
    const auto split = Good<SplitArguments>({"split", "a.wav", "--out", "o", "b.wav", "--media", "m.csv",
                                             "--set", "Options.Encoder=2", "c.wav", "--home", "h", "--json"});
    EXPECT_THAT(split.Files, ElementsAre("a.wav", "b.wav", "c.wav"));
    EXPECT_EQ(split.Out, "o");
    EXPECT_EQ(split.Media, "m.csv");
    EXPECT_EQ(split.Home, "h");
    EXPECT_TRUE(split.Json);
    EXPECT_THAT(split.Settings, ElementsAre(SettingArgument{"Options", "Encoder", "2"}));
}

TEST(ReadArguments, AFileThatBeginsWithAHyphenComesBehindTwo) {
    EXPECT_THAT(Good<SplitArguments>({"split", "--", "-a.wav"}).Files, ElementsAre("-a.wav"));
}

TEST(ReadArguments, DevicesTakesJson) {
    EXPECT_FALSE(Good<DevicesArguments>({"devices"}).Json);
    EXPECT_TRUE(Good<DevicesArguments>({"devices", "--json"}).Json);
}

TEST(ReadArguments, NumbersHaveTheirLimits) {
    EXPECT_EQ(Good<RecordArguments>({"record", "--for", "1440"}).Minutes, 1440);
    EXPECT_EQ(Good<RecordArguments>({"record", "--speed", "0.1"}).Speed, 0.1);
    EXPECT_EQ(Good<RecordArguments>({"record", "--speed", "1000"}).Speed, 1000);
    for (const auto& [option, value] :
         std::vector<std::pair<const char*, const char*>>{{"--for", "0"},
                                                          {"--for", "1441"},
                                                          {"--songs", "0"},
                                                          {"--songs", "1000001"},
                                                          {"--songs", "two"},
                                                          {"--seconds", "0"},
                                                          {"--seconds", "-5"},
                                                          {"--speed", "0"},
                                                          {"--speed", "1001"},
                                                          {"--speed", "nan"},
                                                          {"--speed", "inf"},
                                                          {"--speed", "fast"}}) {
        const ArgumentsAnswer answer = Answer({"record", option, value});
        EXPECT_EQ(answer.ExitCode, 2) << option << " " << value;
        EXPECT_THAT(answer.Text, HasSubstr(option));
    }
}

TEST(ReadArguments, WhatIsOffIsToldInOneLine) {
    const std::string more = "; corvetape-cli --help tells more";
    const std::string ofSplit = "; corvetape-cli split --help tells more";
    EXPECT_EQ(Answer({}).Text, "A subcommand is required" + more);
    EXPECT_EQ(Answer({"sing", "--loud"}).Text, "There is no command 'sing'" + more);
    EXPECT_EQ(Answer({"split"}).Text, "FILE is required" + ofSplit);
    EXPECT_EQ(Answer({"split", "--loud", "a.wav"}).Text,
              "The following argument was not expected: --loud" + ofSplit);
    EXPECT_EQ(Answer({"split", "--mode", "loud", "a.wav"}).Text,
              "--mode: loud is none of auto, silence, titles and time" + ofSplit);
    for (const std::vector<const char*>& words :
         std::vector<std::vector<const char*>>{{},
                                               {"sing"},
                                               {"split"},
                                               {"devices", "more"},
                                               {"record", "more"},
                                               {"record", "--input"},
                                               {"record", "--out", "x"},
                                               {"split", "a", "--set"}}) {
        const ArgumentsAnswer answer = Answer(words);
        EXPECT_EQ(answer.ExitCode, 2);
        EXPECT_EQ(answer.Text.find('\n'), std::string::npos) << answer.Text;
    }
}

TEST(ReadArguments, ASettingThatIsUnknownIsTheUsersMistake) {
    const ArgumentsAnswer answer = Answer({"record", "--set", "Options.Nothing=1"});
    EXPECT_EQ(answer.ExitCode, 2);
    EXPECT_EQ(answer.Text, "there is no setting Options.Nothing");
}

TEST(ReadArguments, HelpAndVersionAreAnsweredWell) {
    EXPECT_EQ(Answer({"--version"}).ExitCode, 0);
    EXPECT_EQ(Answer({"--version"}).Text, std::string("Corvetape ") + ProgramVersion + "\n");
    for (const std::vector<const char*>& words :
         std::vector<std::vector<const char*>>{{"--help"}, {"split", "--help"}, {"record", "-h"}}) {
        EXPECT_EQ(Answer(words).ExitCode, 0);
        EXPECT_THAT(Answer(words).Text, HasSubstr("Usage: corvetape-cli"));
    }
    for (const char* option : {"--input", "--songs", "--seconds", "--for", "--speed", "--next", "--quit",
                               "--set", "--home", "--json"}) {
        EXPECT_THAT(Answer({"record", "--help"}).Text, HasSubstr(option));
    }
    for (const char* option : {"--out", "--media", "--set", "--home", "--json"}) {
        EXPECT_THAT(Answer({"split", "--help"}).Text, HasSubstr(option));
    }
}

}  // namespace
}  // namespace Corvetape
