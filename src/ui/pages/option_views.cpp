#include "ui/pages/option_views.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include "ui/binding.h"
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

/// A short list right after the words that name it.
void AddShortList(Card& card, ListBox& control) {
    QComboBox* const list = ShortList(control);
    QLabel* const words = CaptionOf(control, list);
    words->setWordWrap(false);
    card.AddRow({words, list});
}

/// A field whose name for those who cannot see it is the caption of another control.
QLineEdit* Named(QLineEdit* field, const Control& captionOf) {
    field->setAccessibleName(QString::fromStdString(captionOf.Caption()));
    return field;
}

struct LaunchedProgram {
    CheckBox& Wanted;
    TextBox& Path;
    CommandButton& Search;
    Label& LineCaption;
    TextBox& Line;
};

/// What belongs to a check box is indented below its words.
void AddProgram(Card& card, const UiParts& parts, const LaunchedProgram& program) {
    card.Add(program.Wanted);
    auto* const below = Make<QWidget>();
    auto* const grid = Make<QGridLayout>(below);
    grid->setContentsMargins(3 * Grid, 0, 0, Grid);
    grid->setSpacing(Grid);
    QLineEdit* const path = Named(BoundTo(program.Path), program.Wanted);
    auto* const name = Make<QLabel>(parts.Say(Key::ProgramName));
    name->setBuddy(path);
    grid->addWidget(name, 0, 0);
    grid->addWidget(path, 0, 1);
    grid->addWidget(BoundTo(program.Search), 0, 2);
    QLineEdit* const line = Named(BoundTo(program.Line), program.LineCaption);
    QLabel* const caption = BoundTo(program.LineCaption);
    caption->setBuddy(line);
    grid->addWidget(caption, 1, 0);
    grid->addWidget(line, 1, 1);
    card.AddWidget(below);
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
    button->setMinimumSize(24 * Grid, 4 * Grid);  // as high as those with a list beside them
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
    tools.AddRow({NotBuilt(BoundTo(form.cmdGetEncoder[1]), parts.Say),
                  NotBuilt(BoundTo(form.cmdGetEncoder[0]), parts.Say)});
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
    AddShortList(files, form.lstEncodeDelay);
    Card& leftovers = page->AddCard(parts.Say(Key::LeftoversCard), parts.Say(Key::LeftoversCardLine));
    for (CheckBox* box : {&form.chkDelTemp, &form.chkDelTempFolder}) leftovers.Add(*box);
    Card& end = page->AddCard(parts.Say(Key::EndCard), parts.Say(Key::EndCardLine));
    for (CheckBox* box : {&form.chkDelayUnload, &form.chkQuitAfterRecording}) end.Add(*box);
    Card& source = page->AddCard(parts.Say(Key::SourceCard), parts.Say(Key::SourceCardLine));
    for (CheckBox* box : {&form.chkRestartRadioIfSilent, &form.chkDisableSoundScheme}) source.Add(*box);
    AddShortList(source, form.lstBufferFlag);
    Card& window = page->AddCard(parts.Say(Key::WindowCard), parts.Say(Key::WindowCardLine));
    window.Add(form.chkMaximizeButton);
    Card& language = page->AddCard(parts.Say(Key::LanguageCard), parts.Say(Key::LanguageCardLine));
    QComboBox* const languages = BoundTo(form.cmbLanguage);
    languages->setMinimumWidth(20 * Grid);
    language.AddRow({CaptionOf(form.lblLanguage, languages), languages});
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
    AddProgram(programs, parts,
               {form.chkStartApp, form.txtStartApp, form.cmdAppSearch[0], form.lblStartAppCommandLine,
                form.txtStartAppCommandLine});
    AddProgram(programs, parts,
               {form.chkStopApp, form.txtStopApp, form.cmdAppSearch[1], form.lblStopAppCommandLine,
                form.txtStopAppCommandLine});
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
