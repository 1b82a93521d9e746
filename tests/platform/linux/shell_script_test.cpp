#include "platform/linux/processes/shell_script.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <random>
#include <string>
#include <vector>

#include "platform/linux/run_shell.h"

namespace Corvetape {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using Testing::PrintedArguments;
using Testing::RunShell;

/// A file that the hostile values of this run try to make.
const std::string& Marker() {
    static const std::string path = "/tmp/corvet-owned-" + std::to_string(getpid());
    return path;
}

bool MarkerIsThere() {
    return RunShell("test -e " + Marker()).ExitCode == 0;
}

constexpr const char* Print = "printf '%s\\0' ";

std::vector<TemplateParameter> Texts(const std::vector<std::string>& values) {
    std::vector<TemplateParameter> parameters;
    for (const std::string& value : values) parameters.push_back({ParameterKind::Text, value});
    return parameters;
}

/// The arguments that a command of this template receives.
std::vector<std::string> Arguments(const std::string& words, const std::vector<std::string>& values) {
    ShellScript script({});
    EXPECT_TRUE(script.Add(CommandTemplate{Print + words, Texts(values)})) << words;
    return PrintedArguments(RunShell(script.Text()));
}

const std::vector<std::string>& HostileValues() {
    static const std::vector<std::string> values = {
        "",
        " ",
        "plain",
        "two words",
        "it's",
        "'",
        "''",
        "\"",
        "\\",
        "\\\\",
        "ends in a backslash\\",
        "$HOME",
        "$(touch " + Marker() + ")",
        "`touch " + Marker() + "`",
        "${IFS}",
        "; touch " + Marker(),
        "a && b || c & d | e > " + Marker(),
        "'; touch " + Marker() + "; '",
        "\"; touch " + Marker() + "; \"",
        "line one\nline two",
        "\n",
        "\ttab\r\n",
        "*",
        "? [a-z] ~ {a,b}",
        "# no comment",
        "!!",
        "%1%2%3%4%5%6%7%8",
        "%",
        "\\r\\n",
        "\\R\\N touch " + Marker(),
        "=value",
        "a=b",
        "@file",
        "(",
        ")",
        "$((",
        "}",
        "\xff\xfe\x80 not UTF-8",
        "\xc3",
        "caf\xc3\xa9 \xe6\x97\xa5\xe6\x9c\xac \xf0\x9f\x98\x80",
        "corvet_1=x",
        "${corvet_1}",
        "corvet_end",
    };
    return values;
}

TEST(ShellWord, StandsForItselfWhateverItHolds) {
    for (const std::string& value : HostileValues()) {
        EXPECT_THAT(PrintedArguments(RunShell(Print + ShellWord(value))), ElementsAre(value)) << value;
    }
    EXPECT_FALSE(MarkerIsThere());
}

TEST(ShellWord, ANulIsLeftOut) {
    EXPECT_EQ(ShellWord(std::string("a\0b", 3)), "'ab'");
}

TEST(ShellScript, AHostileValueArrivesExactlyInEveryKindOfQuotation) {
    for (const std::string& value : HostileValues()) {
        const std::string& with = value;
        EXPECT_THAT(Arguments("%1", {value}), ElementsAre(with)) << value;
        EXPECT_THAT(Arguments("\"%1\"", {value}), ElementsAre(with)) << value;
        EXPECT_THAT(Arguments("'%1'", {value}), ElementsAre(with)) << value;
        EXPECT_THAT(Arguments("--title=%1", {value}), ElementsAre("--title=" + with)) << value;
        EXPECT_THAT(Arguments("--title=\"%1\" b", {value}), ElementsAre("--title=" + with, "b")) << value;
        EXPECT_THAT(Arguments("'--title=%1' b", {value}), ElementsAre("--title=" + with, "b")) << value;
        EXPECT_THAT(Arguments("a%1c d", {value}), ElementsAre("a" + with + "c", "d")) << value;
        EXPECT_THAT(Arguments("\"a %1 c\" d", {value}), ElementsAre("a " + with + " c", "d")) << value;
        EXPECT_THAT(Arguments("'a %1 c' d", {value}), ElementsAre("a " + with + " c", "d")) << value;
        EXPECT_THAT(Arguments("a%1\"b%1\"'c%1'", {value}), ElementsAre("a" + with + "b" + with + "c" + with));
        EXPECT_THAT(Arguments("\"$(printf '%s.' %1)\"", {value}), ElementsAre(with + ".")) << value;
        EXPECT_THAT(Arguments("\"`printf '%s.' %1`\"", {value}), ElementsAre(with + ".")) << value;
        EXPECT_THAT(Arguments("\"$(printf '%s.' \"%1\")\"", {value}), ElementsAre(with + ".")) << value;
    }
    EXPECT_FALSE(MarkerIsThere());
}

/// Pieces that a shell could take for its own, and some that it could not.
std::string RandomText(std::mt19937& random) {
    static const std::vector<std::string> pieces = {"'",         "\"",
                                                    "`",         "$",
                                                    "\\",        "\n",
                                                    "\r",        "\t",
                                                    " ",         ";",
                                                    "&",         "|",
                                                    "<",         ">",
                                                    "(",         ")",
                                                    "{",         "}",
                                                    "*",         "?",
                                                    "[",         "]",
                                                    "~",         "#",
                                                    "=",         "!",
                                                    "%1",        "%2",
                                                    "-",         "\\r\\n",
                                                    "\xff",      "\xc3\xa9",
                                                    "$(exit 9)", "touch " + Marker()};
    std::string text;
    const size_t count = random() % 12;
    for (size_t i = 0; i < count; ++i) {
        if (random() % 3 == 0) {
            text += static_cast<char>(1 + random() % 255);
        } else {
            text += pieces[random() % pieces.size()];
        }
    }
    return text;
}

std::string AtWordStart(const std::string& value) {
    return value.starts_with('-') ? " " + value : value;
}

TEST(ShellScript, RandomValuesArriveExactlyInEveryKindOfQuotation) {
    const std::string words =
        "%1 \"%1\" '%2' --a=%1 --b=\"%2\" '--c=%1' x%1y%2z \"p %1 'q' %2\" 'r %1 \"s\" %2' %1%2 end";
    for (uint32_t seed = 1; seed <= 400; ++seed) {
        std::mt19937 random(seed);
        const std::string a = RandomText(random);
        const std::string b = RandomText(random);
        const std::string joined = a.empty() ? AtWordStart(b) : AtWordStart(a) + b;
        ASSERT_THAT(Arguments(words, {a, b}),
                    ElementsAre(AtWordStart(a), AtWordStart(a), AtWordStart(b), "--a=" + a, "--b=" + b,
                                "--c=" + a, "x" + a + "y" + b + "z", "p " + a + " 'q' " + b,
                                "r " + a + " \"s\" " + b, joined, "end"))
            << "seed " << seed;
    }
    EXPECT_FALSE(MarkerIsThere());
}

/// Templates out of random pieces are often no valid shell text; whatever they are, no value may act.
TEST(ShellScript, InATemplateOfAnyShapeNoValueRunsACommand) {
    static constexpr std::array<std::string_view, 24> Pieces = {
        "%1", "%2",   "'",     "\"", "`", "$(", ")",     "(",  "\\", " ", "\\r\\n", "#",
        "x",  "--a=", "${y:-", "}",  ";", "&&", "echo ", ": ", "%",  "$", "<",      "$v"};
    const std::string command = "touch " + Marker();
    const std::vector<std::string> values = {"$(" + command + ")`" + command + "`",
                                             "'\n" + command + "\n\"\n" + command + "\n#"};
    for (uint32_t seed = 1; seed <= 1500; ++seed) {
        std::mt19937 random(seed);
        std::string text = "echo ";
        for (size_t i = random() % 14; i > 0; --i) text += Pieces[random() % Pieces.size()];
        ShellScript script({});
        if (!script.Add(CommandTemplate{text, Texts(values)})) continue;
        RunShell(script.Text());
        ASSERT_FALSE(MarkerIsThere()) << "seed " << seed << ": " << text;
    }
}

TEST(ShellScript, AValueThatBeginsAWordWithAHyphenGetsABlankAhead) {
    EXPECT_THAT(Arguments("%1", {"-rf"}), ElementsAre(" -rf"));
    EXPECT_THAT(Arguments("x \"%1\" '%1'", {"--help"}), ElementsAre("x", " --help", " --help"));
    EXPECT_THAT(Arguments("\"\"%1", {"-x"}), ElementsAre(" -x"));
    EXPECT_THAT(Arguments("%1%2", {"", "-x"}), ElementsAre(" -x"));
    EXPECT_THAT(Arguments("$none%1 $(:)%1 \"$none\"%1 `:`%1", {"-x"}),
                ElementsAre(" -x", " -x", " -x", " -x"));
    EXPECT_THAT(Arguments("\\\n%1 a \\\n\"\\\n%1\"", {"-x"}),
                ElementsAre(" -x", "a", " -x"));  // a line goes on
}

TEST(ShellScript, AValueAfterTextOfItsWordKeepsItsHyphen) {
    EXPECT_THAT(Arguments("--t=%1 a%1 \"b %1\" 'c %1'", {"-x"}),
                ElementsAre("--t=-x", "a-x", "b -x", "c -x"));
    EXPECT_THAT(Arguments("%1%2", {"a", "-x"}), ElementsAre("a-x"));
    EXPECT_THAT(Arguments("%1", {"a-x"}), ElementsAre("a-x"));
}

TEST(ShellScript, NoValueIsTakenForAnotherParameter) {
    EXPECT_THAT(Arguments("%1 %2 %3", {"%2", "%3%1", "z"}), ElementsAre("%2", "%3%1", "z"));
}

TEST(ShellScript, TheSeparatorInsideAValueIsText) {
    EXPECT_THAT(Arguments("%1", {"a\\r\\ntouch " + Marker()}), ElementsAre("a\\r\\ntouch " + Marker()));
}

TEST(ShellScript, OtherPercentSignsStay) {
    EXPECT_THAT(Arguments("%0 %9 %a %% 100% %10", {"v"}), ElementsAre("%0", "%9", "%a", "%%", "100%", "v0"));
}

TEST(ShellScript, OptionsAreTakenOverAsSeveralWords) {
    ShellScript script({});
    const std::vector<TemplateParameter> parameters = {{ParameterKind::Options, "-b 192 '%2' --x=\"a b\""},
                                                       {ParameterKind::Text, "v"}};
    ASSERT_TRUE(script.Add(CommandTemplate{std::string(Print) + "%1 %2", parameters}));
    EXPECT_THAT(PrintedArguments(RunShell(script.Text())), ElementsAre("-b", "192", "%2", "--x=a b", "v"));
}

TEST(ShellScript, ABackslashAheadOfAParameterDoesNoHarm) {
    EXPECT_THAT(Arguments("\\%1 \"a\\%1\" 'b\\%1'", {"x y"}), ElementsAre("x y", "a\\x y", "b\\x y"));
}

TEST(ShellScript, ABackslashAtTheEndOfACommandStandsForItself) {
    EXPECT_THAT(Arguments("a\\", {}), ElementsAre("a\\"));
    EXPECT_THAT(Arguments("a\\\\r\\nprintf '%s\\0' b", {}), ElementsAre("a\\", "b"));
}

TEST(ShellScript, AQuoteInACommentOpensNothing) {
    EXPECT_THAT(Arguments("a # it's %1\\r\\nprintf '%s\\0' b%1", {"x\ny"}), ElementsAre("a", "bx\ny"));
    EXPECT_THAT(Arguments("a#b'%1'", {"x"}), ElementsAre("a#bx"));
}

TEST(ShellScript, TheNextCommandRunsWhetherOrNotTheOneBeforeSucceeded) {
    ShellScript script({});
    ASSERT_TRUE(script.Add(CommandTemplate{"false\\r\\nprintf a\\r\\n", {}}));
    ASSERT_TRUE(script.Add(CommandTemplate{"printf b", {}}));
    EXPECT_EQ(RunShell(script.Text()).Output, "ab");
}

TEST(ShellScript, TheSeparatorCountsInAnyCase) {
    ShellScript script({});
    ASSERT_TRUE(script.Add(CommandTemplate{"printf a\\R\\nprintf b\\r\\Nprintf c\\R\\N", {}}));
    EXPECT_EQ(RunShell(script.Text()).Output, "abc");
}

TEST(ShellScript, EmptyCommandsDoNoHarm) {
    ShellScript script({});
    ASSERT_TRUE(script.Add(CommandTemplate{"\\r\\n\\r\\nprintf a\\r\\n\\r\\n", {}}));
    const auto run = RunShell(script.Text());
    EXPECT_EQ(run.Output, "a");
    EXPECT_EQ(run.ExitCode, 0);
}

TEST(ShellScript, EndsWithTheCodeOfTheFirstCommandThatFailed) {
    ShellScript script({});
    ASSERT_TRUE(script.Add(CommandTemplate{"true\\r\\nsh -c 'exit 7'\\r\\nfalse\\r\\ntrue\\r\\n", {}}));
    EXPECT_EQ(RunShell(script.Text()).ExitCode, 7);
}

TEST(ShellScript, ALastCommandWithoutSeparatorCountsToo) {
    ShellScript script({});
    ASSERT_TRUE(script.Add(CommandTemplate{"false", {}}));
    EXPECT_EQ(RunShell(script.Text()).ExitCode, 1);
}

TEST(ShellScript, EndsWithZeroIfAllSucceeded) {
    ShellScript script({});
    ASSERT_TRUE(script.Add(CommandTemplate{"true\\r\\ntrue\\r\\n", {}}));
    EXPECT_EQ(RunShell(script.Text()).ExitCode, 0);
}

TEST(ShellScript, ATemplateWithAnOpenQuotationIsRefused) {
    for (const char* text :
         {"echo 'a", "echo \"a", "echo \"$(a\"", "echo $(a", "echo `a", "(echo a", "echo 'a\\r\\n"}) {
        ShellScript script({});
        EXPECT_FALSE(script.Add(CommandTemplate{text, {}})) << text;
        EXPECT_EQ(RunShell(script.Text()).ExitCode, 0) << text;
    }
}

TEST(ShellScript, AProgramGetsItsArgumentsAsTheyStand) {
    for (const std::string& value : HostileValues()) {
        ShellScript script({});
        ASSERT_TRUE(script.Add(ProgramCall{{"printf", "%s\\0", value, "end"}, ""}));
        EXPECT_THAT(PrintedArguments(RunShell(script.Text())), ElementsAre(value, "end")) << value;
    }
    EXPECT_FALSE(MarkerIsThere());
}

TEST(ShellScript, AProgramSucceedsByTheBeginningOfALineThatItPrints) {
    const auto codeFor = [](const std::string& printed, const std::string& wanted) {
        ShellScript script({});
        EXPECT_TRUE(script.Add(ProgramCall{{"printf", "%s", printed}, wanted}));
        return RunShell(script.Text()).ExitCode;
    };
    EXPECT_EQ(codeFor("first\nEncoder [a]* b\nlast\n", "Encoder [a]*"), 0);
    EXPECT_NE(codeFor("first\nEncoder a b\nlast\n", "Encoder [a]*"), 0) << "it is no pattern";
    EXPECT_NE(codeFor("an Encoder [a]*\n", "Encoder [a]*"), 0);
    EXPECT_NE(codeFor("", "Encoder"), 0);
}

TEST(ShellLine, OfAJobWithATemplateThatIsNotClosedIsNone) {
    const CommandTemplate whole{"true", {}};
    EXPECT_TRUE(ShellLine({"job", {whole, whole}, "/"}).has_value());
    EXPECT_FALSE(ShellLine({"job", {whole, CommandTemplate{"echo 'a", {}}, whole}, "/"}).has_value());
}

TEST(ShellLine, AllCommandsSeeTheEnvironmentOfTheJob) {
    HiddenJob job{"job", {CommandTemplate{"sh -c 'printf %s \"$CORVET_TEST\"'", {}}}, "/"};
    job.Environment = {{"CORVET_TEST", "it's $HOME"}};
    EXPECT_EQ(RunShell(ShellLine(job).value_or("")).Output, "it's $HOME");
}

TEST(ShellScript, ProgramFoldersComeAheadOfTheSearchPathInTheirOrder) {
    const std::vector<std::string> folders = {"/a b/it's", "/c"};
    ShellScript script(folders);
    ASSERT_TRUE(script.Add(CommandTemplate{"printf %s \"$PATH\"", {}}));
    EXPECT_TRUE(RunShell(script.Text()).Output.starts_with("/a b/it's:/c:/"));
}

/// A folder of its own under the build tree, emptied by the shell.
class ShellScriptDeleting : public ::testing::Test {
 protected:
    void SetUp() override {
        Folder = RunShell("mktemp -d | tr -d '\\n'").Output;
        ASSERT_FALSE(Folder.empty());
        Base = Folder + "/temp/It's $HOME [a]*";
        Sh("mkdir \"$F\"/temp \"$F\"/music; cd \"$F\"/temp; for i in wav jpg 'Blue.wav'; do "
           "touch \"It's \\$HOME [a]*.$i\"; done; "
           "touch other.wav \"It's \\$HOME [a]*x.wav\" \"It's \\$HOME aX.wav\" \"It's \\$HOME [a]*. "
           "Blue.x.wav\"");
    }
    void TearDown() override { Sh("rm -rf -- \"$F\""); }

