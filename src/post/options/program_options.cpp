#include "post/options/program_options.h"

#include <array>
#include <optional>
#include <string>

#include "audio/recording_flags.h"
#include "core/controls/messages.h"
#include "core/controls/validate_number.h"
#include "core/settings/settings_store.h"
#include "core/text/numbers.h"
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

struct OptionBox {
    CheckBox frmMain::*Control;
    bool Settings::*Value;
    const char* Key;
};

constexpr std::array<OptionBox, 14> OptionBoxes = {{
    {&frmMain::chkNormalize, &Settings::Normalize, "Normalize"},
    {&frmMain::chkEncodeOffline, &Settings::EncodeOffline, "EncodeOffline"},
    {&frmMain::chkDelTemp, &Settings::DelTemp, "DelTemp"},
    {&frmMain::chkDelTempFolder, &Settings::DelTempFolder, "DelTempFolder"},
    {&frmMain::chkQuitAfterRecording, &Settings::QuitAfterRecording, "QuitAfterRecording"},
    {&frmMain::chkDelayUnload, &Settings::DelayUnload, "DelayUnload"},
    {&frmMain::chkDisableSoundScheme, &Settings::DisableSoundScheme, "DisableSoundScheme"},
    {&frmMain::chkRestartRadioIfSilent, &Settings::RestartRadioIfSilent, "RestartRadioIfSilent"},
    {&frmMain::chkStoreCoverImage, &Settings::StoreCoverImage, "StoreCoverImage"},
    {&frmMain::chkAutoExclude, &Settings::AutoExclude, "AutoExclude"},
    {&frmMain::chkNoStartupInfo, &Settings::NoStartupInfo, "NoStartupInfo"},
    {&frmMain::chkUseMusicSubfolder, &Settings::UseMusicSubfolder, "UseMusicSubfolder"},
    {&frmMain::chkStartApp, &Settings::StartApp, "StartApp"},
    {&frmMain::chkStopApp, &Settings::StopApp, "StopApp"},
}};

struct OptionText {
    TextBox frmMain::*Control;
    std::string Settings::*Value;
    const char* Key;
};

constexpr std::array<OptionText, 5> OptionTexts = {{
    {&frmMain::txtMusicFolderTemplate, &Settings::MusicFolderTemplate, "MusicFolderTemplate"},
    {&frmMain::txtStartApp, &Settings::StartAppName, "StartAppName"},
    {&frmMain::txtStartAppCommandLine, &Settings::StartAppParams, "StartAppParams"},
    {&frmMain::txtStopApp, &Settings::StopAppName, "StopAppName"},
    {&frmMain::txtStopAppCommandLine, &Settings::StopAppParams, "StopAppParams"},
}};

}  // namespace

ProgramOptions::ProgramOptions(frmMain& form, Settings& settings, SettingsStore& store, RecordingFlags& flags,
                               Dialogs& dialogs, const clsLocalizeControls& messages)
    : Form(form), Options(settings), Store(store), Flags(flags), Boxes(dialogs), Messages(messages) {
    BindCheckBoxes();
    BindTexts();
    BindDependents();
    BindLimit(Form.txtLowTempSpace, &Settings::LowTempSpace, "LowTempSpace");
    BindLimit(Form.txtLowMusicSpace, &Settings::LowMusicSpace, "LowMusicSpace");
    BindLists();
    BindAppSearch(0, Form.txtStartApp);
    BindAppSearch(1, Form.txtStopApp);
}

void ProgramOptions::BindCheckBoxes() {
    for (const OptionBox& row : OptionBoxes) {
        CheckBox& box = Form.*row.Control;
        box.Click.Connect([this, &row, &box] {
            Options.*row.Value = box.Value() != 0;
            Store.WriteSetting(Section, row.Key, box.Value());
        });
    }
}

void ProgramOptions::BindTexts() {
    for (const OptionText& row : OptionTexts) {
        TextBox& box = Form.*row.Control;
        box.Change.Connect([this, &row, &box] {
            Options.*row.Value = box.Text();
            Store.WriteSetting(Section, row.Key, box.Text());
        });
    }
    for (size_t i = 0; i < Form.txtMusicFileTemplate.Size(); ++i) {
        Form.txtMusicFileTemplate[i].Change.Connect([this, i] {
            Options.MusicFileTemplate[i] = Form.txtMusicFileTemplate[i].Text();
            Store.WriteSetting(Section, "MusicFileTemplate" + std::to_string(i + 1),
                               Options.MusicFileTemplate[i]);
        });
    }
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

void ProgramOptions::BindLimit(TextBox& box, int32_t Settings::*limit, const char* key) {
    box.Validate = [this, &box, limit, key] {
        if (ValidateNumber(box, LeastSpaceLimit, LargestSpaceLimit, 1, Boxes, Messages)) return true;
        if (const std::optional<int32_t> megabytes = WholeNumberFromText(box.Text())) {
            Options.*limit = *megabytes;
            Store.WriteSetting(Section, key, *megabytes);
        }
        return false;
    };
}

void ProgramOptions::BindLists() {
    Form.lstEncodeDelay.Click.Connect([this] { ChangeEncodeDelay(); });
    Form.lstBufferFlag.Click.Connect([this] { ChangeBufferFlag(); });
    Form.tmrMsgBox.Timer.Connect([this] {
        Form.tmrMsgBox.Running(false);
        Boxes.MessageBox(Messages.FormatMsg("813"), DialogIcon::Information);
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
        const std::string filter = Messages.FormatMsg("5900", {std::string(1, '\0')});
        const auto chosen = Boxes.OpenFile(Messages.FormatMsg("5910"), filter, "");
        if (chosen) name.Text(std::string(TrimBlanks(*chosen)));
    });
}

}  // namespace Corvetape
