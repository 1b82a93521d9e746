#pragma once

#include <QObject>

#include "post/lists/watch_pages.h"

class QListView;

namespace Corvetape {

/// What a watch list takes besides clicks: files that are dragged onto it, the key Delete, a double click.
class ListDrops : public QObject {
 public:
    /// Attaches itself to the view, which owns it from then on. `pages` outlives both.
    ListDrops(QListView* view, WatchPages& pages, WatchListKind kind);

    bool eventFilter(QObject* watched, QEvent* event) override;

 private:
    WatchPages& Pages;
    WatchListKind Kind;
};

}  // namespace Corvetape
