#include "ui/state_line.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPalette>

#include "ui/icons.h"
#include "ui/look.h"
#include "ui/make.h"
#include "ui/text_keys.h"

namespace Corvetape {

namespace {

struct Appearance {
    const char* TextKey;
    const char* Icon;
    QColor Look::*Ink;
};

Appearance AppearanceOf(PresentState state, bool fromBeginning) {
    switch (state) {
        case PresentState::NoInput:
            return {Key::NoInput, "trouble", &Look::Warning};
        case PresentState::InputGone:
            return {Key::InputGone, "trouble", &Look::Warning};
        case PresentState::NoSound:
            return {Key::NoSound, "trouble", &Look::Warning};
        case PresentState::DiskFull:
            return {Key::DiskFull, "disk", &Look::Warning};
        case PresentState::DiskStopped:
            return {Key::DiskStopped, "disk", &Look::Warning};
        case PresentState::NotEnabled:
            return {Key::NotEnabled, "trouble", &Look::Warning};
        case PresentState::Recording:
            return {fromBeginning ? Key::Recording : Key::RecordingFromMiddle, "recording", &Look::Accent};
        case PresentState::LastSong:
            return {Key::LastSong, "recording", &Look::Accent};
        case PresentState::Waiting:
            return {Key::Waiting, "waiting", &Look::Warning};
        case PresentState::Listening:
            return {Key::Listening, "listening", &Look::Dim};
    }
    return {};
}

}  // namespace

StateLine::StateLine(const UiParts& parts) : Parts(parts), Symbol(Make<QLabel>()), Text(Make<QLabel>()) {
    auto* const line = Make<QHBoxLayout>(this);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(Grid);
    line->addWidget(Symbol);
    line->addWidget(Text, 1);
    Text->setObjectName("lblPresentState");
    Text->setFont(ScaledFont(1.25, QFont::DemiBold));
    Text->setTextFormat(Qt::PlainText);
    Refresh();
}

PresentState StateLine::Present() const {
    const bool open = Parts.Form.chkStartStop[0].Enabled();
    return PresentStateOf({Parts.Flags, Parts.Signal, Parts.Deferred, open, Parts.Trace.IdleSeconds()});
}

void StateLine::Refresh() {
    const Appearance appearance = AppearanceOf(Present(), Parts.Heard.FromItsBeginning());
    const QColor ink = PresentLook().*appearance.Ink;
    const QString now = appearance.TextKey + ink.name();
    if (now == Shown) return;
    Shown = now;
    Text->setText(Parts.Say(appearance.TextKey));
    Text->setStyleSheet("color: " + ink.name());
    Symbol->setPixmap(DrawnIcon(appearance.Icon, ink).pixmap(QSize(22, 22), devicePixelRatioF()));
}

}  // namespace Corvetape
