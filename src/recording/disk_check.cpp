#include "recording/disk_check.h"

#include <algorithm>
#include <string_view>

#include "core/controls/message_texts.h"

namespace Corvetape {

namespace {

constexpr uint64_t BytesPerMegabyte = 1024ULL * 1024;
constexpr uint64_t SecondsOfReserve = 10ULL * 60;

uint64_t LimitBytes(int32_t megabytes) {
    return megabytes > 0 ? static_cast<uint64_t>(megabytes) * BytesPerMegabyte : 0;
}

struct LimitTexts {
    std::string_view Status;  ///< key of the text in the status line
    int32_t Deferred;         ///< key of the message shown at the end of the program
};

constexpr LimitTexts TextsOf(DiskLimit limit) {
    switch (limit) {
        case DiskLimit::OneDrive:
            return {Message::DiskNearlyFull.Key, Message::EndedByDisk.Number()};
        case DiskLimit::TempFolder:
            return {Message::TempDiskNearlyFull.Key, Message::EndedByTempDisk.Number()};
        default:
            return {Message::MusicDiskNearlyFull.Key, Message::EndedByMusicDisk.Number()};
    }
}

}  // namespace

DiskLimit FindDiskLimit(const Settings& settings, const DiskSpace& space) {
    const uint64_t tempLimit = LimitBytes(settings.LowTempSpace);
    const uint64_t musicLimit = LimitBytes(settings.LowMusicSpace);
    if (space.OneDrive) return space.Temp <= tempLimit + musicLimit ? DiskLimit::OneDrive : DiskLimit::None;
    if (space.Temp <= tempLimit) return DiskLimit::TempFolder;
    if (space.Music <= musicLimit) return DiskLimit::MusicFolder;
    return DiskLimit::None;
}

/// Songs go to the folder that the program was started with, also when another one was chosen since. Both
/// have to have room: the next start writes to the new one.
std::vector<std::string> DiskCheck::TempFolders() const {
    std::vector<std::string> folders = {Parts.Folders.Paths[0]};
    const std::string songs = Parts.Folders.SongTempFolder.substr(0, Parts.Folders.SongTempFolder.rfind('/'));
    if (!songs.empty() && songs != folders[0]) folders.push_back(songs);
    return folders;
}

DiskCheck::Spaces DiskCheck::Measure() const {
    Spaces spaces;
    const std::string& musicFolder = Parts.Folders.Paths[1];
    for (const std::string& folder : TempFolders()) {
        const FileOr<uint64_t> free = Parts.Files.FreeSpace(folder);
        if (!free) return {{}, folder};
        spaces.Each.push_back({*free, 0, Parts.Files.SameDrive(folder, musicFolder)});
    }
    const FileOr<uint64_t> music = Parts.Files.FreeSpace(musicFolder);
    if (!music) return {{}, musicFolder};
    for (DiskSpace& space : spaces.Each) space.Music = *music;
    return spaces;
}

DiskLimit DiskCheck::LimitOf(const Spaces& spaces) const {
    for (const DiskSpace& space : spaces.Each) {
        const DiskLimit limit = FindDiskLimit(Parts.Settings, space);
        if (limit != DiskLimit::None) return limit;
    }
    return DiskLimit::None;
}

/// Measures, after the margins have made room as far as they can.
DiskCheck::Spaces DiskCheck::MeasureWithoutMargins() {
    Spaces spaces = Measure();
    const auto temporary = [&] {
        const DiskLimit limit = spaces.Refused.empty() ? LimitOf(spaces) : DiskLimit::None;
        return limit == DiskLimit::OneDrive || limit == DiskLimit::TempFolder;
    };
    while (temporary() && Parts.Margins.DropOldest()) spaces = Measure();
    return spaces;
}

bool DiskCheck::HasRoom() {
    const Spaces spaces = MeasureWithoutMargins();
    const auto hasReserve = [&](const DiskSpace& space) {
        return space.Temp >= SecondsOfReserve * Format.nAvgBytesPerSec;
    };
    return spaces.Refused.empty() && std::ranges::all_of(spaces.Each, hasReserve) &&
           LimitOf(spaces) == DiskLimit::None;
}

std::optional<RoomLeft> DiskCheck::Room() const {
    const Spaces spaces = Measure();
    if (!spaces.Refused.empty()) return std::nullopt;
    const uint64_t tempLimit = LimitBytes(Parts.Settings.LowTempSpace);
    const uint64_t musicLimit = LimitBytes(Parts.Settings.LowMusicSpace);
    std::optional<RoomLeft> least;
    const auto weigh = [&](uint64_t free, uint64_t limit) {
        const uint64_t bytes = free - std::min(free, limit);
        const RoomLeft room{free, bytes / std::max<uint32_t>(Format.nAvgBytesPerSec, 1)};
        if (!least || room.Seconds < least->Seconds) least = room;
    };
    for (const DiskSpace& space : spaces.Each) {
        weigh(space.Temp, space.OneDrive ? tempLimit + musicLimit : tempLimit);
        if (!space.OneDrive) weigh(space.Music, musicLimit);
    }
    return least;
}

bool DiskCheck::Tick() {
    Second = static_cast<int16_t>((Second + 1) % 60);
    if (Second == 0) return Run();
    RunIfShort();
    return true;
}

bool DiskCheck::Run() {
    try {
        return Check();
    } catch (...) {
        // Something that nobody foresaw, such as memory that ran out.
        Report(Say.Text(Message::FreeSpaceCheckFailed.Key));
        return false;
    }
}

bool DiskCheck::Check() {
    Parts.Margins.DropOld();
    const Spaces spaces = Applies() ? MeasureWithoutMargins() : Measure();
    if (!spaces.Refused.empty()) {
        Report(Say.Text(Message::FreeSpaceUnknown.Key, {spaces.Refused}));
        return false;
    }
    if (Applies()) React(LimitOf(spaces));
    return true;
}

/// A folder that has less room than that; empty if none has, or if one cannot be asked.
std::string DiskCheck::FindShortFolder(uint64_t bytes) const {
    std::string shortOne;
    for (const std::string& folder : TempFolders()) {
        const FileOr<uint64_t> free = Parts.Files.FreeSpace(folder);
        if (!free) return {};
        if (shortOne.empty() && *free < bytes) shortOne = folder;
    }
    return shortOne;
}

void DiskCheck::RunIfShort() {
    if (!Applies()) return;
    const uint64_t reserve = SecondsOfReserve * Format.nAvgBytesPerSec;
    std::string shortOne = FindShortFolder(reserve);
    while (!shortOne.empty() && Parts.Margins.DropOldest()) shortOne = FindShortFolder(reserve);
    if (shortOne.empty()) return;
    const bool oneDrive = Parts.Files.SameDrive(shortOne, Parts.Folders.Paths[1]);
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
    Say.Show(Say.Text(texts.Status));
    Parts.Messages.RaiseInfo(texts.Deferred);
}

void DiskCheck::Report(const std::string& text) {
    Say.Write(ReportKind::Error, text);
    Say.Box(text, DialogIcon::Critical);
}

}  // namespace Corvetape
