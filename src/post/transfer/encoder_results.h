#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "core/controls/event.h"
#include "core/reporter.h"
#include "core/settings/settings.h"
#include "platform/processes.h"
#include "post/transfer/transfer_job.h"

namespace Corvetape {

/// What a command has made, and what became of a music file of the same name.
struct MadeMusic {
    std::string MusicFile;
    std::optional<int32_t> Older;  ///< number that it got, or OlderIsReplaced; nothing if it is untouched
};

/// Reads what a command has written about its music file; nothing without it.
std::optional<MadeMusic> ReadMadeMusic(Files& files, const std::string& madeFile);

/// Deletes what commands have written for runs that are gone. For when no song of theirs is waiting any more,
/// as it says that the music of a song is there.
void DeleteLeftReports(Files& files, const std::string& songTempFolder, SystemInfo& runs);

/// The folder for temporary songs goes at the end of the program, with what is finished in it.
inline bool TempFolderGoes(const Settings& settings) {
    return settings.DelTempFolder && !settings.EncodeOffline;
}

/// Follows the songs of this run whose encoders run, to their music files.
class EncoderResults {
 public:
    /// Listens to the job. All of them outlive it.
    EncoderResults(TransferJob& job, Processes& processes, Files& files, Reporter& say);

    /// Takes the results of encoders that have ended, and raises what they mean. Called once a second while
    /// the program runs.
    void Collect();

    /// Deletes what is left of finished songs in the folder for temporary songs, and then the folder if it is
    /// empty, if the settings say so.
    void DeleteTempFolder(const Settings& options, const WorkingFolders& folders);

    /// The encoder of this name has made a music file, whose name may have a number after it; comes before
    /// JobEnded.
    Event<const std::string&, const MadeMusic&> MusicMade;

    Event<const JobResult&> JobEnded;  ///< an encoder has ended, well or not

 private:
    void EndJob(const JobResult& result);
    void ReportSameName(const MadeMusic& music, const std::string& expected);

    TransferJob& Job;
    Processes& Programs;
    Files& Disk;
    Reporter& Say;
    std::map<std::string, TransferredSong> Unfinished;  ///< by the name of the job
    std::vector<std::string> Finished;                  ///< temporary songs that have their music files
};

}  // namespace Corvetape
