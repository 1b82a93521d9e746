#include "recording/countdown.h"

#include <cstdint>
#include <string>

#include "core/controls/message_texts.h"
#include "core/controls/validate_number.h"
#include "core/text/numbers.h"

namespace Corvetape {

namespace {

constexpr int32_t SecondsPerMinute = 60;
constexpr int32_t LongestMinutes = 1440;

/// The minutes in a text box as seconds; 0 for anything that begins with no number.
int32_t SecondsIn(const TextBox& box) {
    return RoundToInt32(LeadingNumber(box.Text()) * SecondsPerMinute);
}

}  // namespace

Countdown::Countdown(frmMain& form, RecordingFlags& flags, Settings& settings, SettingsStore& store,
                     Dialogs& boxes, const clsLocalizeControls& texts)
    : Form(form), Flags(flags), Options(settings), Store(store), Boxes(boxes), Texts(texts) {
    Form.chkStopRecording[1].Click.Connect([this] { Switched(); });
    Form.txtRecordingPeriod.Validate = [this] { return PeriodRefused(); };
}

bool Countdown::PeriodRefused() {
    if (ValidateNumber(Form.txtRecordingPeriod, 1, LongestMinutes, 1, Boxes, Texts)) return true;
    Flags.RecordingSecondsLeft = SecondsIn(Form.txtRecordingPeriod);
    Options.StopAfter = Flags.RecordingSecondsLeft / SecondsPerMinute;
    Store.WriteSetting("Record", "StopAfter", Options.StopAfter);
    return false;
}

void Countdown::Switched() {
    if (Form.chkStopRecording[1].Value() != 0) {
        Form.chkStopRecording[0].Value(0);
        Flags.RecordingSecondsLeft = SecondsIn(Form.txtRecordingPeriod);
        if (Flags.RecordingSecondsLeft <= 0) {
            Boxes.ShowMessage(Texts.FormatMsg(Message::NoRecordingTime.Key), DialogIcon::Exclamation);
            Form.chkStopRecording[1].Value(0);
        }
    } else {
        Flags.RecordingSecondsLeft = 0;
    }
    Form.txtRecordingPeriod.Enabled(Form.chkStopRecording[1].Value() == 0);
}

void Countdown::Tick() {
    if (Form.chkStopRecording[1].Value() == 0 || !Flags.RecordCurrentSong) return;
    int32_t& left = Flags.RecordingSecondsLeft;
    --left;
    if (left % SecondsPerMinute == 0) Form.txtRecordingPeriod.Text(std::to_string(left / SecondsPerMinute));
    if (left != 0) return;
    if (Options.QuitAfterRecording) Flags.QuitAtEndOfSong = true;
    Form.chkStopRecording[0].Value(1);
}

}  // namespace Corvetape
