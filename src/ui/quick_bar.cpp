#include "ui/quick_bar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPointer>
#include <QPushButton>

#include "ui/binders.h"
#include "ui/icons.h"
#include "ui/look.h"
#include "ui/make.h"
#include "ui/song_list.h"
#include "ui/words.h"

namespace Corvetape {

namespace {

/// The whole bar lets the desktop shine through by a third.
constexpr double Opacity = 170.0 / 255.0;

}  // namespace

QuickBarWindow::QuickBarWindow(const UiParts& parts, frmQuickButtons& form, BarStyle style)
    : BarWindow(parts, form, style), Form(form) {
    if (Style == BarStyle::Composited) setWindowOpacity(Opacity);
    auto* const row = Make<QHBoxLayout>(this);
    row->setContentsMargins(12, 0, Grid, 0);
    row->setSpacing(Grid);
    Symbol = Make<QLabel>();
    Age = Make<QLabel>();
    Age->setObjectName("lblSongAge");
    Title = Make<QLabel>();
    Title->setObjectName("lblTitle");
    Title->setTextFormat(Qt::PlainText);
    Title->setFont(ScaledFont(1, QFont::DemiBold));
    Title->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    row->addWidget(Symbol);
    row->addWidget(Age);
    row->addWidget(Title, 1);
    row->addWidget(Buttons());
    const auto refresh = [kept = QPointer<QuickBarWindow>(this)] {
        if (kept && kept->isVisible()) kept->Refresh();
    };
    Parts.Form.tmr1Second.Timer.Connect(refresh);
    form.Changed.Connect(refresh);
    form.picStop.Changed.Connect(refresh);
    Refresh();
}

QWidget* QuickBarWindow::Buttons() {
    const Look& look = BarLook();
    auto* const group = Make<QWidget>();
    group->setObjectName(QString::fromStdString(Form.picButtons.Name()));
    auto* const row = Make<QHBoxLayout>(group);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Grid / 2);
    StartStop = BoundToIcon(Form.cmdStartStop);
    StartStop->setProperty("main", true);
    StartStop->setFixedWidth(6 * Grid);
    row->addWidget(StartStop);
    const auto add = [&](CommandButton& control, const char* icon) {
        QPushButton* const button = BoundToIcon(control);
        button->setIcon(DrawnIcon(icon, look.Text));
        row->addWidget(button);
    };
    add(Form.cmdSkipThisRecording, "skip");
    add(Form.cmdQuickRecord, "quick");
    add(Form.cmdMinMax, "window");
    add(Form.cmdSwitchDesign, "switch");
    return group;
}

void QuickBarWindow::Refresh() {
    const Look& look = BarLook();
    const bool recording = Form.picStop.Visible();
    const bool waiting = Parts.Form.chkStartStop[1].Value() != 0;
    const QColor ink = recording ? look.Accent : (waiting ? look.Warning : look.Dim);
    const char* const icon = recording ? "recording" : (waiting ? "waiting" : "listening");
    Symbol->setPixmap(DrawnIcon(icon, ink).pixmap(QSize(20, 20), devicePixelRatioF()));
    Age->setText(LengthText(static_cast<uint64_t>(Parts.Heard.Seconds())));
    const QString title = QString::fromStdString(Form.Caption());
    Title->setText(Title->fontMetrics().elidedText(title, Qt::ElideRight, Title->width()));
    Title->setToolTip(TipOf(title));
    StartStop->setIcon(DrawnIcon(recording ? "stop" : "record", look.OnAccent));
}

void QuickBarWindow::resizeEvent(QResizeEvent* event) {
    BarWindow::resizeEvent(event);
    Refresh();
}

void QuickBarWindow::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(BarLook().Panel);
    const double radius = Style == BarStyle::Composited ? 10 : 0;
    painter.drawRoundedRect(QRectF(rect()), radius, radius);
}

}  // namespace Corvetape
