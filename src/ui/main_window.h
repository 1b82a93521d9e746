#pragma once

#include <QMainWindow>
#include <functional>
#include <utility>

#include "ui/ui_parts.h"

class QStackedWidget;

namespace Corvetape {

class Navigation;

/// frmMain as a window: the list of its pages, the page of the selected tab, and the status line. It puts
/// them together and knows nothing of what is on them.
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
    bool event(QEvent* event) override;

 private:
    void AddPages();
    QWidget* StatusLine();
    void AddKeys();
    void ShowSelectedPage();
    void Redress();

    UiParts Parts;
    Navigation* Tabs = nullptr;
    QStackedWidget* Pages = nullptr;
    std::function<bool()> Hides;
    bool Ended = false;
    bool Dressing = false;
};

}  // namespace Corvetape
