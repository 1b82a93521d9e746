#include "ui/pages/option_views.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include "ui/form_page.h"
#include "ui/look.h"
#include "ui/make.h"
#include "ui/text_keys.h"

namespace Corvetape {

namespace {

/// A list of a few numbers is shown as one that opens.
QComboBox* ShortList(ListBox& control) {
    QComboBox* const list = BoundToChoice(control);
    list->setFixedWidth(10 * Grid);
    return list;
}

/// A field whose name for those who cannot see it is the caption of another control.
QLineEdit* Named(QLineEdit* field, const Control& captionOf) {
    field->setAccessibleName(QString::fromStdString(captionOf.Caption()));
    return field;
}

QWidget* FieldWithButton(TextBox& text, CommandButton& button) {
    auto* const both = Make<QWidget>();
    auto* const row = Make<QHBoxLayout>(both);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Grid);
    row->addWidget(BoundTo(text), 1);
    row->addWidget(BoundTo(button));
    return both;
}

void AddFormat(Card& card, OptionButton& option, QWidget* quality) {
    QRadioButton* const button = BoundTo(option);
    button->setMinimumWidth(24 * Grid);
    if (!quality) return card.AddWidget(button);
    quality->setMinimumWidth(28 * Grid);
    quality->setAccessibleName(QString::fromStdString(option.Caption()));
    card.AddRow({button, quality});
}

}  // namespace

QWidget* MakeEncoderView(const UiParts& parts) {
    frmMain& form = parts.Form;
    auto* const page = Make<FormPage>(parts.Say(Key::EncoderName), parts.Say(Key::EncoderLine));
    Card& card = page->AddCard(parts.Say(Key::FormatCard), parts.Say(Key::FormatCardLine));
    AddFormat(card, form.optEncoder[1], BoundTo(form.cmbMP3));
    AddFormat(card, form.optEncoder[2], BoundTo(form.cmbOgg));
    AddFormat(card, form.optEncoder[3], BoundTo(form.cmbWMA44));
    AddFormat(card, form.optEncoder[4], BoundTo(form.cmbWMA48));
    AddFormat(card, form.optEncoder[0], nullptr);
    AddFormat(card, form.optEncoder[5], nullptr);
    Card& tools = page->AddCard(parts.Say(Key::ToolsCard), parts.Say(Key::ToolsCardLine));
    tools.AddRow({BoundTo(form.cmdGetEncoder[1]), BoundTo(form.cmdGetEncoder[0])});
    page->Finish();
    return page;
}

QWidget* MakeOptions1View(const UiParts& parts) {
    frmMain& form = parts.Form;
    auto* const page = Make<FormPage>(parts.Say(Key::Options1Name), parts.Say(Key::Options1Line));
    Card& files = page->AddCard(parts.Say(Key::MusicFilesCard), parts.Say(Key::MusicFilesCardLine));
    for (CheckBox* box :
         {&form.chkNormalize, &form.chkStoreCoverImage, &form.chkEncodeOffline, &form.chkNotifySongs})
        files.Add(*box);
    files.AddField(form.lstEncodeDelay, ShortList(form.lstEncodeDelay));
    Card& leftovers = page->AddCard(parts.Say(Key::LeftoversCard), parts.Say(Key::LeftoversCardLine));
    for (CheckBox* box : {&form.chkDelTemp, &form.chkDelTempFolder}) leftovers.Add(*box);
    Card& end = page->AddCard(parts.Say(Key::EndCard), parts.Say(Key::EndCardLine));
    for (CheckBox* box : {&form.chkDelayUnload, &form.chkQuitAfterRecording}) end.Add(*box);
    Card& source = page->AddCard(parts.Say(Key::SourceCard), parts.Say(Key::SourceCardLine));
    for (CheckBox* box : {&form.chkRestartRadioIfSilent, &form.chkDisableSoundScheme}) source.Add(*box);
    source.AddField(form.lstBufferFlag, ShortList(form.lstBufferFlag));
    Card& window = page->AddCard(parts.Say(Key::WindowCard), parts.Say(Key::WindowCardLine));
    window.Add(form.chkMaximizeButton);
    page->Finish();
    return page;
}

QWidget* MakeOptions2View(const UiParts& parts) {
    frmMain& form = parts.Form;
    auto* const page = Make<FormPage>(parts.Say(Key::Options2Name), parts.Say(Key::Options2Line));
    Card& space =
        page->AddCard(QString::fromStdString(form.fraLowSpace.Caption()), parts.Say(Key::SpaceCardLine));
    space.AddRow(
        {Named(NumberField(form.txtLowTempSpace), form.lblLowTempSpace), BoundTo(form.lblLowTempSpace)});
    space.AddRow(
        {Named(NumberField(form.txtLowMusicSpace), form.lblLowMusicSpace), BoundTo(form.lblLowMusicSpace)});
    Card& programs = page->AddCard(parts.Say(Key::ProgramsCard), parts.Say(Key::ProgramsCardLine));
    programs.Add(form.chkStartApp);
    programs.AddWidget(FieldWithButton(form.txtStartApp, form.cmdAppSearch[0]));
    Named(programs.findChild<QLineEdit*>("txtStartApp"), form.chkStartApp);
    programs.AddField(form.lblStartAppCommandLine, BoundTo(form.txtStartAppCommandLine));
    programs.Add(form.chkStopApp);
    programs.AddWidget(FieldWithButton(form.txtStopApp, form.cmdAppSearch[1]));
    Named(programs.findChild<QLineEdit*>("txtStopApp"), form.chkStopApp);
    programs.AddField(form.lblStopAppCommandLine, BoundTo(form.txtStopAppCommandLine));
    page->Finish();
    return page;
}

QWidget* MakeFoldersView(const UiParts& parts) {
    frmMain& form = parts.Form;
    auto* const page = Make<FormPage>(parts.Say(Key::FoldersName), parts.Say(Key::FoldersLine));
    Card& folders = page->AddCard(parts.Say(Key::FoldersCard), parts.Say(Key::FoldersCardLine));
    for (const size_t i : {1U, 0U, 2U}) {
        folders.AddField(form.lblPath[i], FieldWithButton(form.txtPath[i], form.cmdGetDir[i]));
    }
    Card& names = page->AddCard(parts.Say(Key::NamesCard), parts.Say(Key::NamesCardLine));
    names.Add(form.chkUseMusicSubfolder);
    const auto add = [&names](Label& caption, TextBox& text) {
        QLineEdit* const field = BoundTo(text);
        names.AddWidget(CaptionOf(caption, field));
        names.AddWidget(field);
    };
    add(form.lblMusicFolderTemplate, form.txtMusicFolderTemplate);
    add(form.lblMusicFileTemplate[1], form.txtMusicFileTemplate[1]);
    add(form.lblMusicFileTemplate[0], form.txtMusicFileTemplate[0]);
    page->Finish();
    return page;
}

}  // namespace Corvetape
