// Names of files and folders out of templates and media data, and tags.
// Fields: number of the part, template of names, template of folders, artist, title, album, station, source,
// path.
#include <string>

#include "core/media_state.h"
#include "core/settings/registry.h"
#include "core/text/placeholders.h"
#include "core/text/text.h"
#include "fuzz/support/fuzz.h"
#include "post/transfer/song_names.h"
#include "sim/sim_machine.h"

namespace Corvetape {

namespace {

using Fuzz::Require;

void CheckSong(const MediaState& media, const Settings& settings) {
    WorkingFolders folders;
    folders.Paths = {"/temp", "/music", "/logs"};
    folders.SongTempFolder = "/temp/Corvet";
    const SongNames names = NameSong(media, settings, folders, EndOfSong::MediaData);
    if (!names.HasSongData) return;
    const std::string file = names.FinalName + ".wav";
    Require(Fuzz::IsFileName(file) && Fuzz::IsUtf8(file), "a song is one file in its folder");
    Require(names.SourceBase == "/temp/Corvet/" + names.FinalName, "a temporary song is in its folder");
    Require(names.TargetBase == "/music" + names.SubFolder + "/" + names.FinalName,
            "music is below its folder");
    if (names.SubFolder.empty()) return;
    Require(names.SubFolder.front() == '/', "a folder is below that of the music");
    for (const std::string& part : Split(names.SubFolder.substr(1), '/')) {
        Require(Fuzz::IsFileName(part) && Fuzz::IsUtf8(part), "a part of a folder is one name");
    }
}

void CheckText(const std::string& text) {
    for (const size_t limit : {size_t{1}, size_t{5}, SafePartBytes}) {
        const std::string part = SafePathPart(text, limit);
        Require(Fuzz::IsFileName(part) && part.size() <= limit,
                "any text gives one name of a limited length");
        Require(SafePathPart(part, limit) == part, "a safe name stays as it is");
    }
    const std::string folder = SafeRelativeFolder(text);
    Require(SafeRelativeFolder(folder) == folder && !folder.starts_with('/') && !folder.ends_with('/'),
            "a safe folder stays as it is");
    const std::string tag = TagText(text);
    Require(tag.size() <= 2048 && Fuzz::IsUtf8(tag) && tag.find('\0') == std::string::npos,
            "a tag is UTF-8 of a limited length");
    const std::string path = NormalizePath(text);
    Require(path.find("//") == std::string::npos && path.find('\\') == std::string::npos &&
                NormalizePath(path) == path,
            "a path is written in one way");
    for (int32_t piece = 0; piece <= 8; ++piece) {
        Require(text.find(PathPart(text, PathPiece{piece})) != std::string::npos,
                "a piece of a path stands in it");
    }
}

void CheckPlaceholders(const std::string& text) {
    SimMachine machine;
    const RegistryBranches registry(machine.Files, "/home/user/user.reg", "/home/user/machine.reg");
    const Placeholders placeholders(machine.Clock, machine.Folders, registry);
    const std::string expanded = placeholders.ExpandPlaceholders(text);
    const bool plain = text.find_first_of(std::string_view("%\\\0", 3)) == std::string::npos;
    Require(!plain || expanded == TrimBlanks(text), "a text without placeholders stays");
    Require(!Fuzz::IsUtf8(text) || Fuzz::IsUtf8(expanded), "what is expanded is UTF-8 if the text is");
}

}  // namespace

void FuzzOne(Fuzz::Input input) {
    MediaState media;
    Settings settings;
    media.SongMedia.FilePart = static_cast<int32_t>(input.Number());
    settings.MusicFileTemplate[1] = input.Field();
    settings.MusicFolderTemplate = input.Field();
    media.SongMedia.Artist = input.Field();
    media.SongMedia.Song = input.Field();
    media.SongMedia.Album = input.Field();
    media.SongMedia.StationName = input.Field();
    media.ProviderName = input.Field();
    const std::string text(input.Rest());
    CheckSong(media, settings);
    const std::string expanded = ExpandMediaData(settings.MusicFileTemplate[1], media);
    Require(expanded.size() <= 65'536, "media data make no text grow beyond its limit");
    CheckText(text);
    CheckText(expanded);
    CheckPlaceholders(text);
}

}  // namespace Corvetape
