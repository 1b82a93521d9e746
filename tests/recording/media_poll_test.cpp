#include "recording/media_poll.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "media/noted_settings.h"
#include "recording/session_rig.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

STATIONANDSONGDATA Reading(const std::string& artist, const std::string& song) {
    STATIONANDSONGDATA media;
    media.StationName = "Station";
    media.Artist = artist;
    media.Song = song;
    media.Album = "Album";
    media.Cover = "cover";
    return media;
}

/// A poll whose provider gives the reading of the test.
class MediaPolls : public testing::Test, protected SessionRig, private Http {
 protected:
    MediaPolls() {
        Pause.EndOfSongDetection = EndOfSong::MediaData;
        Flags.RecordingEnabled = false;
        Lifecycle.Ticks = 2;
        Providers.Choose();
        Ring.AudioWriteIndex = 123;
        for (int i = 0; i < 5; ++i) Signal.History.Append(1000);
    }

    /// A tick that reads this; true if it counted as a change of song.
    bool Read(const STATIONANDSONGDATA& media) {
        Next = media;
        Cut = {};
        Covers.clear();
        Form.tmrGetMediaData.Timer.Raise();
        EXPECT_EQ(Cut.SongBoundary, Cut.CutPending);
        return Cut.CutPending;
    }

    bool Read(const std::string& artist, const std::string& song) { return Read(Reading(artist, song)); }

    int32_t LastOfHistory() const { return Signal.History[Signal.History.Size() - 1]; }

    /// The source reads what the test wants it to.
    class Source : public clsProvider {
     public:
        explicit Source(MediaPolls& test) : Test(test) {}
        void GetStationData() override {
            ++Test.Polls;
            Test.Media.CurrentMedia = Test.Next;
            if (Test.WhilePolled) Test.WhilePolled();
        }
        void GetSongData() override {}
        bool RestartRadio() override { return false; }

     private:
        MediaPolls& Test;
    };

    class Maker : public ProviderMaker {
     public:
        explicit Maker(MediaPolls& test) : Test(test) {}
        std::unique_ptr<clsProvider> Make() override {
            Test.Media.ProviderName = "Radio";
            return std::make_unique<Source>(Test);
        }

     private:
        MediaPolls& Test;
    };

    void Get(const std::string& address, size_t, std::function<void(const HttpAnswer&)>) override {
        Covers.push_back(address);
    }
    void Cancel() override {}

    STATIONANDSONGDATA Next;
    int Polls = 0;
    std::function<void()> WhilePolled;
    std::vector<std::string> Covers;
    NotedSettings Kept;
    ProviderAdoption Adoption{Media, Kept, Kept, Reports.Texts, nullptr};
    ProviderHost Sources{Media, Signal, Flags, Adoption};
    CoverImages Pictures{this, Machine.Files, Pause};
    Maker Makes{*this};
    ProviderChoice Providers{Sources, Pictures, {&Makes}};
    TitleCut Change{{Flags, Cut, Signal, Ring, Drain, Recording}, Requests};
    MediaPoll Poll{{Form, Media, Cut, Lifecycle, Pause, Providers, Change}};
};

TEST_F(MediaPolls, RunEvery500Milliseconds) {
    EXPECT_EQ(Form.tmrGetMediaData.Interval(), 500);
    EXPECT_FALSE(Form.tmrGetMediaData.Running());
}

TEST_F(MediaPolls, AskNobodyInTheFirstSecondOfTheProgram) {
    Lifecycle.Ticks = 1;
    EXPECT_FALSE(Read("A", "One"));
    EXPECT_EQ(Polls, 0);
    EXPECT_EQ(Media.CurrentMedia, STATIONANDSONGDATA{});
}

TEST_F(MediaPolls, AnotherTitleIsAnotherSong) {
    Read("A", "One");
    EXPECT_TRUE(Read("A", "Two"));
    EXPECT_EQ(Cut.CutIndex, 123);
}

TEST_F(MediaPolls, AnotherArtistIsAnotherSong) {
    Read("A", "One");
    EXPECT_TRUE(Read("B", "One"));
}

TEST_F(MediaPolls, TheSameReadingIsNoChange) {
    Read("A", "One");
    EXPECT_FALSE(Read("A", "One"));
}

TEST_F(MediaPolls, ATitleInOtherLettersIsAnotherSong) {
    Read("A", "One");
    EXPECT_TRUE(Read("A", "ONE"));
    EXPECT_TRUE(Read("A", "ONE "));  // blanks count too
}

TEST_F(MediaPolls, TheFirstTitleIsAChange) {
    EXPECT_TRUE(Read("A", "One"));
}

