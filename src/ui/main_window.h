#pragma once

#include <QMainWindow>
#include <functional>
#include <utility>

#include "ui/ui_parts.h"

class QStackedWidget;

namespace Corvetape {

class Navigation;

/// Twips in a pixel of the desktop, as places of windows are stored.
inline constexpr int TwipsPerPixel = 15;

/// frmMain as a window: the list of its pages, the page of the selected tab, and the status line. It puts
/// them together and knows nothing of what is on them. It keeps the place and the state of the
/// form up to date.
class MainWindow : public QMainWindow {
 public:
    explicit MainWindow(UiParts parts);

    /// Whether a minimised window goes out of sight: only where something else brings it back.
    void HideWhenMinimised(std::function<bool()> wanted) { Hides = std::move(wanted); }

    /// Brings it to the front, wherever it was.
    void ComeForward();

    /// From now on closing closes: the program has ended.
    void LetGo() { Ended = true; }

 protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;

 private:
    void AddPages();
    QWidget* StatusLine();
    void AddKeys();
    void ShowSelectedPage();
    void Redress();
    void ReportPlace();

    UiParts Parts;
    Navigation* Tabs = nullptr;
    QStackedWidget* Pages = nullptr;
    std::function<bool()> Hides;
    bool Ended = false;
    bool Dressing = false;
};

}  // namespace Corvetape
