#include "core/settings/registry.h"

#include <gtest/gtest.h>

#include <vector>

#include "core/fakes.h"

namespace Corvetape {
namespace {

using namespace std::string_literals;

constexpr const char* UserFile = "/home/eva/.config/Corvet/user.reg";
constexpr const char* MachineFile = "/var/lib/Corvet/machine.reg";

class RegistryTest : public testing::Test {
 protected:
    MemoryFiles Disk;
    RegistryBranches Registry{Disk, UserFile, MachineFile};
};

RegistryValue Text(const char* text) {
    return std::string(text);
}

TEST_F(RegistryTest, AMissingValueGivesTheDefaultOfItsKind) {
    EXPECT_EQ(Registry.ReadUserValue("Flags", "x"), RegistryValue());
    EXPECT_EQ(Registry.ReadUserValue("Flags", "x", 7), RegistryValue(7));
    EXPECT_EQ(Registry.ReadMachineValue("", "x", Text("d")), Text("d"));
}

TEST_F(RegistryTest, NumbersAndTextsKeepTheirKind) {
    EXPECT_TRUE(Registry.WriteUserValue("", "TotalCountOfSongs", 12));
    EXPECT_TRUE(Registry.WriteUserValue("Flags", "LastUpdateCheck", Text("40178.5")));
    EXPECT_TRUE(Registry.WriteUserValue("Flags", "number as text", Text("12")));
    EXPECT_EQ(Registry.ReadUserValue("", "TotalCountOfSongs"), RegistryValue(12));
    EXPECT_EQ(Registry.ReadUserValue("Flags", "LastUpdateCheck"), Text("40178.5"));
    EXPECT_EQ(Registry.ReadUserValue("Flags", "number as text"), Text("12"));
}

TEST_F(RegistryTest, ValuesSurviveTheProgram) {
    Registry.WriteUserValue("", "a", -5);
    Registry.WriteMachineValue("S", "b", Text(" c\r\n%\"d\" "));
    const RegistryBranches again(Disk, UserFile, MachineFile);
    EXPECT_EQ(again.ReadUserValue("", "a"), RegistryValue(-5));
    EXPECT_EQ(again.ReadMachineValue("S", "b"), Text(" c\r\n%\"d\" "));
}

TEST_F(RegistryTest, TheFileCarriesTheSystemsOwnNames) {
    Registry.WriteUserValue("", "TotalCountOfSongs", 12);
    Registry.WriteUserValue("Flags", "NextUpdateCheck", Text("1.5"));
    EXPECT_EQ(Disk.Contents[UserFile],
              "[Software\\Norvanta\\Corvet]\n*=text:\nTotalCountOfSongs=int:12\n\n"
              "[Software\\Norvanta\\Corvet\\Flags]\n*=text:\nNextUpdateCheck=text:1.5\n");
}

TEST_F(RegistryTest, AnEmptySectionAddressesTheBranchItself) {
    Registry.WriteUserValue("", "x", 1);
    EXPECT_EQ(Registry.ReadRegistryValue(RegistryRoot::CurrentUser, "Software\\Norvanta\\Corvet", "x"),
              RegistryValue(1));
    Registry.WriteUserValue("Flags", "x", 2);
    EXPECT_EQ(Registry.ReadRegistryValue(RegistryRoot::CurrentUser, "Software\\Norvanta\\Corvet\\Flags", "x"),
              RegistryValue(2));
}

TEST_F(RegistryTest, UserAndMachineAreApart) {
    Registry.WriteUserValue("", "x", 1);
    EXPECT_EQ(Registry.ReadMachineValue("", "x"), RegistryValue());
    EXPECT_FALSE(Disk.Contents.contains(MachineFile));
}

TEST_F(RegistryTest, NamesAndPathsAreComparedIgnoringCase) {
    Registry.WriteUserValue("Flags", "Name", 3);
    EXPECT_EQ(Registry.ReadUserValue("FLAGS", "nAME"), RegistryValue(3));
}

TEST_F(RegistryTest, WritingNoValueDeletesANamedOne) {
    Registry.WriteUserValue("Flags", "x", 3);
    EXPECT_TRUE(Registry.WriteUserValue("Flags", "x"));
    EXPECT_EQ(Registry.ReadUserValue("Flags", "x", 9), RegistryValue(9));
    EXPECT_FALSE(Registry.WriteUserValue("Flags", "x"));
    EXPECT_FALSE(Registry.WriteUserValue("Other", "x"));
}

TEST_F(RegistryTest, AsteriskAndStandardMeanTheDefaultValue) {
    EXPECT_TRUE(Registry.WriteUserValue("K", "*", Text("sound")));
    EXPECT_EQ(Registry.ReadUserValue("K", "(Standard)"), Text("sound"));
    EXPECT_TRUE(Registry.WriteUserValue("K", "(Standard)", Text("other")));
    EXPECT_EQ(Registry.ReadUserValue("K", "*"), Text("other"));
}

TEST_F(RegistryTest, ANumberWrittenAsDefaultValueBecomesDecimalText) {
    EXPECT_TRUE(Registry.WriteUserValue("K", "*", 42));
    EXPECT_EQ(Registry.ReadUserValue("K", "*"), Text("42"));
}

TEST_F(RegistryTest, WritingNoDefaultValueEmptiesIt) {
    Registry.WriteUserValue("K", "*", Text("a"));
    EXPECT_TRUE(Registry.WriteUserValue("K", "*"));
    EXPECT_EQ(Registry.ReadUserValue("K", "*", Text("d")), Text(""));
}

TEST_F(RegistryTest, AKeyIsCreatedWithAnEmptyDefaultValue) {
    EXPECT_EQ(Registry.ReadUserValue("K", "*", Text("d")), Text("d"));
    Registry.WriteUserValue("K", "named", 1);
    EXPECT_EQ(Registry.ReadUserValue("K", "*", Text("d")), Text(""));
}

TEST_F(RegistryTest, ADefaultValueIsReadThroughABufferOf255) {
    Registry.WriteUserValue("K", "*", std::string(254, 'x'));
    EXPECT_EQ(Registry.ReadUserValue("K", "*", Text("d")), RegistryValue(std::string(254, 'x')));
    Registry.WriteUserValue("K", "*", std::string(255, 'x'));
    EXPECT_EQ(Registry.ReadUserValue("K", "*", Text("d")), Text("d"));
    Registry.WriteUserValue("K", "named", std::string(255, 'x'));
    EXPECT_EQ(Registry.ReadUserValue("K", "named"), RegistryValue(std::string(255, 'x')));
}

TEST_F(RegistryTest, ATextEndsAtItsFirstNul) {
    Registry.WriteUserValue("K", "x", "ab\0cd"s);
    EXPECT_EQ(Registry.ReadUserValue("K", "x"), Text("ab"));
}

TEST_F(RegistryTest, NamesWithSpecialCharactersAreKept) {
    for (const char* name : {"a=b", ";x", "[y]", "%41", "line\nend"}) {
        EXPECT_TRUE(Registry.WriteRegistryValue(RegistryRoot::CurrentUser, "A\\{B]}", name, 4)) << name;
        EXPECT_EQ(Registry.ReadRegistryValue(RegistryRoot::CurrentUser, "A\\{B]}", name), RegistryValue(4));
    }
}

TEST_F(RegistryTest, AValueWrittenByHandWithoutItsKindIsAText) {
    Disk.Contents[UserFile] = "[Environment]\nTemp=/big/disk\nodd=int:12x\nescape=text:100%\n";
    EXPECT_EQ(Registry.ReadRegistryValue(RegistryRoot::CurrentUser, "Environment", "temp"),
              Text("/big/disk"));
    EXPECT_EQ(Registry.ReadRegistryValue(RegistryRoot::CurrentUser, "Environment", "odd"), Text("int:12x"));
    EXPECT_EQ(Registry.ReadRegistryValue(RegistryRoot::CurrentUser, "Environment", "escape"), Text("100%"));
}

TEST_F(RegistryTest, AFailedWriteIsReported) {
    Disk.WritesFail = true;
    EXPECT_FALSE(Registry.WriteUserValue("", "x", 1));
    EXPECT_FALSE(Registry.WriteUserValue("", "*", Text("a")));
}

TEST_F(RegistryTest, ProgramsThatRunAtOnceCountTogether) {
    RegistryBranches other(Disk, UserFile, MachineFile);
    std::vector<std::optional<int32_t>> numbers;
    for (int i = 0; i < 3; ++i) {
        numbers.push_back(Registry.RaiseUserNumber("", "TotalCountOfSongs"));
        numbers.push_back(other.RaiseUserNumber("", "TotalCountOfSongs"));
    }
    EXPECT_EQ(numbers, (std::vector<std::optional<int32_t>>{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(RegistryBranches(Disk, UserFile, MachineFile).ReadUserValue("", "TotalCountOfSongs"),
              RegistryValue(6));
}

/// A disk that notes which looks at the registry's file, and which writes, no lock covers.
class BusyDisk : public MemoryFiles {
 public:
    struct Held : FileLock {
        explicit Held(BusyDisk& disk) : Disk(disk) { Disk.Locked = true; }
        ~Held() override { Disk.Locked = false; }
        BusyDisk& Disk;
    };

    std::unique_ptr<FileLock> Lock(const std::string& path) override {
        LockPath = path;
        return std::make_unique<Held>(*this);
    }
    FileOr<std::string> ReadAll(const std::string& path, uint64_t limit) override {
        if (path == UserFile && !Locked) ++Unguarded;
        return MemoryFiles::ReadAll(path, limit);
    }
    FileResult ReplaceAtomically(const std::string& path, std::string_view content) override {
        if (path == UserFile && !Locked) ++Unguarded;
        return MemoryFiles::ReplaceAtomically(path, content);
    }

    bool Locked = false;
    int Unguarded = 0;  ///< looks and writes without the lock
    std::string LockPath;
};

TEST(RegistryLock, CoversTheLookAndTheWriteOfANumberThatIsRaised) {
    BusyDisk disk;
    RegistryBranches registry(disk, UserFile, MachineFile);
    registry.ReadUserValue("", "x");
    disk.Unguarded = 0;
    EXPECT_EQ(registry.RaiseUserNumber("", "x"), 1);
    EXPECT_EQ(registry.RaiseUserNumber("", "x"), 2);
    EXPECT_EQ(disk.Unguarded, 0);
    EXPECT_EQ(disk.LockPath, std::string(UserFile) + ".lock");
    EXPECT_FALSE(disk.Locked);
}

TEST_F(RegistryTest, AVolatileKeyLivesInMemoryOnly) {
    constexpr const char* path = "Software\\Players\\{1}";
    Registry.MakeVolatile(path);
    EXPECT_TRUE(Registry.WriteRegistryValue(RegistryRoot::CurrentUser, path, "Status", Text("Playing")));
    EXPECT_TRUE(Registry.WriteRegistryValue(RegistryRoot::CurrentUser, "software\\players\\{1}", "Count", 2));
    EXPECT_EQ(Registry.ReadRegistryValue(RegistryRoot::CurrentUser, path, "status"), Text("Playing"));
    EXPECT_EQ(Registry.ReadRegistryValue(RegistryRoot::CurrentUser, path, "Count"), RegistryValue(2));
    EXPECT_EQ(Registry.ReadRegistryValue(RegistryRoot::CurrentUser, path, "Album", Text("d")), Text("d"));
    EXPECT_EQ(Registry.ReadRegistryValue(RegistryRoot::CurrentUser, path, "*", Text("d")), Text(""));
    EXPECT_TRUE(Registry.WriteRegistryValue(RegistryRoot::CurrentUser, path, "*", 5));
    EXPECT_EQ(Registry.ReadRegistryValue(RegistryRoot::CurrentUser, path, "*"), Text("5"));
    EXPECT_TRUE(Registry.WriteRegistryValue(RegistryRoot::CurrentUser, path, "Status"));
    EXPECT_FALSE(Registry.WriteRegistryValue(RegistryRoot::CurrentUser, path, "Status"));
    EXPECT_TRUE(Disk.Contents.empty());
}

TEST_F(RegistryTest, TheMachineBranchIsTriedWithAWriteThatIsTakenBack) {
    const StandingClock clock;
    EXPECT_TRUE(Registry.CanWriteMachineBranch(clock));
    EXPECT_EQ(Disk.Contents[MachineFile], "[Software\\Norvanta\\Corvet]\n*=text:\n");
    EXPECT_GE(Disk.Replacements, 2);
    Disk.WritesFail = true;
    EXPECT_FALSE(Registry.CanWriteMachineBranch(clock));
}

TEST(RegistryValues, TurnIntoTextAndNumber) {
    EXPECT_EQ(TextOf(12), "12");
    EXPECT_EQ(TextOf(std::string("a")), "a");
    EXPECT_EQ(TextOf({}), "");
    EXPECT_EQ(NumberOf(12), 12.0);
    EXPECT_EQ(NumberOf(std::string("40178.25")), 40178.25);
    EXPECT_EQ(NumberOf(std::string("9.00.00.2980")), 9.0);
    EXPECT_EQ(NumberOf(std::string("x")), 0.0);
    EXPECT_EQ(NumberOf({}), 0.0);
}

}  // namespace
}  // namespace Corvetape
