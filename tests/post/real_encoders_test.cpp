#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "core/log.h"
#include "core/profile.h"
#include "core/text.h"
#include "platform/linux/linux_clock.h"
#include "platform/linux/linux_files.h"
#include "platform/linux/linux_folders.h"
#include "platform/linux/linux_processes.h"
#include "post/encoder_table.h"
#include "post/encoder_tools.h"
#include "post/run_shell.h"
#include "post/shell_quote.h"
#include "post/transfer_job.h"

namespace Corvetape {
namespace {

using ::testing::HasSubstr;
using Testing::RunShell;

constexpr std::chrono::milliseconds JobLimit{60000};
constexpr uint64_t ReadLimit = 64 * 1024 * 1024;

void Put(std::string& text, uint32_t value, size_t bytes) {
    for (size_t i = 0; i < bytes; ++i) text += static_cast<char>(value >> (8 * i) & 0xFF);
}

/// A song file as the recorder writes it: 16-bit stereo with a tone of this amplitude.
std::string ToneFile(uint32_t framesPerSecond, double seconds, double amplitude) {
    std::string samples;
    const auto frames = static_cast<uint32_t>(framesPerSecond * seconds);
    for (uint32_t i = 0; i < frames; ++i) {
        const double value = amplitude * std::sin(i * 2 * M_PI * 440 / framesPerSecond);
        Put(samples, static_cast<uint32_t>(static_cast<int32_t>(value)), 2);
        Put(samples, static_cast<uint32_t>(static_cast<int32_t>(-value)), 2);
    }
    const auto bytes = static_cast<uint32_t>(samples.size());
    std::string file = "RIFF";
    Put(file, bytes + 36, 4);
    file += "WAVEfmt ";
    Put(file, 16, 4);
    Put(file, 1, 2);
    Put(file, 2, 2);
    Put(file, framesPerSecond, 4);
    Put(file, framesPerSecond * 4, 4);
    Put(file, 4, 2);
    Put(file, 16, 2);
    file += "data";
    Put(file, bytes, 4);
    return file + samples;
}

/// Highest magnitude of a file as ToneFile makes it.
int32_t PeakOf(const std::string& file) {
    int32_t peak = 0;
    for (size_t i = 44; i + 1 < file.size(); i += 2) {
        int16_t sample = 0;
        std::memcpy(&sample, file.data() + i, 2);
        peak = std::max(peak, std::abs(int32_t{sample}));
    }
    return peak;
}

/// The commands that come with the program and the tools of this machine, in a folder of their own.
class RealEncoders : public ::testing::Test {
 protected:
    void SetUp() override {
        Root = RunShell("mktemp -d | tr -d '\\n'").Output;
        ASSERT_FALSE(Root.empty());
        Folders.Paths = {Root + "/temp", Root + "/music", Root + "/log"};
        Folders.SongTempFolder = Root + "/temp/Corvet";
        Folders.ProgramFolder = CORVETAPE_SOURCE_DIR "/data";
        for (const char* folder : {"/temp", "/temp/Corvet", "/music", "/log"})
            Files.MakeFolder(Root + folder);
        LoadCommands();
        Options.MusicFolderTemplate = "%Genre%";
        Options.MusicFileTemplate[1] = "%Artist% - %Title%";
        Media.SongMedia.StationName = "Radio \xc3\x84";
        Media.SongMedia.Artist = "Artist";
        Media.SongMedia.Song = "Title";
        Media.SongMedia.Album = "Album";
        Media.SongMedia.TempFileName = "240131120000";
        Job.Transferred.Connect([this](const TransferredSong& each) { Song = each; });
    }

    void TearDown() override { RunShell("rm -rf -- " + ShellWord(Root)); }

    void LoadCommands() {
        const Profile fix(Files, Folders.ProgramFolder + "/CorvetFix.ini");
        Options.NormalizeCommand = fix.ReadText("Encode", "Normalize", "", 254);
        for (size_t i = 0; i < EncoderTable.size(); ++i) {
            const EncoderRow& row = EncoderTable[i];
            Options.EncoderCommand[i] = fix.ReadText("Encode", row.TemplateKey, "", 254);
            if (row.Qualities == nullptr) continue;
            (Options.*row.Qualities).EncParams = Split(fix.ReadText(row.Section, "EncParams", "", 1023), ';');
        }
    }

