#include "post/watch_pages.h"

#include <algorithm>
#include <vector>

#include "core/fold.h"
#include "core/text.h"

namespace Corvetape {

namespace {

size_t Number(WatchListKind kind) {
    return static_cast<size_t>(kind);
}

bool ComesBefore(const std::string& a, const std::string& b) {
    return FoldText(a) < FoldText(b);
}

}  // namespace

WatchPages::WatchPages(frmMain& form, WatchLists& lists, Processes& processes)
    : Form(form), Lists(lists), Programs(processes) {
    Attach(WatchListKind::Include);
    Attach(WatchListKind::Exclude);
}

void WatchPages::Attach(WatchListKind kind) {
    const size_t i = Number(kind);
    Form.cmdAddToWatchList[i].Enabled(false);
    Form.cmdDeleteFromWatchList[i].Enabled(false);
    Form.txtWatch[i].Change.Connect(
        [this, i] { Form.cmdAddToWatchList[i].Enabled(!Form.txtWatch[i].Text().empty()); });
    Form.cmdAddToWatchList[i].Click.Connect([this, i, kind] {
        AddToWatchList(kind, Form.txtWatch[i].Text());
        Form.txtWatch[i].Text("");
    });
    Form.lstWatch[i].Click.Connect(
        [this, i] { Form.cmdDeleteFromWatchList[i].Enabled(Form.lstWatch[i].ListIndex() >= 0); });
    Form.cmdDeleteFromWatchList[i].Click.Connect([this, kind] { DeleteSelected(kind); });
    Form.cmdEditWatchList[i].Click.Connect([this, kind] {
        // Without an editor nothing opens; there is nobody else to tell.
        Programs.ShellOpen(Lists.FileOf(kind), "", "");
    });
}

void WatchPages::LoadWatchLists() {
    for (const WatchListKind kind : {WatchListKind::Include, WatchListKind::Exclude}) {
        Lists.LoadWatchList(kind);  // a list without a file is empty
        Show(kind);
    }
}

void WatchPages::Show(WatchListKind kind) {
    std::vector<std::pair<std::u32string, std::string>> sorted;
    for (const std::string& entry : Lists.List(kind).Entries()) sorted.emplace_back(FoldText(entry), entry);
    std::ranges::sort(sorted);
    ListBox& list = Form.lstWatch[Number(kind)];
    list.Clear();
    for (auto& [key, entry] : sorted) list.AddItem(std::move(entry));
    Form.cmdDeleteFromWatchList[Number(kind)].Enabled(false);
}

void WatchPages::ShowNew(WatchListKind kind, const std::string& entry) {
    ListBox& list = Form.lstWatch[Number(kind)];
    const auto& items = list.Items();
    const auto place = std::ranges::upper_bound(items, entry, ComesBefore, &ListItem::Text);
    list.InsertItem(static_cast<int32_t>(place - items.begin()), entry);
}

void WatchPages::AddToWatchList(WatchListKind kind, const std::string& entry) {
    if (Lists.AddToWatchList(kind, entry)) ShowNew(kind, Lists.List(kind).Entries().back());
}

void WatchPages::EnterPressed(WatchListKind kind) {
    if (!Form.txtWatch[Number(kind)].Text().empty()) Form.cmdAddToWatchList[Number(kind)].Press();
}

void WatchPages::DeletePressed(WatchListKind kind) {
    if (Form.lstWatch[Number(kind)].ListIndex() >= 0) Form.cmdDeleteFromWatchList[Number(kind)].Press();
}

void WatchPages::DoubleClicked(WatchListKind kind) {
    const ListBox& list = Form.lstWatch[Number(kind)];
    if (list.ListIndex() < 0) return;
    Form.txtWatch[Number(kind)].Text(list.Items()[static_cast<size_t>(list.ListIndex())].Text);
}

void WatchPages::DeleteSelected(WatchListKind kind) {
    ListBox& list = Form.lstWatch[Number(kind)];
    if (list.ListIndex() >= 0) {
        Lists.Remove(kind, list.Items()[static_cast<size_t>(list.ListIndex())].Text);
        list.RemoveItem(list.ListIndex());
    }
    Lists.SaveWatchList(kind);  // a list that cannot be written holds in memory until the program ends
    Form.cmdDeleteFromWatchList[Number(kind)].Enabled(false);
}

void WatchPages::FilesDropped(WatchListKind kind, std::span<const std::string> paths, Drop what) {
    for (const std::string& path : paths) {
        const std::string name = NameOfDroppedFile(path);
        if (name.empty()) continue;
        if (what == Drop::RemoveNames) {
            Lists.Remove(kind, name);
        } else if (Lists.Add(kind, name)) {
            ShowNew(kind, name);
        }
    }
    Lists.SaveWatchList(kind);  // a list that cannot be written holds in memory until the program ends
    if (what == Drop::AddNames) return;
    Lists.LoadWatchList(kind);  // an outside edit is taken over on the way
    Show(kind);
}

}  // namespace Corvetape
