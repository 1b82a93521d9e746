// The rules of the house, held against the whole tree.

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "architecture/rules.h"

namespace Corvetape::Architecture {
namespace {

const std::vector<SourceFile>& Tree() {
    static const std::vector<SourceFile> files = ReadTree(CORVETAPE_SOURCE_DIR, {"src", "tests", "bench"});
    return files;
}

std::string Listed(const std::vector<Finding>& findings) {
    std::string text;
    for (const Finding& finding : findings) {
        text += finding.Path + ":" + std::to_string(finding.Line) + ": " + finding.Text + "\n";
    }
    return text;
}

std::string Over(std::vector<Finding> (*rule)(const SourceFile&)) {
    std::string text;
    for (const SourceFile& file : Tree()) text += Listed(rule(file));
    return text;
}

TEST(Tree, IsRead) {
    EXPECT_GT(Tree().size(), 50u);
    bool knownFileRead = false;
    for (const SourceFile& file : Tree()) {
        knownFileRead = knownFileRead || (file.Path == "src/core/text/text.h" && !file.Text.empty());
    }
    EXPECT_TRUE(knownFileRead);
}

TEST(Tree, NoIncludeClimbsAFloorOrReachesForTheSystem) {
    EXPECT_EQ(Over(WrongIncludes), "");
}

TEST(Tree, TheBuildStatesNoOtherArrowsThanTheTable) {
    std::ifstream stream(CORVETAPE_SOURCE_DIR "/src/CMakeLists.txt");
    std::ostringstream text;
    text << stream.rdbuf();
    ASSERT_NE(text.str().find("corvetape_room("), std::string::npos);
    EXPECT_EQ(Listed(WrongArrows(text.str())), "");
}

TEST(Tree, LogicAsksTheMachineForTimeFilesAndThreads) {
    EXPECT_EQ(Over(ReachesPastTheMachine), "");
}

TEST(Tree, NoFileIsAboutTwoThings) {
    EXPECT_EQ(Over(LongFiles), "");
}

TEST(Tree, EveryHeaderIsAContract) {
    EXPECT_EQ(Over(UnexplainedHeaders), "");
}

TEST(Tree, NoHeaderOpensANamespace) {
    EXPECT_EQ(Over(UsingNamespaceInHeaders), "");
}

TEST(Tree, NothingIsOwnedByARawPointer) {
    EXPECT_EQ(Over(RawOwnership), "");
}

TEST(Tree, NothingIsMarkedAsLeftForLater) {
    EXPECT_EQ(Over(OpenMarks), "");
}

TEST(Tree, NoTestSleeps) {
    EXPECT_EQ(Over(SleepingTests), "");
}

TEST(Tree, FilesAreNamedInLowerSnakeCase) {
    EXPECT_EQ(Over(WrongFileNames), "");
}

}  // namespace
}  // namespace Corvetape::Architecture
