#include "recording/floating_bars.h"

#include <gtest/gtest.h>

#include "recording/pause_rig.h"
#include "sim/sim_http.h"

namespace Corvetape::Test {
namespace {

constexpr TwipSize Screen{1920 * 15, 1080 * 15};

struct Rig : PauseRig {
    explicit Rig(const std::string& pos = "", bool oldView = false, TwipSize allScreens = Screen) {
        Options.QuickButtonsPos = pos;
        Options.OldView = oldView;
        Form.Place({3000, 1500, 15'000, 10'000});
        Form.Visible(true);
        Bars.Load(Screen, allScreens);
    }

    bool OverlayShown() const { return Cover.shpTop.Visible() && Cover.lblSong.Visible(); }
    void RunFor(int milliseconds) { Computer.Loop.RunFor(std::chrono::milliseconds(milliseconds)); }
    std::string Kept(const char* key) const { return Stored("QuickButtons", key); }

    Settings Options;
    frmQuickButtons Plain;
    frmCoverButtons Cover;
    SimHttp Web{Computer.Loop};
    CoverImages Covers{&Web, Computer.Files, Pause};
    FloatingBars Bars{{Form, Plain, Cover, Media, Options, Store, Computer.Loop, Covers}};
};

TEST(FloatingBars, TheSettingSaysWhichOneIsInUse) {
    Rig cover;
    EXPECT_TRUE(cover.Cover.Visible());
    EXPECT_FALSE(cover.Plain.Visible());
    Rig plain("", true);
    EXPECT_FALSE(plain.Cover.Visible());
    EXPECT_TRUE(plain.Plain.Visible());
}

TEST(FloatingBars, StandWhereTheyStoodOrAtTheirDefaultPlaces) {
    Rig stored("4500;3000;1;1");
    EXPECT_EQ(stored.Cover.Place().Left, 4500);
    EXPECT_EQ(stored.Cover.Place().Top, 3000);
    EXPECT_EQ(stored.Cover.Place().Width, 106 * 15);
    Rig second("30000;3000", true, {2 * Screen.Width, Screen.Height});  // on the second screen
    EXPECT_EQ(second.Plain.Place().Left, 30'000);
    Rig outside("30000;3000", true);  // the second screen is gone
    EXPECT_EQ(outside.Plain.Place().Left, Screen.Width - outside.Plain.Place().Width);
    EXPECT_EQ(outside.Plain.Place().Top, 0);
    EXPECT_EQ(outside.Cover.Place().Left, 15'000 - 106 * 15 / 2);
    EXPECT_EQ(outside.Cover.Place().Top, 1500 + 107 * 15);
}

TEST(FloatingBars, AtTheFirstStartTheCoverBarIsBesideTheWindow) {
    Rig rig;
    EXPECT_GE(rig.Cover.Place().Left, 3000 + 15'000);
    EXPECT_EQ(rig.Cover.Place().Top, 1500 + 107 * 15);
    // The desktop has put the window elsewhere meanwhile.
    rig.Form.Place({13'000, 4500, 15'000, 10'000});
    rig.Bars.MainWindowPlaced();
    EXPECT_LE(rig.Cover.Place().Left + rig.Cover.Place().Width, 13'000) << "no room at its right";
    EXPECT_EQ(rig.Cover.Place().Top, 4500 + 107 * 15);
}

TEST(FloatingBars, ThatWereMovedOrStoredStayWhereTheyAre) {
    Rig moved;
    moved.Cover.Place({4500, 3000, 106 * 15, 107 * 15});
    moved.Bars.MainWindowPlaced();
    EXPECT_EQ(moved.Cover.Place().Left, 4500);
    Rig stored("4500;3000;1;1");
    stored.Form.Place({10'000, 4500, 15'000, 10'000});
    stored.Bars.MainWindowPlaced();
    EXPECT_EQ(stored.Cover.Place().Left, 4500);
}

TEST(FloatingBars, SwitchingBringsTheOtherOneToTheSamePlace) {
    Rig rig("4500;3000");
    rig.Cover.mnuContextItem[30].Press();
    EXPECT_EQ(&rig.Bars.QuickBar(), &rig.Plain);
    EXPECT_TRUE(rig.Plain.Visible());
    EXPECT_FALSE(rig.Cover.Visible());
    EXPECT_EQ(rig.Plain.Place().Left, 4500);
    EXPECT_EQ(rig.Kept("OldView"), "1");
    rig.Plain.cmdSwitchDesign.Press();
    EXPECT_EQ(&rig.Bars.QuickBar(), &rig.Cover);
    EXPECT_EQ(rig.Kept("OldView"), "0");
}

TEST(FloatingBars, TheirButtonsAreThoseOfTheMainWindow) {
    Rig rig;
    std::string pressed;
    rig.Form.cmdSkipThisRecording.Enabled(true);
    rig.Form.cmdStartStop.Click.Connect([&] { pressed += "start "; });
    rig.Form.cmdSkipThisRecording.Click.Connect([&] { pressed += "skip "; });
    rig.Form.cmdQuickRecord.Click.Connect([&] { pressed += "quick "; });
    rig.Plain.cmdSkipThisRecording.Enabled(true);
    for (Control* button : {static_cast<Control*>(&rig.Plain.cmdStartStop),
                            static_cast<Control*>(&rig.Plain.cmdSkipThisRecording),
                            static_cast<Control*>(&rig.Plain.cmdQuickRecord)}) {
        button->Press();
    }
    for (Control* picture :
         {static_cast<Control*>(&rig.Cover.imgStart), static_cast<Control*>(&rig.Cover.imgStop),
          static_cast<Control*>(&rig.Cover.imgSkip[0]), static_cast<Control*>(&rig.Cover.imgSkip[1]),
          static_cast<Control*>(&rig.Cover.imgStartStop)}) {
        picture->Press();
    }
    EXPECT_EQ(pressed, "start skip quick start start skip quick ");
}

TEST(FloatingBars, ClosingOneHidesItForThisStartAndTheNext) {
    Rig rig;
    rig.Bars.IconIsThere(true);
    rig.Form.Visible(false);
    rig.Cover.mnuContextItem[20].Press();
    EXPECT_EQ(rig.Form.chkQuickButtons.Value(), 1);
    EXPECT_FALSE(rig.Cover.Visible());
    EXPECT_FALSE(rig.Form.Visible());
    rig.Bars.Save();
    EXPECT_EQ(rig.Kept("Visible"), "0");
}

TEST(FloatingBars, TheCheckBoxAndTheTrayMenuShowAndHideTheOneInUse) {
    Rig rig;
    rig.Form.mnuTaskbarItem[15].Press();
    EXPECT_FALSE(rig.Cover.Visible());
    rig.Form.chkQuickButtons.Press();
    EXPECT_TRUE(rig.Cover.Visible());
}

TEST(FloatingBars, AWindowThatCouldNotBeFoundComesBack) {
    Rig rig;
    rig.Plain.cmdMinMax.Press();
    EXPECT_FALSE(rig.Form.Visible());
    rig.Bars.CloseBox();  // without an icon nothing else would bring it back
    EXPECT_TRUE(rig.Form.Visible());

    rig.Bars.IconIsThere(true);
    rig.Form.Visible(false);
    rig.Bars.IconIsThere(false);
    EXPECT_TRUE(rig.Form.Visible());
}

TEST(FloatingBars, PlaceAndVisibilityAreWrittenAtTheEnd) {
    Rig rig("4500;3000");
    EXPECT_EQ(rig.Kept("Pos"), "-");
    rig.Bars.Save();
    EXPECT_EQ(rig.Kept("Pos"), "4500;3000;1590;1605");
    EXPECT_EQ(rig.Kept("Visible"), "1");
    EXPECT_FALSE(rig.Cover.Visible());
}

TEST(FloatingBars, APictureStandsAloneTwoSecondsAfterThePointer) {
    Rig rig;
    rig.Media.CurrentMedia.Song = "Rain";
    rig.Web.Bodies["http://cover"] = std::string(2000, 'x');
    rig.Covers.LoadImage("http://cover");
    rig.RunFor(400);
    EXPECT_TRUE(rig.OverlayShown());
    rig.RunFor(2000);
    EXPECT_FALSE(rig.OverlayShown());
    EXPECT_FALSE(rig.Cover.picButtons.Visible());
    rig.Bars.PointerMoved();
    EXPECT_TRUE(rig.OverlayShown());
    rig.RunFor(2100);
    EXPECT_FALSE(rig.OverlayShown());
}

TEST(FloatingBars, ATitleWithoutAPictureStays) {
    Rig rig;
    rig.Media.CurrentMedia.Song = "Rain";
    rig.RunFor(10'000);
    EXPECT_TRUE(rig.OverlayShown());
    rig.Media.CurrentMedia.Song = "";
    rig.RunFor(2100);
    EXPECT_FALSE(rig.OverlayShown());
}

TEST(FloatingBars, AnAnswerThatIsTooShortForAPictureBringsTheTitleBack) {
    Rig rig;
    rig.Media.CurrentMedia.Song = "Rain";
    rig.Web.Bodies["http://cover"] = std::string(2000, 'x');
    rig.Web.Bodies["http://none"] = std::string(1000, 'x');
    rig.Covers.LoadImage("http://cover");
    rig.RunFor(5000);
    ASSERT_FALSE(rig.OverlayShown());
    rig.Covers.LoadImage("http://none");
    rig.RunFor(2500);
    EXPECT_TRUE(rig.OverlayShown());
}

TEST(FloatingBars, ARequestThatFailsLeavesTheBarAsItIs) {
    Rig rig;
    rig.Media.CurrentMedia.Song = "Rain";
    rig.Web.Bodies["http://cover"] = std::string(2000, 'x');
    rig.Covers.LoadImage("http://cover");
    rig.RunFor(5000);
    rig.Covers.LoadImage("http://nowhere");
    rig.RunFor(5000);
    EXPECT_FALSE(rig.OverlayShown());
}

TEST(FloatingBars, APressStopsTheTimer) {
    Rig rig;
    rig.Bars.PointerMoved();
    rig.Bars.PointerPressed();
    rig.RunFor(5000);
    EXPECT_TRUE(rig.OverlayShown());
}

}  // namespace
}  // namespace Corvetape::Test
