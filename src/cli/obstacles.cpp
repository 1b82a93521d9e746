#include "cli/obstacles.h"

#include <fmt/format.h>

#include <random>

#include "core/text/text.h"
#include "post/transfer/encode_job.h"

namespace Corvetape {

namespace {

constexpr size_t SoxEncoder = 5;  ///< the option that is there if sox is

/// The tool as a person would have to install it.
const char* NameOf(EncoderTool tool) {
    switch (tool) {
        case EncoderTool::Lame:
            return "lame";
        case EncoderTool::OggEnc:
            return "oggenc";
        case EncoderTool::WmaEncoder:
            return "ffmpeg with its encoder wmav2";
        case EncoderTool::Sox:
            return "sox";
        case EncoderTool::None:
            break;
    }
    return "nothing";
}

std::string Missing(const std::string& what, EncoderTool tool) {
    return fmt::format("{} needs {}, which is not installed", what, NameOf(tool));
}

}  // namespace

bool MakeFolders(Files& files, const std::string& folder) {
    for (size_t slash = folder.find('/', 1); slash != std::string::npos;
         slash = folder.find('/', slash + 1)) {
        files.MakeFolder(folder.substr(0, slash));  // there already, most of them; the last look decides
    }
    files.MakeFolder(folder);
    return files.IsFolder(folder);
}

std::optional<std::string> FolderObstacle(Files& files, const std::string& folder) {
    if (!MakeFolders(files, folder)) return "cannot make the folder " + folder;
    // A name that nobody can have prepared.
    std::random_device random;
    const std::string probe = fmt::format("{}/.corvetape-probe-{:08x}{:08x}", folder, random(), random());
    if (const auto made = files.CreateNew(probe); !made) {
        return fmt::format("cannot write into the folder {}: {}", folder, made.Failure.Error.message());
    }
    files.Delete(probe);  // made a moment ago
    return std::nullopt;
}

std::optional<std::string> FormatObstacle(const Settings& settings, const EncoderPage& page) {
    const EncoderRow* row = FindEncoder(settings.Encoder);
    if (row == nullptr) {
        return fmt::format("there is no format {}; Options.Encoder goes from 0 to {}", settings.Encoder,
                           EncoderTable.size() - 1);
    }
    if (!page.optEncoder[static_cast<size_t>(settings.Encoder)].Enabled()) {
        return Missing("the chosen format", row->Needs);
    }
    if (TrimBlanks(settings.EncoderCommand[static_cast<size_t>(settings.Encoder)]).empty()) {
        return fmt::format("there is no command Encode.{} to make the chosen format", row->TemplateKey);
    }
    if (row->Qualities != nullptr && QualityOptions(settings, *row) == nullptr) {
        return fmt::format("there is no quality {0} for {1}; {1}.EncParams has {2} of them, from 0 on",
                           settings.*row->QualityIndex, row->Section,
                           (settings.*row->Qualities).EncParams.size());
    }
    if (page.optEncoder[SoxEncoder].Enabled()) return std::nullopt;
    if (settings.Normalize) return Missing("normalising", EncoderTool::Sox);
    if (settings.SPDIF48kHz && row->TemplateKey == "WAV44") {
        return Missing("making 44.1 kHz out of a 48 kHz recording", EncoderTool::Sox);
    }
    return std::nullopt;
}

}  // namespace Corvetape
