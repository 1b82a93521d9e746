#include "ui/pages/audio_view.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSlider>

#include "ui/binding.h"
#include "ui/form_page.h"
#include "ui/level_text.h"
#include "ui/level_views.h"
#include "ui/look.h"
#include "ui/make.h"
#include "ui/text_keys.h"

namespace Corvetape {

namespace {

void AddInput(FormPage& page, const UiParts& parts) {
    frmMain& form = parts.Form;
    Card& card = page.AddCard(parts.Say(Key::InputCard), parts.Say(Key::InputCardLine));
    QComboBox* const inputs = BoundTo(form.cmbInputDevices);
    card.AddWidget(CaptionOf(form.cmbInputDevices, inputs));
    card.AddWidget(inputs);
    card.Add(form.chk48kHz);
    card.AddRow({BoundTo(form.cmdAutoInput)});
}

void AddLevel(FormPage& page, const UiParts& parts) {
    frmMain& form = parts.Form;
    Card& card =
        page.AddCard(QString::fromStdString(form.fraVUMeter.Caption()), parts.Say(Key::LevelCardLine));
    auto* const pictures = Make<QWidget>();
    auto* const grid = Make<QGridLayout>(pictures);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(2 * Grid);
    grid->setVerticalSpacing(Grid / 2);
    grid->addWidget(Make<QLabel>(QString::fromStdString(form.fraHistogram.Caption())), 0, 1);
    grid->addWidget(Make<MeterView>(parts), 1, 0);
    grid->addWidget(Make<HistogramView>(parts), 1, 1);
    auto* const extremes = Make<QHBoxLayout>();
    extremes->setSpacing(Grid);
    for (QLabel* label : {BoundTo(form.lblHistogram[0]), BoundTo(form.lblHistogramMin),
                          DecibelsOf(form.lblHistogramMin, parts.Say), BoundTo(form.lblHistogram[1]),
                          BoundTo(form.lblHistogramMax), DecibelsOf(form.lblHistogramMax, parts.Say)}) {
        extremes->addWidget(label);
        if (label->objectName().endsWith("_dB")) extremes->addSpacing(Grid);
    }
    extremes->addStretch(1);
    grid->addLayout(extremes, 2, 1);
    grid->setColumnStretch(1, 1);
    card.AddWidget(pictures);
    card.AddRow({BoundTo(form.lblMaxBuffersUsed), BoundTo(form.lblMaxBuffers)});
}

void AddGain(FormPage& page, const UiParts& parts) {
    frmMain& form = parts.Form;
    Card& card = page.AddCard(parts.Say(Key::GainCard), parts.Say(Key::GainCardLine));
    QSlider* const gain = BoundTo(static_cast<Slider&>(form.vscMultiplier));
    gain->setMinimumWidth(40 * Grid);
    gain->setAccessibleName(parts.Say(Key::GainCard));
    card.AddRow({gain, BoundTo(form.lblMultiplier)});
    card.AddRow({BoundTo(form.cmdAGC), BoundTo(form.cmdOpenMixer)});
    card.AddRow({BoundTo(form.cmdSaveMixerSettings), BoundTo(form.cmdResetMixerSettings)});
    card.Add(form.chkMixerAutoUpdate);
}

}  // namespace

QWidget* MakeAudioView(const UiParts& parts) {
    auto* const page = Make<FormPage>(parts.Say(Key::AudioName), parts.Say(Key::AudioLine));
    AddInput(*page, parts);
    AddLevel(*page, parts);
    AddGain(*page, parts);
    page->Finish();
    return page;
}

}  // namespace Corvetape
