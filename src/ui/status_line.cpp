#include "ui/status_line.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QToolButton>
#include <algorithm>
#include <optional>
#include <string>

#include "ui/binders.h"
#include "ui/binding.h"
#include "ui/icons.h"
#include "ui/level_text.h"
#include "ui/look.h"
#include "ui/make.h"
#include "ui/text_keys.h"

namespace Corvetape {

namespace {

/// Asking a disk may take a moment, and hours change slowly.
constexpr int SecondsBetweenDisks = 10;

constexpr size_t ColumnsOfASecond = 20;

}  // namespace

StatusLine::StatusLine(const UiParts& parts) : Parts(parts) {
    setObjectName("status");
    auto* const row = Make<QHBoxLayout>(this);
    row->setContentsMargins(2 * Grid, Grid / 2 + 2, 2 * Grid, Grid / 2 + 2);
    QLabel* const message = BoundToElided(Parts.Form.lblStatus[1]);
    QLabel* const song = BoundTo(Parts.Form.lblStatus[3]);
    for (QLabel* label : {message, song}) label->setFont(ScaledFont(0.92));
    row->addWidget(InputName());
    row->addWidget(message, 1);
    row->addWidget(song);
    row->addWidget(LevelAndRoom());
    row->addWidget(BarButton());
    ShowFigures();  // now that all have their places: without one they would be windows
}

QWidget* StatusLine::InputName() {
    auto* const input = Make<QLabel>();
    input->setTextFormat(Qt::PlainText);
    input->setFont(ScaledFont(0.92));
    const auto refresh = [this, kept = QPointer<QLabel>(input)] {
        if (!kept) return;
        const ComboBox& inputs = Parts.Form.cmbInputDevices;
        const auto index = static_cast<size_t>(inputs.ListIndex());
        const bool chosen = inputs.ListIndex() >= 0 && index < inputs.Items().size();
        kept->setText(chosen ? Parts.Say(Key::InputIs, {inputs.Items()[index].Text}) + "    " : QString());
    };
    refresh();
    Parts.Form.cmbInputDevices.Changed.Connect(refresh);
    return input;
}

QWidget* StatusLine::LevelAndRoom() {
    Figures = Make<QLabel>();
    Figures->setObjectName("lblLevelAndRoom");
    Figures->setFont(ScaledFont(0.92));
    Figures->setToolTip(Parts.Say(Key::RoomLeftHint));
    // It gives way and does not keep the window wide.
    Figures->setMinimumWidth(1);
    Parts.Form.tmr1Second.Timer.Connect([this, kept = QPointer<QLabel>(Figures)] {
        if (kept && isVisible()) ShowFigures();
    });
    return Figures;
}

void StatusLine::ShowFigures() {
    if (Beats == 0) RoomShown = Room();
    Beats = (Beats + 1) % SecondsBetweenDisks;
    QStringList figures;
    if (Parts.Form.chkStartStop[0].Enabled()) figures << DecibelText(Level(), Parts.Say);
    if (!RoomShown.isEmpty()) figures << RoomShown;
    Figures->setText(figures.join(QString::fromUtf8("  ·  ")));
    GiveWay();
}

/// The highest level of the last second.
int32_t StatusLine::Level() const {
    const auto& columns = Parts.Trace.Columns();
    int32_t highest = 0;
    for (size_t i = columns.size() - std::min(columns.size(), ColumnsOfASecond); i < columns.size(); ++i) {
        highest = std::max(highest, columns[i].Level);
    }
    return highest;
}

QString StatusLine::Room() const {
    const std::optional<RoomLeft> room = Parts.Disk.Room();
    if (!room) return {};
    const uint64_t megabytes = room->FreeBytes >> 20U;
    const uint64_t gigabytes = megabytes >> 10U;
    const uint64_t minutes = room->Seconds / 60;
    const uint64_t hours = minutes / 60;
    constexpr uint64_t few = 10;  // with less the smaller unit says more
    const std::string space =
        gigabytes >= few ? std::to_string(gigabytes) + " GB" : std::to_string(megabytes) + " MB";
    const std::string time = hours >= few ? std::to_string(hours) + " h" : std::to_string(minutes) + " min";
    return Parts.Say(Key::RoomLeft, {space, time});
}

/// Without room for all of them the figures go, for the input and its messages.
void StatusLine::GiveWay() {
    int others = 0;
    for (int i = 0; i < layout()->count(); ++i) {
        QWidget* const widget = layout()->itemAt(i)->widget();
        const bool gives = widget->sizePolicy().horizontalPolicy() == QSizePolicy::Ignored;
        if (widget != Figures && !gives) others += widget->sizeHint().width();
    }
    const QMargins margins = layout()->contentsMargins();
    others += margins.left() + margins.right() + (layout()->count() - 1) * layout()->spacing();
    Figures->setVisible(width() - others >= Figures->sizeHint().width());
}

void StatusLine::resizeEvent(QResizeEvent* event) {
    QFrame::resizeEvent(event);
    GiveWay();
}

void StatusLine::Refresh() {
    Bar->setIcon(DrawnIcon("bar", PresentLook().Dim));
}

/// Pressed while the floating bar is seen. The control counts the other way: 0 shows the bar.
QWidget* StatusLine::BarButton() {
    CheckBox& hidden = Parts.Form.chkQuickButtons;
    auto* const button = Make<QToolButton>();
    Bar = button;
    Refresh();
    button->setCheckable(true);
    button->setFixedSize(28, 20);
    button->setAccessibleName(QString::fromStdString(Parts.Form.mnuTaskbarItem[15].Caption()));
    connect(button, &QToolButton::clicked, this, [&hidden] { hidden.Press(); });
    Follow(hidden, button, [](const CheckBox& from, QToolButton& to) {
        to.setChecked(from.Value() == 0);
        to.setToolTip(to.accessibleName());
    });
    return button;
}

}  // namespace Corvetape
