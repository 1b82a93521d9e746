#include "post/encoders/encoder_tools.h"

#include <chrono>

#include "core/text/numbers.h"
#include "platform/files.h"
#include "platform/folders.h"
#include "platform/processes.h"
#include "post/transfer/shell_quote.h"

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

FoundTools FindTools(Files& files, Folders& folders, const WorkingFolders& places, const WmaProbe& probe) {
    FoundTools found;
    found.Sox = FindTool("sox", files, folders, places);
    found.Lame = FindTool("lame", files, folders, places);
    found.OggEnc = FindTool("oggenc", files, folders, places);
    found.Ffmpeg = FindTool("ffmpeg", files, folders, places);
    if (!found.Ffmpeg.empty() && probe) found.WmaEncoderVersion = probe(found.Ffmpeg);
    return found;
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

std::string ProbeWmaEncoder(Processes& processes, const std::string& ffmpeg) {
    HiddenJob job;
    job.Name = "WMA probe";
    job.CommandLine = ShellWord(ffmpeg) + " -hide_banner -h encoder=wmav2 | grep -q '^Encoder wmav2'";
    job.WorkingFolder = "/";
    if (!processes.StartHidden(job) || !processes.WaitForAll(ProbeLimit)) return {};
    for (const JobResult& result : processes.TakeFinished()) {
        if (result.Name == job.Name && result.ExitCode == 0) return "9";
    }
    return {};
}

}  // namespace Corvetape
