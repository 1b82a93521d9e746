#include "post/transfer/encode_job.h"

#include <string_view>
#include <vector>

#include "core/text/text.h"
#include "post/transfer/shell_quote.h"

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

EncodeCommand MakeEncodeCommand(const EncoderRow& row, const EncodeRequest& request) {
    const auto encoder = static_cast<size_t>(&row - EncoderTable.data());
    const std::string& command = request.Options.EncoderCommand[encoder];
    if (TrimBlanks(command).empty()) {
        return {{}, "There is no command " + std::string(row.TemplateKey) + " to make this format."};
    }
    ShellScript script(ToolFolders(request.Folders));
    script.Export("CORVET_SAME_NAME", std::to_string(static_cast<int32_t>(request.SameName)));
    script.Export("CORVET_WORK", request.Work);
    script.Export("CORVET_MADE", request.MadeFile);
    if (request.Options.Normalize &&
        !script.AddTemplate(request.Options.NormalizeCommand, NormalizeParameters(request))) {
        return {{}, BrokenTemplate("Normalize")};
    }
    if (request.Options.DelTemp) script.RememberSong(request.SourceBase);
    if (!script.AddTemplate(command, EncoderParameters(row, request))) {
        return {{}, BrokenTemplate(row.TemplateKey)};
    }
    if (!request.Note.empty()) script.DeleteNoteIfMade(request.Note, request.MadeFile, request.Reader);
    if (request.Options.DelTemp) {
        script.DeleteIfAllSucceeded(request.SourceBase, request.Names.TargetBase);
    }
    return {script.Text(), {}};
}

}  // namespace Corvetape
