#include "post/options/folder_selection.h"

#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include "core/controls/message_texts.h"
#include "core/controls/messages.h"
#include "core/settings/settings_store.h"
#include "core/text/text.h"
#include "forms/frm_main.h"
#include "platform/dialogs.h"
#include "platform/files.h"
#include "post/lists/watch_pages.h"

namespace Corvetape {

namespace {

constexpr size_t TemporaryFolder = 0;
constexpr size_t MusicFolder = 1;
constexpr size_t LogFolder = 2;
constexpr int32_t FirstFolderTextKey = 4801;

struct FolderRow {
    const char* Key;
    std::string Settings::*Value;
};

constexpr std::array<FolderRow, 3> FolderTable = {{
    {"TempPath", &Settings::TempPath},
    {"MusicPath", &Settings::MusicPath},
    {"LogFilePath", &Settings::LogFilePath},
}};

/// What does not begin at a root would mean another folder at each start.
bool IsWholePath(std::string_view path) {
    return path.starts_with('/') || (path.size() > 1 && path[1] == ':');
}

}  // namespace

FolderSelection::FolderSelection(frmMain& form, FolderTargets targets, SettingsStore& store,
                                 const Machine& machine, const clsLocalizeControls& messages,
                                 WatchPages& lists)
    : Form(form),
      Targets(targets),
      Store(store),
      Disk(machine.Files),
      Boxes(machine.Dialogs),
      Messages(messages),
      Lists(lists) {
    for (size_t i = 0; i < FolderTable.size(); ++i) {
        Form.cmdGetDir[i].Click.Connect([this, i] { GetDir(i); });
        Form.txtPath[i].Validate = [this, i] { return TypedRefused(i); };
    }
}

void FolderSelection::GetDir(size_t index) {
    Form.Enabled(false);
    Ask(index);
    while (!Disk.IsFolder(Targets.Folders.Paths[index])) {
        Boxes.ShowMessage(Messages.FormatMsg(Message::NoSuchFolder.Key), DialogIcon::Exclamation);
        Ask(index);
    }
    Form.Enabled(true);
}

void FolderSelection::Ask(size_t index) {
    const std::string name =
        Messages.FormatMsg(std::to_string(FirstFolderTextKey + static_cast<int32_t>(index)));
    const std::string present = Form.txtPath[index].ToolTip();
    const std::optional<std::string> chosen =
        Boxes.BrowseForFolder(Messages.FormatMsg(Message::ChooseFolder.Key, {name}), present);
    if (!chosen || EqualIgnoringCase(*chosen, present) || IsRefused(index, *chosen)) return;
    Take(index, *chosen);
}

/// A folder that was typed has to be there already, like one that is chosen.
bool FolderSelection::TypedRefused(size_t index) {
    TextBox& field = Form.txtPath[index];
    const std::string present = field.ToolTip();
    std::string_view typed = TrimBlanks(field.Text());
    while (typed.size() > 1 && typed.ends_with('/')) typed.remove_suffix(1);
    if (typed.empty() || typed == present) {
        field.Text(present);
        return false;
    }
    const std::string folder(typed);
    if (!IsWholePath(folder) || !Disk.IsFolder(folder)) {
        Boxes.ShowMessage(Messages.FormatMsg(Message::NoSuchFolder.Key), DialogIcon::Exclamation);
        return true;
    }
    if (IsRefused(index, folder)) return true;
    Take(index, folder);
    return false;
}

bool FolderSelection::IsRefused(size_t index, const std::string& folder) {
    if (index != TemporaryFolder && index != MusicFolder) return false;
    const size_t other = index == TemporaryFolder ? MusicFolder : TemporaryFolder;
    if (!EqualIgnoringCase(folder, Targets.Folders.Paths[other])) return false;
    Boxes.ShowMessage(Messages.FormatMsg(Message::SameFolder.Key), DialogIcon::Exclamation);
    return true;
}

void FolderSelection::Take(size_t index, const std::string& folder) {
    const FolderRow& row = FolderTable[index];
    Store.WriteSetting("Options", row.Key, folder);
    Targets.Values.*row.Value = folder;
    const std::string before = std::exchange(Targets.Folders.Paths[index], folder);
    Form.txtPath[index].ToolTip(folder);
    Form.txtPath[index].Text(folder);
    if (index == LogFolder) Lists.FollowFolder(before);
    if (index == TemporaryFolder) {
        Boxes.ShowMessage(Messages.FormatMsg(Message::HoldsFromNextStart.Key), DialogIcon::Information);
    }
}

}  // namespace Corvetape