TEST_F(MediaPolls, AnEmptyTitleIsNoReading) {
    Read("A", "One");
    EXPECT_FALSE(Read("A", ""));
    EXPECT_THAT(Covers, IsEmpty());
    EXPECT_EQ(Media.CurrentMedia.Song, "");
}

TEST_F(MediaPolls, AfterAnEmptyTitleTheOldOneCountsAsAChange) {
    Read("A", "One");
    Read("A", "");
    EXPECT_TRUE(Read("A", "One"));
}

TEST_F(MediaPolls, FromOneEmptyTitleToAnotherNothingChanges) {
    Read("A", "");
    EXPECT_FALSE(Read("B", ""));
}

TEST_F(MediaPolls, ALateAlbumReachesTheSongInTheFileWithoutACut) {
    STATIONANDSONGDATA media = Reading("A", "One");
    Read(media);
    Media.SongMedia = media;
    media.Album = "Late";
    EXPECT_FALSE(Read(media));
    EXPECT_EQ(Media.SongMedia.Album, "Late");
    EXPECT_EQ(Media.SongMedia.Cover, "cover");
}

TEST_F(MediaPolls, ALateCoverReachesTheSongInTheFileWithoutACut) {
    STATIONANDSONGDATA media = Reading("A", "One");
    Read(media);
    Media.SongMedia = media;
    media.Cover = "late";
    EXPECT_FALSE(Read(media));
    EXPECT_EQ(Media.SongMedia.Cover, "late");
    EXPECT_THAT(Covers, ElementsAre("late"));
}

TEST_F(MediaPolls, AnAlbumOrCoverThatStaysIsNotCopied) {
    Read("A", "One");
    Media.SongMedia.Album = Media.SongMedia.Cover = "of the song in the file";
    EXPECT_FALSE(Read("A", "One"));
    EXPECT_EQ(Media.SongMedia.Album, "of the song in the file");
    EXPECT_EQ(Media.SongMedia.Cover, "of the song in the file");
}

TEST_F(MediaPolls, DoNotOverlapWhileTheUserIsAsked) {
    Read("A", "One");
    WhilePolled = [this] {
        Media.CurrentMedia = {};  // a new source begins empty
        Form.tmrGetMediaData.Timer.Raise();
        Media.CurrentMedia = Next;
    };
    EXPECT_FALSE(Read("A", "One"));
    EXPECT_EQ(Polls, 2);
    EXPECT_EQ(Media.PreviousMedia.Song, "One");
}

TEST_F(MediaPolls, CutNothingIfTheNewSourceHasEndedThem) {
    Form.tmrGetMediaData.Running(true);
    Read("A", "One");
    WhilePolled = [this] { Form.tmrGetMediaData.Running(false); };
    Cut = {};
    Next = Reading("B", "Two");
    Form.tmrGetMediaData.Timer.Raise();
    EXPECT_TRUE(Cut.SongBoundary);  // its data are taken over
    EXPECT_FALSE(Cut.CutPending);
}

TEST_F(MediaPolls, StationAndDescriptionAloneChangeNothing) {
    STATIONANDSONGDATA media = Reading("A", "One");
    Read(media);
    Media.SongMedia = media;
    media.StationName = "Other";
    media.StationDescr = "Other";
    EXPECT_FALSE(Read(media));
    EXPECT_EQ(Media.SongMedia.StationName, "Station");
}

TEST_F(MediaPolls, AChangeOfSongLeavesTheRecordOfTheFileAlone) {
    Read("A", "One");
    Media.SongMedia = Reading("A", "One");
    Read("B", "Two");
    EXPECT_EQ(Media.SongMedia.Song, "One");  // it is taken over some seconds into the song
}

TEST_F(MediaPolls, AChangeIsMarkedInTheLevelHistory) {
    Read("A", "One");
    EXPECT_EQ(LastOfHistory(), MarkMediaChange);
    EXPECT_TRUE(Signal.History.HistogramRedraw);
    EXPECT_EQ(Signal.History.Size(), 5U);
}

TEST_F(MediaPolls, NoChangeMarksNothing) {
    Read("A", "One");
    Signal.History.Append(700);
    Signal.History.HistogramRedraw = false;
    Read("A", "One");
    EXPECT_EQ(LastOfHistory(), 700);
    EXPECT_FALSE(Signal.History.HistogramRedraw);
}

TEST_F(MediaPolls, AChangeOnAnEmptyHistoryCutsAllTheSame) {
    Signal.History = {};
    EXPECT_TRUE(Read("A", "One"));
    EXPECT_EQ(Signal.History.Size(), 0U);
}

