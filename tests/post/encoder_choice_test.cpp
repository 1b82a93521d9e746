#include "post/encoders/encoder_choice.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "post/post_bench.h"

namespace Corvetape {
namespace {

constexpr const char* FixIni =
    "[MP3]\nEncQuality=a;b;c;d;e;f\nEncParams=1;2;3;4;5;6\n"
    "[OggVorbis]\nEncQuality=a;b;c;d;e;f\nEncParams=1;2;3;4;5;6\n"
    "[WMA44]\nEncQuality=a;b;c\nEncParams=1;2;3\n"
    "[WMA48]\nEncQuality=a;b;c\nEncParams=1;2;3\n";

FoundTools AllTools() {
    return {"/usr/bin/lame", "/usr/bin/oggenc", "/usr/bin/sox", "/usr/bin/ffmpeg", "9"};
}

class EncoderChoiceTest : public ::testing::Test {
 protected:
    void Start(const std::string& ini, const FoundTools& found = AllTools()) {
        Bench.Sim.Files.Put(Bench.Store.FixIni().Path(), FixIni);
        Bench.Sim.Files.Put(Bench.Store.Ini().Path(), ini);
        Choice.emplace(Bench.Form, Bench.Options, Bench.Store, Bench.Lifecycle, Requests);
        Requests.Assistant.Connect([this](const std::string& page) { Pages += page + "\n"; });
        Bench.LoadSettings();
        Choice->EnableFound(found);
    }

    int32_t Selected() { return Bench.Form.optEncoder.Selected(); }

    std::string Enabled() {
        std::string result;
        for (size_t i = 0; i < EncoderTable.size(); ++i) {
            const ComboBox EncoderPage::*quality = EncoderTable[i].QualityControl;
            const bool option = Bench.Form.optEncoder[i].Enabled();
            if (quality != nullptr) {
                EXPECT_EQ((Bench.Form.*quality).Enabled(), option) << i;
            }
            if (option) result += std::to_string(i);
        }
        return result;
    }

