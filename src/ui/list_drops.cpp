#include "ui/list_drops.h"

#include <QDropEvent>
#include <QKeyEvent>
#include <QListView>
#include <QMimeData>
#include <QUrl>
#include <string>
#include <vector>

namespace Corvetape {

namespace {

/// Files only: the address of a page is dragged as a URL, too.
std::vector<std::string> FilesOf(const QDropEvent& event) {
    std::vector<std::string> paths;
    for (const QUrl& url : event.mimeData()->urls()) {
        if (url.isLocalFile()) paths.push_back(url.toLocalFile().toStdString());
    }
    return paths;
}

WatchPages::DragKeys KeysOf(const QDropEvent& event) {
    const bool ctrl = event.modifiers().testFlag(Qt::ControlModifier);
    return ctrl ? WatchPages::DragKeys::Ctrl : WatchPages::DragKeys::None;
}

}  // namespace

ListDrops::ListDrops(QListView* view, WatchPages& pages, WatchListKind kind)
    : QObject(view), Pages(pages), Kind(kind) {
    view->setAcceptDrops(true);
    view->viewport()->setAcceptDrops(true);
    view->viewport()->installEventFilter(this);
    view->installEventFilter(this);
    connect(view, &QListView::doubleClicked, this, [this] { Pages.DoubleClicked(Kind); });
}

bool ListDrops::eventFilter(QObject* /*watched*/, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const auto& key = static_cast<QKeyEvent&>(*event);
        if (key.key() != Qt::Key_Delete || key.modifiers() != Qt::NoModifier) return false;
        Pages.DeletePressed(Kind);
        return true;
    }
    const bool over = event->type() == QEvent::DragEnter || event->type() == QEvent::DragMove;
    if (!over && event->type() != QEvent::Drop) return false;
    auto& drop = static_cast<QDropEvent&>(*event);
    const std::vector<std::string> paths = FilesOf(drop);
    const auto content = paths.empty() ? WatchPages::DragContent::Other : WatchPages::DragContent::Files;
    // The keys of the last move count, not those of the drop.
    if (over) {
        Pages.DragOver(content, KeysOf(drop));
    } else {
        Pages.DragDrop(Kind, content, paths);
    }
    const bool copies = content == WatchPages::DragContent::Files;
    // Never a move, whatever the source proposes: it would take its files away.
    drop.setDropAction(copies ? Qt::CopyAction : Qt::IgnoreAction);
    drop.setAccepted(copies);
    return true;
}

}  // namespace Corvetape
