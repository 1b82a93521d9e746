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
    // A sound server has at least one end, if only a made-up one.
    return text.empty() ? Fail("no sound server answers") : ExitDone;
}

}  // namespace Corvetape
