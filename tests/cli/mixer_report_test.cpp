#include "cli/mixer_report.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/arguments.h"
#include "sim/sim_mixer.h"

namespace Corvetape {
namespace {

SimCard BuiltIn() {
    SimDestination recording;
    recording.Line = {"Built-in Audio", 100, {MixerSelector({0, 1}, 1), MixerVolume(32768), MixerMute(1)}};
    recording.Line.Controls[0].Items[0].szName = "Microphone";
    recording.Line.Controls[0].Items[1].szName = "Line \"In\"";
    recording.Sources = {{"Microphone", 0, {}}, {"Line", 1, {MixerOther(-5, -10, 10)}}};
    return {"alsa_input", "alsa_input", {recording}};
}

SimCard Speakers() {
    SimDestination speakers;
    speakers.Type = MIXERLINE_COMPONENTTYPE_DST_SPEAKERS;
    speakers.Line = {"Speakers", 100, {MixerSwitch(0)}};
    return {"alsa_output", "", {speakers}};
}

TEST(MixerText, ListsEveryControlWithItsKeyAndValue) {
    SimMixer mixer;
    mixer.Add(BuiltIn());
    mixer.Add(Speakers());
    EXPECT_EQ(MixerText(mixer),
              "  0  input    Built-in Audio  (alsa_input)\n"
              "      C000000      selector  1  Line \"In\"\n"
              "      C000001      volume    32768  of 0 to 65535\n"
              "      C000002      mute      1  of 0 to 1\n"
              "      source 0: Microphone\n"
              "      source 1: Line\n"
              "      C00000100    other     -5  of -10 to 10\n"
              "  1  output   Speakers  (alsa_output)\n"
              "      C010000      switch    0  of 0 to 1\n");
    EXPECT_TRUE(mixer.Sets.empty());
}

TEST(MixerText, SaysThatNoItemIsOn) {
    SimMixer mixer;
    SimCard card = BuiltIn();
    card.Destinations[0].Line.Controls = {MixerSelector({0, 1}, 2)};
    mixer.Add(card);
    EXPECT_THAT(MixerText(mixer), testing::HasSubstr("selector  2  none\n"));
}

TEST(MixerJson, IsOneObjectForEachControl) {
    SimMixer mixer;
    mixer.Add(BuiltIn());
    std::istringstream lines(MixerJson(mixer));
    std::vector<nlohmann::json> objects;
    for (std::string line; std::getline(lines, line);) objects.push_back(nlohmann::json::parse(line));
    ASSERT_EQ(objects.size(), 4U);
    EXPECT_EQ(objects[0]["key"], "C000000");
    EXPECT_EQ(objects[0]["items"], (std::vector<std::string>{"Microphone", "Line \"In\""}));
    EXPECT_EQ(objects[0]["value"], 1);
    EXPECT_EQ(objects[1]["type"], "volume");
    EXPECT_EQ(objects[1]["maximum"], 65535);
    EXPECT_EQ(objects[1]["name"], "alsa_input");
    EXPECT_TRUE(objects[1]["source"].is_null());
    EXPECT_EQ(objects[3]["source"], 1);
    EXPECT_EQ(objects[3]["line"], "Line");
}

TEST(MixerArguments, TheCommandTakesJson) {
    const char* plain[] = {"corvetape-cli", "mixer"};
    EXPECT_FALSE(std::get<MixerArguments>(ReadArguments(2, plain)).Json);
    const char* json[] = {"corvetape-cli", "mixer", "--json"};
    EXPECT_TRUE(std::get<MixerArguments>(ReadArguments(3, json)).Json);
}

}  // namespace
}  // namespace Corvetape
