#include "post/encoders/encoder_tools.h"

#include <chrono>

#include "core/settings/registry.h"
#include "core/text/numbers.h"
#include "platform/files.h"
#include "platform/folders.h"
#include "platform/processes.h"

namespace Corvetape {

namespace {

/// The first WMA encoder whose files every player of today reads.
constexpr double LeastWmaEncoderVersion = 9;

constexpr std::chrono::milliseconds ProbeLimit{3000};

}  // namespace

std::string FindTool(std::string_view name, Files& files, Folders& folders, const WorkingFolders& places) {
    for (const std::string* folder : {&places.ProgramFolder, &places.CommonDataFolder}) {
        if (folder->empty()) continue;
        std::string path = *folder + "/" + std::string(name);
        if (files.FileSize(path)) return path;
    }
    return folders.FindProgram(std::string(name)).value_or("");
}

FoundTools FindTools(Files& files, Folders& folders, const WorkingFolders& places, WmaEncoderProbe* probe) {
    FoundTools found;
    found.Sox = FindTool("sox", files, folders, places);
    found.Lame = FindTool("lame", files, folders, places);
    found.OggEnc = FindTool("oggenc", files, folders, places);
    found.Ffmpeg = FindTool("ffmpeg", files, folders, places);
    if (!found.Ffmpeg.empty() && probe != nullptr) found.WmaEncoderVersion = probe->Version(found.Ffmpeg);
    return found;
}

bool NeedsWmaEncoder(const Settings& settings) {
    const EncoderRow* chosen = FindEncoder(settings.Encoder);
    return chosen != nullptr && chosen->Needs == EncoderTool::WmaEncoder;
}

bool HasTool(const FoundTools& found, EncoderTool tool) {
    switch (tool) {
        case EncoderTool::None:
            return true;
        case EncoderTool::Lame:
            return !found.Lame.empty();
        case EncoderTool::OggEnc:
            return !found.OggEnc.empty();
        case EncoderTool::WmaEncoder:
            return LeadingNumber(found.WmaEncoderVersion) >= LeastWmaEncoderVersion;
        case EncoderTool::Sox:
            return !found.Sox.empty();
    }
    return false;
}

std::string WmaEncoderProbe::Version(const std::string& ffmpeg) {
    constexpr const char* section = "Tools";
    constexpr const char* name = "WmaEncoder";
    const std::string file = ffmpeg + "|" + std::to_string(Disk.FileSize(ffmpeg).value_or(0)) + "|";
    const std::string known = TextOf(Registry.ReadUserValue(section, name));
    if (known.starts_with(file) && known.size() > file.size()) return known.substr(file.size());
    std::string version = ProbeWmaEncoder(Programs, ffmpeg);
    // No answer may come of a busy machine alone: it is not kept, and asked for again at the next start, as
    // is one that cannot be written.
    if (!version.empty()) static_cast<void>(Registry.WriteUserValue(section, name, file + version));
    return version;
}

std::string ProbeWmaEncoder(Processes& processes, const std::string& ffmpeg) {
    const ProgramCall call{{ffmpeg, "-hide_banner", "-h", "encoder=wmav2"}, "Encoder wmav2"};
    const HiddenJob job{"WMA probe", {call}, "/"};
    if (!processes.StartHidden(job) || !processes.WaitForAll(ProbeLimit)) return {};
    for (const JobResult& result : processes.TakeFinished()) {
        if (result.Name == job.Name && result.ExitCode == 0) return "9";
    }
    return {};
}

}  // namespace Corvetape