    Testing::ShellRun Sh(const std::string& commands) {
        return RunShell("F=" + ShellWord(Folder) + "\n" + commands);
    }

    std::string Left() { return Sh("cd \"$F\"/temp && LC_ALL=C ls | sort").Output; }

    void Run(const std::string& commands, const std::string& target) {
        ShellScript script({});
        ASSERT_TRUE(script.Add(RememberSong{Base}));
        ASSERT_TRUE(script.Add(CommandTemplate{commands, Texts({Base, target})}));
        ASSERT_TRUE(script.Add(DeleteSong{Base, target}));
        RunShell(script.Text());
    }

    std::string Folder;
    std::string Base;
};

TEST_F(ShellScriptDeleting, OnlyTheFilesOfThatNameWithOneExtensionGo) {
    Run("true\\r\\n", Folder + "/music/x");
    EXPECT_EQ(
        Left(),
        "It's $HOME [a]*. Blue.x.wav\nIt's $HOME [a]*.Blue.wav\nIt's $HOME [a]*x.wav\nIt's $HOME aX.wav\n"
        "other.wav\n");
}

TEST_F(ShellScriptDeleting, TheNoteThatHoldsTheNameStays) {
    const std::string before = Left();
    Sh("cd \"$F\"/temp; touch \"It's \\$HOME [a]*.note\"; rm \"It's \\$HOME [a]*.jpg\"");
    Run("true\\r\\n", Folder + "/music/x");
    EXPECT_THAT(before, Not(HasSubstr(".note")));
    EXPECT_THAT(Left(), HasSubstr("It's $HOME [a]*.note\n"));
    EXPECT_THAT(Left(), Not(HasSubstr("It's $HOME [a]*.wav\n")));
}

TEST_F(ShellScriptDeleting, NothingGoesIfACommandFailed) {
    const std::string before = Left();
    Run("false\\r\\ntrue\\r\\n", Folder + "/music/x");
    EXPECT_EQ(Left(), before);
}

TEST_F(ShellScriptDeleting, NothingGoesIfAnotherSongTookTheNameMeanwhile) {
    const std::string before = Left();
    Run("echo new > %1.new; mv %1.new %1.wav\\r\\n", Folder + "/music/x");
    EXPECT_EQ(Left(), before);
}

TEST_F(ShellScriptDeleting, NothingGoesIfTheSongWasNeverThere) {
    Sh("rm \"$F\"/temp/*.wav");
    const std::string before = Left();
    Run("true\\r\\n", Folder + "/music/x");
    EXPECT_EQ(Left(), before);
    EXPECT_THAT(before, HasSubstr(".jpg"));
}

TEST_F(ShellScriptDeleting, NothingGoesIfTheMusicIsMadeInTheTemporaryFolder) {
    Sh("ln -s temp \"$F\"/link");
    const std::string before = Left();
    Run("true\\r\\n", Folder + "/link/x");
    EXPECT_EQ(Left(), before);
}

}  // namespace
}  // namespace Corvetape
