// The help of the programs, their manual pages and their completions say the same.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "core/settings/command_line.h"
#include "packaging/command.h"

namespace Corvetape {
namespace {

using testing::IsSupersetOf;
using Words = std::set<std::string>;

const std::string Source = CORVETAPE_SOURCE_DIR;
const std::string Programs = CORVETAPE_BINARY_DIR "/bin/";

Words Without(Words words, const std::string& word) {
    words.erase(word);
    return words;
}

std::string Help(const std::string& command) {
    const ShellResult result = RunShell(Programs + command + " --help");
    EXPECT_EQ(result.ExitCode, 0) << command << ": " << result.Text;
    return result.Text;
}

/// A manual page with plain hyphens.
std::string ManualPage(const std::string& name) {
    return std::regex_replace(TextOfFile(Source + "/docs/man/" + name + ".1"), std::regex(R"(\\-)"), "-");
}

std::string Section(const std::string& page, const std::string& heading) {
    const size_t begin = page.find("\n.SH " + heading + "\n");
    if (begin == std::string::npos) return {};
    return page.substr(begin, page.find("\n.SH ", begin + 1) - begin);
}

/// What bash offers after these words.
Words Offered(const std::string& program, const std::string& function, const std::string& words) {
    const ShellResult result =
        RunShell("bash -c 'source " + Source + "/packaging/completions/" + program + "; COMP_WORDS=(" +
                 program + " " + words + "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); " + function +
                 "; printf \"%s\\n\" \"${COMPREPLY[@]}\"'");
    EXPECT_EQ(result.ExitCode, 0) << result.Text;
    return AllOf(result.Text, "^(\\S+)$");
}

Words Commands() {
    const std::string help = Help("corvetape-cli");
    return AllOf(help.substr(help.find("Subcommands:")), "^  ([a-z]+) ");
}

std::string InCapitals(std::string text) {
    std::ranges::transform(text, text.begin(), [](char c) { return static_cast<char>(c - 'a' + 'A'); });
    return text;
}

TEST(CommandLineHelp, EachCommandIsInTheManualPageWithAllItsOptions) {
    const std::string page = ManualPage("corvetape-cli");
    ASSERT_GE(Commands().size(), 4U);
    for (const std::string& command : Commands()) {
        const Words options = Without(AllOf(Help("corvetape-cli " + command), "(--[a-z]+)"), "--help");
        EXPECT_EQ(AllOf(Section(page, InCapitals(command)), "(--[a-z]+)"), options) << command;
    }
}

TEST(CommandLineHelp, BashOffersEachCommandWithAllItsOptions) {
    Words first = Commands();
    first.insert({"--help", "--version"});
    EXPECT_EQ(Offered("corvetape-cli", "_corvetape_cli", "\"\""), first);
    for (const std::string& command : Commands()) {
        EXPECT_EQ(Offered("corvetape-cli", "_corvetape_cli", command + " --"),
                  AllOf(Help("corvetape-cli " + command), "(--[a-z]+)"))
            << command;
    }
}

TEST(CommandLineHelp, BashOffersTheEndsOfSongsThatTheHelpNames) {
    for (const std::string command : {"record", "split"}) {
        const Words named = AllOf(Help("corvetape-cli " + command), "--mode ([a-z|]+)");
        ASSERT_EQ(named.size(), 1U) << command;
        EXPECT_EQ(Offered("corvetape-cli", "_corvetape_cli", command + " --mode \"\""),
                  AllOf(*named.begin(), "([a-z]+)"))
            << command;
    }
}

TEST(CommandLineHelp, BashOffersNothingWhereSecondsAreToFollow) {
    EXPECT_EQ(Offered("corvetape-cli", "_corvetape_cli", "recut --begin \"\""), Words());
    EXPECT_EQ(Offered("corvetape-cli", "_corvetape_cli", "recut --end \"\""), Words());
}

TEST(DesktopHelp, SaysTheSameInTheManualPageAndTheCompletion) {
    const Words words = AllOf(Help("corvetape"), "^  (--?[a-z]+)");
    EXPECT_GE(words.size(), 10U);
    EXPECT_EQ(AllOf(ManualPage("corvetape"), "^\\.BI? \"?(--?[a-z]+)"), words);
    EXPECT_EQ(Offered("corvetape", "_corvetape", "\"\""), words);
}

TEST(DesktopHelp, AWrongValueOpensNoWindow) {
    for (const std::string words : {"--press foo", "--press", "--input microphone", "--home"}) {
        const ShellResult result = RunShell("timeout 10 " + Programs + "corvetape " + words);
        EXPECT_EQ(result.ExitCode, 2) << words << ": " << result.Text;
        EXPECT_NE(result.Text.find("corvetape: " + words.substr(0, words.find(' '))), std::string::npos);
    }
}

TEST(DesktopHelp, HasEverySwitch) {
    const Words words = AllOf(Help("corvetape"), "^  (-[a-z]+)");
    Words known;
    for (const SwitchRow& row : SwitchTable()) known.insert(std::string(row.Text));
    EXPECT_EQ(words, known);
}

TEST(DesktopHelp, ShowsTheVersionThatTheBuildHas) {
    const ShellResult result = RunShell(Programs + "corvetape --version");
    EXPECT_EQ(result.ExitCode, 0);
    EXPECT_EQ(result.Text, RunShell(Programs + "corvetape-cli --version").Text);
}

TEST(Help, AnOptionThatNobodyKnowsIsSaidAndOpensNoWindow) {
    for (const std::string option : {"--foo", "--foo=bar", "-x", "--home /nowhere -y"}) {
        const ShellResult result =
            RunShell("QT_QPA_PLATFORM=offscreen " + Programs + "corvetape " + option + " 2>&1");
        EXPECT_EQ(result.ExitCode, 2) << option;
        EXPECT_THAT(result.Text,
                    testing::HasSubstr("unknown option " + option.substr(option.rfind(" -") + 1)))
            << option;
    }
}

}  // namespace
}  // namespace Corvetape
