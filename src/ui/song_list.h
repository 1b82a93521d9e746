#pragma once

#include <QListView>

#include "ui/ui_parts.h"

namespace Corvetape {

/// The songs of this run, newest first. A double click plays a song in the user's own player.
class SongList : public QListView {
 public:
    explicit SongList(const UiParts& parts);

 protected:
    void paintEvent(QPaintEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

 private:
    /// The file of a song, of which there may be none any more.
    QString FileOf(const QModelIndex& index) const;

    const UiParts& Parts;
};

/// "m:ss" or "h:mm:ss".
QString LengthText(uint64_t seconds);

/// What became of a song, and how far it is on its way, in words.
QString FateText(const RunSong& song, const Words& say);
QString ProgressText(const RunSong& song, const Words& say);

}  // namespace Corvetape
