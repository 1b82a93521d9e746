#include "ui/song_list.h"

#include <QAbstractListModel>
#include <QContextMenuEvent>
#include <QDialog>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/cover_pictures.h"
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
    if (song.Fate == SongFate::Unwanted) return say(song.OnList ? Key::OnDropList : Key::Unwanted);
    if (song.Fate == SongFate::Aborted) return say(Key::Aborted);
    if (song.Health == SongHealth::Damaged) return say(Key::Damaged);
    return say(song.Health == SongHealth::Whole ? Key::Whole : Key::NotWhole);
}

namespace {

std::string CertaintyText(Certainty certainty, const Words& say) {
    const char* const key = certainty == Certainty::Sure     ? Key::CutSure
                            : certainty == Certainty::Likely ? Key::CutLikely
                                                             : Key::CutUnsure;
    return say(key).toStdString();
}

}  // namespace

QString CutsText(const RunSong& song, const Words& say) {
    if (song.Fate != SongFate::Kept) return {};
    const std::string begin = CertaintyText(song.Begin, say);
    const std::string end = CertaintyText(song.End, say);
    if (song.Begin == Certainty::None && song.End == Certainty::None) return {};
    if (song.Begin == Certainty::None) return say(Key::EndIs, {end});
    if (song.End == Certainty::None) return say(Key::BeginIs, {begin});
    return say(Key::BeginAndEndAre, {begin, end});
}

QString FlawsText(const RunSong& song, const Words& say) {
    if (song.Fate != SongFate::Kept || song.Health != SongHealth::NotWhole) return {};
    QStringList lines;
    if (song.Dropouts > 0) lines += say(Key::HasDropouts, {std::to_string(song.Dropouts)});
    if (song.Mixed) lines += say(Key::IsMixed);
    if (song.Sought) lines += say(Key::IsSought);
    if (song.ByTitleAlone) lines += say(Key::IsByTitleAlone);
    const bool unsure = song.Begin == Certainty::Unsure || song.End == Certainty::Unsure;
    if (lines.isEmpty() && !unsure) lines += say(Key::LacksAnEnd);
    return TipOf(lines.join('\n'));
}

