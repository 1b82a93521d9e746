#include "core/common_folder.h"

#include <gtest/gtest.h>

#include "core/fakes.h"
#include "core/settings/registry.h"
#include "core/text/placeholders.h"

namespace Corvetape {
namespace {

class SearchPathTest : public testing::Test {
 protected:
    MemoryFiles Disk;
    StandingClock Time;
    TableFolders Places;
    RegistryBranches Registry{Disk, "/u", "/m"};
    Placeholders Expansion{Time, Places, Registry};
};

TEST_F(SearchPathTest, TheCommonFolderIsPutAfterIt) {
    EXPECT_EQ(CommonDataFolder(Places), "/var/lib/Corvet");
    ExtendSearchPath(Places, Expansion, "/var/lib/Corvet");
    EXPECT_EQ(Places.Variables["PATH"], "/usr/bin:/bin:/var/lib/Corvet");
}

TEST_F(SearchPathTest, AFolderThatItHoldsAlreadyIsNotAddedIgnoringCase) {
    Places.Variables["PATH"] = "/VAR/lib/corvet:/bin";
    ExtendSearchPath(Places, Expansion, "/var/lib/Corvet");
    EXPECT_EQ(Places.Variables["PATH"], "/VAR/lib/corvet:/bin");
}

TEST_F(SearchPathTest, WithoutASearchPathTheFolderIsAllOfIt) {
    Places.Variables.erase("PATH");
    ExtendSearchPath(Places, Expansion, "/var/lib/Corvet");
    EXPECT_EQ(Places.Variables["PATH"], "/var/lib/Corvet");
}

TEST_F(SearchPathTest, AFailureIsIgnored) {
    Places.SetFails = true;
    ExtendSearchPath(Places, Expansion, "/var/lib/Corvet");
    EXPECT_EQ(Places.Variables["PATH"], "/usr/bin:/bin");
}

}  // namespace
}  // namespace Corvetape
