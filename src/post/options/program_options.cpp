#include "post/options/program_options.h"

#include <string>

#include "audio/recording_flags.h"
#include "core/controls/message_texts.h"
#include "core/controls/messages.h"
#include "core/controls/validate_number.h"
#include "core/settings/settings_store.h"
#include "core/settings/settings_table.h"
#include "core/text/text.h"
#include "forms/frm_main.h"
#include "platform/dialogs.h"

namespace Corvetape {

namespace {

constexpr const char* Section = "Options";
constexpr const char* DoNotChange = "DoNotChange";

/// MB that must stay free: what a person may ask for.
constexpr int32_t LeastSpaceLimit = 100;
constexpr int32_t LargestSpaceLimit = 1000000;

/// The list of delays begins with this one and goes down to 0.
constexpr int32_t LongestDelaySeconds = 30;

/// The list of buffer methods begins with the last one.
constexpr int32_t LastBufferMethod = 3;

}  // namespace

ProgramOptions::ProgramOptions(frmMain& form, Settings& settings, SettingsStore& store, RecordingFlags& flags,
                               Dialogs& dialogs, const clsLocalizeControls& messages)
    : Form(form), Options(settings), Store(store), Flags(flags), Boxes(dialogs), Messages(messages) {
    BindTable();
    BindDependents();
    BindLists();
    BindAppSearch(0, Form.txtStartApp);
    BindAppSearch(1, Form.txtStopApp);
}

void ProgramOptions::BindTable() {
    for (const SettingRow& row : SettingsTable()) {
        if ((row.Section != Section && row.Section != "Form") || row.When != SettingControl::Load) continue;
        Control* const control = Form.Find(row.ControlName, row.ControlIndex);
        if (auto* const box = dynamic_cast<CheckBox*>(control)) {
            box->Click.Connect([this, &row, box] { Keep(row, std::to_string(box->Value())); });
        } else if (auto* const text = dynamic_cast<TextBox*>(control)) {
            BindText(row, *text);
        }
    }
}

void ProgramOptions::BindText(const SettingRow& row, TextBox& box) {
    if (row.Type != SettingType::Number32Text) {
        box.Change.Connect([this, &row, &box] { Keep(row, box.Text()); });
        return;
    }
    box.Validate = [this, &row, &box] {
        if (ValidateNumber(box, LeastSpaceLimit, LargestSpaceLimit, 1, Boxes, Messages)) return true;
        Keep(row, box.Text());
        return false;
    };
}

void ProgramOptions::Keep(const SettingRow& row, const std::string& value) {
    if (!StoreSetting(Options, row, value)) return;
    Store.WriteSetting(row.Section, row.Key, SettingText(Options, row));
}

void ProgramOptions::BindDependents() {
    Form.chkDelTemp.Click.Connect([this] {
        if (Form.chkDelTemp.Value() == 0) Form.chkDelTempFolder.Value(0);
    });
    Form.chkDelTempFolder.Click.Connect([this] {
        if (Form.chkDelTempFolder.Value() != 0) Form.chkDelTemp.Value(1);
    });
    Form.chkDelayUnload.Click.Connect([this] {
        Flags.DisableAtEndOfSong = false;
        Form.lblStatus[1].Caption("");
    });
}

void ProgramOptions::BindLists() {
    Form.lstEncodeDelay.Click.Connect([this] { ChangeEncodeDelay(); });
    Form.lstBufferFlag.Click.Connect([this] { ChangeBufferFlag(); });
    Form.tmrMsgBox.Timer.Connect([this] {
        Form.tmrMsgBox.Running(false);
        Boxes.ShowMessage(Messages.FormatMsg(Message::HoldsFromNextStart.Key), DialogIcon::Information);
    });
}

// Both lists act from the next start on: this run keeps what it began with, and only the file changes.

void ProgramOptions::ChangeEncodeDelay() {
    const int32_t seconds = LongestDelaySeconds - Form.lstEncodeDelay.ListIndex();
    // The list knows whole seconds only; showing a stored delay does not round it.
    const bool isPresent = Options.EncodeDelay / 1000 == seconds;
    Store.WriteSetting(DoNotChange, "EncodeDelay", isPresent ? Options.EncodeDelay : seconds * 1000);
}

void ProgramOptions::ChangeBufferFlag() {
    const int32_t method = LastBufferMethod - Form.lstBufferFlag.ListIndex();
    Store.WriteSetting(DoNotChange, "PollRecordingBuffers", method);
    if (method == Options.PollRecordingBuffers || BufferFlagTold) return;  // the stored one is shown
    BufferFlagTold = true;
    Form.tmrMsgBox.Running(true);
}

void ProgramOptions::BindAppSearch(size_t index, TextBox& name) {
    Form.cmdAppSearch[index].Click.Connect([this, &name] {
        const std::string filter = Messages.FormatMsg(Message::ProgramFilter.Key, {std::string(1, '\0')});
        const auto chosen = Boxes.OpenFile(Messages.FormatMsg(Message::ChooseProgram.Key), filter, "");
        if (chosen) name.Text(std::string(TrimBlanks(*chosen)));
    });
}

}  // namespace Corvetape
