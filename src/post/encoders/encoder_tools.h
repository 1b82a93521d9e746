#pragma once

#include <string>
#include <string_view>

#include "core/settings/settings.h"
#include "post/encoders/encoder_table.h"

namespace Corvetape {

class Files;
class Folders;
class Processes;
class RegistryBranches;

/// The external programs as they were found on this machine.
struct FoundTools {
    std::string Lame;    ///< path; empty if it is not there
    std::string OggEnc;  ///< path; empty if it is not there
    std::string Sox;     ///< path; empty if it is not there
    std::string Ffmpeg;  ///< path; empty if it is not there

    /// Version of the WMA encoder as text. What it begins with as a number must be 9 or more.
    std::string WmaEncoderVersion;
};

/// Asks an ffmpeg for its WMA encoder, or remembers that this very file had it the last time: starting it
/// takes longer than the rest of the start.
class WmaEncoderProbe {
 public:
    /// All of them outlive it.
    WmaEncoderProbe(Files& files, Processes& processes, RegistryBranches& registry)
        : Disk(files), Programs(processes), Registry(registry) {}

    /// The version that the encoder counts as, empty if there is none.
    std::string Version(const std::string& ffmpeg);

 private:
    Files& Disk;
    Processes& Programs;
    RegistryBranches& Registry;
};

/// Path of a tool: beside the program, in the common folder, or where the search path has it, in this order.
/// Empty if it is nowhere.
std::string FindTool(std::string_view name, Files& files, Folders& folders, const WorkingFolders& places);

/// Looks for all tools. `probe` may be missing, and is asked only if there is an ffmpeg.
FoundTools FindTools(Files& files, Folders& folders, const WorkingFolders& places, WmaEncoderProbe* probe);

/// The chosen format needs the WMA encoder.
bool NeedsWmaEncoder(const Settings& settings);

/// True if the encoders that need `tool` can be chosen.
bool HasTool(const FoundTools& found, EncoderTool tool);

/// The probe for a real machine: "9" if the ffmpeg knows the encoder wmav2. Takes about 50 ms, 3 s at most.
/// It runs as a hidden job, so it must come before any other: results not taken by then are lost.
std::string ProbeWmaEncoder(Processes& processes, const std::string& ffmpeg);

}  // namespace Corvetape
