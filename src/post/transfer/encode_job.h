#pragma once

#include <cstdint>
#include <string>

#include "core/media_state.h"
#include "core/settings/settings.h"
#include "platform/processes.h"
#include "post/encoders/encoder_table.h"
#include "post/transfer/song_names.h"

namespace Corvetape {

/// The options that `row`'s quality index stands for; null if the index is outside the list.
const std::string* QualityOptions(const Settings& settings, const EncoderRow& row);

/// A song and what it is to become. The parts outlive the request.
struct EncodeRequest {
    const Settings& Options;
    const WorkingFolders& Folders;
    const STATIONANDSONGDATA& Media;
    const SongNames& Names;
    int32_t SongCounter = 0;
    std::string SourceBase;  ///< temporary files without extension
    SameNameRule SameName = SameNameRule::KeepLonger;
    std::string Work;      ///< a name that no other job has, of this run or another one
    std::string Note;      ///< file that goes when the music is there
    std::string MadeFile;  ///< where the command writes what it has made, see ReadMadeMusic
    std::string Reader;    ///< number of the process that reads it
};

struct EncodeJob {
    HiddenJob Job;
    std::string Problem;  ///< why it cannot be done, in English; empty if it can
};

/// The job `name` that normalises and encodes a song and then deletes its temporary files, each as the
/// settings want it: the templates of `row` with their parameters. `processes` is asked whether it can read
/// them.
///
/// Parameters of an encoder's template: %1 temporary files without extension, %2 music file without
/// extension, %3 artist, %4 title, %5 the options of the chosen quality, %6 station, %7 log file for the
/// encoders, %8 album. Of the normalising template: %1 temporary files without extension, %2 log file, %3 a
/// number that no other song has, %4 folder of the temporary files with a slash at its end.
///
/// Commands find in their environment CORVET_SAME_NAME, the number of the rule for a music file of the same
/// name, CORVET_WORK, a name for files in the making, and CORVET_MADE, the file to write the path of the
/// music into when it is there.
///
/// The exit code is 0 if every command succeeded. Otherwise it is that of the first one that failed, and
/// the temporary files stay.
EncodeJob MakeEncodeJob(std::string name, const EncoderRow& row, const EncodeRequest& request,
                        const Processes& processes);

}  // namespace Corvetape
