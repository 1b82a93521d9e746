#include "post/transfer/song_notes.h"

#include <gtest/gtest.h>

#include "audio/wav_file.h"
#include "sim/sim_machine.h"

namespace Corvetape {
namespace {

constexpr const char* Folder = "/home/user/temp";

class SongNotesTest : public testing::Test {
 protected:
    SongNotesTest() {
        Machine.Files.MakeFolder(Folder);
        Folders.SongTempFolder = Folder;
    }

    /// A song file whose header was never brought up to date, as a crash leaves it.
    void LeaveSong(const std::string& baseName, double seconds) {
        const std::string path = std::string(Folder) + "/" + baseName + ".wav";
        {
            auto file = WavFile::Create(Machine.Files, path, MakeWaveFormat(44100));
            ASSERT_TRUE(file);
            const std::vector<Frame> sound(static_cast<size_t>(44100 * seconds), Frame{1000, -1000});
            ASSERT_TRUE(file->Write(sound));
        }
        ASSERT_TRUE(Machine.Files.Patch(path, 4, std::string(4, '\0')));
        ASSERT_TRUE(Machine.Files.Patch(path, 40, std::string(4, '\0')));
    }

    static SongNote Note(bool wanted) {
        SongNote note;
        note.Run = "dead";
        note.Wanted = wanted;
        note.Media.StationName = "FM";
        note.Media.Artist = "Ann \"Quote\" O'Hara";
        note.Media.Song = "One\nTwo";
        note.Media.Album = " blanks ";
        note.Media.FilePart = 2;
        return note;
    }

    std::vector<LeftSong> Found() {
        std::vector<LeftSong> songs;
        for (const std::string& name : ListNotedSongs(Machine.Files, Folder)) {
            const auto song = ReadLeftSong(Machine.Files, Folder, name, Machine.System);
            if (song) songs.push_back(*song);
        }
        return songs;
    }

    bool Exists(const std::string& name) {
        return Machine.Files.FileSize(std::string(Folder) + "/" + name).has_value();
    }

