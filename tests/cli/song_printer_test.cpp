#include "cli/song_printer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "cli/command.h"
#include "cli/run_support.h"
#include "cli/terminal_line.h"

namespace Corvetape {
namespace {

using Test::LinesOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

class SongPrinterTest : public testing::Test {
 protected:
    using Stream = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

    static std::string Printed(const Stream& stream) {
        std::fflush(stream.get());
        std::rewind(stream.get());
        std::string text(1 << 16, '\0');
        text.resize(std::fread(text.data(), 1, text.size(), stream.get()));
        return text;
    }

    std::vector<std::string> Songs() const { return LinesOf(Printed(songs)); }
    std::vector<std::string> Errors() const { return LinesOf(Printed(errors)); }

    /// The "file" of each JSON line, in order.
    std::vector<std::string> Files() const {
        std::vector<std::string> files;
        for (const std::string& line : Songs()) {
            const size_t begin = line.find("\"file\":\"") + 8;
            files.push_back(line.substr(begin, line.find('"', begin) - begin));
        }
        return files;
    }

    static ClosedSong Closed(const std::string& name, SongFate fate = SongFate::Kept) {
        ClosedSong song;
        song.Fate = fate;
        song.Frames = 44100 * 40;
        song.Whole = true;
        song.Media.TempFileName = name;
        return song;
    }

    static TransferredSong Transferred(const std::string& name, const std::string& job) {
        TransferredSong song;
        song.Media.TempFileName = name;
        song.JobName = job;
        song.JobLabel = "WAV44";
        song.MusicFile = job.empty() ? "" : "/music/" + name + ".wav";
        song.TempFile = "/temp/" + name + ".wav";
        return song;
    }

