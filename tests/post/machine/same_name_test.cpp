#include "post/machine/real_encoders.h"

namespace Corvetape {
namespace {

using Testing::RunShell;

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
        EXPECT_EQ(Older, 3);
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

/// Another run takes the name of the song at the first moment it is free: just before or just after a file
/// goes.
TEST_F(RealEncoders, ASongThatTakesTheNameAsSoonAsItIsFreeKeepsItsFile) {
    Options.DelTemp = true;
    Folders.CommonDataFolder = Root + "/tools";
    Files.MakeFolder(Folders.CommonDataFolder);
    const std::string name = Folders.SongTempFolder + "/Artist - Title";
    for (const bool before : {true, false}) {
        const std::string tool = "#!/bin/sh\nPATH=/usr/bin:/bin\nname=" + ShellWord(name) + "\nif " +
                                 (before ? "false" : "true") +
                                 "; then rm \"$@\"; shift $#; fi\n"
                                 "if ! [ -e \"$0.taken\" ] && ! [ -e \"$name.note\" ]; then\n"
                                 "printf '[Song]\\nRun=2-run\\n' >\"$name.note\"\n"
                                 "printf another >\"$0.taken\"; cp \"$0.taken\" \"$name.new\"; mv "
                                 "\"$name.new\" \"$name.wav\"\nfi\n"
                                 "[ $# = 0 ] || rm \"$@\"\n";
        ASSERT_TRUE(Files.ReplaceAtomically(Folders.CommonDataFolder + "/rm", tool));
        RunShell("chmod +x " + ShellWord(Folders.CommonDataFolder + "/rm"));
        PutSong(ToneFile(44100, 1, 8000));
        ASSERT_EQ(Transfer(0), 0) << Content(Root + "/log/encode.log");
        EXPECT_EQ(Content(Made), ToneFile(44100, 1, 8000));
        EXPECT_EQ(Exists(Folders.CommonDataFolder + "/rm.taken"), !before);
        EXPECT_EQ(Listing(Folders.SongTempFolder), before ? "" : "Artist - Title.note\nArtist - Title.wav\n");
    }
    EXPECT_EQ(Content(name + ".wav"), "another");
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
    EXPECT_EQ(Older, OlderIsReplaced);
    EXPECT_EQ(Content(Root + "/music/Radio \xc3\x84/Artist - Title.wav"), ToneFile(44100, 0.5, 4000));
}

TEST_F(RealEncoders, NoLinkIsWrittenThrough) {
    const std::string victim = Root + "/victim";
    for (const int32_t encoder : {0, 1, 2, 3}) {
        const std::string extension(EncoderTable[static_cast<size_t>(encoder)].Extension);
        ASSERT_TRUE(Files.ReplaceAtomically(victim, "precious"));
        PutSong(ToneFile(44100, 1, 8000));
        const std::string number = std::to_string(Counter.Total() + 1);
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
    otherMedia.SongMedia.Song = "Other";
    otherMedia.SongMedia.TempFileName = "other";
    SongCounter otherCounter(Registry);
    TransferJob other{{Options, otherFolders, "2-run", {}},
                      otherMedia,
                      Pause,
                      {Files, Processes, Journal, Notes, otherCounter, Pages}};
    std::string otherMusic;
    other.Transferred.Connect([&](const TransferredSong& each) { otherMusic = each.MusicFile; });
    PutSong(ToneFile(44100, 20, 8000));
    ASSERT_TRUE(Files.ReplaceAtomically(Folders.SongTempFolder + "/other.wav", ToneFile(44100, 10, 2000)));
    Options.Encoder = 0;
    Job.TransferSong(Media.SongMedia);
    other.TransferSong(otherMedia.SongMedia);
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

}  // namespace
}  // namespace Corvetape
