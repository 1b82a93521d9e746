#include "mixer/input_dialogue.h"

#include "core/controls/message_texts.h"
#include "core/windows_version.h"

namespace Corvetape {

InputDialogue::InputDialogue(InputDialogueParts parts, const SystemVersion& version)
    : Parts(parts), OneDeviceEach(IsWindowsVista(version)) {}

bool InputDialogue::Run() {
    if (Parts.Guard.Ended()) return true;
    if (!Parts.Dialogs.AskOkCancel(Parts.Texts.FormatMsg(Message::InputSearchBegins.Key),
                                   DialogIcon::Question))
        return true;
    if (Parts.Guard.Ended()) return true;
    SearchBegins.Raise();
    if (!Parts.Inputs.FillInputDevices()) {
        SearchEnds.Raise();
        return false;
    }
    if (Parts.Guard.Ended()) return true;  // at the box that reports changed inputs
    const clsMousePointer busy = Parts.Guard.Busy();
    Search();
    return true;
}

void InputDialogue::Search() {
    Parts.Guard.KeepInputs();
    const std::string name =
        OneDeviceEach ? Parts.Search.SearchInputDevice() : Parts.Search.SearchInputLine();
    if (Parts.Guard.Ended()) return;
    Parts.Guard.AcceptInputs();
    if (name.empty()) {
        SearchEnds.Raise();
        Parts.Dialogs.ShowMessage(Parts.Texts.FormatMsg(Message::InputSearchFailed.Key),
                                  DialogIcon::Exclamation);
        return;
    }
    // The number of the device is taken for its place in the list, which leaves none out.
    if (OneDeviceEach) Parts.Form.cmbInputDevices.Select(Parts.Inputs.WaveInDeviceId());
    if (Parts.Guard.Ended()) return;
    SearchEnds.Raise();
    ReportFound(name);
}

void InputDialogue::ReportFound(const std::string& name) {
    const std::string text = Parts.Texts.FormatMsg(Message::InputFound.Key, {name});
    const bool adjust = Parts.Dialogs.AskYesNo(text, DialogIcon::Information);
    if (adjust && !Parts.Guard.Ended()) Parts.Gain.Run();
}

}  // namespace Corvetape
