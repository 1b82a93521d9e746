#pragma once

#include <QWidget>

#include "ui/ui_parts.h"

class QGridLayout;
class QLabel;
class QPushButton;

namespace Corvetape {

class CoverView;
class DottedLine;
class ShownText;
class StateLine;

/// The face of the program: what plays, what becomes of it, the signal of the last two minutes, and the songs
/// of this run.
class RecordingView : public QWidget {
 public:
    explicit RecordingView(const UiParts& parts);

    /// Shows what is not a control: state, cover, age of the song, sums.
    void Refresh();

 protected:
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;

 private:
    QWidget* CurrentSong();
    QWidget* WhoPlays();
    QWidget* Titles();
    QWidget* Source();
    QWidget* Buttons();
    QWidget* SongsHead();
    QWidget* Options();
    void AddMediaOptions(QGridLayout& grid);
    void RefreshPlayer();
    void RefreshSource();
    void RefreshButtons();

    const UiParts& Parts;
    CoverView* Cover = nullptr;
    StateLine* State = nullptr;
    QLabel* Provider = nullptr;
    QLabel* Player = nullptr;
    DottedLine* Details = nullptr;
    QWidget* Album = nullptr;
    QWidget* Station = nullptr;
    QWidget* Remaining = nullptr;
    QLabel* Hint = nullptr;
    QLabel* Age = nullptr;
    QLabel* Summary = nullptr;
    QLabel* Untitled = nullptr;
    QWidget* Titled = nullptr;
    QPushButton* StartStop = nullptr;
    QPushButton* Skip = nullptr;
    QPushButton* Quick = nullptr;
    QPushButton* Reread = nullptr;
    QPushButton* Launch = nullptr;
    QString ButtonsShown;
};

}  // namespace Corvetape