QString ShortCutsText(const RunSong& song, const Words& say) {
    if (song.Begin == Certainty::None || song.End == Certainty::None) return CutsText(song, say);
    if (song.Fate != SongFate::Kept) return {};
    if (song.Begin == song.End) return QString::fromStdString(CertaintyText(song.End, say));
    // The steps are in the order of their certainty.
    const bool begin = song.Begin < song.End;
    return say(begin ? Key::BeginIs : Key::EndIs, {CertaintyText(begin ? song.Begin : song.End, say)});
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
            QStringList texts{NameOf(song),
                              artist,
                              LengthText(song.Seconds),
                              CutsText(song, Parts.Say),
                              FateText(song, Parts.Say),
                              ProgressText(song, Parts.Say)};
            texts.removeAll(QString());
            return texts.join(", ");
        }
        if (role == Qt::ToolTipRole) {
            const auto file = QString::fromStdString(song.MusicFile.empty() ? song.TempFile : song.MusicFile);
            QStringList lines{file, CutsText(song, Parts.Say), FlawsText(song, Parts.Say)};
            lines.removeAll(QString());
            return TipOf(lines.join('\n'));
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
    SongDelegate(const UiParts& parts, QObject* parent) : QStyledItemDelegate(parent), Parts(parts) {
        const std::string unsure = Parts.Say(Key::CutUnsure).toStdString();
        const std::string likely = Parts.Say(Key::CutLikely).toStdString();
        // A song whose cut is unsure is not called whole.
        for (const char* key : {Key::BeginIs, Key::EndIs}) {
            FateWidth = std::max({FateWidth,
                                  WidthOf(Tick + Parts.Say(Key::Whole) + Between + Parts.Say(key, {likely})),
                                  WidthOf(Parts.Say(Key::NotWhole) + Between + Parts.Say(key, {unsure}))});
        }
        ProgressWidth = WidestOf({Key::WaitingForTurn, Key::Encoding, Key::Made, Key::Stays, Key::Failed});
    }

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
        if (option.state & QStyle::State_Selected) {
            painter->fillRect(line, look.Soft);
        } else if (option.state & QStyle::State_MouseOver) {
            painter->fillRect(line, look.Window);
        }
        painter->fillRect(QRect(line.left(), line.bottom(), line.width(), 1), look.Line);
        const int side = 7 * Grid / 2;
        const QRectF cover(line.left() + 12, line.top() + (line.height() - side) / 2.0, side, side);
        PaintThumbnail(*painter, cover, song);
        PaintTexts(*painter, line.adjusted(12 + side + 12, 0, -12, 0), song);
        painter->restore();
    }

 private:
    /// Of a text in a column, with the space before the next one.
    static int WidthOf(const QString& text) {
        return QFontMetrics(ScaledFont(1)).horizontalAdvance(text) + 2 * Grid;
    }

    /// Of all texts that a column may show.
    int WidestOf(std::initializer_list<const char*> keys) const {
        int widest = 0;
        for (const char* key : keys) widest = std::max(widest, WidthOf(Tick + Parts.Say(key, {"WMA"})));
        return widest;
    }

    /// What was not kept is there, but pale.
    void PaintThumbnail(QPainter& painter, const QRectF& place, const RunSong& song) const {
        painter.save();
        if (song.Fate != SongFate::Kept) painter.setOpacity(0.35);
        const QImage picture = Parts.Covers.Small(song.Media.Cover);
        if (picture.isNull()) {
            PaintCover(painter, place, CoverNameOf(song.Media), 4);
        } else {
            PaintPicture(painter, place, picture, 4);
        }
        painter.restore();
    }

    /// From the right: progress, fate and how sure the cuts are, length; the name takes what is left.
    void PaintTexts(QPainter& painter, QRect line, const RunSong& song) const {
        const Look& look = PresentLook();
        const bool kept = song.Fate == SongFate::Kept;
        const bool failed = song.Progress == SongProgress::Failed;
        const auto text = [&](int width, const QString& words, const QColor& ink, Qt::Alignment side) {
            const QRect place(line.right() - width, line.top(), width, line.height());
            painter.setPen(ink);
            const QString shown = painter.fontMetrics().elidedText(words, Qt::ElideRight, width - Grid);
            painter.drawText(place, side | Qt::AlignVCenter, shown);
            line.setRight(place.left());
        };
        painter.setFont(ScaledFont(1));
        const QString progress = ProgressText(song, Parts.Say);
        text(ProgressWidth, progress, failed ? look.Warning : look.Dim, Qt::AlignLeft);
        const bool whole = kept && song.Health == SongHealth::Whole;
        const QString fate = (whole ? Tick : QString()) + FateText(song, Parts.Say);
        const int fateWidth = painter.fontMetrics().horizontalAdvance(fate);
        const QRect cuts(line.right() - FateWidth + fateWidth, line.top(), FateWidth - fateWidth - Grid,
                         line.height());
        text(FateWidth, fate, whole ? look.Good : (kept ? look.Warning : look.Dim), Qt::AlignLeft);
        if (const QString words = ShortCutsText(song, Parts.Say); !words.isEmpty()) {
            const bool unsure = song.Begin == Certainty::Unsure || song.End == Certainty::Unsure;
            painter.setPen(unsure ? look.Warning : look.Dim);
            painter.drawText(cuts, Qt::AlignLeft | Qt::AlignVCenter,
                             painter.fontMetrics().elidedText(Between + words, Qt::ElideRight, cuts.width()));
        }
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
    const QString Tick = QString::fromUtf8("✓ ");
    const QString Between = QString::fromUtf8(" · ");
    int FateWidth = 0;
    int ProgressWidth = 0;
};

}  // namespace

SongList::SongList(const UiParts& parts) : Parts(parts) {
    setObjectName("songs");
    setAccessibleName(Parts.Say(Key::SongsOfRun));
    setModel(Make<SongModel>(parts, this));
    setItemDelegate(Make<SongDelegate>(parts, this));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(QListView::ScrollPerPixel);
    setMouseTracking(true);
    connect(this, &QListView::doubleClicked, this, &SongList::Play);
    Parts.Covers.Changed.Connect([kept = QPointer<SongList>(this)] {
        if (kept) kept->viewport()->update();
    });
}

