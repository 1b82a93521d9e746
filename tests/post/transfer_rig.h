#pragma once

#include "post/transfer/transfer_job.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "post/post_bench.h"
#include "post/run_shell.h"

namespace Corvetape {

inline constexpr const char* Stamp = "240131120000";

/// Prints the parameters of an encoder's template, %5 as it comes.
inline constexpr const char* PrintAll = "printf '%s\\0' %1 %2 a=%3 t=%4 %5 s=%6 %7 b=%8\\r\\n";

class TransferJobTest : public ::testing::Test {
 protected:
    void SetUp() override {
        Bench.Options.MusicFolderTemplate = "%Genre%";
        Bench.Options.MusicFileTemplate[1] = "%Artist% - %Title%";
        Bench.Options.EncoderCommand = {"printf wav44",   PrintAll,         "printf 'ogg %5'",
                                        "printf wma44%5", "printf wma48%5", "printf wav48"};
        Bench.Options.NormalizeCommand = "printf '%s\\0' n %1 %2 %3 %4\\r\\n";
        Bench.Options.MP3.EncParams = {"-b 128", "-V 2 --x"};
        Bench.Options.OggVorbis.EncParams = {"-q 1"};
        Bench.Options.WMA44.EncParams = {"44a"};
        Bench.Options.WMA48.EncParams = {"48a"};
        Bench.Options.MP3Quality = 1;
        Bench.Options.OggVorbisQuality = Bench.Options.WMA44Quality = Bench.Options.WMA48Quality = 0;
        STATIONANDSONGDATA& song = Bench.Media.SongMedia;
        song.StationName = "Pop";
        song.Artist = "Artist";
        song.Song = "Title";
        song.Album = "Album";
        song.TempFileName = Stamp;
        Bench.Sim.Files.Put("/temp/Corvet/" + std::string(Stamp) + ".wav", "sound");
        Job.Transferred.Connect([this](const TransferredSong& each) { Songs.push_back(each); });
    }

    bool Exists(const std::string& path) { return Bench.Sim.Files.Exists(path); }
    /// The temporary files but the notes.
    std::vector<std::string> TempFiles() {
        std::vector<std::string> names;
        for (const FileEntry& entry : Bench.Sim.Files.List("/temp/Corvet")) {
            if (!entry.Name.ends_with(".note")) names.push_back(entry.Name);
        }
        return names;
    }

    /// What the shell does with the command line of the last job.
    Testing::ShellRun RunLastJob() { return Testing::RunShell(Bench.Sim.Processes.Jobs.back().CommandLine); }

    Testing::PostBench Bench;
    int32_t SongCounter = 41;
    int32_t StoredCounter = 41;
    bool CounterFails = false;
    int32_t Unloads = 0;
    std::vector<std::string> Excluded;
    std::vector<TransferredSong> Songs;
    SongNotes Notes{Bench.Sim.Files, Bench.Folders};
    TransferJob MakeJob() {
        return {{Bench.Media, Bench.Options, Bench.Folders, Bench.Pause, Bench.Flags, SongCounter, "run-1",
                 Inputs},
                Bench.Sim.Files,
                Bench.Sim.Processes,
                Bench.Journal,
                Notes,
                {[this](int32_t list, const std::string& entry) {
                     Excluded.push_back(std::to_string(list) + " " + entry);
                 },
                 [this]() -> std::optional<int32_t> {
                     if (CounterFails) return std::nullopt;
                     return ++StoredCounter;
                 },
                 [this] { ++Unloads; }}};
    }

    std::vector<std::string> Inputs;
    TransferJob Job = MakeJob();
};

}  // namespace Corvetape
