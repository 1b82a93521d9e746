#pragma once

#include "post/transfer/transfer_job.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "post/lists/watch_pages.h"
#include "post/post_bench.h"
#include "post/transfer/song_counter.h"

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
        EXPECT_TRUE(Bench.Registry.WriteUserValue("", "TotalCountOfSongs", 41));
        Counter.Load();
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

    Testing::PostBench Bench;
    std::vector<TransferredSong> Songs;
    SongNotes Notes{Bench.Sim.Files, Bench.Folders};
    SongCounter Counter{Bench.Registry};
    WatchLists Lists{Bench.Sim.Files, Bench.Folders};
    WatchPages Pages{Bench.Form, Lists, Bench.Sim.Processes, Bench.Say};

    TransferJob MakeJob(std::vector<std::string> inputs = {}) {
        return {{Bench.Options, Bench.Folders, "run-1", std::move(inputs)},
                Bench.Media,
                Bench.Pause,
                {Bench.Sim.Files, Bench.Sim.Processes, Bench.Journal, Notes, Counter, Pages}};
    }

    /// The job, for the song in the record.
    void Transfer() { Job.TransferSong(Bench.Media.SongMedia); }

    TransferJob Job = MakeJob();
};

}  // namespace Corvetape
