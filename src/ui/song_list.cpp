#include "ui/song_list.h"

#include <QAbstractListModel>
#include <QContextMenuEvent>
#include <QDesktopServices>
#include <QFileInfo>
#include <QMenu>
#include <QPainter>
#include <QPointer>
#include <QStyledItemDelegate>
#include <QUrl>
#include <algorithm>

#include "ui/cover_view.h"
#include "ui/look.h"
#include "ui/make.h"
#include "ui/text_keys.h"

namespace Corvetape {

QString LengthText(uint64_t seconds) {
    const QChar zero('0');
    if (seconds < 3600) return QString("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, zero);
    return QString("%1:%2:%3")
        .arg(seconds / 3600)
        .arg(seconds / 60 % 60, 2, 10, zero)
        .arg(seconds % 60, 2, 10, zero);
}

QString FateText(const RunSong& song, const Words& say) {
    if (song.Fate == SongFate::Short) return say(Key::TooShort);
    if (song.Fate == SongFate::Unwanted) return say(Key::Unwanted);
    if (song.Fate == SongFate::Aborted) return say(Key::Aborted);
    if (song.Health == SongHealth::Damaged) return say(Key::Damaged);
    return say(song.Health == SongHealth::Whole ? Key::Whole : Key::NotWhole);
}

QString ProgressText(const RunSong& song, const Words& say) {
    switch (song.Progress) {
        case SongProgress::None:
            return {};
        case SongProgress::Waiting:
            return say(Key::WaitingForTurn);
        case SongProgress::Encoding:
            return say(Key::Encoding);
        case SongProgress::Made:
            return say(Key::Made,
                       {QFileInfo(QString::fromStdString(song.MusicFile)).suffix().toUpper().toStdString()});
        case SongProgress::Stays:
            return say(Key::Stays);
        case SongProgress::Failed:
            return say(Key::Failed);
    }
    return {};
}

namespace {

QString NameOf(const RunSong& song) {
    if (!song.Media.Song.empty()) return QString::fromStdString(song.Media.Song);
    return QFileInfo(QString::fromStdString(song.TempFile)).completeBaseName();
}

class SongModel : public QAbstractListModel {
 public:
    SongModel(const UiParts& parts, QObject* parent) : QAbstractListModel(parent), Parts(parts) {
        const QPointer<SongModel> kept(this);
        Parts.Songs.Added.Connect([kept] {
            if (kept) kept->SongAdded();
        });
        Parts.Songs.ProgressChanged.Connect([kept](size_t row) {
            if (kept) kept->SongChanged(static_cast<int>(row));
        });
        Rows = Count();
    }

    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : Rows; }

    QVariant data(const QModelIndex& index, int role) const override {
        if (!index.isValid()) return {};
        const RunSong& song = Parts.Songs.Songs().at(static_cast<size_t>(index.row()));
        const QString artist = QString::fromStdString(song.Media.Artist);
        if (role == Qt::DisplayRole) return NameOf(song);
        if (role == Qt::AccessibleTextRole) {
            return QStringList{NameOf(song), artist, LengthText(song.Seconds), FateText(song, Parts.Say),
                               ProgressText(song, Parts.Say)}
                .join(", ");
        }
        if (role == Qt::ToolTipRole) {
            return QString::fromStdString(song.MusicFile.empty() ? song.TempFile : song.MusicFile);
        }
        return {};
    }

 private:
    int Count() const { return static_cast<int>(Parts.Songs.Songs().size()); }

    void SongAdded() {
        if (Count() == Rows) return SongChanged(-1);  // the oldest has gone for it
        beginInsertRows({}, 0, 0);
        Rows = Count();
        endInsertRows();
    }

    void SongChanged(int row) {
        emit dataChanged(index(std::max(row, 0), 0), index(row < 0 ? Rows - 1 : row, 0));
    }

    const UiParts& Parts;
    int Rows = 0;
};

class SongDelegate : public QStyledItemDelegate {
 public:
    SongDelegate(const UiParts& parts, QObject* parent) : QStyledItemDelegate(parent), Parts(parts) {}

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& /*index*/) const override {
        return {option.rect.width(), std::max(5 * Grid, option.fontMetrics.height() + 2 * Grid)};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        const Look& look = PresentLook();
        const RunSong& song = Parts.Songs.Songs().at(static_cast<size_t>(index.row()));
        const QRect line = option.rect;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        if (option.state & QStyle::State_Selected) painter->fillRect(line, look.Soft);
        painter->setPen(look.Line);
        painter->drawLine(line.bottomLeft(), line.bottomRight());
        const int side = 3 * Grid;
        const QRectF cover(line.left() + 12, line.top() + (line.height() - side) / 2.0, side, side);
        if (song.Fate == SongFate::Kept) {
            PaintCover(*painter, cover, CoverNameOf(song.Media), 4);
        } else {
            painter->setPen(Qt::NoPen);
            painter->setBrush(look.Line);
            painter->drawRoundedRect(cover, 4, 4);
        }
        PaintTexts(*painter, line.adjusted(12 + side + 12, 0, -12, 0), song);
        painter->restore();
    }

 private:
    /// From the right: progress, fate, length; the name takes what is left.
    void PaintTexts(QPainter& painter, QRect line, const RunSong& song) const {
        const Look& look = PresentLook();
        const bool kept = song.Fate == SongFate::Kept;
        const bool failed = song.Progress == SongProgress::Failed;
        const int column = 17 * Grid;
        const auto text = [&](int width, const QString& words, const QColor& ink, Qt::Alignment side) {
            const QRect place(line.right() - width, line.top(), width, line.height());
            painter.setPen(ink);
            const QString shown = painter.fontMetrics().elidedText(words, Qt::ElideRight, width - Grid);
            painter.drawText(place, side | Qt::AlignVCenter, shown);
            line.setRight(place.left());
        };
        painter.setFont(ScaledFont(1));
        const QString progress = ProgressText(song, Parts.Say);
        text(column, progress, failed ? look.Warning : look.Dim, Qt::AlignLeft);
        const bool whole = kept && song.Health == SongHealth::Whole;
        text(column, (whole ? QString::fromUtf8("✓ ") : QString()) + FateText(song, Parts.Say),
             whole ? look.Good : (kept ? look.Warning : look.Dim), Qt::AlignLeft);
        text(8 * Grid, LengthText(song.Seconds) + "   ", look.Dim, Qt::AlignRight);
        PaintName(painter, line.adjusted(0, 0, -Grid, 0), song);
    }

    static void PaintName(QPainter& painter, QRect line, const RunSong& song) {
        const Look& look = PresentLook();
        const bool kept = song.Fate == SongFate::Kept;
        painter.setFont(ScaledFont(1, kept ? QFont::DemiBold : QFont::Normal));
        painter.setPen(kept ? look.Text : look.Dim);
        const QString name = painter.fontMetrics().elidedText(NameOf(song), Qt::ElideRight, line.width());
        painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter, name);
        line.setLeft(line.left() + painter.fontMetrics().horizontalAdvance(name) + Grid);
        painter.setFont(ScaledFont(1));
        painter.setPen(look.Dim);
        const QString artist = QString::fromStdString(song.Media.Artist);
        painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter,
                         painter.fontMetrics().elidedText(artist, Qt::ElideRight, line.width()));
    }

    const UiParts& Parts;
};

}  // namespace

