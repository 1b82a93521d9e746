#include "post/transfer/encoder_results.h"
#include "post/transfer_rig.h"

namespace Corvetape {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

TEST_F(TransferJobTest, ASongWhoseNameAnUnfinishedOneHasGetsANumberAndLeavesItsFilesAlone) {
    Transfer();
    Bench.Sim.Files.Put("/temp/Corvet/second.wav", "second sound");
    Bench.Media.SongMedia.TempFileName = "second";
    Transfer();
    EXPECT_THAT(TempFiles(), ElementsAre("Artist - Title (2).wav", "Artist - Title.wav"));
    EXPECT_EQ(Bench.Sim.Files.Content("/temp/Corvet/Artist - Title.wav"), "sound");
    EXPECT_TRUE(Mentions(Bench.Sim.Processes.Jobs[1], "/temp/Corvet/Artist - Title (2)"));
    EXPECT_EQ(Songs[1].MusicFile, Songs[0].MusicFile) << "the command decides about the music";
}

TEST_F(TransferJobTest, ANoteStaysUntilTheMusicFileIsThere) {
    Bench.Sim.Files.Put("/temp/Corvet/" + std::string(Stamp) + ".note", "[Song]\n");
    Transfer();
    EXPECT_FALSE(Exists("/temp/Corvet/" + std::string(Stamp) + ".note"));
    const std::string note = Bench.Sim.Files.Content("/temp/Corvet/Artist - Title.note").value_or("");
    for (const char* line : {"Run=\"run-1\"", "HandedOn=1", "Number=42", "Work=\"run-1-42\"", "Wanted=1",
                             "Title=\"Title\"", "Encoder=\"job-1\""}) {
        EXPECT_THAT(note, HasSubstr(line));
    }
    Job.NoteEnd(Songs[0], false);
    EXPECT_TRUE(Exists("/temp/Corvet/Artist - Title.note"));
    Job.NoteEnd(Songs[0], true);
    EXPECT_FALSE(Exists("/temp/Corvet/Artist - Title.note"));
}

TEST_F(TransferJobTest, TheEndOfASongLeavesTheNoteOfALaterOneOfItsNameAlone) {
    const std::string note = "/temp/Corvet/Artist - Title.note";
    EncoderResults results{Job, Bench.Sim.Processes, Bench.Sim.Files, Bench.Say};
    Transfer();
    Bench.Sim.Files.Delete(note);  // as its command does
    Bench.Sim.Processes.DurationOf = [](const HiddenJob&) { return std::chrono::milliseconds(1000); };
    Bench.Media.SongMedia.TempFileName = "second";
    Bench.Sim.Files.Put("/temp/Corvet/second.wav", "second sound");
    Transfer();
    ASSERT_EQ(Songs[1].TempFile, Songs[0].TempFile);
    results.Collect();
    EXPECT_TRUE(Exists(note)) << "its command is still at work";
    Bench.Sim.Loop.Sleep(std::chrono::milliseconds(1000));
    results.Collect();
    EXPECT_FALSE(Exists(note));
}

TEST_F(TransferJobTest, TheEndOfASongLeavesTheNoteOfAnotherRunAlone) {
    Transfer();
    const std::string note = "/temp/Corvet/Artist - Title.note";
    Bench.Sim.Files.Put(note, "[Song]\nRun=run-2\n");
    Job.NoteEnd(Songs[0], true);
    EXPECT_TRUE(Exists(note));
}

TEST_F(TransferJobTest, ASongWhoseMusicWasMadeNeedsNoNoteEvenIfItsCommandWasKilled) {
    EncoderResults results{Job, Bench.Sim.Processes, Bench.Sim.Files, Bench.Say};
    const std::string note = "/temp/Corvet/Artist - Title.note";
    Bench.Sim.Processes.OnJob = [](const HiddenJob&) { return 143; };
    Transfer();
    results.Collect();
    EXPECT_TRUE(Exists(note));
    Bench.Sim.Files.Delete(note);
    Bench.Sim.Files.Put("/temp/Corvet/" + std::string(Stamp) + ".wav", "sound");
    Transfer();
    Bench.Sim.Files.Put(Songs[1].MadeFile, Songs[1].MusicFile + "\n");
    results.Collect();
    EXPECT_FALSE(Exists(note));
}

TEST_F(TransferJobTest, WhatIsEncodedOfflineHasNoNote) {
    Bench.Options.EncodeOffline = true;
    Transfer();
    EXPECT_FALSE(Exists("/temp/Corvet/Artist - Title.note"));
}

TEST_F(TransferJobTest, OfSongsThatStayTheLongerKeepsTheNameAndTheOtherIsNumbered) {
    Bench.Options.EncodeOffline = true;
    Transfer();
    const auto another = [&](const std::string& sound) {
        Bench.Sim.Files.Put("/temp/Corvet/next.wav", sound);
        Bench.Media.SongMedia.TempFileName = "next";
        Transfer();
    };
    EXPECT_EQ(Songs.back().OlderSong, std::nullopt);
    another("longer sound");
    EXPECT_EQ(Songs.back().OlderSong, 2) << "what the older one is called now";
    another("x");
    EXPECT_EQ(Songs.back().OlderSong, std::nullopt) << "it has got the number itself";
    EXPECT_THAT(TempFiles(),
                ElementsAre("Artist - Title (2).wav", "Artist - Title (3).wav", "Artist - Title.wav"));
    EXPECT_EQ(Bench.Sim.Files.Content("/temp/Corvet/Artist - Title.wav"), "longer sound");
    EXPECT_EQ(Bench.Sim.Files.Content("/temp/Corvet/Artist - Title (2).wav"), "sound");
    Bench.Options.SameName = 2;
    another("the longest sound of all");
    EXPECT_EQ(Bench.Sim.Files.Content("/temp/Corvet/Artist - Title.wav"), "longer sound");
    Bench.Options.SameName = 0;
    another("y");
    EXPECT_EQ(Songs.back().OlderSong, OlderIsReplaced) << "it was replaced";
    EXPECT_EQ(Bench.Sim.Files.Content("/temp/Corvet/Artist - Title.wav"), "y");
}

}  // namespace
}  // namespace Corvetape
