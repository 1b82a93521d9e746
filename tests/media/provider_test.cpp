#include "media/provider.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "media/provider_choice.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Everything round a provider, with notes of what it asks for.
class Providers : public testing::Test {
 protected:
    Providers() {
        Media.CurrentMedia = Filled("current");
        Media.SongMedia = Filled("song");
    }

    static STATIONANDSONGDATA Filled(const std::string& text) {
        STATIONANDSONGDATA media;
        media.StationName = media.StationDescr = media.Artist = media.Song = media.Album = media.Cover = text;
        media.RemainingTime = media.Size = 7;
        media.RemainingTimeAsString = media.TempFileName = text;
        return media;
    }

    /// A source that is found, or not.
    ProviderFactory Source(const std::string& name, bool found = true) {
        return [this, name, found]() -> std::unique_ptr<clsProvider> {
            Asked.push_back("make " + name);
            if (!found) return std::make_unique<SilentProvider>();
            return std::make_unique<FoundProvider>(*this, name);
        };
    }

    /// One that has found its source, which plays OnAir.
    class FoundProvider : public clsProvider {
     public:
        FoundProvider(Providers& test, const std::string& name) : Test(test) {
            Test.Media.ProviderName = name;
            ReArmRecording(Test.Host);
            Test.Host.AdoptSettings(name);
            GetStationData();
        }
        void GetStationData() override { Test.Media.CurrentMedia.Song = Test.OnAir; }
        void GetSongData() override {}
        bool RestartRadio() override { return ++Test.Restarts > 0; }

     private:
        Providers& Test;
    };

    /// One whose source is not there.
    class SilentProvider : public clsProvider {
     public:
        void GetStationData() override {}
        void GetSongData() override {}
        bool RestartRadio() override { return false; }
    };

    MediaState Media;
    SignalState Signal;
    RecordingFlags Flags;
    std::vector<std::string> Asked;
    bool Pending = false;
    std::string OnAir = "Song";
    int Restarts = 0;
    ProviderHost Host{Media,
                      Signal,
                      Flags,
                      [this](const std::string& name) { Asked.push_back("load " + name); },
                      [this] { Asked.push_back("mixer"); },
                      [this] { return Pending; },
                      [this](const std::string& name) { Asked.push_back("adopt " + name); }};
};

TEST_F(Providers, TheNullProviderEmptiesTheMediaDataAndTakesTheSettingsOfNoSource) {
    Signal.PauseRecognition = -1;
    const clsProviderNull provider(Host);
    EXPECT_EQ(Media.CurrentMedia, STATIONANDSONGDATA{});
    EXPECT_EQ(Media.SongMedia, STATIONANDSONGDATA{});
    EXPECT_EQ(Media.ProviderName, "NoStationData");
    EXPECT_EQ(Media.MixerSectionName, "Mixer");
    EXPECT_THAT(Asked, ElementsAre("load NoStationData", "mixer"));
}

TEST_F(Providers, TheNullProviderReArmsTheRecording) {
    const clsProviderNull none(Host);
    EXPECT_EQ(Signal.PauseRecognition, 2147483647);
    EXPECT_TRUE(Flags.RecordingEnabled);
}

TEST_F(Providers, TheNullProviderLeavesARecordingOffThatHasEndedForGood) {
    Flags.RecordingEnabled = false;
    Flags.DisableAtEndOfSong = true;
    const clsProviderNull ended(Host);
    EXPECT_FALSE(Flags.RecordingEnabled);
    Flags.RecordCurrentSong = true;
    const clsProviderNull wanted(Host);
    EXPECT_TRUE(Flags.RecordingEnabled) << "the song that plays is still to be finished";
}

TEST_F(Providers, TheNullProviderLeavesTheRecordOfASongThatWaitsForItsHandOver) {
    Pending = true;
    const clsProviderNull provider(Host);
    EXPECT_EQ(Media.SongMedia, Filled("song"));
    EXPECT_EQ(Media.CurrentMedia, STATIONANDSONGDATA{});
}

TEST_F(Providers, TheNullProviderReadsNothingAndCannotRestartAnything) {
    clsProviderNull provider(Host);
    Media.CurrentMedia = Filled("left alone");
    provider.GetStationData();
    provider.GetSongData();
    EXPECT_EQ(Media.CurrentMedia, Filled("left alone"));
    EXPECT_FALSE(provider.RestartRadio());
}

TEST_F(Providers, TheFirstWithASourceIsChosenInTheOrderGiven) {
    ProviderChoice choice(Host, {Source("First", false), Source("Second"), Source("Third")});
    choice.Choose();
    EXPECT_THAT(Asked, ElementsAre("make First", "make Second", "adopt Second"));
    EXPECT_EQ(Media.ProviderName, "Second");
}

