#include "post/lists/watch_pages.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "core/controls/message_texts.h"
#include "core/opening.h"
#include "core/text/fold.h"
#include "core/text/text.h"

namespace Corvetape {

namespace {

size_t Number(WatchListKind kind) {
    return static_cast<size_t>(kind);
}

bool ComesBefore(const std::string& a, const std::string& b) {
    return FoldText(a) < FoldText(b);
}

}  // namespace

WatchPages::WatchPages(frmMain& form, WatchLists& lists, Processes& processes, Reporter& say)
    : Form(form), Lists(lists), Programs(processes), Say(say) {
    Attach(WatchListKind::Include);
    Attach(WatchListKind::Exclude);
    Form.Methods.Add<int32_t, std::string>("AddToWatchList", [this](int32_t list, const std::string& entry) {
        if (list != 0 && list != 1) return;
        AddToWatchList(list == 0 ? WatchListKind::Include : WatchListKind::Exclude, entry);
    });
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
        [this, i] { Form.cmdDeleteFromWatchList[i].Enabled(Form.lstWatch[i].SelCount() > 0); });
    Form.cmdDeleteFromWatchList[i].Click.Connect([this, kind] { DeleteSelected(kind); });
    Form.cmdEditWatchList[i].Click.Connect([this, kind] {
        // A list that never had an entry has no file yet, and an editor opens only what is there.
        Lists.MakeFile(kind);
        OpenOutside(Lists.FileOf(kind), Programs, Say);
    });
}

void WatchPages::LoadWatchLists() {
    for (const WatchListKind kind : {WatchListKind::Include, WatchListKind::Exclude}) {
        Lists.LoadWatchList(kind);  // a list without a file is empty
        ReportUnread(kind);
        Show(kind);
    }
}

void WatchPages::FollowFolder(const std::string& before) {
    Lists.FollowFolder(before);
    for (const WatchListKind kind : {WatchListKind::Include, WatchListKind::Exclude}) {
        ReportUnread(kind);
        Show(kind);
    }
}

void WatchPages::ReportUnread(WatchListKind kind) {
    if (Lists.IsUnread(kind))
        Say.WriteAndShow(ReportKind::Error, Say.Text(Message::ListNotRead.Key, {Lists.FileOf(kind)}));
}

void WatchPages::Show(WatchListKind kind) {
    std::vector<std::pair<std::u32string, std::string>> sorted;
    for (const std::string& entry : Lists.List(kind).Entries()) sorted.emplace_back(FoldText(entry), entry);
    std::ranges::sort(sorted);
    std::vector<ListItem> items;
    items.reserve(sorted.size());
    for (auto& [key, entry] : sorted) items.push_back({std::move(entry)});
    Form.lstWatch[Number(kind)].Items(std::move(items));
    Form.cmdDeleteFromWatchList[Number(kind)].Enabled(false);
}

void WatchPages::ShowNew(WatchListKind kind, const std::string& entry) {
    ListBox& list = Form.lstWatch[Number(kind)];
    const auto& items = list.Items();
    const auto place = std::ranges::upper_bound(items, entry, ComesBefore, &ListItem::Text);
    const auto index = static_cast<int32_t>(place - items.begin());
    list.InsertItem(index, entry);
    list.Reveal(index);
}

void WatchPages::AddToWatchList(WatchListKind kind, const std::string& entry) {
    if (Lists.AddToWatchList(kind, entry)) ShowNew(kind, Lists.List(kind).Entries().back());
}

void WatchPages::EnterPressed(WatchListKind kind) {
    if (!Form.txtWatch[Number(kind)].Text().empty()) Form.cmdAddToWatchList[Number(kind)].Press();
}

void WatchPages::DeletePressed(WatchListKind kind) {
    if (Form.lstWatch[Number(kind)].SelCount() > 0) Form.cmdDeleteFromWatchList[Number(kind)].Press();
}

void WatchPages::DoubleClicked(WatchListKind kind) {
    const ListBox& list = Form.lstWatch[Number(kind)];
    if (list.ListIndex() < 0) return;
    Form.txtWatch[Number(kind)].Text(list.Items()[static_cast<size_t>(list.ListIndex())].Text);
}

void WatchPages::DeleteSelected(WatchListKind kind) {
    std::vector<std::string> gone;
    for (ListItem& item : Form.lstWatch[Number(kind)].TakeSelected()) gone.push_back(std::move(item.Text));
    Lists.RemoveAll(kind, gone);
    Lists.SaveWatchList(kind);  // a list that cannot be written holds in memory until the program ends
    Form.cmdDeleteFromWatchList[Number(kind)].Enabled(false);
}

WatchPages::DragEffect WatchPages::DragOver(DragContent content, DragKeys keys) {
    LastKeys = keys;
    return content == DragContent::Files ? DragEffect::Copy : DragEffect::None;
}

void WatchPages::DragDrop(WatchListKind kind, DragContent content, std::span<const std::string> paths) {
    if (content != DragContent::Files) return;
    std::vector<std::string> names;
    for (const std::string& path : paths) {
        std::string name = NameOfDroppedFile(path);
        if (!name.empty()) names.push_back(std::move(name));
    }
    if (LastKeys == DragKeys::Ctrl) {
        RemoveDropped(kind, names);
    } else {
        AddDropped(kind, names);
    }
}

void WatchPages::AddDropped(WatchListKind kind, std::span<const std::string> names) {
    // Once for all of them: showing each on the screen takes seconds with long lists.
    std::vector<ListItem> items = Form.lstWatch[Number(kind)].Items();
    std::optional<ptrdiff_t> last;
    for (const std::string& name : names) {
        if (!Lists.Add(kind, name)) continue;
        const auto place = std::ranges::upper_bound(items, name, ComesBefore, &ListItem::Text);
        last = place - items.begin();
        items.insert(place, ListItem{name});
    }
    if (last) {
        Form.lstWatch[Number(kind)].Items(std::move(items));
        Form.lstWatch[Number(kind)].Reveal(static_cast<int32_t>(*last));
    }
    Lists.SaveWatchList(kind);  // a list that cannot be written holds in memory until the program ends
}

void WatchPages::RemoveDropped(WatchListKind kind, std::span<const std::string> names) {
    Lists.RemoveAll(kind, names);
    Lists.SaveWatchList(kind);  // a list that cannot be written holds in memory until the program ends
    Lists.LoadWatchList(kind);  // what could not be written comes back
    Show(kind);
}

}  // namespace Corvetape
