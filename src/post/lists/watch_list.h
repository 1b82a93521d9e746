#pragma once

#include <array>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "core/media_state.h"
#include "core/settings/settings.h"
#include "core/text/like.h"
#include "platform/files.h"

namespace Corvetape {

/// The two lists by their index.
enum class WatchListKind : size_t { Include = 0, Exclude = 1 };

/// Names of songs and patterns for them, in the order in which they were added. Two entries that differ in
/// case only are one. Answers for a hundred thousand entries within milliseconds.
class WatchList {
 public:
    const std::vector<std::string>& Entries() const { return OwnEntries; }

    /// False, and no change, if the entry is there already but for its case.
    bool Add(std::string_view entry);

    /// Takes many entries out at once; those that are not there are passed over. Returns how many were there.
    size_t RemoveAll(std::span<const std::string> entries);

    /// True if the name matches an entry, case ignored.
    bool Holds(std::string_view name) const;

 private:
    struct Pattern {
        std::u32string Key;
        LikePattern Compiled;
    };
    std::vector<std::string> OwnEntries;
    std::unordered_set<std::u32string> Keys;   ///< folded entries, to find doubled ones
    std::unordered_set<std::u32string> Plain;  ///< folded entries without anything special in them
    std::vector<Pattern> Patterns;             ///< the others
};

/// The lists of songs to keep and to drop, with their files in the folder of the logs.
class WatchLists {
 public:
    /// Both outlive it.
    WatchLists(Files& files, const WorkingFolders& folders) : Disk(files), Folders(folders) {}

    const WatchList& List(WatchListKind kind) const { return Lists[static_cast<size_t>(kind)]; }

    /// Replaces the list by what its file holds; false, and no change, if the file cannot be read. A file
    /// that is there all the same is not written from then on, until it has been read. Lines are taken as
    /// they are typed, empty ones left out; doubled ones vanish.
    bool LoadWatchList(WatchListKind kind);

    /// True while the list's file is there and could not be read.
    bool IsUnread(WatchListKind kind) const { return Unread[static_cast<size_t>(kind)]; }

    /// The folder of the logs was `before`: a list that the new one does not have is taken along, one that it
    /// has is read.
    void FollowFolder(const std::string& before);

    /// Rewrites the whole file. False if that failed or the file could not be read; the list in memory stays.
    bool SaveWatchList(WatchListKind kind);

    /// Writes the list if it has no file yet. One that is there may have been edited outside.
    void MakeFile(WatchListKind kind);

    /// Adds an entry without the blanks at its ends and saves the list. False if it was there already, or is
    /// empty.
    bool AddToWatchList(WatchListKind kind, std::string_view entry);

    /// Adds or removes without saving, for many at once.
    bool Add(WatchListKind kind, std::string_view entry) { return ListOf(kind).Add(entry); }
    size_t RemoveAll(WatchListKind kind, std::span<const std::string> entries) {
        return ListOf(kind).RemoveAll(entries);
    }

    /// True if the song of this name is to be dropped: on the second list and not on the first.
    bool IsSongExcluded(std::string_view songName) const;

    /// Path of a list's file: "Include.txt" or "Exclude.txt".
    std::string FileOf(WatchListKind kind) const;

 private:
    WatchList& ListOf(WatchListKind kind) { return Lists[static_cast<size_t>(kind)]; }

    Files& Disk;
    const WorkingFolders& Folders;
    std::array<WatchList, 2> Lists;
    std::array<bool, 2> Unread = {false, false};
};

/// The name that a song is looked up by: the template for names with song data, with artist, title and album
/// in it, as a file name. Other placeholders stay.
std::string WatchedName(std::string_view musicFileTemplate, const STATIONANDSONGDATA& media);

/// The name of the song in a dropped music file: the file's name without folder and extension, blanks taken
/// off. Empty if the file is not one of .wav, .wma, .mp3 and .ogg, case ignored, or is in no folder, or if
/// its name is no single line.
std::string NameOfDroppedFile(std::string_view path);

}  // namespace Corvetape
