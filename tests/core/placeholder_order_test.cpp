// The order of the steps that expand placeholders: what one of them brings in is seen by the later ones only.
#include <gtest/gtest.h>

#include "core/fakes.h"
#include "core/media_state.h"
#include "core/settings/registry.h"
#include "core/text/placeholders.h"

namespace Corvetape {
namespace {

class PlaceholderOrder : public testing::Test {
 protected:
    std::string Expand(std::string_view text) { return Expansion.ExpandPlaceholders(text); }
    void RegistryVariable(const char* name, const char* value) {
        Registry.WriteRegistryValue(RegistryRoot::CurrentUser, "Environment", name, std::string(value));
    }

    MemoryFiles Disk;
    StandingClock Time{{2009, 12, 31, 14, 5, 9, 0}};
    TableFolders Places;
    RegistryBranches Registry{Disk, "/user.reg", "/machine.reg"};
    Placeholders Expansion{Time, Places, Registry};
};

TEST_F(PlaceholderOrder, TempIsExpandedAheadOfTmp) {
    Places.Variables.clear();
    RegistryVariable("Temp", "/a/%Tmp%");
    RegistryVariable("Tmp", "/b/%Temp%");
    EXPECT_EQ(Expand("%Temp%"), "/a//b/%Temp%");
    EXPECT_EQ(Expand("%Tmp%"), "/b/%Temp%");
}

TEST_F(PlaceholderOrder, TheFoldersOfTheUserAreExpandedFromAppDataToTheFolderOfTheProgram) {
    const std::vector<std::pair<ShellFolder, std::string>> rows = {
        {ShellFolder::AppData, "%AppData%"},
        {ShellFolder::MyDocuments, "%MyDocuments%"},
        {ShellFolder::MyMusic, "%MyMusic%"},
        {ShellFolder::MyPictures, "%MyPictures%"},
        {ShellFolder::MyVideo, "%MyVideo%"}};
    for (size_t earlier = 0; earlier < rows.size(); ++earlier) {
        for (size_t later = earlier + 1; later < rows.size(); ++later) {
            Places.Paths = {{rows[earlier].first, "/a" + rows[later].second},
                            {rows[later].first, "/b" + rows[earlier].second}};
            EXPECT_EQ(Expand(rows[earlier].second), "/a/b" + rows[earlier].second);
            EXPECT_EQ(Expand(rows[later].second), "/b" + rows[earlier].second);
        }
        Places.Paths = {{rows[earlier].first, "%AppDir%/x"}};
        EXPECT_EQ(Expand(rows[earlier].second), "/opt/corvetape/x");
    }
}

TEST_F(PlaceholderOrder, ALineBreakIsExpandedAheadOfTheEnvironment) {
    Places.Variables = {{"LF", "of the environment"}, {"Text", "a%LF%b"}};
    EXPECT_EQ(Expand("%LF%"), "\r\n");
    EXPECT_EQ(Expand("%Text%"), "a%LF%b");
}

TEST_F(PlaceholderOrder, TheNameOfTheUserIsExpandedAheadOfTheLineBreakAndTheEnvironment) {
    Places.Variables = {
        {"UserProfile", "/home/e%LF%v%Path%a"}, {"UserProfileName", "other"}, {"Path", "/bin"}};
    EXPECT_EQ(Expand("%UserProfileName%"), "e\r\nv/bina");
}

TEST_F(PlaceholderOrder, TheFieldsOfASongAreExpandedFromItsArtistToItsSource) {
    struct Field {
        const char* Name;
        std::string* Value;
    };
    MediaState media;
    STATIONANDSONGDATA& song = media.SongMedia;
    const Field fields[] = {{"%Artist%", &song.Artist},
                            {"%Title%", &song.Song},
                            {"%Album%", &song.Album},
                            {"%Station%", &song.StationName},
                            {"%Source%", &media.ProviderName}};
    for (const Field& earlier : fields) {
        for (const Field* later = &earlier + 1; later != std::end(fields); ++later) {
            *earlier.Value = std::string("a") + later->Name;
            *later->Value = std::string("b") + earlier.Name;
            EXPECT_EQ(ExpandMediaData(earlier.Name, media), std::string("ab") + earlier.Name);
            EXPECT_EQ(ExpandMediaData(later->Name, media), std::string("b") + earlier.Name);
        }
    }
}

TEST_F(PlaceholderOrder, TheGenreComesBetweenTheStationAndTheSource) {
    MediaState media;
    media.SongMedia.StationName = "%Genre%%Source%";
    media.ProviderName = "s%Genre%";
    EXPECT_EQ(ExpandMediaData("%Genre%", media), "%Genre%s%Genre%");
}

}  // namespace
}  // namespace Corvetape
