#pragma once

#include <QListView>

#include "ui/ui_parts.h"

class QMenu;

namespace Corvetape {

/// The songs of this run, newest first. A double click plays a song in the user's own player.
class SongList : public QListView {
 public:
    explicit SongList(const UiParts& parts);

    /// Everything that can be done with the song in `row`; what cannot be done now is disabled. Its entries
    /// mean this song, also when others have come before it meanwhile.
    void FillMenu(QMenu& menu, int row);

 protected:
    void paintEvent(QPaintEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

 private:
    const RunSong& SongAt(int row) const { return Parts.Songs.Songs().at(static_cast<size_t>(row)); }
    void Play(const QModelIndex& index);
    void Keep(uint64_t number);
    void ShowLogLines(const RunSong& song);

    const UiParts& Parts;
};

/// "m:ss" or "h:mm:ss".
QString LengthText(uint64_t seconds);

/// What became of a song, in words.
QString FateText(const RunSong& song, const Words& say);
/// How sure it is that a kept song begins and ends where it does, in words; empty where nobody knows.
QString CutsText(const RunSong& song, const Words& say);

/// Why a kept song is not whole, a reason a line; empty for any other, and where its cuts are reason enough.
QString FlawsText(const RunSong& song, const Words& say);

/// The same as CutsText of its less sure end only, for a narrow column.
QString ShortCutsText(const RunSong& song, const Words& say);

/// How far a song is on its way to its music file, in words; empty for one that is on none.
QString ProgressText(const RunSong& song, const Words& say);

}  // namespace Corvetape
