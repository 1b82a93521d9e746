#include "post/transfer/encoder_start.h"

#include <utility>

#include "platform/files.h"
#include "platform/processes.h"

namespace Corvetape {

std::string EncoderStart::ProblemOf(const EncoderRow* row) const {
    const Settings& options = Place.Options;
    if (row == nullptr) return "There is no encoder " + std::to_string(options.Encoder) + ".";
    if (row->Qualities == nullptr || QualityOptions(options, *row) != nullptr) return {};
    return "There is no quality " + std::to_string(options.*row->QualityIndex) + " for " +
           std::string(row->Section) + ".";
}

EncodeRequest EncoderStart::RequestFor(const SongPassage& passage, const EncoderRow& row,
                                       const std::string& name) const {
    // What is being recorded keeps its name whatever the rule.
    const bool isInput = Names.IsInput(passage.Names.TargetBase + "." + std::string(row.Extension));
    const auto rule = static_cast<SameNameRule>(Place.Options.SameName);
    const std::string& folder = Place.Folders.SongTempFolder;
    return {Place.Options,
            Place.Folders,
            passage.Song,
            passage.Names,
            passage.Note.Number,
            folder + "/" + passage.Source,
            isInput ? SameNameRule::NumberAll : rule,
            passage.Note.Work,
            folder + "/" + name + ".note",
            MadeFileOf(folder, passage.Note.Work),
            Place.RunName.substr(0, Place.RunName.find('-'))};
}

TransferredSong EncoderStart::Start(SongPassage& passage, const std::string& name) {
    TransferredSong song;
    const std::string number = std::to_string(static_cast<uint32_t>(passage.Note.Number));
    passage.Note.Work = Place.RunName + "-" + number;
    passage.Note.MusicFolder = Place.Folders.Paths[1] + passage.Names.SubFolder;
    const auto note = [&] {
        if (Place.LeavesNotes) Notes.Store(name, passage.Note);
    };
    const EncoderRow* row = FindEncoder(Place.Options.Encoder);
    song.Problem = ProblemOf(row);
    if (!song.Problem.empty()) {
        note();
        return song;
    }
    song.JobLabel = row->JobLabel;
    const EncodeRequest request = RequestFor(passage, *row, name);
    const std::string jobName = "song " + number;
    EncodeJob encoding = MakeEncodeJob(jobName, *row, request, Programs);
    song.Problem = std::move(encoding.Problem);
    note();  // ahead of the command, which deletes it
    // Without a command the log line is written all the same, and the temporary song stays.
    if (!song.Problem.empty() || !Programs.StartHidden(encoding.Job)) return song;
    passage.Note.Encoder = Programs.StartedRun();
    if (Disk.FileSize(request.Note)) note();
    song.JobName = jobName;
    song.MadeFile = request.MadeFile;
    song.MusicFile = passage.Names.TargetBase + "." + std::string(row->Extension);
    return song;
}

}  // namespace Corvetape
