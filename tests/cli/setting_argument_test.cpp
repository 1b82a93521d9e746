#include "cli/setting_argument.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace Corvetape {
namespace {

SettingArgument Good(std::string_view text) {
    auto result = ReadSettingArgument(text);
    if (const auto* error = std::get_if<std::string>(&result)) {
        ADD_FAILURE() << *error;
        return {};
    }
    return std::get<SettingArgument>(result);
}

std::string Error(std::string_view text) {
    const auto result = ReadSettingArgument(text);
    const auto* error = std::get_if<std::string>(&result);
    return error ? *error : "";
}

TEST(SettingArgument, IsSectionKeyAndValue) {
    EXPECT_EQ(Good("Options.Encoder=1"), (SettingArgument{"Options", "Encoder", "1"}));
    EXPECT_EQ(Good("Options.MusicFileTemplate2=a=b.c"),
              (SettingArgument{"Options", "MusicFileTemplate2", "a=b.c"}));
}

TEST(SettingArgument, APauseValueBelongsToAnySource) {
    EXPECT_EQ(Good("Radio 1.fm.LengthOfPause=500"), (SettingArgument{"Radio 1.fm", "LengthOfPause", "500"}));
}

TEST(SettingArgument, AnEncoderTemplateIsInTheDataFile) {
    EXPECT_TRUE(Good("Encode.MP3=lame %1.wav %2.mp3").InDataFile);
}

TEST(SettingArgument, AFolderIsMeantFromThePresentOneOrFromHomeOn) {
    const std::string here = std::filesystem::current_path().string();
    for (const char* key : {"Options.MusicPath", "options.temppath", "Options.LogFilePath"}) {
        const std::string begin = std::string(key) + "=";
        EXPECT_EQ(Good(begin + "songs").Value, here + "/songs");
        EXPECT_EQ(Good(begin + "./songs/../new").Value, here + "/new");
        EXPECT_EQ(Good(begin + "~/songs").Value, "%UserProfile%/songs");
        EXPECT_EQ(Good(begin + "~").Value, "%UserProfile%");
        for (const char* whole : {"", "/songs", "%MyMusic%/x", "~other/x"}) {
            const std::string expected = *whole == '~' ? here + "/" + whole : whole;
            EXPECT_EQ(Good(begin + whole).Value, expected);
        }
    }
    EXPECT_EQ(Good("Options.MusicFolderTemplate=songs").Value, "songs");
}

TEST(SettingArgument, AnythingElseIsRefusedWithItsReason) {
    EXPECT_EQ(Error("Options.Nonsense=1"), "there is no setting Options.Nonsense");
    EXPECT_EQ(Error("Options.Encoder=mp3"), "Options.Encoder takes a whole number, not 'mp3'");
    EXPECT_EQ(Error("Source.LengthOfPause="), "Source.LengthOfPause takes a whole number, not ''");
    for (const char* text :
         {"", "=", "Options", "Options.Encoder", ".Encoder=1", "Options.=1", "Encoder=1"}) {
        EXPECT_EQ(Error(text), "'" + std::string(text) + "' is not of the form SECTION.KEY=VALUE");
    }
}

}  // namespace
}  // namespace Corvetape
