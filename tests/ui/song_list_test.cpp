// The list of the songs of this run, their pictures, and what can be done with them.
#include "ui/song_list.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QBuffer>
#include <QDialog>
#include <QImage>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QPlainTextEdit>
#include <QRandomGenerator>
#include <QTest>
#include <QTextDocument>

#include "media/cover_images.h"
#include "ui/text_keys.h"
#include "ui/ui_world.h"

namespace Corvetape::Test {
namespace {

/// A picture of one colour at its middle, with enough disorder around it to be no placeholder.
std::string PictureOf(const QColor& colour, int side) {
    QImage picture(side, side, QImage::Format_RGB32);
    QRandomGenerator random(1);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) picture.setPixel(x, y, random.generate() | 0xff000000U);
    }
    QPainter(&picture).fillRect(side / 4, side / 4, side / 2, side / 2, colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    picture.save(&buffer, "PNG");
    return bytes.toStdString();
}

QColor MiddleOf(QWidget* widget) {
    const QImage shown = widget->grab().toImage();
    return shown.pixelColor(shown.width() / 2, shown.height() / 2);
}

TEST(Covers, ThePictureOfTheSongIsShownLargeAndBesideItsEntry) {
    UiWorld world;
    world.Web.Bodies["http://cover/one"] = PictureOf(Qt::blue, 64);
    world.RunFor(5);
    auto* const cover = world.Find<QWidget>("picCover");
    EXPECT_NE(MiddleOf(cover), QColor(Qt::blue));
    world.Recorder->Shown().Covers.LoadImage("http://cover/one");
    world.Computer.Loop.RunFor(std::chrono::milliseconds(400));
    EXPECT_EQ(MiddleOf(cover), QColor(Qt::blue));
    EXPECT_EQ(world.Covers->Small("http://cover/one").width(), CoverPictures::SmallSide);
    world.Recorder->Shown().Covers.LoadImage("");
    EXPECT_NE(MiddleOf(cover), QColor(Qt::blue));  // the next song has none

    ClosedSong song;
    song.Fate = SongFate::Kept;
    song.Media.Cover = "http://cover/one";
    world.Songs.SongClosed(song);
    auto* const list = world.Find<QListView>("songs");
    const QPoint thumbnail = list->visualRect(list->model()->index(0, 0)).topLeft() + QPoint(26, 20);
    const QImage shown = list->viewport()->grab().toImage();
    EXPECT_EQ(shown.pixelColor(thumbnail), QColor(Qt::blue));
}

TEST(Covers, OnlySoManySmallOnesAreRemembered) {
    SimMachine computer;
    SimHttp web(computer.Loop);
    const PauseSettings pause;
    CoverImages source(&web, computer.Files, pause);
    const CoverPictures pictures(&source);
    const std::string picture = PictureOf(Qt::red, 40);
    for (size_t i = 0; i <= CoverPictures::Capacity; ++i) {
        const std::string address = "http://cover/" + std::to_string(i);
        web.Bodies[address] = picture;
        source.LoadImage(address);
        computer.Loop.RunFor(std::chrono::milliseconds(400));
    }
    EXPECT_TRUE(pictures.Small("http://cover/0").isNull());
    EXPECT_FALSE(pictures.Small("http://cover/1").isNull());
}

struct Opened {
    Opened() {
        world.RunFor(5);
        world.Form().chkStartStop[1].Value(1);
        world.RunFor(160);
        list = world.Find<SongList>("songs");
    }
    QAction* Action(QMenu& menu, const char* key) const { return menu.findChild<QAction*>(key); }