TEST_F(MediaPolls, TheCoverIsHandedOnWithEachReading) {
    Read("A", "One");
    EXPECT_THAT(Covers, ElementsAre("cover"));
    Next.Cover = "another";
    Read(Next);
    EXPECT_THAT(Covers, ElementsAre("another"));
}

TEST_F(MediaPolls, TheReadingBeforeIsKeptWhole) {
    STATIONANDSONGDATA first = Reading("A", "One");
    first.Size = 7;
    first.TempFileName = "file";
    Read(first);
    Read("B", "Two");
    EXPECT_EQ(Media.PreviousMedia, first);
    EXPECT_EQ(Media.CurrentMedia, Reading("B", "Two"));
}

TEST_F(MediaPolls, AlbumAndCoverThatComeTogetherBothReachTheSong) {
    STATIONANDSONGDATA media = Reading("A", "One");
    Read(media);
    Media.SongMedia = media;
    media.Album = "Late";
    media.Cover = "late";
    EXPECT_FALSE(Read(media));
    EXPECT_EQ(Media.SongMedia.Album, "Late");
    EXPECT_EQ(Media.SongMedia.Cover, "late");
    EXPECT_EQ(Media.SongMedia.Song, "One");
}

TEST_F(MediaPolls, ALateAlbumOrCoverLeavesTheRecordOfAnotherSongAlone) {
    Media.SongMedia = Reading("A", "One");
    Read("A", "One");
    STATIONANDSONGDATA media = Reading("A", "Two");
    Read(media);
    media.Album = media.Cover = "late";
    for (const auto& [pending, waiting] : {std::pair{true, false}, {false, true}, {false, false}}) {
        Cut.CutPending = pending;
        Form.tmrEncodeFile.Running(waiting);
        Next = media;
        Form.tmrGetMediaData.Timer.Raise();
        EXPECT_EQ(Media.SongMedia, Reading("A", "One"));
        media.Album += "r";
        media.Cover += "r";
    }
}

TEST_F(MediaPolls, ALateAlbumOrCoverLeavesARecordThatWaitsAloneUnderTheSameTitleToo) {
    Media.SongMedia = Reading("A", "One");
    Read("A", "One");
    STATIONANDSONGDATA media = Reading("A", "One");
    media.Album = "of the second time";
    for (const auto& [pending, waiting] : {std::pair{true, false}, {false, true}}) {
        Cut.CutPending = pending;
        Form.tmrEncodeFile.Running(waiting);
        Next = media;
        Form.tmrGetMediaData.Timer.Raise();
        EXPECT_EQ(Media.SongMedia.Album, "Album");
        media.Album += " ";
    }
}

TEST_F(MediaPolls, ASongThatEndsHasWhatWasReportedOfItLast) {
    Flags.RecordingEnabled = true;
    STATIONANDSONGDATA media = Reading("A", "One");
    Read(media);
    media.Album = media.Cover = "late";
    Read(media);
    Read("A", "");  // a reading that fails
    Read("A", "Two");
    ASSERT_TRUE(Cut.Ended);
    EXPECT_EQ(Cut.Ended->Media, media);
}

TEST_F(MediaPolls, ASongThatOthersHaveReadAheadOfTheFirstPollIsKnown) {
    Flags.RecordingEnabled = true;
    Media.ProviderName = "Page";
    Media.CurrentMedia = Reading("A", "One");
    Read("A", "Two");
    ASSERT_TRUE(Cut.Ended);
    EXPECT_EQ(Cut.Ended->Media, Reading("A", "One"));
}

TEST_F(MediaPolls, ASongOfASourceThatWasLostEndsWithNothingReported) {
    Flags.RecordingEnabled = true;
    Media.ProviderName = "Page";
    Read("A", "One");
    Media.ProviderName = "Player";
    Media.CurrentMedia = {};
    Read("A", "Two");
    ASSERT_TRUE(Cut.Ended);
    EXPECT_EQ(Cut.Ended->Media.Song, "");
}

TEST_F(MediaPolls, ASongThatEndsKeepsItsWishAndTheFlagsMeanTheNextOne) {
    Flags.RecordingEnabled = true;
    struct Row {
        bool Current, Next, Stop;
        bool CurrentThen, NextThen;
    };
    for (const Row& row : {Row{false, false, false, false, false}, Row{false, true, false, true, false},
                           Row{true, false, false, true, false}, Row{true, false, true, false, false}}) {
        Read("A", "One");
        Flags.RecordCurrentSong = row.Current;
        Flags.RecordNextSong = row.Next;
        Flags.StopAtEndOfSong = row.Stop;
        Read("A", "Two");
        ASSERT_TRUE(Cut.Ended);
        EXPECT_EQ(Cut.Ended->Wanted, row.Current);
        EXPECT_EQ(Flags.RecordCurrentSong, row.CurrentThen);
        EXPECT_EQ(Flags.RecordNextSong, row.NextThen);
        EXPECT_FALSE(Flags.StopAtEndOfSong);
        EXPECT_EQ(Form.chkStartStop[0].Value(), row.CurrentThen ? 1 : 0);
        EXPECT_EQ(Form.chkStartStop[1].Value(), 0);
    }
}

