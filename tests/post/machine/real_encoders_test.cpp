#include "post/machine/real_encoders.h"

namespace Corvetape {
namespace {

using ::testing::HasSubstr;
using Testing::RunShell;

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
    EXPECT_EQ(Tag("comment"), "");
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

TEST_P(TaggedFormats, NameAStationThatBeginsWithANumber) {
    for (const char* station : {"98.5 Kiss FM", "1LIVE", "17", "538", "-5", "+1", "(17) Hits", "2=2"}) {
        Media.SongMedia.StationName = station;
        PutSong(ToneFile(44100, 0.5, 8000));
        ASSERT_EQ(Transfer(GetParam()), 0) << Content(Root + "/log/encode.log");
        EXPECT_EQ(Tag("genre"), station);
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

/// The text of a frame of an ID3 tag, version 2.3, in UTF-16 that holds nothing but ASCII.
std::string TextOfFrame(const std::string& file, const std::string& frame) {
    const size_t at = file.find(frame);
    if (at == std::string::npos) return "(none)";
    size_t size = 0;
    for (size_t i = at + 4; i < at + 8; ++i) size = size << 8 | static_cast<unsigned char>(file[i]);
    std::string text = file.substr(at + 10, size);
    EXPECT_EQ(text.substr(0, 3), std::string("\x01\xFF\xFE"));
    std::erase(text.erase(0, 3), '\0');
    return text;
}

TEST_F(RealEncoders, TheGenreOfAnMp3FileIsText) {
    for (const char* station : {"98.5 Kiss FM", "1LIVE", "(17) Hits"}) {
        Media.SongMedia.StationName = station;
        PutSong(ToneFile(44100, 0.5, 8000));
        ASSERT_EQ(Transfer(1), 0);
        EXPECT_EQ(TextOfFrame(Content(Song.MusicFile), "TCON"), station);
    }
}

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
        Job.TransferSong(Media.SongMedia);
        made.push_back(Song.MusicFile);
    }
    ASSERT_TRUE(Processes.WaitForAll(JobLimit));
    for (const JobResult& result : Processes.TakeFinished()) EXPECT_EQ(result.ExitCode, 0) << result.Name;
    for (const std::string& path : made) EXPECT_TRUE(Exists(path)) << path;
}

TEST_F(RealEncoders, AMissingToolIsReportedAndKeepsTheSong) {
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
    WmaEncoderProbe probe(Files, Processes, Registry);
    const FoundTools found = FindTools(Files, places, Folders, &probe);
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
