#include "post/options/language_choice.h"

#include <gtest/gtest.h>

#include "core/controls/message_texts.h"
#include "post/options/about_links.h"
#include "post/options/language_option.h"
#include "post/post_bench.h"

namespace Corvetape::Test {
namespace {

/// The second file comes from a user and says nothing of its own name.
void PutLanguages(SimFiles& disk) {
    disk.Put("/languages/english.lang", "language=English|ignored\n");
    disk.Put("/languages/frisian.lang", "100=Corvetape\n");
    disk.Put("/languages/german.lang", "; a comment\nlanguage= Deutsch \n");
    disk.Put("/languages/notes.txt", "language=Notes\n");
}

std::vector<std::string> TextsOf(const ListBox& list) {
    std::vector<std::string> texts;
    for (const ListItem& item : list.Items()) texts.push_back(item.Text);
    return texts;
}

struct Asked {
    explicit Asked(const std::string& wanted) {
        PutLanguages(Bench.Sim.Files);
        Choice.emplace(Dialog, Bench.Sim.Files, Bench.Sim.Dialogs, "/languages", wanted);
        Dialog.Visible(true);
    }

    Testing::PostBench Bench;
    dlgLanguage Dialog;
    std::optional<LanguageChoice> Choice;
};

TEST(LanguageChoice, OffersTheFilesAndPreselectsTheWantedOne) {
    Asked asked("German");
    EXPECT_EQ(TextsOf(asked.Dialog.cboLanguage), (std::vector<std::string>{"English", "frisian", "Deutsch"}))
        << "each by its own name";
    EXPECT_EQ(asked.Dialog.cboLanguage.ListIndex(), 2);
    EXPECT_TRUE(asked.Choice->MayClose());
    asked.Dialog.cmdOK.Press();
    EXPECT_EQ(asked.Choice->Chosen(), "german");
    EXPECT_FALSE(asked.Dialog.Visible());
}

TEST(LanguageChoice, DoesNotEndWithoutAnAnswer) {
    Asked asked("french");
    EXPECT_FALSE(asked.Choice->MayClose());
    EXPECT_EQ(asked.Bench.Sim.Dialogs.Beeps, 1U);
    asked.Dialog.cmdOK.Press();
    EXPECT_TRUE(asked.Dialog.Visible());
    EXPECT_EQ(asked.Choice->Chosen(), "");
}

struct Options {
    Options() {
        PutLanguages(Bench.Sim.Files);
        Option.Show("/languages", "German");
    }
    std::string Stored() { return Bench.Stored("General", "Language"); }

    Testing::PostBench Bench;
    LanguageOption Option{Bench.Form, Bench.Store, Bench.Sim.Files, Bench.Say};
    ComboBox& List = Bench.Form.cmbLanguage;
};

TEST(LanguageOption, ShowsTheOneInUseAndWritesNothingForThat) {
    Options options;
    EXPECT_EQ(TextsOf(options.List), (std::vector<std::string>{"English", "frisian", "Deutsch"}));
    EXPECT_EQ(options.List.ListIndex(), 2);
    EXPECT_EQ(options.Stored(), "(none)");
    EXPECT_EQ(options.Bench.Form.lblStatus[1].Caption(), "");
}

TEST(LanguageOption, AChoiceIsStoredAtOnceAndTheStatusLineSaysThatItHoldsFromTheNextStart) {
    Options options;
    options.List.Select(0);
    EXPECT_EQ(options.Stored(), "english");
    EXPECT_EQ(options.Bench.Form.lblStatus[1].Caption(),
              options.Bench.Messages.FormatMsg(Message::HoldsFromNextStart.Key));
    options.List.Select(2);
    EXPECT_EQ(options.Stored(), "german") << "the way back";
}

TEST(LanguageOption, WithoutAFileOfTheOneInUseNoneIsSelected) {
    Options options;
    options.Option.Show("/languages", "klingon");
    EXPECT_EQ(options.List.ListIndex(), -1);
    EXPECT_EQ(options.Stored(), "(none)");
}

TEST(AboutLinks, AnAddressThatNothingOpensIsShownToBeCopied) {
    Testing::PostBench bench;
    bench.Sim.Files.Put(bench.Sim.Folders.ProgramFolder() + "/links.lang",
                        "homepage=http://home/\n61880=Nothing opens %1\n");
    bench.Messages.Load("links");
    const AboutLinks links(bench.Form, bench.Sim.Processes, bench.Say);
    bench.Sim.Processes.OnShellOpen = [](const ShellCall&) { return 31; };
    bench.Form.lblHomePage.Press();
    ASSERT_EQ(bench.Sim.Dialogs.Boxes.size(), 1U);
    EXPECT_EQ(bench.Sim.Dialogs.Boxes[0].Text, "Nothing opens http://home/");
    EXPECT_EQ(bench.LogLines(), "ERROR\tNothing opens http://home/\n");
}

TEST(AboutLinks, OpenTheirAddresses) {
    Testing::PostBench bench;
    bench.Sim.Files.Put(bench.Sim.Folders.ProgramFolder() + "/links.lang",
                        "homepage=http://home/\nemail=mailto:us\n");
    bench.Messages.Load("links");
    const AboutLinks links(bench.Form, bench.Sim.Processes, bench.Say);
    const auto& opened = bench.Sim.Processes.ShellCalls;
    bench.Form.lblHomePage.Press();
    bench.Form.picTaskBar[0].Press();
    bench.Form.lblMailTo.Press();
    bench.Form.cmdNews.Press();
    ASSERT_EQ(opened.size(), 4U);
    EXPECT_EQ(opened[0].Path, "http://home/");
    EXPECT_EQ(opened[1].Path, opened[0].Path);
    EXPECT_EQ(opened[2].Path, "mailto:us");
    EXPECT_TRUE(opened[3].Path.starts_with("http://home/news.htm?v=")) << opened[3].Path;
}

}  // namespace
}  // namespace Corvetape::Test
