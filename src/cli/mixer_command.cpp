#include "cli/commands.h"
#include "cli/mixer_report.h"
#include "cli/output.h"
#include "cli/run_support.h"
#include "platform/linux/sound/pulse_mixer.h"

namespace Corvetape {

int RunMixer(const MixerArguments& arguments) {
    PulseMixer mixer;
    const std::string text = arguments.Json ? MixerJson(mixer) : MixerText(mixer);
    Print(stdout, text);
    if (text.empty() && !arguments.Json) ReportLine("no sound server answers");
    return ExitDone;
}

}  // namespace Corvetape
