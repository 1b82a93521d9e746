#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "mixer/search_test.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;

constexpr uint32_t Mux = MIXERCONTROL_CONTROLTYPE_MUX;
constexpr uint32_t Volume = MIXERCONTROL_CONTROLTYPE_VOLUME;

/// An input with two ports, of which the second carries sound.
class PortSearch : public DeviceSearch {
 protected:
    PortSearch() {
        SimDestination recording;
        recording.Line = {"Built-in", 100, {MixerSelector({0, 1}, 0), MixerVolume(700), MixerMute(0)}};
        recording.Sources = {{"Microphone", 0, {}}, {"Line In", 1, {}}};
        Card = &Cards.Add({"A", "A", {recording}});
        AddSound("A", [this] { return Selector().Chosen() == 1 ? LevelOfSecond : LevelOfFirst; });
    }
    SimControl& Selector() { return Card->Destinations[0].Line.Of(Mux); }

    SimCard* Card = nullptr;
    double LevelOfFirst = 0;
    double LevelOfSecond = 5000;
};

TEST_F(PortSearch, TriesOnePortAfterTheOtherAndNamesTheOneWithSound) {
    Answers = {true};
    EXPECT_EQ(Run(), "Input A, Line In");
    EXPECT_THAT(Questions(), ElementsAre("is it Input A, Line In?"));
    EXPECT_EQ(Selector().Chosen(), 1);
    EXPECT_EQ(VolumeOf(*Card), 65535);
    EXPECT_EQ(Inputs.WaveInDeviceId(), 0);
}

TEST_F(PortSearch, ThatFindsNothingSelectsThePortOfTheUserAgain) {
    LevelOfSecond = 0;
    EXPECT_EQ(Run(), "");
    EXPECT_EQ(Selector().Chosen(), 0);
    EXPECT_EQ(VolumeOf(*Card), 700);
}

TEST_F(PortSearch, AfterANoGoesOnWithTheNextPort) {
    LevelOfFirst = 5000;
    Answers = {false, true};
    EXPECT_EQ(Run(), "Input A, Line In");
    EXPECT_THAT(Questions(), ElementsAre("is it Input A, Microphone?", "is it Input A, Line In?"));
}

TEST_F(PortSearch, WithARefusedPortTheInputEndsAtZero) {
    Answers = {false};
    EXPECT_EQ(Run(), "");
    EXPECT_EQ(VolumeOf(*Card), 0);
    EXPECT_EQ(Selector().Chosen(), 0);
}

TEST_F(PortSearch, EachSilentPortGetsItsOwnVolumeBack) {
    std::map<int32_t, int32_t> volumes = {{0, 700}, {1, 900}};
    Cards.BeforeSet = [&](const SimMixerSet& set) {
        if (set.ControlType != Mux) return;
        SimControl& volume = Card->Destinations[0].Line.Of(Volume);
        volumes[Selector().Chosen()] = volume.Value();
        volume.Value() = volumes[set.Value];
    };
    LevelOfSecond = 0;
    EXPECT_EQ(Run(), "");
    EXPECT_EQ(Selector().Chosen(), 0);
    EXPECT_EQ(VolumeOf(*Card), 700);
    EXPECT_EQ(volumes[1], 900);
}

TEST_F(PortSearch, PassesOverAPortThatTheSelectorDoesNotList) {
    Card->Destinations[0].Sources[0].LineId = 77;
    LevelOfFirst = 5000;
    Answers = {true};
    EXPECT_EQ(Run(), "Input A, Line In");
}

TEST_F(PortSearch, WithoutKeepingEndsAtZeroOnTheLastPort) {
    Options.KeepRejectedInputs = false;
    LevelOfSecond = 0;
    EXPECT_EQ(Run(), "");
    EXPECT_EQ(VolumeOf(*Card), 0);
    EXPECT_EQ(Selector().Chosen(), 1);
}

TEST_F(PortSearch, PassesOverAPortThatHasNoSlot) {
    std::vector<uint32_t> ids(60);
    for (uint32_t id = 0; id < ids.size(); ++id) ids[id] = id;
    Selector() = MixerSelector(ids, 0);
    SimDestination& recording = Card->Destinations[0];
    recording.Sources = {{"Microphone", 0, {}}, {"Deep", 55, {}}};
    LevelOfFirst = 5000;
    EXPECT_EQ(Run(), "");
    EXPECT_THAT(Questions(), ElementsAre("is it Input A, Microphone?"));
}

}  // namespace
}  // namespace Corvetape::Test