    Stream songs{std::tmpfile(), std::fclose};
    Stream errors{std::tmpfile(), std::fclose};
    SongPrinter json{SongFormat::Json, songs.get(), errors.get()};
    SongPrinter lines{SongFormat::Lines, songs.get(), errors.get()};
};

TEST_F(SongPrinterTest, WhatASongLacksIsInItsLineAndNotSaidAgain) {
    TerminalLine line;
    const ProgramEvents events = EventsTo(lines, line);
    ClosedSong damaged = Closed("a");
    damaged.LostFrames = 44100;
    testing::internal::CaptureStderr();
    events.SongClosed(damaged);
    events.Logged("INFO", "1.000 seconds of it are missing");
    events.Logged("INFO", "of another thing");
    events.SongClosed(Closed("b"));
    events.Logged("INFO", "a notice");
    EXPECT_THAT(LinesOf(testing::internal::GetCapturedStderr()),
                ElementsAre("corvetape-cli: of another thing", "corvetape-cli: a notice"));
    ASSERT_THAT(Songs(), SizeIs(2));
    EXPECT_THAT(Songs()[0], testing::HasSubstr("1.00 s lost"));
}

TEST_F(SongPrinterTest, ALineComesAtTheClose) {
    lines.Closed(Closed("a"));
    EXPECT_THAT(Songs(), ElementsAre("kept         0:40  a"));
}

TEST_F(SongPrinterTest, AnObjectWaitsForItsMusicFile) {
    json.Closed(Closed("a"));
    EXPECT_THAT(Songs(), IsEmpty());
    json.Transferred(Transferred("a", "song 1"));
    EXPECT_THAT(Songs(), IsEmpty());
    json.JobEnded({"song 1", 0});
    EXPECT_THAT(Files(), ElementsAre("/music/a.wav"));
    EXPECT_EQ(json.RefusedSongs(), 0);
}

TEST_F(SongPrinterTest, ObjectsComeInTheOrderOfClosing) {
    for (const char* name : {"a", "b", "c"}) json.Closed(Closed(name));
    for (const char* name : {"a", "b", "c"}) json.Transferred(Transferred(name, std::string("job ") + name));
    json.JobEnded({"job c", 0});
    json.JobEnded({"job b", 0});
    EXPECT_THAT(Songs(), IsEmpty());
    json.JobEnded({"job a", 0});
    EXPECT_THAT(Files(), ElementsAre("/music/a.wav", "/music/b.wav", "/music/c.wav"));
}

TEST_F(SongPrinterTest, ASongThatIsNotKeptWaitsForThoseBeforeItOnly) {
    json.Closed(Closed("a"));
    json.Closed(Closed("b", SongFate::Short));
    EXPECT_THAT(Songs(), IsEmpty());
    json.Transferred(Transferred("a", "job a"));
    json.JobEnded({"job a", 0});
    EXPECT_THAT(Files(), ElementsAre("/music/a.wav", ""));
    EXPECT_EQ(json.KeptSongs(), 1);
}

TEST_F(SongPrinterTest, TheNamesAreThoseOfTheHandOver) {
    json.Closed(Closed("a"));
    TransferredSong song = Transferred("a", "job");
    song.Media.Artist = "Ann";
    song.Media.Song = "One";
    json.Transferred(song);
    json.JobEnded({"job", 0});
    ASSERT_THAT(Songs(), SizeIs(1));
    EXPECT_THAT(Songs()[0], testing::HasSubstr("\"artist\":\"Ann\",\"title\":\"One\""));
}

TEST_F(SongPrinterTest, ARefusedSongIsNamed) {
    json.NameEncodeLog("/log/encode.log");
    json.Closed(Closed("a"));
    json.Transferred(Transferred("a", "job"));
    json.JobEnded({"job", 3});
    EXPECT_THAT(Files(), ElementsAre(""));
    EXPECT_THAT(Errors(), ElementsAre("corvetape-cli: no music file of a: its encoder ended with code 3, see "
                                      "/log/encode.log"))
        << "there is no temporary song that could stay";
    EXPECT_EQ(json.RefusedSongs(), 1);
}

TEST_F(SongPrinterTest, AnEncoderThatCouldNotBeStartedIsARefusal) {
    json.Closed(Closed("a"));
    json.Transferred(Transferred("a", ""));
    EXPECT_THAT(Files(), ElementsAre(""));
    EXPECT_THAT(Errors(), ElementsAre("corvetape-cli: no music file of a: its encoder could not be started"));
    EXPECT_EQ(json.RefusedSongs(), 1);
}

TEST_F(SongPrinterTest, AProblemWasReportedByTheLogAndCounts) {
    json.Closed(Closed("a"));
    TransferredSong song = Transferred("a", "");
    song.Problem = "There is no encoder 9.";
    json.Transferred(song);
    EXPECT_THAT(Files(), ElementsAre(""));
    EXPECT_THAT(Errors(), IsEmpty());
    EXPECT_EQ(json.RefusedSongs(), 1);
}

TEST_F(SongPrinterTest, ASongThatIsToStayAsItIsWasNotRefused) {
    json.Closed(Closed("a"));
    TransferredSong song = Transferred("a", "");
    song.JobLabel = "TEMP";
    json.Transferred(song);
    EXPECT_THAT(Files(), ElementsAre(""));
    EXPECT_EQ(json.RefusedSongs(), 0);
}

TEST_F(SongPrinterTest, ASongOfAnEarlierRunIsNotListedButItsRefusalIs) {
    json.Transferred(Transferred("old", "job"));
    json.Closed(Closed("a"));
    json.JobEnded({"job", 1});
    EXPECT_THAT(Songs(), IsEmpty()) << "the result of the old one went to the new one";
    ASSERT_THAT(Errors(), SizeIs(1));
    EXPECT_THAT(Errors()[0], StartsWith("corvetape-cli: no music file of old: "));
    EXPECT_EQ(json.RefusedSongs(), 1);
    EXPECT_EQ(json.KeptSongs(), 1);
}

TEST_F(SongPrinterTest, TheFileIsTheOneThatTheEncoderHasMade) {
    for (const char* job : {"job 1", "job 2"}) {
        json.Closed(Closed("a"));
        json.Transferred(Transferred("a", job));
    }
    json.MusicMade("job 2", "/music/a (2).wav");
    json.JobEnded({"job 1", 0});
    json.JobEnded({"job 2", 0});
    EXPECT_THAT(Files(), ElementsAre("/music/a.wav", "/music/a (2).wav"));
}

TEST_F(SongPrinterTest, AResultThatBelongsToNoSongIsPassedOver) {
    json.Closed(Closed("a"));
    json.JobEnded({"something else", 1});
    EXPECT_THAT(Songs(), IsEmpty());
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(SongPrinterTest, WhatStillWaitsComesAtTheEndWithoutAFile) {
    json.Closed(Closed("a"));
    json.Transferred(Transferred("a", "job"));
    json.Closed(Closed("b"));
    json.Finish();
    EXPECT_THAT(Files(), ElementsAre("", ""));
}

TEST_F(SongPrinterTest, ARefusalIsOneLineWhateverTheTitleHolds) {
    lines.Closed(Closed("a"));
    TransferredSong song = Transferred("a", "");
    song.Media.Song = "two\nlines\x1b[2J";
    lines.Transferred(song);
    ASSERT_THAT(Errors(), SizeIs(1));
    EXPECT_THAT(Errors()[0], StartsWith("corvetape-cli: no music file of two lines [2J: "));
}

}  // namespace
}  // namespace Corvetape
