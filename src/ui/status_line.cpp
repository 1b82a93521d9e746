#include "ui/status_line.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QToolButton>

#include "ui/binders.h"
#include "ui/binding.h"
#include "ui/icons.h"
#include "ui/look.h"
#include "ui/make.h"
#include "ui/text_keys.h"

namespace Corvetape {

StatusLine::StatusLine(const UiParts& parts) : Parts(parts) {
    setObjectName("status");
    auto* const row = Make<QHBoxLayout>(this);
    row->setContentsMargins(2 * Grid, Grid / 2 + 2, 2 * Grid, Grid / 2 + 2);
    QLabel* const message = BoundTo(Parts.Form.lblStatus[1]);
    QLabel* const song = BoundTo(Parts.Form.lblStatus[3]);
    for (QLabel* label : {message, song}) label->setFont(ScaledFont(0.92));
    message->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    row->addWidget(InputName());
    row->addWidget(message, 1);
    row->addWidget(song);
    row->addWidget(BarButton());
}

QWidget* StatusLine::InputName() {
    auto* const input = Make<QLabel>();
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
