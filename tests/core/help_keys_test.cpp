#include "core/help_keys.h"

#include <gtest/gtest.h>

namespace Corvetape::Test {
namespace {

struct Pages : HelpPages {
    void SetUrl(const std::string& page, bool online) override {
        Asked += page + (online ? " online" : " local") + "\n";
        if (Within != nullptr) Within->Press(HelpKey::F3, false, "x");
    }
    std::string Asked;
    HelpKeys* Within = nullptr;
};

struct Row {
    HelpKey Key;
    bool Alt;
    const char* Expected;
    bool Wizard;
};

TEST(HelpKeys, EachKeyAsksForItsPage) {
    const Row rows[] = {{HelpKey::F1, false, "audio.htm online\n", false},
                        {HelpKey::F1, true, "audio.htm local\n", false},
                        {HelpKey::F2, false, "wizard.htm online\n", true},
                        {HelpKey::F2, true, "wizard.htm local\n", true},
                        {HelpKey::F3, false, "search.htm online\n", false},
                        {HelpKey::F3, true, "search.htm online\n", false},
                        {HelpKey::F12, false, "audio.htm online\n", false},
                        {HelpKey::F12, true, "audio.htm online\n", false}};
    for (const Row& row : rows) {
        LifecycleFlags flags;
        Pages pages;
        HelpKeys(flags, pages).Press(row.Key, row.Alt, "audio");
        EXPECT_EQ(pages.Asked, row.Expected);
        EXPECT_EQ(flags.WizardRequested, row.Wizard);
    }
}

TEST(HelpKeys, AKeyWithinAKeyIsIgnored) {
    LifecycleFlags flags;
    Pages pages;
    HelpKeys keys(flags, pages);
    pages.Within = &keys;
    keys.Press(HelpKey::F12, false, "log");
    EXPECT_EQ(pages.Asked, "log.htm online\n");
    keys.Press(HelpKey::F12, false, "log");
    EXPECT_EQ(pages.Asked, "log.htm online\nlog.htm online\n");
}

}  // namespace
}  // namespace Corvetape::Test
