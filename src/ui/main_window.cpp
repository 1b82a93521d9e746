#include "ui/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QShortcut>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <utility>

#include "ui/binders.h"
#include "ui/icons.h"
#include "ui/look.h"
#include "ui/make.h"
#include "ui/navigation.h"
#include "ui/pages/pages.h"
#include "ui/text_keys.h"

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
    lines->addWidget(StatusLine());
    AddPages();
    AddKeys();
    setCentralWidget(whole);
    Pages->setFocus();  // no button looks chosen before a key has been pressed
    resize(125 * Grid, 90 * Grid);
    const auto follow = [kept = QPointer<MainWindow>(this)] {
        if (!kept) return;
        kept->setWindowTitle(QString::fromStdString(kept->Parts.Form.Caption()));
        // Boxes belong to the window, which stays enabled for them.
        kept->centralWidget()->setEnabled(kept->Parts.Form.Enabled());
    };
    follow();
    Parts.Form.Changed.Connect(follow);
    Parts.Form.tbsMain.Click.Connect([kept = QPointer<MainWindow>(this)] {
        if (kept) kept->ShowSelectedPage();
    });
    ShowSelectedPage();
}

void MainWindow::AddPages() {
    for (const PageRow& page : PageTable()) {
        QWidget* const widget = page.Make(Parts);
        widget->setProperty("tab", page.Tab);
        Pages->addWidget(widget);
    }
}

void MainWindow::ShowSelectedPage() {
    const QString selected = QString::fromStdString(Parts.Form.tbsMain.SelectedKey());
    for (int i = 0; i < Pages->count(); ++i) {
        if (Pages->widget(i)->property("tab").toString() == selected) Pages->setCurrentIndex(i);
    }
}

QWidget* MainWindow::StatusLine() {
    auto* const bar = Make<QFrame>();
    bar->setObjectName("status");
    auto* const row = Make<QHBoxLayout>(bar);
    row->setContentsMargins(2 * Grid, Grid / 2 + 2, 2 * Grid, Grid / 2 + 2);
    QLabel* const message = BoundTo(Parts.Form.lblStatus[1]);
    QLabel* const song = BoundTo(Parts.Form.lblStatus[3]);
    auto* const input = Make<QLabel>();
    for (QLabel* label : {message, song, input}) label->setFont(ScaledFont(0.92));
    message->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    row->addWidget(input);
    row->addWidget(message, 1);
    row->addWidget(song);
    const auto refresh = [this, kept = QPointer<QLabel>(input)] {
        if (!kept) return;
        const ComboBox& inputs = Parts.Form.cmbInputDevices;
        const auto index = static_cast<size_t>(inputs.ListIndex());
        const bool chosen = inputs.ListIndex() >= 0 && index < inputs.Items().size();
        kept->setText(chosen ? Parts.Say(Key::InputIs, {inputs.Items()[index].Text}) + "    " : QString());
    };
    refresh();
    Parts.Form.cmbInputDevices.Changed.Connect(refresh);
    return bar;
}

void MainWindow::AddKeys() {
    const auto key = [this](const QKeySequence& keys, auto action) {
        connect(Make<QShortcut>(keys, this), &QShortcut::activated, this, action);
    };
    key(Qt::CTRL | Qt::Key_Tab, [this] { SelectNeighbour(Parts.Form.tbsMain, 1); });
    key(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab, [this] { SelectNeighbour(Parts.Form.tbsMain, -1); });
    // With Shift some systems give the key another name.
    key(Qt::CTRL | Qt::SHIFT | Qt::Key_Backtab, [this] { SelectNeighbour(Parts.Form.tbsMain, -1); });
}

void MainWindow::ComeForward() {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (Ended || Parts.Close()) {
        event->accept();
    } else {
        event->ignore();
    }
}

void MainWindow::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() != QEvent::WindowStateChange || !isMinimized() || !Hides || !Hides()) return;
    hide();
    setWindowState(windowState() & ~Qt::WindowMinimized);  // a later show finds it as it was
}

/// The desktop has another palette: dark or light follows at once.
bool MainWindow::event(QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange && !Dressing) Redress();
    return QMainWindow::event(event);
}

void MainWindow::Redress() {
    Dressing = true;
    Dress(*this);
    Tabs->Refresh();
    Dressing = false;
}

}  // namespace Corvetape
