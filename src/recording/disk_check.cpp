#include "recording/disk_check.h"

#include <algorithm>
#include <utility>

namespace Corvetape {

namespace {

constexpr uint64_t BytesPerMegabyte = 1024ULL * 1024;
constexpr uint64_t SecondsOfReserve = 10ULL * 60;

uint64_t LimitBytes(int32_t megabytes) {
    return megabytes > 0 ? static_cast<uint64_t>(megabytes) * BytesPerMegabyte : 0;
}

struct LimitTexts {
    const char* Status;  ///< key of the text in the status line
    int32_t Deferred;    ///< key of the message told at the end of the program
};

constexpr LimitTexts TextsOf(DiskLimit limit) {
    switch (limit) {
        case DiskLimit::OneDrive:
            return {"803", 833};
        case DiskLimit::TempFolder:
            return {"804", 834};
        default:
            return {"805", 835};
    }
}

}  // namespace

bool OnOneDrive(const WorkingFolders& folders, uint64_t tempFree, uint64_t musicFree) {
    return folders.Paths[0].substr(0, 2) == folders.Paths[1].substr(0, 2) && tempFree == musicFree;
}

DiskLimit FindDiskLimit(const WorkingFolders& folders, const Settings& settings, uint64_t tempFree,
                        uint64_t musicFree) {
    const uint64_t tempLimit = LimitBytes(settings.LowTempSpace);
    const uint64_t musicLimit = LimitBytes(settings.LowMusicSpace);
    if (OnOneDrive(folders, tempFree, musicFree))
        return tempFree <= tempLimit + musicLimit ? DiskLimit::OneDrive : DiskLimit::None;
    if (tempFree <= tempLimit) return DiskLimit::TempFolder;
    if (musicFree <= musicLimit) return DiskLimit::MusicFolder;
    return DiskLimit::None;
}

DiskCheck::DiskCheck(DiskCheckParts parts, DiskCheckActions actions)
    : Parts(parts), Actions(std::move(actions)) {}

/// Songs go to the folder that the program was started with, also when another one was chosen since. Both
/// have to have room: the next start writes to the new one.
std::string DiskCheck::FolderOfSongs() const {
    return Parts.Folders.SongTempFolder.substr(0, Parts.Folders.SongTempFolder.rfind('/'));
}

std::optional<uint64_t> DiskCheck::TempSpace() const {
    const std::optional<uint64_t> chosen = Parts.Files.FreeSpace(Parts.Folders.Paths[0]);
    const std::string songs = FolderOfSongs();
    if (songs.empty() || songs == Parts.Folders.Paths[0]) return chosen;
    const std::optional<uint64_t> present = Parts.Files.FreeSpace(songs);
    if (!chosen || !present) return std::nullopt;
    return std::min(*chosen, *present);
}

bool DiskCheck::HasRoom(uint32_t bytesPerSecond) {
    const std::optional<uint64_t> temp = TempSpace();
    const std::optional<uint64_t> music = Parts.Files.FreeSpace(Parts.Folders.Paths[1]);
    return temp && music && *temp >= SecondsOfReserve * bytesPerSecond &&
           FindDiskLimit(Parts.Folders, Parts.Settings, *temp, *music) == DiskLimit::None;
}

bool DiskCheck::Run() {
    try {
        return Check();
    } catch (...) {
        // Something that nobody foresaw, such as memory that ran out.
        Report(Text("907", {}));
        return false;
    }
}

bool DiskCheck::Check() {
    std::optional<uint64_t> temp = Ask(Parts.Folders.Paths[0]);
    if (!temp) return false;
    const std::string songs = FolderOfSongs();
    if (!songs.empty() && songs != Parts.Folders.Paths[0]) {
        const std::optional<uint64_t> present = Ask(songs);
        if (!present) return false;
        temp = std::min(*temp, *present);
    }
    const std::optional<uint64_t> music = Ask(Parts.Folders.Paths[1]);
    if (!music) return false;
    if (Applies()) React(FindDiskLimit(Parts.Folders, Parts.Settings, *temp, *music));
    return true;
}

void DiskCheck::RunIfShort(uint32_t bytesPerSecond) {
    if (!Applies()) return;
    const std::optional<uint64_t> temp = TempSpace();
    if (!temp || *temp >= SecondsOfReserve * bytesPerSecond) return;
    const std::optional<uint64_t> music = Parts.Files.FreeSpace(Parts.Folders.Paths[1]);
    const bool oneDrive = music && OnOneDrive(Parts.Folders, *temp, *music);
    React(oneDrive ? DiskLimit::OneDrive : DiskLimit::TempFolder);
}

bool DiskCheck::Applies() const {
    return Parts.Flags.RecordingEnabled && !Parts.Flags.StopAtEndOfSong;
}

void DiskCheck::React(DiskLimit limit) {
    if (limit == DiskLimit::None) return;
    Parts.Form.chkStopRecording[0].Value(1);
    Parts.Flags.DisableAtEndOfSong = true;
    const LimitTexts texts = TextsOf(limit);
    Parts.Form.lblStatus[1].Caption(Text(texts.Status, {}));
    Parts.Messages.RaiseInfo(texts.Deferred);
}

std::optional<uint64_t> DiskCheck::Ask(const std::string& folder) {
    const std::optional<uint64_t> free = Parts.Files.FreeSpace(folder);
    if (!free) Report(Text("906", {folder}));
    return free;
}

void DiskCheck::Report(const std::string& text) {
    Actions.WriteLog("ERROR", text);
    Actions.ErrorBox(text);
}

std::string DiskCheck::Text(const std::string& key, std::initializer_list<std::string> arguments) const {
    return Actions.FormatMsg(key, std::span(arguments.begin(), arguments.size()));
}

}  // namespace Corvetape
