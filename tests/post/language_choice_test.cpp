#include "post/options/language_choice.h"

#include <gtest/gtest.h>

#include "post/options/about_links.h"
#include "post/post_bench.h"

namespace Corvetape::Test {
namespace {

struct Asked {
    explicit Asked(const std::string& wanted) {
        for (const char* name : {"english.lang", "german.lang", "notes.txt"}) {
            Bench.Sim.Files.Put("/languages/" + std::string(name), "");
        }
        Choice.emplace(Dialog, Bench.Sim.Files, Bench.Sim.Dialogs, "/languages", wanted);
        Dialog.Visible(true);
    }

    Testing::PostBench Bench;
    dlgLanguage Dialog;
    std::optional<LanguageChoice> Choice;
};

TEST(LanguageChoice, OffersTheFilesAndPreselectsTheWantedOne) {
    Asked asked("German");
    ASSERT_EQ(asked.Dialog.cboLanguage.Items().size(), 2U);
    EXPECT_EQ(asked.Dialog.cboLanguage.Items()[0].Text, "english");
    EXPECT_EQ(asked.Dialog.cboLanguage.ListIndex(), 1);
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

TEST(AboutLinks, OpenTheirAddresses) {
    Testing::PostBench bench;
    bench.Sim.Files.Put(bench.Sim.Folders.ProgramFolder() + "/links.lang",
                        "homepage=http://home/\nemail=mailto:us\n");
    bench.Messages.Load("links");
    const AboutLinks links(bench.Form, bench.Sim.Processes, bench.Messages);
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