    SimMachine Machine;
    WorkingFolders Folders;
    SongNotes Notes{Machine.Files, Folders};
};

TEST_F(SongNotesTest, ANoteComesBackAsItWasButForItsLineEnds) {
    Notes.Write("song", Note(true));
    const auto songs = Found();
    ASSERT_EQ(songs.size(), 1u);
    const SongNote& note = songs[0].Note;
    EXPECT_EQ(songs[0].BaseName, "song");
    EXPECT_TRUE(note.Wanted);
    EXPECT_EQ(note.Media.StationName, "FM");
    EXPECT_EQ(note.Media.Artist, "Ann \"Quote\" O'Hara");
    EXPECT_EQ(note.Media.Song, "One Two");
    EXPECT_EQ(note.Media.Album, " blanks ");
    EXPECT_EQ(note.Media.FilePart, 2);
}

TEST_F(SongNotesTest, HowSureTheCutsAreIsNotedOnceItIsKnown) {
    SongNote note = Note(true);
    EXPECT_EQ(SongNoteText(note).find("Begin="), std::string::npos);
    note.Begin = Certainty::Unsure;
    note.End = Certainty::Likely;
    Notes.Write("song", note);
    const auto songs = Found();
    ASSERT_EQ(songs.size(), 1u);
    EXPECT_EQ(songs[0].Note.Begin, Certainty::Unsure);
    EXPECT_EQ(songs[0].Note.End, Certainty::Likely);
}

TEST_F(SongNotesTest, AHugeTitleIsCut) {
    SongNote note = Note(true);
    note.Media.Song.assign(100'000, 'x');
    EXPECT_LT(SongNoteText(note).size(), 2000u);
}

TEST_F(SongNotesTest, ANoteIsWrittenOnlyWhenItSaysSomethingNew) {
    Notes.Write("song", Note(true));
    Machine.Files.Delete(std::string(Folder) + "/song.note");
    Notes.Write("song", Note(true));
    EXPECT_FALSE(Exists("song.note"));
    Notes.Write("song", Note(false));
    EXPECT_TRUE(Exists("song.note"));
    Notes.Write("other", Note(false));
    EXPECT_TRUE(Exists("other.note"));
}

TEST_F(SongNotesTest, ASongWithoutAFileHasNoNote) {
    Notes.Write("", Note(true));
    EXPECT_TRUE(Machine.Files.List(Folder).empty());
}

TEST_F(SongNotesTest, ARemovedNoteCanBeWrittenAgain) {
    Notes.Write("song", Note(true));
    Notes.Remove("song");
    EXPECT_FALSE(Exists("song.note"));
    Notes.Write("song", Note(true));
    EXPECT_TRUE(Exists("song.note"));
}

TEST_F(SongNotesTest, ASongOfARunThatStillRunsIsLeftAlone) {
    SongNote note = Note(true);
    note.Run = "run-1";
    Notes.Write("song", note);
    EXPECT_TRUE(Found().empty());
}

TEST_F(SongNotesTest, ASongWhoseEncoderStillWorksIsLeftToIt) {
    SongNote note = Note(true);
    note.HandedOn = 1;
    note.Encoder = "run-1";
    Notes.Store("song", note);
    EXPECT_TRUE(Found().empty());
    note.Encoder = "gone";
    Notes.Store("song", note);
    EXPECT_EQ(Found().size(), 1u);
}

TEST_F(SongNotesTest, ASongIsHandedOnASecondTimeAndThenNoMore) {
    SongNote note = Note(true);
    note.HandedOn = 1;
    LeaveSong("song", 40);
    Notes.Store("song", note);
    EXPECT_EQ(DecideLeftSong(Machine.Files, Folder, Found().at(0)).Fate, LeftSongFate::Transfer);
    note.HandedOn = 2;
    Notes.Store("song", note);
    EXPECT_TRUE(Found().empty());
}

TEST_F(SongNotesTest, ASongWhoseMusicIsThereIsNotHandedOnAgain) {
    SongNote note = Note(true);
    note.HandedOn = 1;
    note.Work = "run-1-7";
    LeaveSong("song", 40);
    Notes.Store("song", note);
    Machine.Files.Put(MadeFileOf(Folder, "run-1-7"), "/music/song.mp3\n");
    EXPECT_EQ(DecideLeftSong(Machine.Files, Folder, Found().at(0)).Fate, LeftSongFate::IsMade);
}

TEST_F(SongNotesTest, WhatAnEncoderHasNotFinishedGoesAndNothingElse) {
    SongNote note = Note(true);
    note.HandedOn = 1;
    note.Number = 7;
    note.Work = "run-1-7";
    note.MusicFolder = "/music/Pop";
    const std::vector<std::string> gone = {"/music/Pop/.corvet-run-1-7.part",
                                           "/music/Pop/.corvet-run-1-7.part.new",
                                           std::string(Folder) + "/7.run-1-7.part"};
    const std::vector<std::string> stay = {"/music/Pop/.corvet-run-2-7.part", "/music/Pop/Ann.mp3",
                                           std::string(Folder) + "/7.part"};
    for (const auto* paths : {&gone, &stay}) {
        for (const std::string& path : *paths) Machine.Files.Put(path, "x");
    }
    DeleteHalfMade(Machine.Files, Folder, note);
    for (const std::string& path : gone) EXPECT_FALSE(Machine.Files.Exists(path)) << path;
    for (const std::string& path : stay) EXPECT_TRUE(Machine.Files.Exists(path)) << path;
    note.Work = "../../music/Pop/Ann";
    DeleteHalfMade(Machine.Files, Folder, note);
    EXPECT_TRUE(Machine.Files.Exists("/music/Pop/Ann.mp3"));
}

TEST_F(SongNotesTest, ANameIsClaimedOnce) {
    EXPECT_EQ(Notes.Claim("song", Note(true)), SongNotes::Claimed::Yes);
    EXPECT_EQ(Notes.Claim("song", Note(true)), SongNotes::Claimed::Taken);
    Notes.Remove("song");
    FileFault fault;
    fault.Operation = FileOperation::Create;
    Machine.Files.AddFault(fault);
    EXPECT_EQ(Notes.Claim("song", Note(true)), SongNotes::Claimed::Failed);
}

TEST_F(SongNotesTest, AClaimThatIsBeingMadeIsNoLeftSong) {
    Machine.Files.Put(std::string(Folder) + "/song.note", "");
    EXPECT_TRUE(Found().empty());
}

TEST_F(SongNotesTest, AWantedSongIsRepairedAndTransferred) {
    LeaveSong("song", 40);
    Notes.Write("song", Note(true));
    const auto songs = Found();
    ASSERT_EQ(songs.size(), 1u);
    const LeftSongDecision decision = DecideLeftSong(Machine.Files, Folder, songs[0]);
    EXPECT_EQ(decision.Fate, LeftSongFate::Transfer);
    EXPECT_EQ(decision.Seconds, 40);
    const auto info = ReadWavInfo(Machine.Files, std::string(Folder) + "/song.wav");
    ASSERT_TRUE(info);
    EXPECT_EQ(info->DataBytes, 40u * 176400u);
}

TEST_F(SongNotesTest, AnUnwantedSongIsDeleted) {
    LeaveSong("song", 40);
    Notes.Write("song", Note(false));
    EXPECT_EQ(DecideLeftSong(Machine.Files, Folder, Found().at(0)).Fate, LeftSongFate::Delete);
}

TEST_F(SongNotesTest, AWantedSongIsKeptHoweverShortItWasWhenItWasBrokenOff) {
    LeaveSong("song", 1);
    Notes.Write("song", Note(true));
    const LeftSongDecision decision = DecideLeftSong(Machine.Files, Folder, Found().at(0));
    EXPECT_EQ(decision.Fate, LeftSongFate::Transfer);
    EXPECT_EQ(decision.Seconds, 1);
}

TEST_F(SongNotesTest, OfLessThanASecondOnlyWhatItsCloseHasKeptStays) {
    for (const bool closed : {false, true}) {
        SongNote note = Note(true);
        note.Closed = closed;
        const std::string name = closed ? "closed" : "broken off";
        LeaveSong(name, 0.5);
        Notes.Store(name, note);
        const LeftSongDecision decision = DecideLeftSong(Machine.Files, Folder, Found().at(0));
        Notes.Remove(name);
        EXPECT_EQ(decision.Fate, closed ? LeftSongFate::Transfer : LeftSongFate::Delete);
        EXPECT_EQ(decision.Seconds, 0);
    }
}

TEST_F(SongNotesTest, ANoteWithoutItsSongOrWithSomethingElseIsDeleted) {
    Notes.Write("song", Note(true));
    EXPECT_EQ(DecideLeftSong(Machine.Files, Folder, Found().at(0)).Fate, LeftSongFate::Delete);
    ASSERT_TRUE(Machine.Files.Append(std::string(Folder) + "/song.wav", "no sound at all"));
    EXPECT_EQ(DecideLeftSong(Machine.Files, Folder, Found().at(0)).Fate, LeftSongFate::Delete);
}

TEST_F(SongNotesTest, AWantedSongWhoseDiskFailsIsLeftForALaterStart) {
    LeaveSong("song", 40);
    Notes.Write("song", Note(true));
    const LeftSong song = Found().at(0);
    for (const FileOperation operation : {FileOperation::Patch, FileOperation::Read}) {
        FileFault fault;
        fault.Pattern = "*.wav";
        fault.Operation = operation;
        Machine.Files.AddFault(fault);
        EXPECT_EQ(DecideLeftSong(Machine.Files, Folder, song).Fate, LeftSongFate::Leave);
        Machine.Files.ClearFaults();
    }
    EXPECT_EQ(DecideLeftSong(Machine.Files, Folder, song).Fate, LeftSongFate::Transfer);
}

TEST_F(SongNotesTest, AHeaderWithoutSoundIsNothingToBeLeft) {
    LeaveSong("song", 0);
    Notes.Write("song", Note(true));
    EXPECT_EQ(DecideLeftSong(Machine.Files, Folder, Found().at(0)).Fate, LeftSongFate::Delete);
    ASSERT_TRUE(Machine.Files.Patch(std::string(Folder) + "/song.wav", 12, "none"));
    EXPECT_EQ(DecideLeftSong(Machine.Files, Folder, Found().at(0)).Fate, LeftSongFate::Delete);
}

TEST_F(SongNotesTest, DeletingTakesTheSongsOwnFilesOnly) {
    LeaveSong("song", 1);
    LeaveSong("song.2", 1);
    LeaveSong("songs", 1);
    ASSERT_TRUE(Machine.Files.Append(std::string(Folder) + "/song.jpg", "picture"));
    Notes.Write("song", Note(false));
    DeleteLeftSong(Machine.Files, Folder, Found().at(0));
    EXPECT_FALSE(Exists("song.wav"));
    EXPECT_FALSE(Exists("song.jpg"));
    EXPECT_FALSE(Exists("song.note"));
    EXPECT_TRUE(Exists("song.2.wav"));
    EXPECT_TRUE(Exists("songs.wav"));
}

TEST_F(SongNotesTest, SongsWithoutANoteWereLeftOnPurpose) {
    LeaveSong("Ann - One", 40);
    EXPECT_TRUE(Found().empty());
}

TEST_F(SongNotesTest, ASongWhoseNoteCannotBeReadIsLeftAlone) {
    LeaveSong("song", 40);
    Notes.Write("song", Note(true));
    FileFault fault;
    fault.Pattern = "*.note";
    fault.Operation = FileOperation::Read;
    Machine.Files.AddFault(fault);
    EXPECT_TRUE(Found().empty());
    Machine.Files.ClearFaults();
    EXPECT_EQ(Found().size(), 1u);
    Machine.Files.Put(std::string(Folder) + "/song.note", "\xFF\0[Song\nWanted=1");
    EXPECT_TRUE(Found().empty());
}

/// A closed song of 38 s, after whose end two seconds of its pause are in the file.
void PutClosedSong(SimFiles& disk, const std::string& path) {
    auto file = WavFile::Create(disk, path, MakeWaveFormat(44100));
    ASSERT_TRUE(file);
    ASSERT_TRUE(file->Write(std::vector<Frame>(40 * 44100, Frame{1000, -1000})));
    ASSERT_TRUE(file->TakeOff(2 * 176400));
    ASSERT_TRUE(file->FinishData() && file->FinishRiff() && file->Close());
}

TEST_F(SongNotesTest, ASongThatWasClosedKeepsItsEnd) {
    const std::string path = std::string(Folder) + "/song.wav";
    PutClosedSong(Machine.Files, path);
    SongNote handedOn = Note(true);
    handedOn.HandedOn = 1;
    SongNote waiting = Note(true);
    waiting.Closed = true;
    for (const SongNote& note : {handedOn, waiting}) {
        Notes.Store("song", note);
        EXPECT_EQ(DecideLeftSong(Machine.Files, Folder, Found().at(0)).Seconds, 38);
        EXPECT_EQ(ReadWavInfo(Machine.Files, path)->DataBytes, 38u * 176400u);
    }
}

TEST_F(SongNotesTest, AClaimWhoseSongHasAnotherNameYetIsOnlyANote) {
    SongNote note = Note(true);
    note.Closed = true;
    EXPECT_EQ(Notes.Claim("Ann - One", note), SongNotes::Claimed::Yes);
    EXPECT_EQ(DecideLeftSong(Machine.Files, Folder, Found().at(0)).Fate, LeftSongFate::IsMade);
}

}  // namespace
}  // namespace Corvetape
