// Lists of songs: their files, what is added and removed, and the names that are looked up in them.
// Fields: name of a song, entry, template, artist, title, album, file.
#include <algorithm>
#include <string>
#include <vector>

#include "core/text/fold.h"
#include "core/text/text.h"
#include "fuzz/support/fuzz.h"
#include "post/lists/watch_list.h"
#include "sim/sim_files.h"

namespace Corvetape {

namespace {

using Fuzz::Require;

constexpr WatchListKind Kind = WatchListKind::Exclude;

bool SlowHolds(const WatchList& list, std::string_view name) {
    return std::ranges::any_of(
        list.Entries(), [&](const std::string& entry) { return Like(name, entry, LikeCase::Ignored); });
}

bool HasEntry(const WatchList& list, std::string_view entry) {
    return std::ranges::any_of(list.Entries(),
                               [&](const std::string& each) { return FoldText(each) == FoldText(entry); });
}

void CheckList(const WatchList& list, std::string_view name) {
    for (size_t i = 0; i < list.Entries().size(); ++i) {
        const std::string& entry = list.Entries()[i];
        Require(!entry.empty() && entry.find('\n') == std::string::npos, "an entry is one line");
        const auto same = [&](const std::string& each) { return FoldText(each) == FoldText(entry); };
        Require(std::ranges::count_if(list.Entries(), same) == 1, "no entry stands twice");
    }
    Require(list.Holds(name) == SlowHolds(list, name), "a list says what its entries say one by one");
}

void CheckRoundTrip(SimFiles& disk, const WorkingFolders& folders, WatchLists& lists) {
    Require(lists.SaveWatchList(Kind), "a list can be saved");
    WatchLists again(disk, folders);
    Require(again.LoadWatchList(Kind) && again.List(Kind).Entries() == lists.List(Kind).Entries(),
            "a saved list is read as it was");
}

bool Remove(WatchLists& lists, const std::string& entry) {
    return lists.RemoveAll(Kind, {&entry, 1}) == 1;
}

void CheckEntry(SimFiles& disk, const WorkingFolders& folders, WatchLists& lists, std::string_view entry) {
    const size_t before = lists.List(Kind).Entries().size();
    const bool added = lists.AddToWatchList(Kind, entry);
    Require(lists.List(Kind).Entries().size() == before + (added ? 1 : 0), "one entry is added or none");
    if (added) {
        const std::string& last = lists.List(Kind).Entries().back();
        Require(TrimBlanks(last) == last, "an entry has no blanks at its ends");
        CheckRoundTrip(disk, folders, lists);
        Require(Remove(lists, last) && lists.List(Kind).Entries().size() == before,
                "what was added can be removed");
    }
    const bool there = HasEntry(lists.List(Kind), entry);
    Require(Remove(lists, std::string(entry)) == there && !HasEntry(lists.List(Kind), entry),
            "what is removed is gone");
}

}  // namespace

void FuzzOne(Fuzz::Input input) {
    const std::string_view name = input.Field();
    const std::string_view entry = input.Field();
    const std::string_view pattern = input.Field();
    STATIONANDSONGDATA media;
    media.Artist = input.Field();
    media.Song = input.Field();
    media.Album = input.Field();

    SimFiles disk;
    WorkingFolders folders;
    folders.Paths = {"/temp", "/music", "/logs"};
    WatchLists lists(disk, folders);
    disk.Put(lists.FileOf(Kind), input.Rest());
    Require(lists.LoadWatchList(Kind), "any file is a list");
    CheckList(lists.List(Kind), name);
    Require(lists.IsSongExcluded(name) == lists.List(Kind).Holds(name),
            "without the other list this one decides");
    CheckRoundTrip(disk, folders, lists);
    CheckEntry(disk, folders, lists, entry);
    CheckList(lists.List(Kind), name);

    const std::string watched = WatchedName(pattern, media);
    Require(watched.empty() || Fuzz::IsFileName(watched), "a name that is looked up can be that of a file");
    Require(Fuzz::IsUtf8(watched), "a name that is looked up is UTF-8");
    const std::string dropped = NameOfDroppedFile(entry);
    Require(dropped.find_first_of("/\\") == std::string::npos && TrimBlanks(dropped) == dropped,
            "the name of a dropped file has neither folder nor blanks");
}

}  // namespace Corvetape
