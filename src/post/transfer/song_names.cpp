#include "post/transfer/song_names.h"

#include <string_view>

#include "core/text/placeholders.h"
#include "core/text/text.h"

namespace Corvetape {

namespace {

/// Longer than any title, and short enough that a command line with eight such texts, each quoted
/// character by character, stays below the 128 KiB that the system takes.
constexpr size_t TagTextLimit = 2048;

constexpr std::string_view ReplacementCharacter = "\xEF\xBF\xBD";

std::string SongFileName(const MediaState& media, const Settings& settings, size_t limit) {
    const std::string name = SanitizeFileName(ExpandMediaData(settings.MusicFileTemplate[1], media));
    return name.empty() ? name : SafePathPart(name, limit);
}

/// Slashes of the template separate folders like its backslashes; those of the media data do not.
std::string MusicSubFolder(const MediaState& media, const Settings& settings) {
    if (media.SongMedia.StationName.empty() || !settings.UseMusicSubfolder) return {};
    const std::string folders = ReplaceAll(settings.MusicFolderTemplate, "/", "\\");
    const std::string name = SafeRelativeFolder(SanitizeFolderName(ExpandMediaData(folders, media)));
    return name.empty() ? name : "/" + name;
}

}  // namespace

bool HasSongData(const MediaState& media, EndOfSong endOfSongDetection) {
    return !media.SongMedia.Song.empty() && media.StationDataEnabled &&
           endOfSongDetection != EndOfSong::FixedTime;
}

SongNames NameSong(const MediaState& media, const Settings& settings, const WorkingFolders& folders,
                   EndOfSong endOfSongDetection) {
    SongNames names;
    names.HasSongData = HasSongData(media, endOfSongDetection);
    if (names.HasSongData) {
        const int32_t part = media.SongMedia.FilePart;
        const std::string suffix = part > 0 ? " (" + std::to_string(part) + ")" : "";
        names.WholeName = SongFileName(media, settings, SafePartBytes - suffix.size());
        names.FinalName = names.WholeName + suffix;
        names.SubFolder = MusicSubFolder(media, settings);
    } else {
        names.WholeName = names.FinalName = media.SongMedia.TempFileName;
    }
    names.SourceBase = folders.SongTempFolder + "/" + names.FinalName;
    names.TargetBase = folders.Paths[1] + names.SubFolder + "/" + names.FinalName;
    return names;
}

std::string TagText(const std::string& text) {
    std::string tag;
    std::string_view rest = text;
    while (!rest.empty()) {
        const size_t length = CharacterLength(rest);
        const std::string_view character = length > 0 ? rest.substr(0, length) : ReplacementCharacter;
        if (tag.size() + character.size() > TagTextLimit) break;
        if (rest[0] != '\0') tag += character;
        rest.remove_prefix(length > 0 ? length : 1);
    }
    return tag;
}

}  // namespace Corvetape
