#include <csignal>
#include <cstdio>

#include "cli/arguments.h"
#include "cli/commands.h"
#include "cli/output.h"
#include "cli/run_support.h"

namespace Corvetape {

namespace {

int Answer(const ArgumentsAnswer& answer) {
    if (answer.ExitCode == ExitDone) {
        Print(stdout, answer.Text);
    } else {
        ReportLine(answer.Text);
    }
    return answer.ExitCode;
}

int Run(int count, char** words) {
    const Arguments arguments = ReadArguments(count, words);
    if (const auto* answer = std::get_if<ArgumentsAnswer>(&arguments)) return Answer(*answer);
    if (const auto* record = std::get_if<RecordArguments>(&arguments)) return RunRecord(*record);
    if (const auto* recut = std::get_if<RecutArguments>(&arguments)) return RunRecut(*recut);
    if (const auto* split = std::get_if<SplitArguments>(&arguments)) return RunSplit(*split);
    if (const auto* mixer = std::get_if<MixerArguments>(&arguments)) return RunMixer(*mixer);
    if (const auto* profiles = std::get_if<ProfilesArguments>(&arguments)) return RunProfiles(*profiles);
    return RunDevices(std::get<DevicesArguments>(arguments));
}

int Main(int count, char** words) {
    OpenStandardFiles();
    std::signal(SIGPIPE, SIG_IGN);  // a reader that goes away is no reason to lose a song
    const int code = Run(count, words);
    if (!OutputLost()) return code;
    ReportLine("the output could not be written");
    return code == ExitDone ? ExitFailed : code;
}

}  // namespace

}  // namespace Corvetape

int main(int count, char** words) {
    return Corvetape::Main(count, words);
}
