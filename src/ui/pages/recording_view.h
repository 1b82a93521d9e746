#pragma once

#include <QWidget>

#include "ui/ui_parts.h"

class QHBoxLayout;
class QLabel;
class QPushButton;
class QVBoxLayout;

namespace Corvetape {

class CoverView;
class SongList;
class StateLine;

/// The face of the program: what plays, what becomes of it, the signal of the last two minutes, and the songs
/// of this run.
class RecordingView : public QWidget {
 public:
    explicit RecordingView(const UiParts& parts);

    /// Shows what is not a control: state, cover, age of the song, sums.
    void Refresh();

 private:
    QWidget* Head();
    QWidget* Titles();
    QWidget* Buttons();
    QWidget* SongsHead();
    QWidget* Options();
    void RefreshSource();
    void RefreshButtons();

    const UiParts& Parts;
    CoverView* Cover = nullptr;
    StateLine* State = nullptr;
    QLabel* Source = nullptr;
    QLabel* Summary = nullptr;
    QLabel* Untitled = nullptr;
    QWidget* Titled = nullptr;
    QPushButton* StartStop = nullptr;
    QPushButton* Skip = nullptr;
    QPushButton* Quick = nullptr;
    QString ButtonsShown;
};

}  // namespace Corvetape
