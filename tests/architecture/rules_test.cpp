#include "architecture/rules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace Corvetape::Architecture {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<size_t> LinesFound(const std::vector<Finding>& findings) {
    std::vector<size_t> lines;
    for (const Finding& finding : findings) lines.push_back(finding.Line);
    std::ranges::sort(lines);
    return lines;
}

std::string Repeated(std::string_view line, size_t times) {
    std::string text;
    for (size_t i = 0; i < times; ++i) text += line;
    return text;
}

TEST(Rooms, NoRoomUsesOneThatComesLater) {
    std::set<std::string_view> lower;
    for (const Room& room : Rooms()) {
        for (std::string_view other : room.Uses) {
            EXPECT_TRUE(lower.contains(other)) << room.Folder << " uses " << other;
        }
        lower.insert(room.Folder);
    }
}

TEST(Rooms, TheLongestFolderDecides) {
    EXPECT_EQ(RoomOf("platform/virtual/clock.h")->Folder, "platform/virtual");
    EXPECT_EQ(RoomOf("platform/clock.h")->Folder, "platform");
    EXPECT_EQ(RoomOf("platformer/clock.h"), nullptr);
}

TEST(WrongIncludes, ALowerFloorMayBeKnown) {
    EXPECT_THAT(WrongIncludes(ReadSource("src/audio/a.cpp",
                                         "#include \"core/text/text.h\"\n#include <vector>\n"
                                         "#include \"audio/b.h\"\n")),
                IsEmpty());
}

TEST(WrongIncludes, AHigherFloorAndANeighbourMayNot) {
    EXPECT_THAT(LinesFound(WrongIncludes(ReadSource(
                    "src/media/a.cpp", "#include \"recording/session.h\"\n#include \"post/a.h\"\n"))),
                ElementsAre(1, 2));
    EXPECT_THAT(LinesFound(WrongIncludes(
                    ReadSource("src/platform/virtual/a.cpp", "#include \"core/text/text.h\"\n"))),
                ElementsAre(1));
    EXPECT_THAT(LinesFound(WrongIncludes(ReadSource("src/app/a.cpp", "#include \"cli/a.h\"\n"))),
                ElementsAre(1));
}

TEST(WrongIncludes, AnIncludeStartsBelowSrc) {
    EXPECT_THAT(LinesFound(WrongIncludes(ReadSource("src/core/a.cpp", "#include \"text.h\"\n"))),
                ElementsAre(1));
    EXPECT_THAT(LinesFound(WrongIncludes(ReadSource("src/core/a.cpp", "#include \"../core/text/text.h\"\n"))),
                ElementsAre(1));
}

TEST(WrongIncludes, LogicKnowsNoHeaderOfASystemOrToolkit) {
    for (const char* header : {"QString", "pulse/pulseaudio.h", "sndfile.h", "X11/Xlib.h", "unistd.h",
                               "thread", "fstream", "sys/stat.h", "fmt/format.h", "string.h"}) {
        const std::string text = "#include <" + std::string(header) + ">\n";
        EXPECT_THAT(LinesFound(WrongIncludes(ReadSource("src/audio/a.cpp", text))), ElementsAre(1)) << header;
        EXPECT_THAT(LinesFound(WrongIncludes(ReadSource("src/platform/virtual/a.cpp", text))), ElementsAre(1))
            << header;
        EXPECT_THAT(WrongIncludes(ReadSource("src/platform/linux/a.cpp", text)), IsEmpty()) << header;
    }
}

TEST(WrongIncludes, ARoomKnowsItsOwnLibraries) {
    EXPECT_THAT(WrongIncludes(ReadSource("src/core/a.cpp", "#include <fmt/format.h>\n#include <pcre2.h>\n")),
                IsEmpty());
    EXPECT_THAT(WrongIncludes(ReadSource("src/assistant/web_view.cpp", "#include <QWebEngineView>\n")),
                IsEmpty());
    EXPECT_THAT(
        LinesFound(WrongIncludes(ReadSource("src/assistant/pages.cpp", "#include <QWebEngineView>\n"))),
        ElementsAre(1));
}

TEST(WrongIncludes, AFolderOutsideTheTableIsNoRoom) {
    EXPECT_THAT(LinesFound(WrongIncludes(ReadSource("src/attic/a.cpp", "int a;\n"))), ElementsAre(1));
}

TEST(WrongArrows, OnlyArrowsOfTheTableMayBeBuilt) {
    EXPECT_THAT(WrongArrows("corvetape_room(audio FOLDER audio USES forms core platform)\n"), IsEmpty());
    EXPECT_THAT(
        WrongArrows("corvetape_room(platform_virtual FOLDER platform/virtual USES platform\n LIBRARIES X)\n"),
        IsEmpty());
    EXPECT_THAT(LinesFound(WrongArrows("\ncorvetape_room(audio FOLDER audio USES core recording)\n")),
                ElementsAre(2));
    EXPECT_THAT(LinesFound(WrongArrows("corvetape_room(core FOLDER core USES platform_virtual)\n")),
                ElementsAre(1));
    EXPECT_THAT(LinesFound(WrongArrows("corvetape_room(attic FOLDER attic)\n")), ElementsAre(1));
}

TEST(ReachesPastTheMachine, LogicReadsNoClockOfItsOwn) {
    const std::string text =
        "auto a = std::chrono::system_clock::now();\nconst char* b = getenv(\"HOME\");\n";
    EXPECT_THAT(LinesFound(ReachesPastTheMachine(ReadSource("src/post/a.cpp", text))), ElementsAre(1, 2));
    EXPECT_THAT(ReachesPastTheMachine(ReadSource("src/platform/linux/a.cpp", text)), IsEmpty());
    EXPECT_THAT(ReachesPastTheMachine(ReadSource("src/post/a.cpp", "// system_clock\nint systems = 1;\n")),
                IsEmpty());
}

