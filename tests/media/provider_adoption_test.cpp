#include "media/provider_adoption.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "sim/sim_machine.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// An adoption with notes of what it asks for, and a user who answers by `Answer`.
class Adopting : public testing::Test, protected SourceSettings, protected SourceMixer, protected FormBoxes {
 protected:
    Adopting() {
        Computer.Files.Put(Computer.Folders.Program + "/test.lang", "50010=50010 %1\n100=Own name\n");
        Texts.Load("test");
    }

    void Adopt(const std::string& name) {
        Media.ProviderName = name;
        Media.MixerSectionName = "Mixer" + name;
        Adoption.Adopt(name);
    }

    void LoadProviderSettings(const std::string& name) override { Asked.push_back("load " + name); }
    void StoreProviderSettings() override { Asked.push_back("store " + Media.ProviderName); }
    void UpdateMixer() override { Asked.push_back("update " + Media.MixerSectionName); }
    void ApplyMixer() override { Asked.push_back("apply " + Media.MixerSectionName); }
    void StoreMixer() override { Asked.push_back("save " + Media.MixerSectionName); }
    void Ask(dlgProvider& dialog) override {
        EXPECT_TRUE(dialog.Visible());
        Asked.emplace_back("ask");
        if (Answer) Answer(dialog);
        EXPECT_FALSE(dialog.Visible());
    }

    SimMachine Computer;
    clsLocalizeControls Texts{Computer.Files, Computer.Folders.Program, Computer.Dialogs};
    MediaState Media;
    std::vector<std::string> Asked;
    std::function<void(dlgProvider&)> Answer = [](dlgProvider& dialog) { dialog.cmdCancel.Press(); };
    ProviderAdoption Adoption{Media, *this, *this, Texts, this};
};

TEST_F(Adopting, AKnownProviderLoadsItsOwnSettings) {
    Media.KnownProviders = {"One", "Two"};
    Adopt("Two");
    EXPECT_THAT(Asked, ElementsAre("load Two", "update MixerTwo"));
}

TEST_F(Adopting, ANameIsKnownWhateverItsCase) {
    Media.KnownProviders = {"radio one"};
    Adopt("Radio ONE");
    EXPECT_THAT(Asked, ElementsAre("load Radio ONE", "update MixerRadio ONE"));
}

TEST_F(Adopting, TheFirstOfAllProvidersIsAskedNothing) {
    Adopt("One");
    EXPECT_THAT(Asked, ElementsAre("load One", "update MixerOne"));
    EXPECT_THAT(Media.KnownProviders, IsEmpty());
}

TEST_F(Adopting, AnUnknownOneIsAskedForWithTheKnownNamesInTheirOrder) {
    Media.KnownProviders = {"Zed", "Ann", "100"};
    std::vector<std::string> names;
    Answer = [&](dlgProvider& dialog) {
        EXPECT_EQ(dialog.lblInfo.Caption(), "50010 New");
        for (const ListItem& item : dialog.cboProvider.Items()) names.push_back(item.Text);
        EXPECT_EQ(dialog.cboProvider.ListIndex(), 0);
        dialog.cmdCancel.Press();
    };
    Adopt("New");
    EXPECT_THAT(names, ElementsAre("Zed", "Ann", "100"));
}

TEST_F(Adopting, WithoutATextTheQuestionKeepsItsOwn) {
    Texts.Load("");
    Media.KnownProviders = {"One"};
    std::string info;
    Answer = [&](dlgProvider& dialog) {
        info = dialog.lblInfo.Caption();
        dialog.cmdCancel.Press();
    };
    Adopt("New");
    EXPECT_EQ(info, dlgProvider().lblInfo.Caption());
}

TEST_F(Adopting, CancelChangesNothingAndTheQuestionComesAgain) {
    Media.KnownProviders = {"One"};
    Adopt("New");
    EXPECT_THAT(Asked, ElementsAre("ask"));
    EXPECT_THAT(Media.KnownProviders, ElementsAre("One"));
    Adopt("New");
    EXPECT_EQ(std::ranges::count(Asked, "ask"), 2);
}

TEST_F(Adopting, OkTakesTheSettingsOverAndStoresThemUnderTheNewName) {
    Media.KnownProviders = {"One", "Two"};
    Answer = [](dlgProvider& dialog) {
        dialog.cboProvider.ListIndex(1);
        dialog.cmdOK.Press();
    };
    Adopt("New");
    EXPECT_THAT(Asked, ElementsAre("ask", "load Two", "store New", "apply MixerTwo", "save MixerNew"));
    EXPECT_EQ(Media.MixerSectionName, "MixerNew");
    EXPECT_THAT(Media.KnownProviders, ElementsAre("One", "Two", "New"));
    Asked.clear();
    Adopt("New");
    EXPECT_THAT(Asked, ElementsAre("load New", "update MixerNew"));
}

TEST_F(Adopting, TheEndOfTheProgramClosesTheQuestionLikeCancel) {
    Media.KnownProviders = {"One"};
    Answer = [this](dlgProvider&) { Adoption.Cancel(); };
    Adopt("New");
    EXPECT_THAT(Asked, ElementsAre("ask"));
    Adoption.Cancel();  // nothing is open
}

TEST_F(Adopting, WithNobodyToAskAnUnknownProviderTakesItsOwnValues) {
    Media.KnownProviders = {"One"};
    Media.MixerSectionName = "MixerNew";
    ProviderAdoption alone(Media, *this, *this, Texts, nullptr);
    alone.Adopt("New");
    EXPECT_THAT(Asked, ElementsAre("load New", "update MixerNew"));
    EXPECT_THAT(Media.KnownProviders, ElementsAre("One"));
}

}  // namespace
}  // namespace Corvetape::Test
