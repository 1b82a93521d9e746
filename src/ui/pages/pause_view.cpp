#include "ui/pages/pause_view.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>

#include "ui/form_page.h"
#include "ui/level_text.h"
#include "ui/look.h"
#include "ui/make.h"
#include "ui/text_keys.h"

namespace Corvetape {

namespace {

void AddEndOfSong(FormPage& page, const UiParts& parts) {
    frmMain& form = parts.Form;
    Card& card =
        page.AddCard(QString::fromStdString(form.fraEndOfSong.Caption()), parts.Say(Key::EndOfSongLine));
    card.AddRow({BoundTo(form.optEndOfSong[3]), BoundTo(form.cmdForgetCuts)});
    card.Add(form.optEndOfSong[0]);
    card.Add(form.optEndOfSong[1]);
    card.AddRow({BoundTo(form.optEndOfSong[2]), NumberField(form.txtEndOfSongTimer),
                 BoundTo(form.lblEndOfSongTimer)});
}

/// The unit of a threshold, and what that is in decibels, as the meters show it.
QWidget* UnitAndDecibels(Label& unit, TextBox& threshold, const UiParts& parts) {
    auto* const both = Make<QWidget>();
    auto* const row = Make<QHBoxLayout>(both);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(2 * Grid);
    row->addWidget(BoundTo(unit));
    row->addWidget(DecibelsOf(threshold, parts.Say));
    row->addStretch(1);
    return both;
}

void AddSilence(FormPage& page, const UiParts& parts) {
    frmMain& form = parts.Form;
    Card& card = page.AddCard(parts.Say(Key::SilenceCard), parts.Say(Key::SilenceCardLine));
    card.AddField(form.lblLengthOfPause[0], NumberField(form.txtLengthOfPause),
                  BoundTo(form.lblLengthOfPause[1]));
    card.AddField(form.lblSilenceAmplitude[0], NumberField(form.txtSilenceAmplitude),
                  UnitAndDecibels(form.lblSilenceAmplitude[1], form.txtSilenceAmplitude, parts));
    card.AddField(form.lblEndOfSilenceAmplitude[0], NumberField(form.txtEndOfSilenceAmplitude),
                  UnitAndDecibels(form.lblEndOfSilenceAmplitude[1], form.txtEndOfSilenceAmplitude, parts));
    card.AddRow({BoundTo(form.chkDetectSilenceByPeak), BoundTo(form.lblDetectSilenceByPeak)}, Grid / 2);
    card.AddRow({BoundTo(form.chkIgnoreSilence), BoundTo(form.txtIgnoreSilence)}, Grid / 2);
    card.AddRow({BoundTo(form.cmdAutoPauseParams)});
}

void AddSide(Card& card, frmMain& form, size_t side) {
    QSlider* const slider = BoundTo(form.sldEndOfSongThreshold(side));
    slider->setMinimumWidth(24 * Grid);
    slider->setAccessibleName(QString::fromStdString(form.lblEndOfSongThreshold[side].Caption()));
    card.AddRow({slider, BoundTo(form.lblEndOfSongThreshold[3 + side]),
                 BoundTo(form.lblEndOfSongThreshold[5 + side]), BoundTo(form.lblEndOfSongThreshold[side])});
}

void AddCut(FormPage& page, const UiParts& parts) {
    frmMain& form = parts.Form;
    Card& card = page.AddCard(parts.Say(Key::CutCard), parts.Say(Key::CutCardLine));
    card.Add(form.optDuplicatePartOfSong[0]);
    card.Add(form.optDuplicatePartOfSong[1]);
    AddSide(card, form, 0);
    AddSide(card, form, 1);
    card.Add(form.lblEndOfSongThreshold[2])->setProperty("dim", true);
}

void AddLimits(FormPage& page, const UiParts& parts) {
    frmMain& form = parts.Form;
    Card& card = page.AddCard(parts.Say(Key::LimitsCard));
    card.AddField(form.lblIgnoreShortSongs[0], NumberField(form.txtIgnoreShortSongs),
                  BoundTo(form.lblIgnoreShortSongs[1]));
    card.AddField(form.lblQuitAfterSilence[0], NumberField(form.txtQuitAfterSilence),
                  BoundTo(form.lblQuitAfterSilence[1]));
}

}  // namespace

QWidget* MakePauseView(const UiParts& parts) {
    auto* const page = Make<FormPage>(parts.Say(Key::PauseName), parts.Say(Key::PauseLine));
    AddEndOfSong(*page, parts);
    AddSilence(*page, parts);
    AddCut(*page, parts);
    AddLimits(*page, parts);
    page->Finish();
    return page;
}

}  // namespace Corvetape
