#include "core/settings/settings_table.h"

#include <gtest/gtest.h>

#include <set>

namespace Corvetape {
namespace {

using enum SettingType;

TEST(SettingsTable, TextsAreReadTo254CharactersAndPositionsTo99) {
    for (const SettingRow& row : SettingsTable()) {
        EXPECT_EQ(row.Limit(), row.Key == "Pos" ? size_t{99} : size_t{254}) << row.Key;
    }
}

TEST(SettingsTable, EveryRowHasAMemberOfItsOwn) {
    std::set<std::string> changed;
    for (const SettingRow& row : SettingsTable()) {
        Settings settings;
        ASSERT_TRUE(StoreSetting(settings, row, "7")) << row.Key;
        EXPECT_EQ(SettingText(settings, row), row.Type == Bool ? "1" : "7") << row.Key;
        for (const SettingRow& other : SettingsTable()) {
            if (&other == &row || other.Type == Bool) continue;
            EXPECT_NE(SettingText(settings, other), "7") << row.Key << " also sets " << other.Key;
        }
    }
}

TEST(SettingsTable, TheStructBeginsWithTheNumbersAndFlagsOfTheTable) {
    const Settings settings;
    for (const SettingRow& row : SettingsTable()) {
        if (row.Type == Text || row.Type == PosText) continue;
        EXPECT_EQ(SettingText(settings, row), row.Default) << row.Key;
    }
}

TEST(SettingsTable, ATextThatIsNoNumberChangesNothing) {
    Settings settings;
    settings.LowTempSpace = 500;
    EXPECT_FALSE(StoreSetting(settings, *FindSetting("Options", "LowTempSpace"), "many"));
    EXPECT_EQ(settings.LowTempSpace, 500);
    EXPECT_TRUE(StoreSetting(settings, *FindSetting("Options", "LowTempSpace"), "700.6"));
    EXPECT_EQ(settings.LowTempSpace, 701);
}

TEST(SettingsTable, AFlagIsSetByAnyNumberButZero) {
    Settings settings;
    const SettingRow& row = *FindSetting("Options", "Normalize");
    StoreSetting(settings, row, "-1");
    EXPECT_TRUE(settings.Normalize);
    EXPECT_EQ(SettingText(settings, row), "1");
    StoreSetting(settings, row, "0");
    EXPECT_FALSE(settings.Normalize);
}

TEST(SettingsTable, ARowIsFoundIgnoringCase) {
    ASSERT_NE(FindSetting("options", "LOWTEMPSPACE"), nullptr);
    EXPECT_EQ(FindSetting("options", "LOWTEMPSPACE")->Key, "LowTempSpace");
    EXPECT_EQ(FindSetting("Form", "Pos")->Section, "Form");
    EXPECT_EQ(FindSetting("QuickButtons", "Pos")->Section, "QuickButtons");
    EXPECT_EQ(FindSetting("Options", "NoSuchKey"), nullptr);
    EXPECT_EQ(FindSetting("Encode", "MP3"), nullptr);
}

}  // namespace
}  // namespace Corvetape