TEST_F(Providers, WithoutAnySourceTheNullProviderStandsIn) {
    ProviderChoice choice(Host, {Source("First", false), Source("Second", false)});
    choice.Choose();
    EXPECT_THAT(Asked, ElementsAre("make First", "make Second", "load NoStationData", "mixer"));
    EXPECT_EQ(Media.ProviderName, "NoStationData");
}

TEST_F(Providers, TheChoiceRunsForAsLongAsNothingIsFound) {
    ProviderChoice choice(Host, {Source("First", false)});
    EXPECT_TRUE(choice.Wanted());
    choice.Choose();
    EXPECT_TRUE(choice.Wanted());
    ProviderChoice found(Host, {Source("First")});
    found.Choose();
    EXPECT_FALSE(found.Wanted());
}

TEST_F(Providers, ASourceThatHasGoneMakesTheChoiceRunAgain) {
    ProviderChoice choice(Host, {Source("First")});
    choice.Choose();
    ASSERT_FALSE(choice.Wanted());
    Media.ProviderName = "";
    EXPECT_TRUE(choice.Wanted());
    choice.Choose();
    EXPECT_EQ(Media.ProviderName, "First");
}

TEST_F(Providers, SwitchedOffTheNullProviderIsPolled) {
    ProviderChoice choice(Host, {Source("First")});
    choice.Choose();
    choice.SwitchOff();
    EXPECT_EQ(Media.ProviderName, "NoStationData");
    choice.GetStationData();
    EXPECT_EQ(Media.CurrentMedia, STATIONANDSONGDATA{});
}

TEST_F(Providers, DroppedNobodyIsPolledAndTheNextChoiceMakesOne) {
    ProviderChoice choice(Host, {Source("First")});
    choice.Choose();
    OnAir = "not read";
    choice.Drop();
    choice.GetStationData();
    choice.RestartRadio();
    EXPECT_EQ(Media.CurrentMedia.Song, "Song");
    EXPECT_EQ(Restarts, 0);
    EXPECT_TRUE(choice.Wanted());
}

TEST_F(Providers, ThePresentOneIsPolledAndRestarted) {
    ProviderChoice choice(Host, {Source("First")});
    choice.Choose();
    OnAir = "Next";
    choice.GetStationData();
    EXPECT_EQ(Media.CurrentMedia.Song, "Next");
    choice.RestartRadio();
    EXPECT_EQ(Restarts, 1);
}

/// A provider that leaves a box open while it is made or polled.
class AskingProvider : public clsProvider {
 public:
    AskingProvider(MediaState& media, std::function<void()> box) : Box(std::move(box)) {
        media.ProviderName = "Asking";
        Box();
    }
    void GetStationData() override {
        ++Polls;
        Box();
        ++Polls;  // it is still there
    }
    void GetSongData() override {}
    bool RestartRadio() override { return false; }

    int Polls = 0;

 private:
    std::function<void()> Box;
};

TEST_F(Providers, WhileOneIsMadeNoOtherIsMadeOrPolled) {
    int made = 0;
    ProviderChoice* choice = nullptr;
    ProviderChoice asking(Host, {[&]() -> std::unique_ptr<clsProvider> {
                              ++made;
                              return std::make_unique<AskingProvider>(Media, [&] {
                                  choice->Choose();
                                  choice->GetStationData();
                                  choice->RestartRadio();
                              });
                          }});
    choice = &asking;
    asking.Choose();
    EXPECT_EQ(made, 1);
    EXPECT_EQ(Media.ProviderName, "Asking");
    EXPECT_FALSE(asking.Wanted());
}

TEST_F(Providers, OneThatIsSwitchedOffWhileItWorksEndsWhenItIsDone) {
    std::function<void()> box = [] {};
    ProviderChoice choice(Host, {[&]() -> std::unique_ptr<clsProvider> {
                              return std::make_unique<AskingProvider>(Media, [&] { box(); });
                          }});
    choice.Choose();
    box = [&] { choice.SwitchOff(); };
    choice.GetStationData();
    EXPECT_EQ(Media.ProviderName, "NoStationData");
    EXPECT_THAT(Asked, ElementsAre("load NoStationData", "mixer"));

    box = [&] {
        choice.SwitchOff();
        choice.Drop();  // on again: the last click counts
    };
    Asked.clear();
    choice.Choose();
    EXPECT_THAT(Asked, IsEmpty());
    EXPECT_TRUE(choice.Wanted());
}

TEST_F(Providers, BeforeTheFirstChoiceNobodyIsAsked) {
    ProviderChoice choice(Host, {Source("First")});
    choice.GetStationData();
    choice.RestartRadio();
    EXPECT_THAT(Asked, IsEmpty());
    EXPECT_EQ(Media.CurrentMedia, Filled("current"));
}

}  // namespace
}  // namespace Corvetape::Test