    UiWorld world;
    SongList* list = nullptr;
};

TEST(SongList, SaysHowSureTheCutsOfAKeptSongAre) {
    UiWorld world;
    world.RunFor(5);
    auto* const list = world.Find<QListView>("songs");
    const auto read = [&](SongFate fate, Certainty begin, Certainty end) {
        ClosedSong song;
        song.Fate = fate;
        song.Trust.Begin = begin;
        song.Trust.End = end;
        world.Songs.SongClosed(song);
        return list->model()->index(0, 0).data(Qt::AccessibleTextRole).toString();
    };
    EXPECT_TRUE(read(SongFate::Kept, Certainty::Unsure, Certainty::Sure).contains("begin unsure, end sure"));
    EXPECT_TRUE(
        list->model()->index(0, 0).data(Qt::ToolTipRole).toString().contains("begin unsure, end sure"));
    EXPECT_TRUE(read(SongFate::Kept, Certainty::None, Certainty::Likely).contains("end likely"));
    EXPECT_FALSE(read(SongFate::Kept, Certainty::None, Certainty::None).contains("end"));
    EXPECT_FALSE(read(SongFate::Short, Certainty::Unsure, Certainty::Unsure).contains("unsure"));
}

TEST(SongList, SaysWhyASongIsNotWhole) {
    UiWorld world;
    world.RunFor(5);
    auto* const list = world.Find<QListView>("songs");
    const auto tip = [&](ClosedSong song) {
        song.Fate = SongFate::Kept;
        world.Songs.SongClosed(song);
        return list->model()->index(0, 0).data(Qt::ToolTipRole).toString();
    };
    ClosedSong song;
    EXPECT_TRUE(tip(song).contains("Not recorded from its beginning to its end"));
    song.Trust.Dropouts = 2;
    EXPECT_TRUE(tip(song).contains("Short dropouts: 2"));
    EXPECT_FALSE(tip(song).contains("beginning"));
    song.Trust = {};
    song.Trust.End = Certainty::Unsure;
    EXPECT_FALSE(tip(song).contains("Not recorded"));
    song.Trust.AgainstEvidence = true;
    EXPECT_TRUE(tip(song).contains("Ended by its title alone"));
    song.Trust.AgainstEvidence = false;
    song.Trust.End = Certainty::Sure;
    song.Whole = true;
    EXPECT_FALSE(tip(song).contains("Not recorded"));
}

TEST(SongMenu, PutsASongOnTheLists) {
    Opened opened;
    QMenu menu;
    opened.list->FillMenu(menu, 0);
    const std::string name = opened.world.Recorder->Shown().Songs.ListName(opened.world.Songs.Songs()[0]);
    ASSERT_FALSE(name.empty());
    opened.Action(menu, Key::PutOnBlacklist)->trigger();
    ASSERT_EQ(opened.world.Form().lstWatch[1].Items().size(), 1U);
    EXPECT_EQ(opened.world.Form().lstWatch[1].Items()[0].Text, name);
    EXPECT_TRUE(opened.world.Form().lstWatch[0].Items().empty());
    opened.Action(menu, Key::PutOnWhiteList)->trigger();
    EXPECT_EQ(opened.world.Form().lstWatch[0].Items().size(), 1U);
}

TEST(SongMenu, ShowsTheLinesOfTheLogThatNameTheSong) {
    Opened opened;
    const RunSong song = opened.world.Songs.Songs()[0];
    QMenu menu;
    opened.list->FillMenu(menu, 0);
    opened.Action(menu, Key::ShowLogLines)->trigger();
    const auto* const box = opened.list->findChild<QDialog*>("logLines");
    ASSERT_NE(box, nullptr);
    const QString text = box->findChild<QPlainTextEdit*>()->toPlainText();
    EXPECT_TRUE(text.contains(QString::fromStdString(song.Media.Song))) << text.toStdString();
    EXPECT_EQ(text.count('\n'), 0) << "the other lines of the log are left out";
}

TEST(SongMenu, PlaysASongAndOpensItsFolder) {
    Opened opened;
    ClosedSong kept;
    kept.Fate = SongFate::Kept;
    kept.TempPath = "/home/user/My music/kept #1.wav";
    opened.world.Computer.Files.MakeFolders("/home/user/My music");
    opened.world.Computer.Files.Put(kept.TempPath, "x");
    opened.world.Songs.SongClosed(kept);
    QMenu menu;
    opened.list->FillMenu(menu, 0);
    const auto& opens = opened.world.Computer.Processes.ShellCalls;
    opened.Action(menu, Key::OpenFolder)->trigger();
    ASSERT_FALSE(opens.empty());
    EXPECT_EQ(opens.back().Path, "/home/user/My music");
    opened.Action(menu, Key::PlaySong)->trigger();
    ASSERT_FALSE(opens.empty());
    EXPECT_EQ(opens.back().Path, kept.TempPath);
}

TEST(SongList, PlaysASongByADoubleClickOrByEnter) {
    Opened opened;
    ClosedSong kept;
    kept.Fate = SongFate::Kept;
    kept.TempPath = "/home/user/kept.wav";
    opened.world.Computer.Files.Put(kept.TempPath, "x");
    opened.world.Songs.SongClosed(kept);
    opened.world.Window->grab();  // so that it is laid out
    const auto& opens = opened.world.Computer.Processes.ShellCalls;
    QWidget* const ground = opened.list->viewport();
    const QPoint place = opened.list->visualRect(opened.list->model()->index(0, 0)).center();
    QTest::mouseClick(ground, Qt::LeftButton, {}, place);
    EXPECT_TRUE(opens.empty()) << "one click selects it";
    QTest::mouseDClick(ground, Qt::LeftButton, {}, place);
    ASSERT_EQ(opens.size(), 1U);
    EXPECT_EQ(opens.back().Path, kept.TempPath);
    QTest::keyClick(opened.list, Qt::Key_Return);
    EXPECT_EQ(opens.size(), 2U);
}

TEST(SongList, ShowsTheNameOfAFileAsItIs) {
    Opened opened;
    ClosedSong kept;
    kept.Fate = SongFate::Kept;
    kept.TempPath = "/home/user/<img src=x><b>loud.wav";
    opened.world.Songs.SongClosed(kept);
    const QString tip = opened.list->model()->index(0, 0).data(Qt::ToolTipRole).toString();
    QTextDocument read;
    read.setHtml(tip);
    EXPECT_TRUE(read.toPlainText().startsWith("/home/user/<img src=x><b>loud.wav")) << tip.toStdString();
}

TEST(SongMenu, OffersOnlyWhatCanBeDone) {
    Opened opened;
    const auto& songs = opened.world.Songs.Songs();
    size_t dropped = 0;
    while (dropped < songs.size() && songs[dropped].Fate == SongFate::Kept) ++dropped;
    ASSERT_LT(dropped, songs.size());
    QMenu gone;
    opened.list->FillMenu(gone, static_cast<int>(dropped));
    EXPECT_FALSE(opened.Action(gone, Key::KeepSong)->isEnabled());
    EXPECT_FALSE(opened.Action(gone, Key::PlaySong)->isEnabled());
    // Its recording is still there.
    opened.world.Computer.Files.Put(songs[dropped].TempFile, std::string(200'000, 'x'));
    QMenu left;
    opened.list->FillMenu(left, static_cast<int>(dropped));
    ASSERT_TRUE(opened.Action(left, Key::KeepSong)->isEnabled());
    const uint64_t kept = opened.world.Songs.KeptSongs();
    opened.Action(left, Key::KeepSong)->trigger();
    EXPECT_EQ(songs[dropped].Fate, SongFate::Kept);
    EXPECT_EQ(songs[dropped].Progress, SongProgress::Encoding);
    EXPECT_EQ(opened.world.Songs.KeptSongs(), kept + 1);
}

TEST(SongMenu, MeansItsSongAlsoWhenANewOneHasComeMeanwhile) {
    Opened opened;
    const auto& songs = opened.world.Songs.Songs();
    ClosedSong dropped;
    dropped.Fate = SongFate::Unwanted;
    dropped.Media.Song = "Dropped";
    dropped.TempPath = "/home/user/dropped.wav";
    opened.world.Computer.Files.Put(dropped.TempPath, std::string(200'000, 'x'));
    opened.world.Songs.SongClosed(dropped);
    QMenu menu;
    opened.list->FillMenu(menu, 0);
    ClosedSong newer;
    newer.Fate = SongFate::Unwanted;
    newer.Media.Song = "Newer";
    opened.world.Songs.SongClosed(newer);

    opened.Action(menu, Key::KeepSong)->trigger();
    EXPECT_EQ(songs[0].Fate, SongFate::Unwanted);
    EXPECT_EQ(songs[1].Fate, SongFate::Kept);
    opened.Action(menu, Key::ShowLogLines)->trigger();
    EXPECT_TRUE(opened.list->findChild<QDialog*>("logLines")->windowTitle().contains("Dropped"));
}

TEST(SongMenu, DoesNotCallASongKeptWhoseRecordingHasGoneMeanwhile) {
    Opened opened;
    ClosedSong dropped;
    dropped.Fate = SongFate::Unwanted;
    dropped.TempPath = "/home/user/dropped.wav";
    opened.world.Computer.Files.Put(dropped.TempPath, std::string(200'000, 'x'));
    opened.world.Songs.SongClosed(dropped);
    QMenu menu;
    opened.list->FillMenu(menu, 0);
    opened.world.Computer.Files.Delete(dropped.TempPath);
    opened.Action(menu, Key::KeepSong)->trigger();
    EXPECT_EQ(opened.world.Songs.Songs()[0].Fate, SongFate::Unwanted);
}

TEST(RecordingPage, SaysThatTheDiskIsNearlyFull) {
    UiWorld world;
    world.RunFor(5);
    world.Form().chkStartStop[0].Value(1);
    world.Recorder->Values().Messages.RaiseInfo(833);
    world.Recorder->Values().Flags.DisableAtEndOfSong = true;
    world.RunFor(1);
    EXPECT_EQ(world.Find<QLabel>("lblPresentState")->text(), "Disk nearly full");
}

TEST(RecordingPage, ShowsAlbumStationAndTheTimeLeftWhereTheyAreKnown) {
    UiWorld world;
    world.RunFor(20);
    for (const char* name : {"txtAlbum", "txtStation"}) {
        EXPECT_TRUE(world.Find<QWidget>(name)->isVisible()) << name;
    }
    EXPECT_FALSE(world.Find<QWidget>("txtTimeRemaining")->isVisible());
    world.Form().txtTimeRemaining.Text("-1:20");
    world.RunFor(1);
    EXPECT_TRUE(world.Find<QWidget>("txtTimeRemaining")->isVisible());
}

}  // namespace
}  // namespace Corvetape::Test
