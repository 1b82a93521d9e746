#include "media/provider_adoption.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// An adoption with notes of what it asks for, and a user who answers by `Answer`.
class Adopting : public testing::Test {
 protected:
    void Adopt(const std::string& name) {
        Media.ProviderName = name;
        Media.MixerSectionName = "Mixer" + name;
        Adoption.Adopt(name);
    }

    AdoptionActions MakeActions() {
        AdoptionActions actions;
        actions.LoadProviderSettings = [this](const std::string& name) { Asked.push_back("load " + name); };
        actions.StoreProviderSettings = [this] { Asked.push_back("store " + Media.ProviderName); };
        actions.UpdateMixer = [this] { Asked.push_back("update " + Media.MixerSectionName); };
        actions.ApplyMixer = [this] { Asked.push_back("apply " + Media.MixerSectionName); };
        actions.StoreMixer = [this] { Asked.push_back("save " + Media.MixerSectionName); };
        actions.Localize = [this](Form& form) {
            Asked.push_back("localize " + form.Name());
            // A combo box is localised item by item.
            EXPECT_TRUE(static_cast<dlgProvider&>(form).cboProvider.Items().empty());
        };
        actions.FormatMsg = [this](const std::string& key, const std::string& argument) {
            return Texts ? key + " " + argument : std::string();
        };
        actions.Ask = [this](dlgProvider& dialog) {
            EXPECT_TRUE(dialog.Visible());
            Asked.push_back("ask");
            if (Answer) Answer(dialog);
            EXPECT_FALSE(dialog.Visible());
        };
        return actions;
    }

    MediaState Media;
    std::vector<std::string> Asked;
    bool Texts = true;
    std::function<void(dlgProvider&)> Answer = [](dlgProvider& dialog) { dialog.cmdCancel.Press(); };
    ProviderAdoption Adoption{Media, MakeActions()};
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
    Texts = false;
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
    EXPECT_THAT(Asked, ElementsAre("localize dlgProvider", "ask"));
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
    EXPECT_THAT(Asked, ElementsAre("localize dlgProvider", "ask", "load Two", "store New", "apply MixerTwo",
                                   "save MixerNew"));
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
    EXPECT_THAT(Asked, ElementsAre("localize dlgProvider", "ask"));
    Adoption.Cancel();  // nothing is open
}

TEST(AdoptingAlone, WithNobodyToAskAnUnknownProviderTakesItsOwnValues) {
    MediaState media;
    media.KnownProviders = {"One"};
    std::vector<std::string> loaded;
    AdoptionActions actions;
    actions.LoadProviderSettings = [&](const std::string& name) { loaded.push_back(name); };
    actions.UpdateMixer = [] {};
    ProviderAdoption adoption(media, std::move(actions));
    adoption.Adopt("New");
    EXPECT_THAT(loaded, ElementsAre("New"));
    EXPECT_THAT(media.KnownProviders, ElementsAre("One"));
}

}  // namespace
}  // namespace Corvetape::Test