/// The titles of two songs, the second of which was heard for so many buffers when a third title comes.
class TwoTitles : public MediaPolls {
 protected:
    TwoTitles() {
        Flags.RecordingEnabled = true;
        Pause.EndOfSongThreshold = {3000, 3000};
        Pause.IgnoreShortSongs = 0;
    }

    void Change(bool firstWanted, bool secondWanted, int buffersBetween) {
        Cut.Settle();
        Ring.AudioReadIndex = Ring.AudioWriteIndex;
        Next = Reading("A", "First");
        Form.tmrGetMediaData.Timer.Raise();
        Cut.Settle();
        Play(20);
        Flags.RecordCurrentSong = firstWanted;
        Next = Reading("A", "Second");
        Form.tmrGetMediaData.Timer.Raise();
        Flags.RecordCurrentSong = secondWanted;
        for (int i = 0; i < buffersBetween; ++i) Play(1);
        Next = Reading("A", "Third");
        Form.tmrGetMediaData.Timer.Raise();
    }
};

TEST_F(TwoTitles, WithinOneWindowMoveTheCutAndTheShortOneGoesWithTheSongBefore) {
    for (const bool secondWanted : {true, false}) {
        Change(true, secondWanted, 40);
        ASSERT_TRUE(Cut.Ended);
        EXPECT_EQ(Cut.Ended->Media.Song, "First");
        EXPECT_TRUE(Cut.Ended->Wanted);
        EXPECT_EQ(Cut.CutIndex, Ring.AudioWriteIndex);
        EXPECT_TRUE(Closed.empty());
    }
}

TEST_F(TwoTitles, AreCutApartWhereOnlyTheShortOneIsWanted) {
    Change(false, true, 40);
    ASSERT_EQ(Closed.size(), 1U);
    EXPECT_EQ(Closed[0], SongFate::Unwanted);
    ASSERT_TRUE(Cut.Ended);
    EXPECT_EQ(Cut.Ended->Media.Song, "Second");
    EXPECT_TRUE(Cut.Ended->Wanted);
    EXPECT_TRUE(Cut.CutPending);
}

TEST_F(TwoTitles, AreCutApartOnceTheFirstCutIsDue) {
    Change(true, true, 60);
    ASSERT_EQ(Closed.size(), 1U);
    EXPECT_EQ(Closed[0], SongFate::Kept);
    EXPECT_EQ(Media.SongMedia.Song, "First");
    ASSERT_TRUE(Cut.Ended);
    EXPECT_EQ(Cut.Ended->Media.Song, "Second");
}

TEST_F(TwoTitles, OfWhichTheSecondWasNeverHeardLeaveTheSoundToTheFirst) {
    for (const bool firstWanted : {true, false}) {
        Change(firstWanted, true, 0);
        EXPECT_TRUE(Closed.empty());
        ASSERT_TRUE(Cut.Ended);
        EXPECT_EQ(Cut.Ended->Media.Song, "First");
        EXPECT_EQ(Cut.Ended->Wanted, firstWanted);
    }
}

TEST_F(TwoTitles, EndTheProgramIfTheirCutCannotMakeAFile) {
    Machine.Files.AddFault({.Pattern = "*.wav", .Operation = FileOperation::Create});
    Change(false, true, 40);
    EXPECT_EQ(Unloads, 1);
}

TEST_F(MediaPolls, WithoutARecordingASongEndsToo) {
    Flags.RecordNextSong = true;
    Read("A", "One");
    ASSERT_TRUE(Cut.Ended);
    EXPECT_FALSE(Cut.Ended->Wanted);
    EXPECT_FALSE(Flags.RecordNextSong);
    EXPECT_TRUE(Flags.RecordCurrentSong);
}

TEST_F(MediaPolls, AProviderThatFailsLeavesTheLastReading) {
    Read("A", "One");
    const STATIONANDSONGDATA before = Media.CurrentMedia;
    EXPECT_FALSE(Read(before));
    EXPECT_EQ(Media.PreviousMedia, before);
    EXPECT_EQ(Media.CurrentMedia, before);
}

}  // namespace
}  // namespace Corvetape::Test
