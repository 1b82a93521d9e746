#include <fmt/format.h>

#include <QCoreApplication>

#include "cli/commands.h"
#include "cli/input_choice.h"
#include "cli/json_text.h"
#include "cli/output.h"
#include "cli/run_support.h"
#include "platform/linux/desktop/one_line.h"
#include "platform/linux/loop/qt_loop.h"
#include "platform/linux/sound/pulse_wave_in.h"

namespace Corvetape {

int RunDevices(const DevicesArguments& arguments) {
    int count = 0;
    const QCoreApplication application(count, nullptr);
    QtLoop loop;
    WaveInList devices = PulseWaveIn(loop).Devices();
    devices.push_back(DemoInput());
    for (size_t i = 0; i < devices.size(); ++i) {
        const WaveInDevice& device = devices[i];
        if (arguments.Json) {
            Print(stdout, fmt::format("{{\"number\":{},\"name\":{},\"id\":{},\"kind\":{},\"default\":{}}}\n",
                                      i, JsonText(device.Name), JsonText(device.Id),
                                      JsonText(KindText(device.Kind)), device.IsDefault));
        } else {
            Print(stdout, fmt::format("{}{:>3}  {:<8} {}\n", device.IsDefault ? '*' : ' ', i,
                                      KindText(device.Kind), OneLine(device.Name)));
        }
    }
    if (!arguments.Json && devices.size() == 1) {
        ReportLine(devices.Reason.empty() ? "the sound server has no inputs"
                                          : "no sound server answers: " + devices.Reason);
    }
    return ExitDone;
}

}  // namespace Corvetape
