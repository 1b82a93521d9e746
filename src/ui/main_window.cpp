#include "ui/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QPointer>
#include <QShortcut>
#include <QStackedWidget>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>
#include <utility>

#include "core/window_place.h"
#include "ui/binders.h"
#include "ui/look.h"
#include "ui/make.h"
#include "ui/mnemonics.h"
#include "ui/navigation.h"
#include "ui/pages/pages.h"
#include "ui/status_line.h"
#include "ui/tray_icon.h"
#include "ui/window_keys.h"
#include "ui/words.h"

namespace Corvetape {

MainWindow::MainWindow(UiParts parts) : Parts(std::move(parts)) {
    setObjectName(QString::fromStdString(Parts.Form.Name()));
    Dress(*this);
    setWindowIcon(QIcon(":/ui/icons/corvetape.svg"));
    auto* const whole = Make<QWidget>();
    auto* const lines = Make<QVBoxLayout>(whole);
    auto* const row = Make<QHBoxLayout>();
    for (QBoxLayout* layout : {static_cast<QBoxLayout*>(lines), static_cast<QBoxLayout*>(row)}) {
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(0);
    }
    Tabs = Make<Navigation>(Parts.Form.tbsMain);
    Pages = Make<QStackedWidget>();
    row->addWidget(Tabs);
    row->addWidget(Pages, 1);
    lines->addLayout(row, 1);
    Status = Make<StatusLine>(Parts);
    lines->addWidget(Status);
    AddPages();
    AddKeys();
    setCentralWidget(whole);
    Pages->setFocus();  // no button looks chosen before a key has been pressed
    resize(125 * Grid, 90 * Grid);
    FollowForm();
    Parts.Form.Changed.Connect([kept = QPointer<MainWindow>(this)] {
        if (kept) kept->FollowForm();
    });
    Parts.Form.tbsMain.Click.Connect([kept = QPointer<MainWindow>(this)] {
        if (kept) kept->ShowSelectedPage();
    });
    ShowSelectedPage();
}

void MainWindow::AddPages() {
    for (const PageRow& page : PageTable()) {
        QWidget* const widget = page.Make(Parts);
        widget->setProperty("tab", page.Tab);
        Make<Mnemonics>(widget);
        Pages->addWidget(widget);
    }
}

void MainWindow::ShowSelectedPage() {
    const QString selected = QString::fromStdString(Parts.Form.tbsMain.SelectedKey());
    for (int i = 0; i < Pages->count(); ++i) {
        if (Pages->widget(i)->property("tab").toString() == selected) Pages->setCurrentIndex(i);
    }
}

void MainWindow::AddKeys() {
    Make<WindowKeys>(*this, Parts.Keys, Parts.Form, &Parts.Form.tbsMain)->setParent(this);
    const auto key = [this](const QKeySequence& keys, auto action) {
        connect(Make<QShortcut>(keys, this), &QShortcut::activated, this, action);
    };
    key(Qt::CTRL | Qt::Key_Tab, [this] { GoToNeighbour(1); });
    key(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab, [this] { GoToNeighbour(-1); });
    // With Shift some systems give the key another name.
    key(Qt::CTRL | Qt::SHIFT | Qt::Key_Backtab, [this] { GoToNeighbour(-1); });
}

void MainWindow::GoToNeighbour(int step) {
    if (LeaveField()) SelectNeighbour(Parts.Form.tbsMain, step);
}

void MainWindow::ComeForward() {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    event->setAccepted(Ended || Parts.Close());
}

void MainWindow::FollowForm() {
    setWindowTitle(TitleOf(QString::fromStdString(Parts.Form.Caption())));
    // Boxes belong to the window, which stays enabled for them.
    centralWidget()->setEnabled(Parts.Form.Enabled());
    if (Parts.Form.Visible() == isVisible()) return;
    if (Parts.Form.Visible()) {
        ComeForward();
    } else {
        hide();
    }
}

void MainWindow::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    if (event->spontaneous()) return;
    // A desktop places a window that comes back as if it were a new one, unless it is said where; to move it
    // to where the toolkit believes it to be already would say nothing.
    if (LeftAt && windowHandle()) {
        setGeometry({*LeftAt, size()});
        windowHandle()->setPosition(*LeftAt);
    }
    Parts.Form.Visible(true);
}

void MainWindow::hideEvent(QHideEvent* event) {
    QMainWindow::hideEvent(event);
    if (event->spontaneous()) return;
    LeftAt = geometry().topLeft();
    Parts.Form.Visible(false);
}

void MainWindow::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() != QEvent::WindowStateChange || std::exchange(Answering, true)) return;
    // Once the desktop is through with its change; another one in the middle of it would be lost.
    QTimer::singleShot(0, this, [this] {
        AnswerState();
        Answering = false;
    });
}

void MainWindow::AnswerState() {
    const WindowState state = isMinimized()   ? WindowState::Minimised
                              : isMaximized() ? WindowState::Maximised
                                              : WindowState::Normal;
    const bool there = Icon != nullptr && Icon->Present();
    const WindowAnswer answer = AnswerTo(state, there, Parts.Options.MaximizeButton);
    if (answer == WindowAnswer::Stay) return;
    // Normal first: a window that is hidden and then restored would be put back on the screen.
    setWindowState(windowState() & ~(Qt::WindowMinimized | Qt::WindowMaximized));
    if (answer == WindowAnswer::HideToTray) hide();
    if (answer == WindowAnswer::FlipQuickBar) Parts.Form.chkQuickButtons.Press();
}

/// What has been drawn in the colours of the old palette is drawn anew.
bool MainWindow::event(QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange) {
        Tabs->Refresh();
        Status->Refresh();
    }
    return QMainWindow::event(event);
}

}  // namespace Corvetape
