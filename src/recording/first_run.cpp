#include "recording/first_run.h"

#include <string>

#include "platform/clock.h"
#include "platform/processes.h"

namespace Corvetape {

bool FirstRun::Tick() {
    if (Parts.Lifecycle.Ticks != 2) return true;
    // The input is open while its box waits for an answer.
    Parts.Signal.SilenceStartSecond = Computer.Clock.TimeGetTime() / 1000;
    if (!Parts.Inputs.FillInputDevices()) return false;
    OpenPages();
    // The time since the start of the program does not count as silence.
    Parts.Signal.SilenceStartSecond = Computer.Clock.TimeGetTime() / 1000;
    return true;
}

void FirstRun::OpenPages() {
    TabStrip& tabs = Parts.Form.tbsMain;
    if (Parts.Lifecycle.WizardRequested) {
        Requests.Assistant.Raise("wizard.htm");
    } else if (tabs.SelectedKey() == "TAB_ABOUT") {
        tabs.Select("TAB_RECORDING");
    }
    if (Parts.Form.chkNoStartupInfo.Value() != 0) return;
    const std::string& folder = Parts.Folders.ProgramFolder;
    // There is none beside most installations; the first page of the assistant opens all the same.
    Computer.Processes.ShellOpen(folder + "/COR1st.bat", Parts.Options.Language, folder);
    Parts.Lifecycle.WizardRequested = true;
    Requests.Assistant.Raise("1st.htm");
}

}  // namespace Corvetape
