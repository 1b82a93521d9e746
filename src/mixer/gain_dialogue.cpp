#include "mixer/gain_dialogue.h"

#include "core/controls/message_texts.h"

namespace Corvetape {

void GainDialogue::Run() {
    if (!Parts.Dialogs.AskOkCancel(Parts.Texts.FormatMsg(Message::LevelSearchBegins.Key),
                                   DialogIcon::Question))
        return;
    if (Parts.Guard.Ended()) return;
    const clsMousePointer busy = Parts.Guard.Busy();
    const int32_t before = Parts.Pause.LevelMultiplier;
    Parts.Guard.KeepInputs();
    const bool reached = Parts.Gain.AutoGainLine();
    if (Parts.Guard.Ended()) {
        Parts.Pause.LevelMultiplier = before;
        return;
    }
    Parts.Guard.AcceptInputs();
    Parts.Form.vscMultiplier.Value(Parts.Pause.LevelMultiplier);
    const bool save = Parts.Dialogs.AskYesNo(
        Parts.Texts.FormatMsg(reached ? Message::LevelFound.Key : Message::LevelNotFound.Key),
        reached ? DialogIcon::Information : DialogIcon::Exclamation);
    if (save && !Parts.Guard.Ended()) Parts.Mixers.MixerAction(MixerMode::Save);
}

}  // namespace Corvetape