TEST(LongFiles, FiveHundredLinesAreTheEndExceptInTables) {
    EXPECT_THAT(LongFiles(ReadSource("src/core/a.cpp", Repeated("int a;\n", 500))), IsEmpty());
    EXPECT_THAT(LinesFound(LongFiles(ReadSource("src/core/a.cpp", Repeated("int a;\n", 501)))),
                ElementsAre(501));
    EXPECT_THAT(LongFiles(ReadSource("src/core/a_table.cpp", Repeated("int a;\n", 501))), IsEmpty());
}

TEST(UnexplainedHeaders, AHeaderHasContractComments) {
    EXPECT_THAT(LinesFound(UnexplainedHeaders(ReadSource("src/core/a.h", "// plain\nstruct A {};\n"))),
                ElementsAre(1));
    EXPECT_THAT(UnexplainedHeaders(ReadSource("src/core/a.h", "/// A thing.\nstruct A {};\n")), IsEmpty());
    EXPECT_THAT(UnexplainedHeaders(ReadSource("src/core/a.cpp", "struct A {};\n")), IsEmpty());
}

TEST(UnexplainedHeaders, AFreeFunctionIsExplained) {
    EXPECT_THAT(LinesFound(UnexplainedHeaders(ReadSource("src/core/a.h", "/// F.\nint F();\n\nint G();\n"))),
                ElementsAre(4));
    EXPECT_THAT(LinesFound(UnexplainedHeaders(
                    ReadSource("src/core/a.h", "/// F.\nint F();\n\ninline int G() { return 1; }\n"))),
                ElementsAre(4));
}

TEST(UnexplainedHeaders, FunctionsWithoutALineBetweenShareAComment) {
    EXPECT_THAT(UnexplainedHeaders(ReadSource("src/core/a.h", "/// F.\nint F();\nint F(int a);\n")),
                IsEmpty());
}

TEST(UnexplainedHeaders, ANamespaceDetailIsNoContract) {
    const std::string text =
        "/// A.\nstruct A {};\nnamespace Detail {\nint F();\n}\nnamespace Plain {\nint G();\n}\n";
    EXPECT_THAT(LinesFound(UnexplainedHeaders(ReadSource("src/core/a.h", text))), ElementsAre(7));
}

TEST(UsingNamespaceInHeaders, IsFoundInHeadersOnly) {
    const std::string text = "// using namespace\nusing namespace std;\n";
    EXPECT_THAT(LinesFound(UsingNamespaceInHeaders(ReadSource("src/core/a.h", text))), ElementsAre(2));
    EXPECT_THAT(UsingNamespaceInHeaders(ReadSource("src/core/a.cpp", text)), IsEmpty());
}

TEST(RawOwnership, NewAndDeleteAreFoundButNotADeletedFunction) {
    EXPECT_THAT(LinesFound(RawOwnership(ReadSource("src/core/a.cpp", "auto a = new int;\ndelete a;\n"))),
                ElementsAre(1, 2));
    EXPECT_THAT(RawOwnership(ReadSource("src/core/a.h",
                                        "A(const A&) = delete;\nA& operator=(const A&) =\n  delete;\n"
                                        "void* operator new(size_t);\nvoid operator delete(void*);\n"
                                        "int newest;  // new\n")),
                IsEmpty());
    EXPECT_THAT(RawOwnership(ReadSource("src/ui/a.cpp", "auto a = new QLabel(this);\n")), IsEmpty());
}

TEST(RawOwnership, AnObjectMayBeHandedToItsOwnerOnTheSpot) {
    EXPECT_THAT(RawOwnership(ReadSource("src/core/a.cpp",
                                        "auto a = std::unique_ptr<A>(new A);\n"
                                        "std::unique_ptr<A> b(new A(1));\n")),
                IsEmpty());
    EXPECT_THAT(LinesFound(RawOwnership(ReadSource("src/core/a.cpp", "std::unique_ptr<A> a;\nF(new A);\n"))),
                ElementsAre(2));
}

TEST(OpenMarks, AreFoundInComments) {
    EXPECT_THAT(LinesFound(OpenMarks(ReadSource("src/core/a.h", "int a;  // TODO later\n/* FIXME */\n"))),
                ElementsAre(1, 2));
    EXPECT_THAT(OpenMarks(ReadSource("src/core/a.h", "auto a = \"TODO\";  // done\n")), IsEmpty());
}

TEST(SleepingTests, OnlyTestsOfTheRealMachineWaitForRealTime) {
    const std::string text = "void F() {\n  std::this_thread::sleep_for(1s);\n}\n";
    EXPECT_THAT(LinesFound(SleepingTests(ReadSource("tests/core/a.cpp", text))), ElementsAre(2));
    EXPECT_THAT(SleepingTests(ReadSource("tests/live/a.cpp", text)), IsEmpty());
    EXPECT_THAT(SleepingTests(ReadSource("tests/platform/linux/a.cpp", text)), IsEmpty());
}

TEST(WrongFileNames, NamesAreLowerSnakeCase) {
    EXPECT_THAT(WrongFileNames(ReadSource("src/core/file_names2.h", "")), IsEmpty());
    EXPECT_THAT(LinesFound(WrongFileNames(ReadSource("src/core/FileNames.h", ""))), ElementsAre(1));
    EXPECT_THAT(LinesFound(WrongFileNames(ReadSource("src/Core-2/names.h", ""))), ElementsAre(1));
}

}  // namespace
}  // namespace Corvetape::Architecture
