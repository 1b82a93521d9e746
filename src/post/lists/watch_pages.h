#pragma once

#include <span>
#include <string>

#include "core/reporter.h"
#include "forms/frm_main.h"
#include "platform/processes.h"
#include "post/lists/watch_list.h"

namespace Corvetape {

/// The tabs of the two watch lists: shows the lists sorted, adds, removes, opens their files.
class WatchPages {
 public:
    /// All of them outlive it. Connects to the controls, and adds the method "AddToWatchList" to the form.
    WatchPages(frmMain& form, WatchLists& lists, Processes& processes, Reporter& say);
    WatchPages(const WatchPages&) = delete;
    WatchPages& operator=(const WatchPages&) = delete;

    /// Reads both files and shows them. A file that is there and cannot be read is reported.
    void LoadWatchLists();

    /// The lists follow to the folder of the logs, which was `before`, and are shown.
    void FollowFolder(const std::string& before);

    /// Adds an entry to the list, to its page and to its file; one that is there already is dropped.
    void AddToWatchList(WatchListKind kind, const std::string& entry);

    /// The key Enter in the box for a new entry.
    void EnterPressed(WatchListKind kind);

    /// The key Delete on a list, without Shift, Ctrl or Alt.
    void DeletePressed(WatchListKind kind);

    /// A double click on a list: its selected entry goes into the box for editing and stays in the list.
    void DoubleClicked(WatchListKind kind);

    enum class DragContent { Files, Other };
    enum class DragKeys { None, Ctrl };  ///< other keys do not count
    enum class DragEffect { None, Copy };

    /// Something is dragged over a list: what a drop would do. The keys are remembered for the drop.
    DragEffect DragOver(DragContent content, DragKeys keys);

    /// Something was dropped on a list. Of music files the names are added or, with Ctrl at the last
    /// DragOver, taken away; files of other kinds and everything else are passed over.
    void DragDrop(WatchListKind kind, DragContent content, std::span<const std::string> paths);

 private:
    void Attach(WatchListKind kind);
    void Show(WatchListKind kind);
    void ReportUnread(WatchListKind kind);
    void ShowNew(WatchListKind kind, const std::string& entry);
    void DeleteSelected(WatchListKind kind);
    void AddDropped(WatchListKind kind, std::span<const std::string> names);
    void RemoveDropped(WatchListKind kind, std::span<const std::string> names);

    frmMain& Form;
    WatchLists& Lists;
    Processes& Programs;
    Reporter& Say;
    DragKeys LastKeys = DragKeys::None;
};

}  // namespace Corvetape
