#pragma once

#include <QMainWindow>
#include <QPoint>
#include <optional>
#include <utility>

#include "ui/ui_parts.h"

class QStackedWidget;

namespace Corvetape {

class Navigation;
class StatusLine;
class TrayIcon;

/// frmMain as a window: the list of its pages, the page of the selected tab, and the status line. It puts
/// them together and knows nothing of what is on them.
class MainWindow : public QMainWindow {
 public:
    explicit MainWindow(UiParts parts);

    /// The icon that brings a hidden window back; null while there is none. It is let go before it goes.
    void Follow(const TrayIcon* icon) { Icon = icon; }

    /// Brings it to the front, wherever it was.
    void ComeForward();

    /// From now on closing closes: the program has ended.
    void LetGo() { Ended = true; }

 protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

 private:
    void FollowForm();
    void AnswerState();
    void AddPages();
    void AddKeys();
    void GoToNeighbour(int step);
    void ShowSelectedPage();

    UiParts Parts;
    Navigation* Tabs = nullptr;
    QStackedWidget* Pages = nullptr;
    StatusLine* Status = nullptr;
    const TrayIcon* Icon = nullptr;
    std::optional<QPoint> LeftAt;  ///< where it was when it was hidden
    bool Ended = false;
    bool Answering = false;
};

}  // namespace Corvetape
