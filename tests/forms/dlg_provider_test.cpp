#include "forms/dlg_provider.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Corvetape::Test {
namespace {

TEST(ProviderDialog, HasItsControlsByName) {
    const dlgProvider dialog;
    EXPECT_EQ(dialog.Name(), "dlgProvider");
    for (const char* name : {"lblInfo", "Label1", "cboProvider", "cmdOK", "cmdCancel"}) {
        EXPECT_NE(dialog.Find(name), nullptr) << name;
    }
    EXPECT_EQ(dialog.Controls().size(), 5U);
}

TEST(ProviderDialog, SpeaksWithoutAnyLanguageFile) {
    const dlgProvider dialog;
    EXPECT_THAT(dialog.lblInfo.Caption(), testing::StartsWith("Corvetape has determined"));
    EXPECT_EQ(dialog.Label1.Caption(), "Please select a provider to take the settings from");
}

TEST(ProviderDialog, IsHiddenUntilItIsShownAndReportsBoth) {
    dlgProvider dialog;
    EXPECT_FALSE(dialog.Visible());
    int changes = 0;
    dialog.Changed.Connect([&] { ++changes; });
    dialog.Visible(true);
    dialog.Visible(true);
    dialog.Visible(false);
    EXPECT_EQ(changes, 2);
}

}  // namespace
}  // namespace Corvetape::Test