SongList::SongList(const UiParts& parts) : Parts(parts) {
    setObjectName("songs");
    setAccessibleName(Parts.Say(Key::SongsOfRun));
    setModel(Make<SongModel>(parts, this));
    setItemDelegate(Make<SongDelegate>(parts, this));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(QListView::ScrollPerPixel);
    connect(this, &QListView::activated, this, [this](const QModelIndex& index) {
        const QString file = FileOf(index);
        if (!file.isEmpty()) QDesktopServices::openUrl(QUrl::fromLocalFile(file));
    });
}

QString SongList::FileOf(const QModelIndex& index) const {
    if (!index.isValid()) return {};
    const RunSong& song = Parts.Songs.Songs().at(static_cast<size_t>(index.row()));
    for (const std::string& path : {song.MusicFile, song.TempFile}) {
        const QString file = QString::fromStdString(path);
        if (!file.isEmpty() && QFileInfo::exists(file)) return file;
    }
    return {};
}

void SongList::contextMenuEvent(QContextMenuEvent* event) {
    const QString file = FileOf(indexAt(event->pos()));
    QMenu menu(this);
    QAction* const play = menu.addAction(Parts.Say(Key::PlaySong));
    QAction* const folder = menu.addAction(Parts.Say(Key::OpenFolder));
    play->setEnabled(!file.isEmpty());
    folder->setEnabled(!file.isEmpty());
    const QAction* const chosen = menu.exec(event->globalPos());
    if (chosen == play) QDesktopServices::openUrl(QUrl::fromLocalFile(file));
    if (chosen == folder) QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(file).path()));
}

void SongList::paintEvent(QPaintEvent* event) {
    QListView::paintEvent(event);
    if (model()->rowCount() > 0) return;
    QPainter painter(viewport());
    painter.setPen(PresentLook().Dim);
    painter.drawText(viewport()->rect(), Qt::AlignCenter, Parts.Say(Key::NoSongsYet));
}

}  // namespace Corvetape
