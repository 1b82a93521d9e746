#pragma once

#include <span>
#include <string>

#include "forms/frm_main.h"
#include "platform/processes.h"
#include "post/watch_list.h"

namespace Corvetape {

/// The tabs of the two watch lists: shows the lists sorted, adds, removes, opens their files.
class WatchPages {
 public:
    /// All of them outlive it. Connects to the controls.
    WatchPages(frmMain& form, WatchLists& lists, Processes& processes);
    WatchPages(const WatchPages&) = delete;
    WatchPages& operator=(const WatchPages&) = delete;

    /// Reads both files and shows them.
    void LoadWatchLists();

    /// Adds an entry to the list, to its page and to its file; one that is there already is dropped.
    void AddToWatchList(WatchListKind kind, const std::string& entry);

    /// The key Enter in the box for a new entry.
    void EnterPressed(WatchListKind kind);

    /// The key Delete on a list, without Shift, Ctrl or Alt.
    void DeletePressed(WatchListKind kind);

    /// A double click on a list: its selected entry goes into the box for editing and stays in the list.
    void DoubleClicked(WatchListKind kind);

    /// What a drop of files does to the list.
    enum class Drop { AddNames, RemoveNames };

    /// Music files were dropped on a list. Files of other kinds are passed over.
    void FilesDropped(WatchListKind kind, std::span<const std::string> paths, Drop what);

 private:
    void Attach(WatchListKind kind);
    void Show(WatchListKind kind);
    void ShowNew(WatchListKind kind, const std::string& entry);
    void DeleteSelected(WatchListKind kind);

    frmMain& Form;
    WatchLists& Lists;
    Processes& Programs;
};

}  // namespace Corvetape