    std::string TempPath(const std::string& extension) {
        return Folders.SongTempFolder + "/" + Media.SongMedia.TempFileName + extension;
    }

    void PutSong(const std::string& content) {
        ASSERT_TRUE(Files.ReplaceAtomically(TempPath(".wav"), content));
    }

    void PutCover(const std::string& measures) {
        const std::string cover = ShellWord(TempPath(".jpg"));
        ASSERT_EQ(RunShell("ffmpeg -nostdin -loglevel error -f lavfi -i nullsrc=s=" + measures +
                           ",geq='random(1)*255:128:128' -frames:v 1 -q:v 2 " + cover)
                      .ExitCode,
                  0);
    }

    /// Hands the song over and waits for its command. The exit code; -1 without one.
    int32_t Transfer(int32_t encoder) {
        Options.Encoder = encoder;
        Job.TransferSong();
        EXPECT_TRUE(Processes.WaitForAll(JobLimit));
        for (const JobResult& result : Processes.TakeFinished()) {
            if (result.Name != Song.JobName) continue;
            const auto music = ReadMadeMusic(Files, Song.MadeFile);
            Made = music ? music->MusicFile : "";
            Older = music ? music->Older : "";
            Files.Delete(Song.MadeFile);
            NoteStood = Exists(NoteOf(Song));
            Job.NoteEnd(Song, true);
            return result.ExitCode;
        }
        return -1;
    }

    static std::string NoteOf(const TransferredSong& song) {
        return song.TempFile.substr(0, song.TempFile.size() - 3) + "note";
    }

    std::string Content(const std::string& path) { return Files.ReadAll(path, ReadLimit).value_or("(none)"); }
    bool Exists(const std::string& path) { return Files.FileSize(path).has_value(); }

    /// What a reader of its own sees in the music file, such as "stream=sample_rate".
    std::string Probe(const std::string& entries) {
        std::string text = RunShell("ffprobe -v error -of default=nw=1:nk=1 -show_entries " + entries +
                                    " -- " + ShellWord("file:" + Song.MusicFile))
                               .Output;
        if (text.ends_with('\n')) text.pop_back();
        return text;
    }
    std::string Tag(const std::string& name) { return Probe("format_tags=" + name + ":stream_tags=" + name); }

    std::string Listing(const std::string& folder) {
        std::string names;
        for (const FileEntry& entry : Files.List(folder)) names += entry.Name + "\n";
        return names;
    }

