#include "media/provider.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "media/noted_settings.h"
#include "media/provider_choice.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Everything round a provider, with notes of what it asks for and of what is made.
class Providers : public testing::Test, protected ProviderBench {
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

    /// Makes a source that is found, or not.
    class Maker : public ProviderMaker {
     public:
        Maker(Providers& test, std::string name, bool found)
            : Test(test), Name(std::move(name)), Found(found) {}
        std::unique_ptr<clsProvider> Make() override {
            Test.Asked.push_back("make " + Name);
            if (!Found) return std::make_unique<SilentProvider>();
            return std::make_unique<FoundProvider>(Test, Name);
        }

     private:
        Providers& Test;
        std::string Name;
        bool Found;
    };

    ProviderMaker* Source(const std::string& name, bool found = true) {
        Makers.push_back(std::make_unique<Maker>(*this, name, found));
        return Makers.back().get();
    }

    /// One that has found its source, which plays OnAir.
    class FoundProvider : public clsProvider {
     public:
        FoundProvider(Providers& test, const std::string& name) : Test(test) {
            Test.Media.ProviderName = name;
            ReArmRecording(Test.Host);
            Test.Host.Adoption.Adopt(name);
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

    std::vector<std::string>& Asked = Settings.Asked;
    PauseSettings Pause;
    CoverImages Covers{nullptr, Computer.Files, Pause};
    std::vector<std::unique_ptr<ProviderMaker>> Makers;
    std::string OnAir = "Song";
    int Restarts = 0;
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

TEST_F(Providers, TheNullProviderReadsNothingAndCannotRestartAnything) {
    clsProviderNull provider(Host);
    Media.CurrentMedia = Filled("left alone");
    provider.GetStationData();
    provider.GetSongData();
    EXPECT_EQ(Media.CurrentMedia, Filled("left alone"));
    EXPECT_FALSE(provider.RestartRadio());
}

TEST_F(Providers, TheFirstWithASourceIsChosenInTheOrderGiven) {
    ProviderChoice choice(Host, Covers, {Source("First", false), Source("Second"), Source("Third")});
    choice.Choose();
    EXPECT_THAT(Asked, ElementsAre("make First", "make Second", "load Second", "mixer"));
    EXPECT_EQ(Media.ProviderName, "Second");
}

TEST_F(Providers, WithoutAnySourceTheNullProviderStandsIn) {
    ProviderChoice choice(Host, Covers, {Source("First", false), Source("Second", false)});
    choice.Choose();
    EXPECT_THAT(Asked, ElementsAre("make First", "make Second", "load NoStationData", "mixer"));
    EXPECT_EQ(Media.ProviderName, "NoStationData");
}

TEST_F(Providers, TheChoiceRunsForAsLongAsNothingIsFound) {
    ProviderChoice choice(Host, Covers, {Source("First", false)});
    EXPECT_TRUE(choice.Wanted());
    choice.Choose();
    EXPECT_TRUE(choice.Wanted());
    ProviderChoice found(Host, Covers, {Source("First")});
    found.Choose();
    EXPECT_FALSE(found.Wanted());
}

TEST_F(Providers, ASourceThatHasGoneMakesTheChoiceRunAgain) {
    ProviderChoice choice(Host, Covers, {Source("First")});
    choice.Choose();
    ASSERT_FALSE(choice.Wanted());
    Media.ProviderName = "";
    EXPECT_TRUE(choice.Wanted());
    choice.Choose();
    EXPECT_EQ(Media.ProviderName, "First");
}

TEST_F(Providers, SwitchedOffTheNullProviderIsPolled) {
    ProviderChoice choice(Host, Covers, {Source("First")});
    choice.Choose();
    choice.SwitchOff();
    EXPECT_EQ(Media.ProviderName, "NoStationData");
    choice.GetStationData();
    EXPECT_EQ(Media.CurrentMedia, STATIONANDSONGDATA{});
}

TEST_F(Providers, DroppedNobodyIsPolledAndTheNextChoiceMakesOne) {
    ProviderChoice choice(Host, Covers, {Source("First")});
    choice.Choose();
    OnAir = "not read";
    choice.Drop();
    choice.GetStationData();
    choice.RestartRadio();
    EXPECT_EQ(Media.CurrentMedia.Song, "Song");
    EXPECT_EQ(Restarts, 0);
    EXPECT_TRUE(choice.Wanted());
}

TEST_F(Providers, ARefreshPollsOnlyWhileMediaDataAreOn) {
    ProviderChoice choice(Host, Covers, {Source("First")});
    choice.Choose();
    OnAir = "Next";
    Media.StationDataEnabled = false;
    choice.Refresh();
    EXPECT_EQ(Media.CurrentMedia.Song, "Song");
    Media.StationDataEnabled = true;
    choice.Refresh();
    EXPECT_EQ(Media.CurrentMedia.Song, "Next");
}

TEST_F(Providers, ThePresentOneIsPolledAndRestarted) {
    ProviderChoice choice(Host, Covers, {Source("First")});
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

/// Makes such providers.
class AskingMaker : public ProviderMaker {
 public:
    AskingMaker(MediaState& media, std::function<void()> box) : Media(media), Box(std::move(box)) {}
    std::unique_ptr<clsProvider> Make() override {
        ++Made;
        return std::make_unique<AskingProvider>(Media, [this] { Box(); });
    }

    MediaState& Media;
    std::function<void()> Box;
    int Made = 0;
};

TEST_F(Providers, WhileOneIsMadeNoOtherIsMadeOrPolled) {
    AskingMaker maker(Media, [] {});
    ProviderChoice asking(Host, Covers, {&maker});
    maker.Box = [&] {
        asking.Choose();
        asking.GetStationData();
        asking.RestartRadio();
    };
    asking.Choose();
    EXPECT_EQ(maker.Made, 1);
    EXPECT_EQ(Media.ProviderName, "Asking");
    EXPECT_FALSE(asking.Wanted());
}

TEST_F(Providers, OneThatIsSwitchedOffWhileItWorksEndsWhenItIsDone) {
    AskingMaker maker(Media, [] {});
    std::function<void()>& box = maker.Box;
    ProviderChoice choice(Host, Covers, {&maker});
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
    ProviderChoice choice(Host, Covers, {Source("First")});
    choice.GetStationData();
    choice.RestartRadio();
    EXPECT_THAT(Asked, IsEmpty());
    EXPECT_EQ(Media.CurrentMedia, Filled("current"));
}

}  // namespace
}  // namespace Corvetape::Test
