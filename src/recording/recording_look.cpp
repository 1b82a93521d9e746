#include "recording/recording_look.h"

#include <string>

#include "core/text/numbers.h"

namespace Corvetape {

RecordingLook::RecordingLook(frmMain& form, frmQuickButtons& quick, frmCoverButtons& cover,
                             const clsLocalizeControls& texts)
    : Form(form),
      Quick(quick),
      Cover(cover),
      Texts(texts),
      SkipChanged(form.cmdSkipThisRecording.Changed.Listen([this] { ShowSkip(); })) {
    ShowSkip();
}

void RecordingLook::ShowRecording() {
    const bool recording = Form.chkStartStop[0].Value() != 0;
    ShowCaption(Form.cmdStartStop);
    ShowCaption(Quick.cmdStartStop);
    for (Picture* start : {&Form.picStart, &Quick.picStart, &Cover.imgStart}) start->Visible(!recording);
    for (Picture* stop : {&Form.picStop, &Quick.picStop, &Cover.imgStop}) stop->Visible(recording);
}

void RecordingLook::ShowCaption(CommandButton& button) {
    const int32_t first = WholeNumberFromText(button.Tag()).value_or(0);
    const std::string key = std::to_string(first + Form.chkStartStop[0].Value());
    button.TextKey(key);  // so that another language finds the right text
    const std::string caption = Texts.FormatMsg(key);
    if (!caption.empty()) button.Caption(caption);
}

void RecordingLook::ShowSkip() {
    const bool enabled = Form.cmdSkipThisRecording.Enabled();
    Form.picSkip.Enabled(enabled);
    Quick.cmdSkipThisRecording.Enabled(enabled);
    Quick.picSkip.Enabled(enabled);
    Cover.imgSkip[0].Visible(!enabled);
    Cover.imgSkip[1].Visible(enabled);
}

}  // namespace Corvetape
