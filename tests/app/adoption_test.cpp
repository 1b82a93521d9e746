// A newly met source asks whose settings it shall have, while the recording goes on.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/desktop_notes.h"
#include "forms/dlg_provider.h"
#include "scenario/story.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// A radio that is met for the first time, on a machine that knows another source.
class Adoption : public testing::Test {
 protected:
    void Begin(std::vector<IniLine> settings = {}) {
        settings.push_back({"MixerOther", "LevelMultiplier", "100"});
        settings.push_back({"Other", "LengthOfPause", "500"});
        settings.push_back({"Other", "EndOfSongDetection", "1"});
        WorldOptions options = Starting("", std::move(settings));
        options.Radio = NumberedRadio({40, 40});
        Place.emplace(std::move(options));
        Place->Question.Answer = [this](dlgProvider& dialog) {
            ++Questions;
            if (Answer) Answer(dialog);
        };
        Place->Made();
    }

    std::optional<World> Place;
    int Questions = 0;
    std::function<void(dlgProvider&)> Answer;
};

TEST_F(Adoption, IsAskedForOnceAndTakesTheSettingsOver) {
    Begin();
    Answer = [&](dlgProvider& dialog) {
        EXPECT_THAT(dialog.lblInfo.Caption(), HasSubstr(ProviderOfRadio));
        EXPECT_EQ(dialog.cmdOK.Caption(), "Take over");
        dialog.cmdOK.Press();
    };
    ASSERT_TRUE(Place->Start());
    Place->RunFor(20);
    EXPECT_EQ(Questions, 1);
    EXPECT_EQ(Place->Form().txtLengthOfPause.Text(), "500");
    EXPECT_EQ(Place->Form().optEndOfSong.Selected(), 1);
    EXPECT_EQ(Place->Stored(ProviderOfRadio, "LengthOfPause"), "500");
    EXPECT_EQ(Place->Stored(ProviderOfRadio, "EndOfSongDetection"), "1");
    // At the next start it is known.
    Place->Recorder->Unload();
    Place->Made();
    ASSERT_TRUE(Place->Start());
    Place->RunFor(5);
    EXPECT_EQ(Questions, 1);
    EXPECT_EQ(Place->Form().txtLengthOfPause.Text(), "500");
}

TEST_F(Adoption, CancelledLeavesTheSourceWithoutASection) {
    Begin();
    Answer = [](dlgProvider& dialog) { dialog.cmdCancel.Press(); };
    ASSERT_TRUE(Place->Start());
    Place->RunFor(5);
    EXPECT_EQ(Questions, 1);
    EXPECT_EQ(Place->Values().Media.ProviderName, ProviderOfRadio);
    EXPECT_EQ(Place->Values().Media.CurrentMedia.Song, "Song 1");
    EXPECT_EQ(Place->Stored(ProviderOfRadio, "LengthOfPause"), "-");
    EXPECT_EQ(Place->Stored(std::string("Mixer") + ProviderOfRadio, "LevelMultiplier"), "-");
    Place->Values().Media.ProviderName.clear();  // it has gone, and comes again
    Place->RunFor(2);
    EXPECT_EQ(Questions, 2);
}

TEST_F(Adoption, LosesNoSoundWhileTheQuestionIsOpen) {
    Begin({{"NoStationData", "LengthOfPause", "500"}, {"Providers", "Enable", "0"}});
    Answer = [&](dlgProvider& dialog) {
        // It is late: the user answers in the middle of the second song.
        Place->RunFor(50);
        dialog.cmdCancel.Press();
    };
    ASSERT_TRUE(Place->StartRecording());
    Place->Form().chkStationDataEnable.Value(1);
    Place->RunFor(60);
    EXPECT_EQ(Questions, 1);
    Place->Finish();
    EXPECT_EQ(MusicComparedWithRadio(*Place), "");
}

TEST_F(Adoption, StopsNeitherTheCountdownNorTheLookAtTheDiskWhileTheQuestionIsOpen) {
    Begin({{"Providers", "Enable", "0"}, {"NoStationData", "LengthOfPause", "500"}});
    std::string minutes;
    bool diskWasFull = false;
    Answer = [&](dlgProvider& dialog) {
        Place->RunFor(125);
        minutes = Place->Form().txtRecordingPeriod.Text();
        Place->Disk().SetFreeSpace("/", 0);
        Place->RunFor(61);
        diskWasFull = Place->Form().chkStopRecording[0].Value() == 1;
        dialog.cmdCancel.Press();
    };
    ASSERT_TRUE(Place->StartRecording());
    ASSERT_TRUE(Place->Form().txtRecordingPeriod.SetValueText("5"));
    Place->Form().chkStopRecording[1].Press();
    Place->Form().chkStationDataEnable.Value(1);
    Place->RunFor(10);
    EXPECT_EQ(Questions, 1);
    EXPECT_EQ(minutes, "3");
    EXPECT_TRUE(diskWasFull);
}

TEST_F(Adoption, IsCancelledByTheEndOfTheProgram) {
    Begin();
    Answer = [&](dlgProvider& dialog) {
        Place->Recorder->Unload();
        EXPECT_FALSE(dialog.Visible());
    };
    ASSERT_TRUE(Place->Load());
    Place->RunFor(5);
    EXPECT_EQ(Questions, 1);
    EXPECT_EQ(Place->Ends, 1U);
    EXPECT_EQ(Place->Disk().OpenHandles(), 0U);
}

TEST_F(Adoption, SwitchedOffMeanwhileEndsWithoutASource) {
    Begin();
    Answer = [&](dlgProvider& dialog) {
        Place->Form().chkStationDataEnable.Value(0);
        dialog.cmdCancel.Press();
    };
    ASSERT_TRUE(Place->Start());
    Place->RunFor(5);
    EXPECT_EQ(Place->Values().Media.ProviderName, NoStationData);
    EXPECT_EQ(Place->Values().Media.CurrentMedia.Song, "");
    EXPECT_EQ(Questions, 1);
}

}  // namespace
}  // namespace Corvetape::Test
