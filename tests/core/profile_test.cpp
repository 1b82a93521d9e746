#include "core/settings/profile.h"

#include <gtest/gtest.h>

#include <random>

#include "core/fakes.h"
#include "core/text/text.h"

namespace Corvetape {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

constexpr const char* Path = "/home/eva/test.ini";

class ProfileTest : public testing::Test {
 protected:
    Profile Open(std::string content) {
        Disk.Contents[Path] = std::move(content);
        return Profile(Disk, Path);
    }
    const std::string& Written() { return Disk.Contents[Path]; }

    MemoryFiles Disk;
};

using Names = std::vector<std::string>;

TEST_F(ProfileTest, ReadsAValueOfASection) {
    const Profile profile = Open("[A]\nx=1\n[B]\nx=2\n");
    EXPECT_EQ(profile.ReadText("A", "x", "none"), "1");
    EXPECT_EQ(profile.ReadText("B", "x", "none"), "2");
}

TEST_F(ProfileTest, AMissingKeySectionOrFileGivesTheDefault) {
    const Profile profile = Open("[A]\nx=1\n");
    EXPECT_EQ(profile.ReadText("A", "y", "none"), "none");
    EXPECT_EQ(profile.ReadText("B", "x", "none"), "none");
    EXPECT_EQ(profile.ReadInt("B", "x", 7), 7);
    const Profile missing(Disk, "/nowhere.ini");
    EXPECT_EQ(missing.ReadText("A", "x", "none"), "none");
    EXPECT_TRUE(missing.Sections().empty());
}

TEST_F(ProfileTest, AnEmptyValueIsAValueAndNotTheDefault) {
    EXPECT_EQ(Open("[A]\nx=\n").ReadText("A", "x", "none"), "");
}

TEST_F(ProfileTest, NamesAreComparedIgnoringCase) {
    const Profile profile = Open("[General]\nLanguage=german\n");
    EXPECT_EQ(profile.ReadText("GENERAL", "language", ""), "german");
}

TEST_F(ProfileTest, TheFirstOfTwoKeysOfOneNameWins) {
    EXPECT_EQ(Open("[A]\nx=1\nX=2\n").ReadText("A", "x", ""), "1");
}

TEST_F(ProfileTest, TheFirstOfTwoSectionsOfOneNameWins) {
    const Profile profile = Open("[A]\nx=1\n[a]\nx=2\ny=3\n");
    EXPECT_EQ(profile.ReadText("A", "x", ""), "1");
    EXPECT_EQ(profile.ReadText("A", "y", "none"), "none");
    EXPECT_EQ(profile.Sections(), Names{"A"});
}

TEST_F(ProfileTest, BlanksAndTabsRoundNamesAndValuesDoNotCount) {
    const Profile profile = Open("  [ A ]  \n\t x \t=\t 1 2 \t\n");
    EXPECT_EQ(profile.ReadText("A", "x", ""), "1 2");
}

TEST_F(ProfileTest, OnePairOfQuotesRoundAValueIsTakenOff) {
    const Profile profile = Open("[A]\na=\" b \"\nb='c'\nc=\"\"d\"\"\nd=\"e\ne=\"f'\nf=\"\ng=\"\"\n");
    EXPECT_EQ(profile.ReadText("A", "a", ""), " b ");
    EXPECT_EQ(profile.ReadText("A", "b", ""), "c");
    EXPECT_EQ(profile.ReadText("A", "c", ""), "\"d\"");
    EXPECT_EQ(profile.ReadText("A", "d", ""), "\"e");
    EXPECT_EQ(profile.ReadText("A", "e", ""), "\"f'");
    EXPECT_EQ(profile.ReadText("A", "f", ""), "\"");
    EXPECT_EQ(profile.ReadText("A", "g", "none"), "");
}

TEST_F(ProfileTest, ALineThatBeginsWithASemicolonIsAComment) {
    const Profile profile = Open("[A]\n; x=1\n  ;y=2\nz=3;4\n");
    EXPECT_EQ(profile.Keys("A"), Names{"z"});
    EXPECT_EQ(profile.ReadText("A", "z", ""), "3;4");
}

TEST_F(ProfileTest, AValueMayHoldEqualsSignsAndBrackets) {
    EXPECT_EQ(Open("[A]\nx=a=b[c]\n").ReadText("A", "x", ""), "a=b[c]");
}

TEST_F(ProfileTest, ByteOrderMarkAndBothLineEndsAreRead) {
    const Profile profile = Open("\xEF\xBB\xBF[A]\r\nx=1\r\n[B]\ny=2");
    EXPECT_EQ(profile.ReadText("A", "x", ""), "1");
    EXPECT_EQ(profile.ReadText("B", "y", ""), "2");
}

TEST_F(ProfileTest, ALimitCutsAValueAndADefault) {
    const Profile profile = Open("[A]\nx=abcdef\n");
    EXPECT_EQ(profile.ReadText("A", "x", "", 4), "abcd");
    EXPECT_EQ(profile.ReadText("A", "y", "uvwxyz", 2), "uv");
}

TEST_F(ProfileTest, ALimitCountsCharacters) {
    const Profile profile = Open("[A]\nx=ab\xC3\xA4\xE2\x82\xAC\n");
    EXPECT_EQ(profile.ReadText("A", "x", "", 2), "ab");
    EXPECT_EQ(profile.ReadText("A", "x", "", 3), "ab\xC3\xA4");
    EXPECT_EQ(profile.ReadText("A", "x", "", 4), "ab\xC3\xA4\xE2\x82\xAC");
}

TEST_F(ProfileTest, ANumberEndsAtTheFirstCharacterThatIsNoDigit) {
    const Profile profile = Open("[A]\na=12ab\nb=-7.9\nc=abc\nd=+5\ne=\nf=\" 8\"\ng=0x10\n");
    EXPECT_EQ(profile.ReadInt("A", "a", 99), 12);
    EXPECT_EQ(profile.ReadInt("A", "b", 99), -7);
    EXPECT_EQ(profile.ReadInt("A", "c", 99), 0);
    EXPECT_EQ(profile.ReadInt("A", "d", 99), 5);
    EXPECT_EQ(profile.ReadInt("A", "e", 99), 99);
    EXPECT_EQ(profile.ReadInt("A", "f", 99), 8);
    EXPECT_EQ(profile.ReadInt("A", "g", 99), 0);
}

TEST_F(ProfileTest, ANumberBeyond32BitsIsTheNearestWithin) {
    const Profile profile = Open("[A]\na=2147483648\nb=-99999999999999999999999\nc=2147483647\n");
    EXPECT_EQ(profile.ReadInt("A", "a", 0), 2147483647);
    EXPECT_EQ(profile.ReadInt("A", "b", 0), -2147483647 - 1);
    EXPECT_EQ(profile.ReadInt("A", "c", 0), 2147483647);
}

TEST_F(ProfileTest, KeysAndSectionsAreListedInTheOrderOfTheFile) {
    const Profile profile = Open("[Z]\nc=1\na=2\nb=3\n[A]\n[M]\n");
    EXPECT_EQ(profile.Keys("z"), (Names{"c", "a", "b"}));
    EXPECT_EQ(profile.Sections(), (Names{"Z", "A", "M"}));
}

TEST_F(ProfileTest, ADoubledKeyIsListedTwiceAndANamelessOneNotAtAll) {
    EXPECT_EQ(Open("[A]\nx=1\n=2\nnothing\nx=3\n").Keys("A"), (Names{"x", "x"}));
}

TEST_F(ProfileTest, TheSectionWithTheEmptyNameHoldsTheLinesBeforeTheFirstSection) {
    const Profile profile = Open("a=1\nb=2\n[]\nc=3\n[S]\nd=4\n");
    EXPECT_EQ(profile.Keys(""), (Names{"a", "b"}));
    EXPECT_EQ(profile.ReadText("", "a", ""), "1");
    EXPECT_EQ(profile.Sections(), Names{"S"});
}

TEST_F(ProfileTest, NamesBeyondTheListingBufferAreLost) {
    const Profile profile = Open("[A]\nab=1\ncd=2\nef=3\n");
    EXPECT_EQ(profile.Keys("A", 10), (Names{"ab", "cd", "ef"}));
    EXPECT_EQ(profile.Keys("A", 9), (Names{"ab", "cd"}));
    EXPECT_EQ(profile.Keys("A", 3), Names{});
}

TEST_F(ProfileTest, WritingChangesTheOneLineAndNoOtherByte) {
    Profile profile =
        Open("\xEF\xBB\xBF; mine \r\n\r\n[A]\r\n  x = 1  \r\ngarbage\x01\xFF\r\ny=2\n[B]\r\nx=3");
    EXPECT_TRUE(profile.Write("a", "X", "new"));
    EXPECT_EQ(Written(), "\xEF\xBB\xBF; mine \r\n\r\n[A]\r\n  x = new\r\ngarbage\x01\xFF\r\ny=2\n[B]\r\nx=3");
    EXPECT_EQ(profile.ReadText("A", "x", ""), "new");
}

TEST_F(ProfileTest, ANewKeyComesAfterTheLastKeyOfItsSection) {
    Profile profile = Open("[A]\r\nx=1\r\n\r\n; about B\r\n[B]\r\n");
    EXPECT_TRUE(profile.Write("A", "y", "2"));
    EXPECT_EQ(Written(), "[A]\r\nx=1\r\ny=2\r\n\r\n; about B\r\n[B]\r\n");
    EXPECT_TRUE(profile.Write("B", "z", "3"));
    EXPECT_EQ(Written(), "[A]\r\nx=1\r\ny=2\r\n\r\n; about B\r\n[B]\r\nz=3\r\n");
}

TEST_F(ProfileTest, ANewKeyAfterALineWithoutEndLeavesTheFileWithoutEnd) {
    Profile profile = Open("[A]\nx=1");
    EXPECT_TRUE(profile.Write("A", "y", "2"));
    EXPECT_EQ(Written(), "[A]\nx=1\ny=2");
    Profile header = Open("[A]");
    EXPECT_TRUE(header.Write("A", "y", "2"));
    EXPECT_EQ(Written(), "[A]\ny=2");
}

TEST_F(ProfileTest, ANewSectionComesAtTheEndAfterABlankLine) {
    Profile profile = Open("[A]\nx=1");
    EXPECT_TRUE(profile.Write("B", "y", "2"));
    EXPECT_EQ(Written(), "[A]\nx=1\n\n[B]\ny=2\n");
    EXPECT_TRUE(profile.Write("C", "z", "3"));
    EXPECT_EQ(Written(), "[A]\nx=1\n\n[B]\ny=2\n\n[C]\nz=3\n");
}

TEST_F(ProfileTest, AMissingFileIsMadeByTheFirstWrite) {
    Profile profile(Disk, Path);
    EXPECT_TRUE(profile.Write("A", "x", "1"));
    EXPECT_EQ(Written(), "[A]\nx=1\n");
}

TEST_F(ProfileTest, AKeyOfTheNamelessSectionStandsBeforeTheFirstSection) {
    Profile profile = Open("\xEF\xBB\xBF[A]\nx=1\n");
    EXPECT_TRUE(profile.Write("", "k", "v"));
    EXPECT_EQ(Written(), "\xEF\xBB\xBFk=v\n[A]\nx=1\n");
    EXPECT_TRUE(profile.Write("", "l", "w"));
    EXPECT_EQ(Written(), "\xEF\xBB\xBFk=v\nl=w\n[A]\nx=1\n");
}

TEST_F(ProfileTest, EveryWriteIsAFileWriteAtOnce) {
    Profile profile = Open("[A]\nx=1\n");
    profile.Write("A", "x", "2");
    EXPECT_EQ(Written(), "[A]\nx=2\n");
    profile.Write("A", "x", "3");
    EXPECT_EQ(Written(), "[A]\nx=3\n");
    EXPECT_EQ(Disk.Replacements, 2);
}

TEST_F(ProfileTest, AValueThatStandsThereAlreadyIsNotWrittenAgain) {
    Profile profile = Open("[A]\nx=1\n");
    EXPECT_TRUE(profile.Write("A", "x", "1"));
    EXPECT_EQ(Disk.Replacements, 0);
}

TEST_F(ProfileTest, AWriteKeepsWhatSomebodyElseChangedMeanwhile) {
    Profile profile = Open("[A]\nx=1\n");
    profile.ReadText("A", "x", "");
    Disk.Contents[Path] = "[A]\nx=1\nhand=made\n";
    EXPECT_TRUE(profile.Write("A", "x", "2"));
    EXPECT_EQ(Written(), "[A]\nx=2\nhand=made\n");
    EXPECT_EQ(profile.ReadText("A", "hand", ""), "made");
}

TEST_F(ProfileTest, ReadingAgainDoesNotTouchTheFile) {
    const Profile profile = Open("[A]\nx=1\n");
    for (int i = 0; i < 10; ++i) profile.ReadInt("A", "x", 0);
    EXPECT_EQ(Disk.Reads, 1);
}

TEST_F(ProfileTest, ReloadReadsAFileThatSomethingElseReplaced) {
    Profile profile = Open("[A]\nx=1\n");
    EXPECT_EQ(profile.ReadInt("A", "x", 0), 1);
    Disk.Contents[Path] = "[A]\nx=2\n";
    profile.Reload();
    EXPECT_EQ(profile.ReadInt("A", "x", 0), 2);
}

TEST_F(ProfileTest, AWrittenValueReadsBackAsItWas) {
    Profile profile(Disk, Path);
    for (const char* value : {"", " a ", "\"quoted\"", "'quoted'", "\"", "a\"b", "\tx", "\"a\" \"b\"", "  ",
                              "; no comment", "[no section]", "a=b", "\xC3\xA4\xE2\x82\xAC"}) {
        ASSERT_TRUE(profile.Write("A", "x", value));
        EXPECT_EQ(profile.ReadText("A", "x", "none"), value);
        EXPECT_EQ(Profile(Disk, Path).ReadText("A", "x", "none"), value);
    }
}

TEST_F(ProfileTest, LineEndsInAValueBecomeBlanks) {
    Profile profile(Disk, Path);
    ASSERT_TRUE(profile.Write("A", "x", "a\r\n[B]\ny=1\0z"sv));
    EXPECT_EQ(profile.ReadText("A", "x", ""), "a  [B] y=1 z");
    EXPECT_EQ(profile.Sections(), Names{"A"});
}

TEST_F(ProfileTest, ANameThatCannotStandInAFileIsRefused) {
    Profile profile = Open("[A]\nx=1\n");
    EXPECT_FALSE(profile.Write("A", "", "v"));
    EXPECT_FALSE(profile.Write("A", "a=b", "v"));
    EXPECT_FALSE(profile.Write("A", ";a", "v"));
    EXPECT_FALSE(profile.Write("A", "[a", "v"));
    EXPECT_FALSE(profile.Write("A", "a\nb", "v"));
    EXPECT_FALSE(profile.Write(" a\"] ;", "a", "v"));
    EXPECT_FALSE(profile.Write("A\n", "a", "v"));
    EXPECT_EQ(Written(), "[A]\nx=1\n");
}

TEST_F(ProfileTest, AFailedWriteLeavesFileAndValueAsTheyWere) {
    Profile profile = Open("[A]\nx=1\n");
    Disk.WritesFail = true;
    EXPECT_FALSE(profile.Write("A", "x", "2"));
    EXPECT_EQ(profile.ReadText("A", "x", ""), "1");
    EXPECT_EQ(Written(), "[A]\nx=1\n");
}

TEST_F(ProfileTest, AFileThatCannotBeReadIsNotOverwritten) {
    Profile profile = Open("[A]\nx=1\n");
    Disk.ReadsFail = true;
    EXPECT_EQ(profile.ReadText("A", "x", "none"), "none");
    EXPECT_FALSE(profile.Write("A", "y", "2"));
    EXPECT_FALSE(profile.Delete("A", "x"));
    EXPECT_FALSE(profile.DeleteSection("A"));
    EXPECT_EQ(Written(), "[A]\nx=1\n");
    Disk.ReadsFail = false;
    EXPECT_EQ(profile.ReadText("A", "x", "none"), "1");
}

TEST_F(ProfileTest, AValueWhoseLineEndIsHalfThereStaysWhenSomethingIsWrittenAfterIt) {
    Profile profile = Open("[A]\r\nx=40\r");
    EXPECT_TRUE(profile.Write("A", "y", "1"));
    EXPECT_EQ(Written(), "[A]\r\nx=40\r\ny=1");
    EXPECT_EQ(profile.ReadText("A", "x", ""), "40");
    Profile another = Open("[A]\r\nx=40\r");
    EXPECT_TRUE(another.Write("B", "y", "1"));
    EXPECT_EQ(another.ReadText("A", "x", ""), "40");
}

TEST_F(ProfileTest, DeletingRemovesTheLineOfTheKeyOnly) {
    Profile profile = Open("[A]\r\n; one\r\nx=1\r\ny=2\r\n");
    EXPECT_TRUE(profile.Delete("A", "X"));
    EXPECT_EQ(Written(), "[A]\r\n; one\r\ny=2\r\n");
    EXPECT_FALSE(profile.HasKey("A", "x"));
    EXPECT_TRUE(profile.Delete("A", "x"));
    EXPECT_TRUE(profile.Delete("B", "x"));
    EXPECT_EQ(Disk.Replacements, 1);
}

TEST_F(ProfileTest, DeletingADoubledKeyRemovesAllItsLinesInTheSection) {
    Profile profile = Open("[A]\nx=1\ny=2\nX=3\n[B]\nx=4\n");
    EXPECT_TRUE(profile.Delete("A", "x"));
    EXPECT_EQ(Written(), "[A]\ny=2\n[B]\nx=4\n");
    EXPECT_FALSE(profile.HasKey("A", "x"));
}

TEST_F(ProfileTest, DeletingTheFirstLineKeepsTheByteOrderMark) {
    Profile profile = Open("\xEF\xBB\xBFx=1\ny=2\n");
    EXPECT_TRUE(profile.Delete("", "x"));
    EXPECT_EQ(Written(), "\xEF\xBB\xBFy=2\n");
}

TEST_F(ProfileTest, AByteOrderMarkIsPassedOverAtEveryLineSoThatKeysKeepTheirNamesWhenLinesMove) {
    Profile profile = Open("x=1\n\xEF\xBB\xBFy=2\n");
    EXPECT_EQ(profile.ReadText("", "y", ""), "2");
    EXPECT_TRUE(profile.Delete("", "x"));
    EXPECT_EQ(profile.ReadText("", "y", ""), "2");
    EXPECT_FALSE(profile.Write("", "\xEF\xBB\xBFy", "3"));
}

TEST_F(ProfileTest, DeletingASectionRemovesAllItsLinesAndAllOfItsName) {
    Profile profile = Open("[A]\nx=1\n[Mixer]\na=1\n; c\n\n[B]\ny=2\n[mixer]\nb=2\n");
    EXPECT_TRUE(profile.DeleteSection("Mixer"));
    EXPECT_EQ(Written(), "[A]\nx=1\n[B]\ny=2\n");
    EXPECT_EQ(profile.Sections(), (Names{"A", "B"}));
}

TEST_F(ProfileTest, ASectionIsReplacedAsAWholeInOneWrite) {
    Profile profile = Open("[Mixer]\na=1\n[B]\ny=2\n[mixer]\nb=2\n");
    const std::vector<std::pair<std::string, std::string>> entries = {{"C000000", "5"}, {"C000001", "-1"}};
    EXPECT_TRUE(profile.ReplaceSection("Mixer", entries));
    EXPECT_EQ(Written(), "[B]\ny=2\n\n[Mixer]\nC000000=5\nC000001=-1\n");
    EXPECT_EQ(Disk.Replacements, 1);
    EXPECT_EQ(profile.Keys("Mixer"), (Names{"C000000", "C000001"}));
    EXPECT_TRUE(profile.ReplaceSection("Mixer", {}));
    EXPECT_EQ(Written(), "[B]\ny=2\n\n");
}

TEST_F(ProfileTest, ASectionIsNotReplacedIfAKeyCannotStandInTheFile) {
    Profile profile = Open("[A]\nx=1\n");
    const std::vector<std::pair<std::string, std::string>> entries = {{"y", "5"}, {"[z", "1"}};
    EXPECT_FALSE(profile.ReplaceSection("A", entries));
    EXPECT_EQ(Written(), "[A]\nx=1\n");
}

TEST_F(ProfileTest, OverriddenKeysOfAReplacedSectionStayInMemory) {
    Profile profile = Open("[A]\nx=1\n");
    profile.Override("A", "y", "5");
    profile.Override("A", "z", "6");
    const std::vector<std::pair<std::string, std::string>> entries = {{"x", "2"}, {"y", "7"}};
    EXPECT_TRUE(profile.ReplaceSection("A", entries));
    EXPECT_EQ(Written(), "[A]\nx=2\n");
    EXPECT_EQ(profile.ReadText("A", "y", "none"), "7");
    EXPECT_EQ(profile.ReadText("A", "z", "none"), "none");
}

TEST_F(ProfileTest, AnOverriddenKeyLivesInMemoryOnly) {
    Profile profile = Open("[A]\nx=1\n");
    profile.Override("A", "x", "5");
    EXPECT_EQ(profile.ReadInt("a", "X", 0), 5);
    EXPECT_TRUE(profile.Write("A", "X", "6"));
    EXPECT_EQ(profile.ReadText("A", "x", ""), "6");
    EXPECT_TRUE(profile.Delete("A", "x"));
    EXPECT_EQ(profile.ReadText("A", "x", "none"), "none");
    EXPECT_EQ(Written(), "[A]\nx=1\n");
    EXPECT_EQ(Disk.Replacements, 0);
    EXPECT_EQ(Profile(Disk, Path).ReadText("A", "x", ""), "1");
}

TEST_F(ProfileTest, OverridesAreListedWithTheFile) {
    Profile profile = Open("[A]\nx=1\ny=2\n");
    profile.Override("A", "z", "3");
    profile.Override("A", "x", "4");
    profile.Override("MixerRadio", "LevelMultiplier", "200");
    profile.Override("A", "y", "");
    profile.Delete("A", "y");
    EXPECT_EQ(profile.Keys("A"), (Names{"x", "z"}));
    EXPECT_EQ(profile.Sections(), (Names{"A", "MixerRadio"}));
    profile.DeleteSection("MixerRadio");
    EXPECT_EQ(profile.Sections(), Names{"A"});
}

TEST_F(ProfileTest, AnOverrideSurvivesAReload) {
    Profile profile = Open("[A]\nx=1\n");
    profile.Override("A", "x", "5");
    profile.Reload();
    EXPECT_EQ(profile.ReadInt("A", "x", 0), 5);
}

TEST_F(ProfileTest, ALineEndsForReadingAtItsFirstNul) {
    const Profile profile = Open("[A]\nx=12\0 34\ny\0=1\n[B\0]\nz=1\n"s);
    EXPECT_EQ(profile.ReadText("A", "x", ""), "12");
    EXPECT_EQ(profile.Keys("A"), (Names{"x", "z"}));
}

TEST_F(ProfileTest, ABracketWithoutItsPartnerIsNoSectionAndNoKey) {
    EXPECT_EQ(Open("[A]\n[x=1\ny=2\n").Keys("A"), Names{"y"});
}

TEST_F(ProfileTest, TextAfterASectionsBracketIsPassedOver) {
    EXPECT_EQ(Open("[A] ; see [B]\nx=1\n").ReadText("A", "x", ""), "1");
}

TEST_F(ProfileTest, ASectionMayHaveAnyNameOfOneLine) {
    for (const std::string name : {"Radio [live]", "]", "[]", " Radio ", "Radio\t", "\"Radio\"", "\"",
                                   "a ] ; b", "a]b", "\" a \"", "  ", "[", "Radio];"}) {
        Profile profile = Open("[A]\nx=1\n");
        EXPECT_TRUE(profile.Write(name, "x", "2")) << name;
        EXPECT_EQ(profile.ReadText(name, "x", ""), "2") << Written();
        EXPECT_EQ(profile.Sections(), (Names{"A", name})) << Written();
        EXPECT_TRUE(profile.Write(name, "x", "3")) << name;
        Profile again = Open(Written());
        EXPECT_EQ(again.ReadText(name, "x", ""), "3") << Written();
        EXPECT_EQ(again.ReadText("A", "x", ""), "1");
        EXPECT_TRUE(again.DeleteSection(name));
        EXPECT_EQ(again.Sections(), Names{"A"});
    }
}

TEST_F(ProfileTest, ASectionThatWasWrittenByHandIsFound) {
    const Profile profile = Open("[Radio [live]] ; mine\nx=1\n[ Blank ]\nx=2\n[\"Quoted\"]\nx=3\n");
    EXPECT_EQ(profile.ReadText("Radio [live]", "x", ""), "1");
    EXPECT_EQ(profile.ReadText("Blank", "x", ""), "2");
    EXPECT_EQ(profile.ReadText(" Blank ", "x", ""), "2");
    EXPECT_EQ(profile.ReadText("\"Quoted\"", "x", ""), "3");
    EXPECT_EQ(profile.Sections(), (Names{"Radio [live]", "Blank", "\"Quoted\""}));
}

TEST_F(ProfileTest, OfSectionsThatDifferInBlanksEachIsReachedByItsOwnName) {
    Profile profile = Open("[A]\nx=1\n[ A ]\nx=2\n[A]\nx=3\n");
    EXPECT_EQ(profile.ReadText("A", "x", ""), "1");
    EXPECT_EQ(profile.ReadText(" A ", "x", ""), "2");
    EXPECT_EQ(profile.Sections(), Names{"A"});
    EXPECT_TRUE(profile.Write(" A ", "x", "4"));
    EXPECT_EQ(Written(), "[A]\nx=1\n[ A ]\nx=4\n[A]\nx=3\n");
    EXPECT_EQ(profile.ReadText(" A ", "x", ""), "4");
}

TEST_F(ProfileTest, AHugeLineIsReadWhole) {
    const std::string huge(3'000'000, 'x');
    Profile profile = Open("[A]\nbig=" + huge + "\nx=1\n");
    EXPECT_EQ(profile.ReadText("A", "big", "").size(), huge.size());
    EXPECT_EQ(profile.ReadText("A", "x", ""), "1");
    EXPECT_TRUE(profile.Write("A", "big", "small"));
    EXPECT_EQ(Written(), "[A]\nbig=small\nx=1\n");
}

TEST_F(ProfileTest, AnyBytesGiveADefinedResultAndKeepTheirOtherLines) {
    std::mt19937 random(20091231);
    const std::string alphabet = "[]=;\"' \t\r\n\0\xEF\xBB\xBF\xFFxyA"s;
    for (int round = 0; round < 3000; ++round) {
        std::string bytes;
        const size_t length = random() % 60;
        for (size_t i = 0; i < length; ++i) bytes += alphabet[random() % alphabet.size()];
        Profile profile = Open(bytes);
        for (const std::string& section : profile.Sections()) profile.Keys(section);
        const std::string other = profile.ReadText("A", "y", "none");
        ASSERT_TRUE(profile.Write("A", "x", "17")) << "round " << round;
        ASSERT_EQ(profile.ReadText("A", "x", ""), "17") << "round " << round;
        ASSERT_EQ(profile.ReadText("A", "y", "none"), other) << "round " << round;
        ASSERT_TRUE(profile.Delete("A", "x")) << "round " << round;
    }
}

}  // namespace
}  // namespace Corvetape