void SongList::Play(const QModelIndex& index) {
    Parts.Actions.Play(RunSong(SongAt(index.row())));
}

/// On some desktops a single click activates an entry; songs are played by two clicks or by Enter only.
void SongList::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && currentIndex().isValid()) return Play(currentIndex());
    QListView::keyPressEvent(event);
}

void SongList::FillMenu(QMenu& menu, int row) {
    const RunSong& song = SongAt(row);
    const bool there = !Parts.Actions.FileToPlay(song).empty();
    const bool named = !Parts.Actions.ListName(song).empty();
    const auto add = [&](const char* key, bool enabled, auto action) {
        QAction* const entry = menu.addAction(Parts.Say(key));
        entry->setObjectName(key);
        entry->setEnabled(enabled);
        connect(entry, &QAction::triggered, this, action);
    };
    add(Key::PlaySong, there, [this, song] { Parts.Actions.Play(song); });
    add(Key::OpenFolder, there, [this, song] { Parts.Actions.OpenFolder(song); });
    add(Key::ShowLogLines, true, [this, song] { ShowLogLines(song); });
    menu.addSeparator();
    add(Key::KeepSong, Parts.Actions.CanBeKept(song), [this, number = song.Number] { Keep(number); });
    add(Key::PutOnWhiteList, named, [this, song] { Parts.Actions.PutOnList(song, WatchListKind::Include); });
    add(Key::PutOnBlacklist, named, [this, song] { Parts.Actions.PutOnList(song, WatchListKind::Exclude); });
}

/// While a menu is open its song may become another row, and its recording may go.
void SongList::Keep(uint64_t number) {
    const auto row = Parts.Songs.Find(number);
    if (!row) return;
    const RunSong song = Parts.Songs.Songs()[*row];
    if (!Parts.Actions.CanBeKept(song)) return;
    Parts.Songs.KeptAfterwards(*row);  // so that its encoder finds it
    Parts.Actions.Keep(song);
}

void SongList::ShowLogLines(const RunSong& song) {
    const QString lines = QString::fromStdString(Parts.Actions.LogLines(song)).trimmed();
    auto* const box = Make<QDialog>(this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setObjectName("logLines");
    const QString title = Parts.Say(Key::LogOfSong, {NameOf(song).toStdString()});
    box->setWindowTitle(TitleOf(title));
    Dress(*box);
    auto* const layout = Make<QVBoxLayout>(box);
    layout->setContentsMargins(2 * Grid, 2 * Grid, 2 * Grid, 2 * Grid);
    layout->setSpacing(2 * Grid);
    auto* const text = Make<QPlainTextEdit>(lines.isEmpty() ? Parts.Say(Key::NoLogLines) : lines);
    text->setReadOnly(true);
    text->setLineWrapMode(QPlainTextEdit::NoWrap);
    text->setAccessibleName(title);
    layout->addWidget(text);
    auto* const done = Make<QPushButton>(Parts.Say(Key::CloseBox));
    connect(done, &QPushButton::clicked, box, &QDialog::accept);
    layout->addWidget(done, 0, Qt::AlignRight);
    box->resize(90 * Grid, 30 * Grid);
    box->show();
}

void SongList::contextMenuEvent(QContextMenuEvent* event) {
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = byKey ? currentIndex() : indexAt(event->pos());
    if (!index.isValid()) return;
    // Not waited for: the list may go while its menu is open.
    auto* const menu = Make<QMenu>(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    FillMenu(*menu, index.row());
    menu->popup(byKey ? viewport()->mapToGlobal(visualRect(index).center()) : event->globalPos());
}

void SongList::paintEvent(QPaintEvent* event) {
    QListView::paintEvent(event);
    if (model()->rowCount() > 0) return;
    QPainter painter(viewport());
    painter.setPen(PresentLook().Dim);
    painter.drawText(viewport()->rect().adjusted(2 * Grid, 0, -2 * Grid, 0),
                     Qt::AlignCenter | Qt::TextWordWrap, Parts.Say(Key::NoSongsYet));
}

}  // namespace Corvetape
