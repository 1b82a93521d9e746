#include "post/transfer/encode_job.h"

#include <string_view>
#include <utility>
#include <vector>

#include "core/text/text.h"

namespace Corvetape {

namespace {

TemplateParameter Text(std::string value) {
    return {ParameterKind::Text, std::move(value)};
}

std::string EncodeLog(const WorkingFolders& folders) {
    return folders.Paths[2] + "/encode.log";
}

std::vector<TemplateParameter> EncoderParameters(const EncoderRow& row, const EncodeRequest& request) {
    const std::string* options = QualityOptions(request.Options, row);
    return {Text(request.SourceBase),
            Text(request.Names.TargetBase),
            Text(TagText(request.Media.Artist)),
            Text(TagText(request.Media.Song)),
            {ParameterKind::Options, options != nullptr ? *options : std::string()},
            Text(TagText(request.Media.StationName)),
            Text(EncodeLog(request.Folders)),
            Text(TagText(request.Media.Album))};
}

std::vector<TemplateParameter> NormalizeParameters(const EncodeRequest& request) {
    return {Text(request.SourceBase), Text(EncodeLog(request.Folders)),
            Text(std::to_string(static_cast<uint32_t>(request.SongCounter))),
            Text(request.Folders.SongTempFolder + "/")};
}

std::vector<std::string> ToolFolders(const WorkingFolders& folders) {
    std::vector<std::string> result;
    for (const std::string* folder : {&folders.ProgramFolder, &folders.CommonDataFolder}) {
        if (!folder->empty()) result.push_back(*folder);
    }
    return result;
}

std::string BrokenTemplate(std::string_view key) {
    return "The command " + std::string(key) + " has a quotation or a parenthesis that is not closed.";
}

}  // namespace

const std::string* QualityOptions(const Settings& settings, const EncoderRow& row) {
    if (row.Qualities == nullptr) return nullptr;
    const std::vector<std::string>& options = (settings.*row.Qualities).EncParams;
    const int32_t index = settings.*row.QualityIndex;
    if (index < 0 || static_cast<size_t>(index) >= options.size()) return nullptr;
    return &options[static_cast<size_t>(index)];
}

EncodeJob MakeEncodeJob(std::string name, const EncoderRow& row, const EncodeRequest& request,
                        const Processes& processes) {
    const auto encoder = static_cast<size_t>(&row - EncoderTable.data());
    const Settings& options = request.Options;
    if (TrimBlanks(options.EncoderCommand[encoder]).empty()) {
        return {{}, "There is no command " + std::string(row.TemplateKey) + " to make this format."};
    }
    CommandTemplate normalize{options.NormalizeCommand, NormalizeParameters(request)};
    if (options.Normalize && !processes.IsWhole(normalize)) return {{}, BrokenTemplate("Normalize")};
    CommandTemplate encode{options.EncoderCommand[encoder], EncoderParameters(row, request)};
    if (!processes.IsWhole(encode)) return {{}, BrokenTemplate(row.TemplateKey)};

    HiddenJob job{std::move(name), {}, request.Folders.ProgramFolder, ToolFolders(request.Folders), {}};
    job.Environment = {{"CORVET_SAME_NAME", std::to_string(static_cast<int32_t>(request.SameName))},
                       {"CORVET_WORK", request.Work},
                       {"CORVET_MADE", request.MadeFile}};
    if (options.Normalize) job.Steps.emplace_back(std::move(normalize));
    // Normalising may have put another file in the place of the song.
    if (options.DelTemp) job.Steps.emplace_back(RememberSong{request.SourceBase});
    job.Steps.emplace_back(std::move(encode));
    if (options.DelTemp) {
        job.Steps.emplace_back(DeleteSong{request.SourceBase, request.Names.TargetBase});
    }
    // The last step: without its note the name is free, and the files of that name may be another song's.
    if (!request.Note.empty()) {
        job.Steps.emplace_back(DeleteNote{request.Note, request.MadeFile, request.Reader});
    }
    return {std::move(job), {}};
}

}  // namespace Corvetape
