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

WatchPages::DragContent ContentOf(const QDropEvent& event) {
    return event.mimeData()->hasUrls() ? WatchPages::DragContent::Files : WatchPages::DragContent::Other;
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
    if (over) {
        const bool copies = Pages.DragOver(ContentOf(drop), KeysOf(drop)) == WatchPages::DragEffect::Copy;
        drop.setDropAction(copies ? Qt::CopyAction : Qt::IgnoreAction);
        drop.setAccepted(copies);
        return true;
    }
    std::vector<std::string> paths;
    for (const QUrl& url : drop.mimeData()->urls()) {
        if (url.isLocalFile()) paths.push_back(url.toLocalFile().toStdString());
    }
    Pages.DragDrop(Kind, ContentOf(drop), paths);
    drop.acceptProposedAction();
    return true;
}

}  // namespace Corvetape