    LinuxFiles Files;
    LinuxClock Clock;
    LinuxProcesses Processes;
    Settings Options;
    WorkingFolders Folders;
    MediaState Media;
    PauseSettings Pause;
    RecordingFlags Flags;
    Log Journal{Files, Clock, Options, Folders};
    int32_t SongCounter = 0;
    SongNotes Notes{Files, Folders};
    TransferJob Job{{Media, Options, Folders, Pause, Flags, SongCounter, "1-run", {}},
                    Files,
                    Processes,
                    Journal,
                    Notes,
                    {}};
    bool NoteStood = false;  ///< the note was there when the last command had ended
    std::string Made;        ///< what the last command says of its music file
    std::string Older;       ///< and of an older one
    TransferredSong Song;
    std::string Root;
};

/// Encoders with tags.
class TaggedFormats : public RealEncoders, public ::testing::WithParamInterface<int32_t> {};

TEST_P(TaggedFormats, HoldTheMediaDataAsTheyAre) {
    PutSong(ToneFile(44100, 1, 8000));
    ASSERT_EQ(Transfer(GetParam()), 0) << Content(Root + "/log/encode.log");
    EXPECT_EQ(Song.MusicFile, Root + "/music/Radio \xc3\x84/Artist - Title." +
                                  std::string(EncoderTable[static_cast<size_t>(GetParam())].Extension));
    EXPECT_EQ(Tag("artist"), "Artist");
    EXPECT_EQ(Tag("title"), "Title");
    EXPECT_EQ(Tag("album"), "Album");
    EXPECT_EQ(Tag("genre"), "Radio \xc3\x84");
    EXPECT_NEAR(std::stod(Probe("format=duration")), 1.0, 0.15);
}

TEST_P(TaggedFormats, HoldHostileMediaDataAndRunNoneOfThem) {
    const std::string mark = Root + "/owned";
    const std::string titles[] = {"-rf --help",
                                  "'; touch " + mark + "; '",
                                  "\"$(touch " + mark + ")`touch " + mark + "`",
                                  "%1 %5 \\r\\ntouch " + mark,
                                  "two\nlines",
                                  "\xc3\xa9\xe6\x97\xa5\xf0\x9f\x98\x80 = ; # \\ | < > &",
                                  "{a,b} [c] * ? ~ %03d",
                                  "@file",
                                  "|touch " + mark,
                                  "\xff\xfe no text"};
    for (const std::string& title : titles) {
        PutSong(ToneFile(44100, 0.5, 8000));
        Media.SongMedia.Song = title;
        Media.SongMedia.Artist = title;
        Media.SongMedia.Album = title;
        Media.SongMedia.StationName = title;
        ASSERT_EQ(Transfer(GetParam()), 0) << title << "\n" << Content(Root + "/log/encode.log");
        const std::string tag = TagText(title);
        EXPECT_EQ(Tag("title,artist,album,genre"), tag + "\n" + tag + "\n" + tag + "\n" + tag);
        EXPECT_FALSE(Exists(mark)) << title;
    }
}

TEST_P(TaggedFormats, AreMadeWithEmptyMediaData) {
    PutSong(ToneFile(44100, 0.5, 8000));
    Media.SongMedia = {};
    Media.SongMedia.TempFileName = "240131120000";
    ASSERT_EQ(Transfer(GetParam()), 0) << Content(Root + "/log/encode.log");
    EXPECT_EQ(Tag("title"), "");
    EXPECT_TRUE(Song.MusicFile.starts_with(Root + "/music/240131120000."));
}

TEST_P(TaggedFormats, AreMadeForAStationThatIsCalledByANumber) {
    PutSong(ToneFile(44100, 0.5, 8000));
    for (const char* station : {"538", "-5", "17"}) {
        Media.SongMedia.StationName = station;
        PutSong(ToneFile(44100, 0.5, 8000));
        EXPECT_EQ(Transfer(GetParam()), 0) << station;
    }
}

TEST_P(TaggedFormats, AreMadeInEveryQuality) {
    const EncoderRow& row = EncoderTable[static_cast<size_t>(GetParam())];
    const auto count = static_cast<int32_t>((Options.*row.Qualities).EncParams.size());
    for (int32_t quality = 0; quality < count; ++quality) {
        Options.*row.QualityIndex = quality;
        PutSong(ToneFile(48000, 0.5, 8000));
        EXPECT_EQ(Transfer(GetParam()), 0) << quality << Content(Root + "/log/encode.log");
    }
    EXPECT_GE(count, 5);
}

TEST_P(TaggedFormats, GetTheirCoverBesideThem) {
    PutSong(ToneFile(44100, 0.5, 8000));
    PutCover("200x200");
    const std::string cover = Content(TempPath(".jpg"));
    ASSERT_EQ(Transfer(GetParam()), 0);
    EXPECT_EQ(Content(Root + "/music/Radio \xc3\x84/Artist - Title.jpg"), cover);
    EXPECT_EQ(Listing(Folders.SongTempFolder), "Artist - Title.wav\n");
}

INSTANTIATE_TEST_SUITE_P(Each, TaggedFormats, ::testing::Values(1, 2, 3, 4));

TEST_F(RealEncoders, TheCoverGoesIntoTheTagsOfMp3AndOggAlsoIfItIsLarge) {
    for (const int32_t encoder : {1, 2}) {
        for (const char* measures : {"200x200", "1200x1200"}) {
            PutSong(ToneFile(44100, 0.5, 8000));
            PutCover(measures);
            ASSERT_EQ(Transfer(encoder), 0);
            EXPECT_THAT(Probe("stream=codec_name"), HasSubstr("mjpeg")) << encoder << measures;
            EXPECT_EQ(Tag("title"), "Title");
            const std::string side(measures, std::strchr(measures, 'x'));
            EXPECT_THAT(Probe("stream=width"), HasSubstr(side)) << encoder;
        }
    }
}

TEST_F(RealEncoders, ACoverThatIsNoPictureDoesNotHinderTheSong) {
    for (int32_t encoder = 0; encoder < 6; ++encoder) {
        PutSong(ToneFile(44100, 0.5, 8000));
        ASSERT_TRUE(Files.ReplaceAtomically(TempPath(".jpg"), "<html>not found</html>"));
        ASSERT_EQ(Transfer(encoder), 0) << encoder << Content(Root + "/log/encode.log");
        EXPECT_FALSE(Exists(Root + "/music/Radio \xc3\x84/Artist - Title.jpg"));
        EXPECT_EQ(Listing(Folders.SongTempFolder), "Artist - Title.jpg\nArtist - Title.wav\n");
    }
    EXPECT_THAT(Content(Root + "/log/encode.log"), HasSubstr("is no picture"));
}

TEST_F(RealEncoders, WmaComesAtTheRateOfItsName) {
    PutSong(ToneFile(48000, 0.5, 8000));
    ASSERT_EQ(Transfer(3), 0);
    EXPECT_EQ(Probe("stream=sample_rate"), "44100");
    PutSong(ToneFile(44100, 0.5, 8000));
    ASSERT_EQ(Transfer(4), 0);
    EXPECT_EQ(Probe("stream=sample_rate"), "48000");
}

TEST_F(RealEncoders, AWavFileOfItsRateIsHandedOnByteForByteWithoutCopying) {
    for (const int32_t encoder : {0, 5}) {
        const std::string song = ToneFile(encoder == 0 ? 44100 : 48000, 0.5, 8000);
        PutSong(song);
        ASSERT_EQ(Transfer(encoder), 0) << Content(Root + "/log/encode.log");
        EXPECT_EQ(Content(Song.MusicFile), song);
        EXPECT_EQ(RunShell("stat -c %h -- " + ShellWord(Song.MusicFile)).Output, "2\n");
    }
}

TEST_F(RealEncoders, AWavFileOfTheOtherRateIsConverted) {
    PutSong(ToneFile(48000, 1, 8000));
    ASSERT_EQ(Transfer(0), 0) << Content(Root + "/log/encode.log");
    EXPECT_EQ(Probe("stream=sample_rate"), "44100");
    EXPECT_NEAR(std::stod(Probe("format=duration")), 1.0, 0.001);
    EXPECT_NEAR(PeakOf(Content(Song.MusicFile)), 8000, 80);
    PutSong(ToneFile(44100, 1, 8000));
    ASSERT_EQ(Transfer(5), 0) << Content(Root + "/log/encode.log");
    EXPECT_EQ(Probe("stream=sample_rate"), "48000");
    EXPECT_NEAR(std::stod(Probe("format=duration")), 1.0, 0.001);
}

TEST_F(RealEncoders, ANewSongOfTheNameReplacesTheWavFileAndNotItsContent) {
    const std::string first = ToneFile(44100, 0.5, 8000);
    PutSong(first);
    ASSERT_EQ(Transfer(0), 0);
    ASSERT_EQ(RunShell("ln -- " + ShellWord(Song.MusicFile) + " " + ShellWord(Root + "/kept.wav")).ExitCode,
              0);
    const std::string second = ToneFile(44100, 0.6, 4000);
    PutSong(second);
    ASSERT_EQ(Transfer(0), 0);
    EXPECT_EQ(Content(Song.MusicFile), second);
    EXPECT_EQ(Content(Root + "/kept.wav"), first);
}

TEST_F(RealEncoders, OfTwoSongsOfANameTheLongerKeepsItAndTheOtherIsNumbered) {
    for (const int32_t encoder : {0, 1, 2, 3}) {
        const std::string extension(EncoderTable[static_cast<size_t>(encoder)].Extension);
        const std::string base = Root + "/music/Radio \xc3\x84/Artist - Title";
        PutSong(ToneFile(44100, 2, 8000));
        ASSERT_EQ(Transfer(encoder), 0);
        EXPECT_EQ(Made, base + "." + extension);
        const std::string longest = Content(Made);
        PutSong(ToneFile(44100, 1, 7000));
        ASSERT_EQ(Transfer(encoder), 0);
        EXPECT_EQ(Made, base + " (2)." + extension);
        EXPECT_EQ(Content(base + "." + extension), longest);
        PutSong(ToneFile(44100, 3, 6000));
        ASSERT_EQ(Transfer(encoder), 0) << Content(Root + "/log/encode.log");
        EXPECT_EQ(Made, base + "." + extension);
        EXPECT_EQ(Older, "3");
        EXPECT_EQ(Content(base + " (3)." + extension), longest);
    }
}

TEST_F(RealEncoders, AnOlderSongThatIsNumberedTakesItsCoverAlong) {
    PutSong(ToneFile(44100, 1, 8000));
    PutCover("100x100");
    ASSERT_EQ(Transfer(1), 0);
    const std::string cover = Root + "/music/Radio \xc3\x84/Artist - Title";
    const std::string first = Content(cover + ".jpg");
    PutSong(ToneFile(44100, 2, 8000));
    PutCover("50x50");
    ASSERT_EQ(Transfer(1), 0);
    EXPECT_EQ(Content(cover + " (2).jpg"), first);
    EXPECT_NE(Content(cover + ".jpg"), first);
}

TEST_F(RealEncoders, TheSameSongAgainIsThereOnce) {
    for (const int32_t encoder : {0, 1}) {
        for (int i = 0; i < 2; ++i) {
            PutSong(ToneFile(44100, 1, 8000));
            ASSERT_EQ(Transfer(encoder), 0);
        }
    }
    EXPECT_EQ(Listing(Root + "/music/Radio \xc3\x84"), "Artist - Title.mp3\nArtist - Title.wav\n");
}

TEST_F(RealEncoders, ByTheOtherRulesLengthDoesNotCount) {
    Options.SameName = 2;
    for (const double seconds : {1.0, 2.0, 0.5}) {
        PutSong(ToneFile(44100, seconds, 8000));
        ASSERT_EQ(Transfer(0), 0);
    }
    EXPECT_EQ(Listing(Root + "/music/Radio \xc3\x84"),
              "Artist - Title (2).wav\nArtist - Title (3).wav\nArtist - Title.wav\n");
    EXPECT_EQ(Content(Root + "/music/Radio \xc3\x84/Artist - Title.wav"), ToneFile(44100, 1, 8000));
    Options.SameName = 0;
    PutSong(ToneFile(44100, 0.5, 4000));
    ASSERT_EQ(Transfer(0), 0);
    EXPECT_EQ(Older, "0");
    EXPECT_EQ(Content(Root + "/music/Radio \xc3\x84/Artist - Title.wav"), ToneFile(44100, 0.5, 4000));
}

TEST_F(RealEncoders, NoLinkIsWrittenThrough) {
    const std::string victim = Root + "/victim";
    for (const int32_t encoder : {0, 1, 2, 3}) {
        const std::string extension(EncoderTable[static_cast<size_t>(encoder)].Extension);
        ASSERT_TRUE(Files.ReplaceAtomically(victim, "precious"));
        PutSong(ToneFile(44100, 1, 8000));
        const std::string number = std::to_string(SongCounter + 1);
        RunShell("mkdir -p " + ShellWord(Root + "/music/Radio \xc3\x84") + "; cd " +
                 ShellWord(Root + "/music/Radio \xc3\x84") + "; rm -f *; ln -s " + ShellWord(victim) +
                 " .corvet-1-run-" + number + ".part; ln -s " + ShellWord(victim) + " " +
                 ShellWord("Artist - Title." + extension));
        ASSERT_EQ(Transfer(encoder), 0) << Content(Root + "/log/encode.log");
        EXPECT_EQ(Content(victim), "precious") << encoder;
        EXPECT_EQ(Made, Root + "/music/Radio \xc3\x84/Artist - Title (2)." + extension);
    }
}

TEST_F(RealEncoders, TwoRunsThatNormalizeTheSameSongNumberDoNotMixTheirSound) {
    Options.Normalize = true;
    WorkingFolders otherFolders = Folders;
    MediaState otherMedia = Media;
    int32_t otherCounter = 0;
    otherMedia.SongMedia.Song = "Other";
    otherMedia.SongMedia.TempFileName = "other";
    TransferJob other{{otherMedia, Options, otherFolders, Pause, Flags, otherCounter, "2-run", {}},
                      Files,
                      Processes,
                      Journal,
                      Notes,
                      {}};
    std::string otherMusic;
    other.Transferred.Connect([&](const TransferredSong& each) { otherMusic = each.MusicFile; });
    PutSong(ToneFile(44100, 20, 8000));
    ASSERT_TRUE(Files.ReplaceAtomically(Folders.SongTempFolder + "/other.wav", ToneFile(44100, 10, 2000)));
    Options.Encoder = 0;
    Job.TransferSong();
    other.TransferSong();
    ASSERT_TRUE(Processes.WaitForAll(JobLimit));
    for (const JobResult& result : Processes.TakeFinished()) EXPECT_EQ(result.ExitCode, 0);
    EXPECT_EQ(Content(Song.MusicFile).size(), ToneFile(44100, 20, 1).size());
    EXPECT_EQ(Content(otherMusic).size(), ToneFile(44100, 10, 1).size());
}

TEST_F(RealEncoders, TheCommandDeletesTheNoteOnlyWhenTheMusicIsThere) {
    PutSong(ToneFile(44100, 1, 8000));
    ASSERT_EQ(Transfer(1), 0);
    EXPECT_FALSE(NoteStood);
    Options.MP3.EncParams.assign(6, "--no-such-option");
    PutSong(ToneFile(44100, 1, 8000));
    EXPECT_GT(Transfer(1), 0);
    EXPECT_TRUE(NoteStood);
}

TEST_F(RealEncoders, WithDelTempTheTemporaryFilesGoAndTheMusicStays) {
    Options.DelTemp = true;
    for (int32_t encoder = 0; encoder < 6; ++encoder) {
        PutSong(ToneFile(44100, 0.5, 8000));
        PutCover("100x100");
        ASSERT_EQ(Transfer(encoder), 0) << Content(Root + "/log/encode.log");
        EXPECT_EQ(Listing(Folders.SongTempFolder), "") << encoder;
        EXPECT_TRUE(Exists(Song.MusicFile));
        EXPECT_EQ(Probe("stream=codec_type").substr(0, 5), "audio");
    }
}

TEST_F(RealEncoders, WhatAnEncoderRefusesStaysAlsoWithDelTemp) {
    Options.DelTemp = true;
    Options.Normalize = true;
    const std::string refusals[] = {"--no-such-option", "/no-such-file.wav", "-c:a nothing", "-c:a nothing"};
    for (int32_t encoder = 1; encoder < 5; ++encoder) {
        const EncoderRow& row = EncoderTable[static_cast<size_t>(encoder)];
        (Options.*row.Qualities).EncParams = {refusals[encoder - 1]};
        Options.*row.QualityIndex = 0;
        PutSong(ToneFile(44100, 0.5, 8000));
        EXPECT_GT(Transfer(encoder), 0) << encoder;
        EXPECT_EQ(Listing(Folders.SongTempFolder), "Artist - Title.wav\n") << encoder;
        EXPECT_EQ(Listing(Root + "/music/Radio \xc3\x84"), "") << encoder;
    }
    EXPECT_THAT(Content(Root + "/log/encode.log"), HasSubstr("no-such-option"));
}

TEST_F(RealEncoders, ASongThatIsNoSoundFileIsRefusedByEveryEncoder) {
    Options.DelTemp = true;
    for (int32_t encoder = 0; encoder < 6; ++encoder) {
        PutSong("RIFF, but nothing more");
        EXPECT_GT(Transfer(encoder), 0) << encoder;
        EXPECT_EQ(Listing(Folders.SongTempFolder), "Artist - Title.wav\n") << encoder;
        EXPECT_EQ(Listing(Root + "/music/Radio \xc3\x84"), "") << encoder;
    }
}

TEST_F(RealEncoders, AnOlderMusicFileSurvivesARefusal) {
    PutSong(ToneFile(44100, 0.5, 8000));
    ASSERT_EQ(Transfer(1), 0);
    const std::string before = Content(Song.MusicFile);
    Options.MP3.EncParams.assign(6, "--no-such-option");
    PutSong(ToneFile(44100, 0.5, 8000));
    EXPECT_GT(Transfer(1), 0);
    EXPECT_EQ(Content(Song.MusicFile), before);
}

TEST_F(RealEncoders, AMusicFolderThatCannotBeMadeKeepsTheSong) {
    Options.DelTemp = true;
    RunShell("rmdir " + ShellWord(Root + "/music") + "; touch " + ShellWord(Root + "/music"));
    for (int32_t encoder = 0; encoder < 6; ++encoder) {
        PutSong(ToneFile(44100, 0.5, 8000));
        EXPECT_GT(Transfer(encoder), 0) << encoder;
        EXPECT_EQ(Listing(Folders.SongTempFolder), "Artist - Title.wav\n") << encoder;
    }
}

TEST_F(RealEncoders, TheCommandsMakeMissingFoldersOfTheMusic) {
    Options.MusicFolderTemplate = "%Genre%\\%Artist%";
    RunShell("rmdir " + ShellWord(Root + "/music"));
    PutSong(ToneFile(44100, 0.5, 8000));
    ASSERT_EQ(Transfer(0), 0);
    EXPECT_EQ(Song.MusicFile, Root + "/music/Radio \xc3\x84/Artist/Artist - Title.wav");
    EXPECT_TRUE(Exists(Song.MusicFile));
}

TEST_F(RealEncoders, NormalizingRaisesThePeak) {
    Options.Normalize = true;
    PutSong(ToneFile(44100, 1, 8000));
    ASSERT_EQ(Transfer(0), 0) << Content(Root + "/log/encode.log");
    EXPECT_NEAR(PeakOf(Content(Song.MusicFile)), 32393, 40);  // 0.1 dB below full scale
    EXPECT_EQ(Listing(Folders.SongTempFolder), "Artist - Title.wav\n");
}

TEST_F(RealEncoders, NormalizingWorksForEveryFormatAndWithDelTemp) {
    Options.Normalize = Options.DelTemp = true;
    for (int32_t encoder = 0; encoder < 6; ++encoder) {
        PutSong(ToneFile(44100, 0.5, 8000));
        ASSERT_EQ(Transfer(encoder), 0) << Content(Root + "/log/encode.log");
        EXPECT_EQ(Listing(Folders.SongTempFolder), "");
        EXPECT_TRUE(Exists(Song.MusicFile));
    }
}

TEST_F(RealEncoders, ASongThatCannotBeNormalizedIsEncodedAsItIs) {
    Options.Normalize = Options.DelTemp = true;
    const std::string song = ToneFile(44100, 0.5, 8000);
    PutSong(song);
    // The place for what sox makes cannot be had.
    for (const char* mark : {"", ".2", ".3"}) {
        ASSERT_TRUE(Files.MakeFolder(Folders.SongTempFolder + "/1.1-run-1" + mark + ".part"));
    }
    EXPECT_GT(Transfer(0), 0);
    EXPECT_EQ(Content(Song.MusicFile), song);
    EXPECT_EQ(Content(Song.TempFile), song);
}

TEST_F(RealEncoders, MusicThatIsMadeInTheTemporaryFolderIsNotDeleted) {
    Options.DelTemp = true;
    Options.UseMusicSubfolder = false;
    Folders.Paths[1] = Folders.SongTempFolder;
    for (int32_t encoder = 0; encoder < 6; ++encoder) {
        PutSong(ToneFile(44100, 0.5, 8000));
        ASSERT_EQ(Transfer(encoder), 0) << encoder << Content(Root + "/log/encode.log");
        EXPECT_TRUE(Exists(Song.MusicFile)) << encoder;
    }
}

TEST_F(RealEncoders, SeveralSongsAreEncodedSideBySide) {
    std::vector<std::string> made;
    Options.Encoder = 2;
    for (int32_t i = 0; i < 6; ++i) {
        Media.SongMedia.TempFileName = "song" + std::to_string(i);
        Media.SongMedia.Song = "Title " + std::to_string(i);
        PutSong(ToneFile(44100, 2, 8000));
        Job.TransferSong();
        made.push_back(Song.MusicFile);
    }
    ASSERT_TRUE(Processes.WaitForAll(JobLimit));
    for (const JobResult& result : Processes.TakeFinished()) EXPECT_EQ(result.ExitCode, 0) << result.Name;
    for (const std::string& path : made) EXPECT_TRUE(Exists(path)) << path;
}

TEST_F(RealEncoders, AMissingToolIsToldAndKeepsTheSong) {
    RunShell("mkdir " + ShellWord(Root + "/bin") +
             "; for i in date mkdir od tr rm mv ln cp sh stat wc; do ln -s \"$(command -v $i)\" " +
             ShellWord(Root + "/bin") + "; done");
    PutSong(ToneFile(48000, 0.5, 8000));
    const std::string base = TempPath("");
    for (const char* format : {"mp3", "ogg", "wma44", "wav44"}) {
        const auto run =
            RunShell("cd " + ShellWord(Folders.ProgramFolder) + "; PATH=" + ShellWord(Root + "/bin") +
                     " sh ./corvet-encode " + format + " source=" + base + " target=" + Root +
                     "/music/x log=" + Root + "/log/encode.log");
        EXPECT_EQ(run.ExitCode, 127) << format;
    }
    EXPECT_EQ(Listing(Root + "/music"), "");
    EXPECT_TRUE(Exists(TempPath(".wav")));
    for (const char* tool : {"lame", "oggenc", "ffmpeg", "sox"}) {
        EXPECT_THAT(Content(Root + "/log/encode.log"), HasSubstr(std::string(tool) + ": not found"));
    }
}

TEST_F(RealEncoders, ALogFileThatCannotBeWrittenHindersNothing) {
    RunShell("rmdir " + ShellWord(Root + "/log"));
    PutSong(ToneFile(44100, 0.5, 8000));
    EXPECT_EQ(Transfer(1), 0);
    EXPECT_TRUE(Exists(Song.MusicFile));
}

TEST_F(RealEncoders, TheToolsOfThisMachineAreFound) {
    LinuxFolders places(Root + "/home");
    const FoundTools found = FindTools(Files, places, Folders, [this](const std::string& ffmpeg) {
        return ProbeWmaEncoder(Processes, ffmpeg);
    });
    for (const EncoderTool tool :
         {EncoderTool::Lame, EncoderTool::OggEnc, EncoderTool::WmaEncoder, EncoderTool::Sox}) {
        EXPECT_TRUE(HasTool(found, tool));
    }
}

TEST_F(RealEncoders, AProgramThatOnlyIsCalledLikeTheWmaEncoderDoesNotCount) {
    EXPECT_EQ(ProbeWmaEncoder(Processes, "/bin/true"), "");
    EXPECT_EQ(ProbeWmaEncoder(Processes, Root + "/missing"), "");
}

}  // namespace
}  // namespace Corvetape