    Testing::PostBench Bench;
    ProgramRequests Requests;
    std::optional<EncoderChoice> Choice;
    std::string Pages;
};

TEST_F(EncoderChoiceTest, OnlyTheIndicesOfTheTableAreEncoders) {
    EXPECT_EQ(FindEncoder(0), &EncoderTable[0]);
    EXPECT_EQ(FindEncoder(5), &EncoderTable[5]);
    EXPECT_EQ(FindEncoder(6), nullptr);
    EXPECT_EQ(FindEncoder(-1), nullptr);
}

TEST_F(EncoderChoiceTest, WithoutToolsOnlyTheFirstFormatCanBeChosen) {
    Start("", {});
    EXPECT_EQ(Enabled(), "0");
    Bench.Form.optEncoder[1].Press();
    EXPECT_EQ(Selected(), 0);
}

TEST_F(EncoderChoiceTest, EachToolEnablesItsFormats) {
    Start("", {.Lame = "/l", .OggEnc = "", .Sox = "", .Ffmpeg = "", .WmaEncoderVersion = ""});
    EXPECT_EQ(Enabled(), "01");
    Choice->EnableFound({.Lame = "", .OggEnc = "/o", .Sox = "", .Ffmpeg = "", .WmaEncoderVersion = ""});
    EXPECT_EQ(Enabled(), "02");
    Choice->EnableFound({.Lame = "", .OggEnc = "", .Sox = "/s", .Ffmpeg = "", .WmaEncoderVersion = ""});
    EXPECT_EQ(Enabled(), "05");
    Choice->EnableFound({.Lame = "", .OggEnc = "", .Sox = "", .Ffmpeg = "/f", .WmaEncoderVersion = "9"});
    EXPECT_EQ(Enabled(), "034");
    Choice->EnableFound(AllTools());
    EXPECT_EQ(Enabled(), "012345");
}

TEST_F(EncoderChoiceTest, AnFfmpegWithoutItsWmaEncoderEnablesNothing) {
    Start("", {.Lame = "", .OggEnc = "", .Sox = "", .Ffmpeg = "/f", .WmaEncoderVersion = ""});
    EXPECT_EQ(Enabled(), "0");
}

TEST_F(EncoderChoiceTest, ClickingAnOptionStoresTheEncoderAtOnce) {
    Start("");
    Bench.Form.optEncoder[5].Press();
    EXPECT_EQ(Bench.Options.Encoder, 5);
    EXPECT_EQ(Bench.StoredOption("Encoder"), "5");
}

TEST_F(EncoderChoiceTest, ChoosingAQualityStoresItAndChoosesItsEncoder) {
    Start("");
    struct {
        ComboBox& List;
        int32_t Settings::*Index;
        const char* Key;
        int32_t Encoder;
    } rows[] = {{Bench.Form.cmbMP3, &Settings::MP3Quality, "MP3Quality", 1},
                {Bench.Form.cmbOgg, &Settings::OggVorbisQuality, "OggVorbisQuality", 2},
                {Bench.Form.cmbWMA44, &Settings::WMA44Quality, "WMA44Quality", 3},
                {Bench.Form.cmbWMA48, &Settings::WMA48Quality, "WMA48Quality", 4}};
    for (auto& row : rows) {
        ASSERT_TRUE(row.List.ListIndex(1));
        EXPECT_EQ(Bench.Options.*row.Index, 1);
        EXPECT_EQ(Bench.StoredOption(row.Key), "1");
        EXPECT_EQ(Selected(), row.Encoder);
        EXPECT_EQ(Bench.Options.Encoder, row.Encoder);
        EXPECT_EQ(Bench.StoredOption("Encoder"), std::to_string(row.Encoder));
    }
}

TEST_F(EncoderChoiceTest, ClickingTheSameQualityAgainChoosesItsEncoderToo) {
    Start("[Options]\nEncoder=0\nOggVorbisQuality=3\n");
    ASSERT_EQ(Selected(), 0);
    Bench.Form.cmbOgg.Select(3);
    EXPECT_EQ(Bench.StoredOption("Encoder"), "2");
    EXPECT_EQ(Selected(), 2);
}

TEST_F(EncoderChoiceTest, TheStoredEncoderWinsOverTheQualitiesThatAreRestored) {
    Start("[Options]\nEncoder=1\nMP3Quality=4\nOggVorbisQuality=1\nWMA44Quality=1\nWMA48Quality=0\n");
    EXPECT_EQ(Selected(), 1);
    EXPECT_EQ(Bench.Options.Encoder, 1);
    EXPECT_EQ(Bench.StoredOption("Encoder"), "1");
    EXPECT_EQ(Bench.Form.cmbMP3.ListIndex(), 4);
    EXPECT_EQ(Bench.Form.cmbOgg.ListIndex(), 1);
    EXPECT_EQ(Bench.Form.cmbWMA44.ListIndex(), 1);
    EXPECT_EQ(Bench.Form.cmbWMA48.ListIndex(), 0);
}

TEST_F(EncoderChoiceTest, TheQualitiesBeginWithTheirDefaults) {
    Start("");
    EXPECT_EQ(Selected(), 0);
    EXPECT_EQ(Bench.Form.cmbMP3.ListIndex(), 5);
    EXPECT_EQ(Bench.Form.cmbOgg.ListIndex(), 5);
    EXPECT_EQ(Bench.Form.cmbWMA44.ListIndex(), 2);
    EXPECT_EQ(Bench.Form.cmbWMA48.ListIndex(), 2);
}

TEST_F(EncoderChoiceTest, AStoredEncoderThatDoesNotExistLeavesNoOptionSelected) {
    Start("[Options]\nEncoder=6\n");
    EXPECT_EQ(Selected(), -1);
    EXPECT_EQ(Bench.Options.Encoder, 6);
    EXPECT_EQ(Bench.StoredOption("Encoder"), "6");
}

TEST_F(EncoderChoiceTest, AStoredEncoderBelowZeroLeavesNoOptionSelected) {
    Start("[Options]\nEncoder=-1\n");
    EXPECT_EQ(Selected(), -1);
    EXPECT_EQ(Bench.Options.Encoder, -1);
}

TEST_F(EncoderChoiceTest, AStoredQualityBeyondTheListFailsSilently) {
    Start("[Options]\nMP3Quality=17\nWMA44Quality=-4\n");
    EXPECT_EQ(Bench.Form.cmbMP3.ListIndex(), -1);
    EXPECT_EQ(Bench.Options.MP3Quality, 17);
    EXPECT_EQ(Bench.Form.cmbWMA44.ListIndex(), -1);
    EXPECT_EQ(Bench.Options.WMA44Quality, -4);
    EXPECT_TRUE(Bench.Sim.Dialogs.Boxes.empty());
}

TEST_F(EncoderChoiceTest, WithoutQualityListsTheStoredIndexStays) {
    Choice.emplace(Bench.Form, Bench.Options, Bench.Store, Bench.Lifecycle, Requests);
    Bench.Sim.Files.Put(Bench.Store.Ini().Path(), "[Options]\nMP3Quality=3\n");
    Bench.LoadSettings();
    EXPECT_TRUE(Bench.Form.cmbMP3.Items().empty());
    EXPECT_EQ(Bench.Options.MP3Quality, 3);
}

TEST_F(EncoderChoiceTest, AStoredEncoderWhoseToolHasGoneStaysSelected) {
    Start("[Options]\nEncoder=1\n", {});
    EXPECT_EQ(Selected(), 1);
    EXPECT_FALSE(Bench.Form.optEncoder[1].Enabled());
    EXPECT_EQ(Bench.Options.Encoder, 1);
}

TEST_F(EncoderChoiceTest, GettingAnEncoderOpensItsPageOfTheAssistant) {
    Start("");
    Bench.Form.cmdGetEncoder[0].Press();
    EXPECT_TRUE(Bench.Lifecycle.WizardRequested);
    Bench.Form.cmdGetEncoder[1].Press();
    EXPECT_EQ(Pages, "wiz_wma.htm\nwiz_lame.htm\n");
}

}  // namespace
}  // namespace Corvetape
