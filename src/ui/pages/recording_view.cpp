#include "ui/pages/recording_view.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>
#include <array>

#include "media/player_bridge.h"
#include "media/provider_wmp.h"
#include "ui/binders.h"
#include "ui/binding.h"
#include "ui/cover_view.h"
#include "ui/form_page.h"
#include "ui/icons.h"
#include "ui/look.h"
#include "ui/make.h"
#include "ui/shown_text.h"
#include "ui/signal_view.h"
#include "ui/song_list.h"
#include "ui/state_line.h"
#include "ui/text_keys.h"

namespace Corvetape {

namespace {

ShownText* ShownLine(TextBox& control, const Label& name, const QFont& font, bool dim) {
    ShownText* const line = BoundToShown(control);
    line->setFont(font);
    line->setProperty("dim", dim);
    line->setAccessibleName(QString::fromStdString(name.Caption()));
    return line;
}

/// A line of quiet text that keeps its width.
QLabel* DimLabel() {
    QLabel* const label = DimText({});
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(false);
    return label;
}

}  // namespace

RecordingView::RecordingView(const UiParts& parts) : Parts(parts) {
    setObjectName("page");
    auto* const lines = Make<QVBoxLayout>(this);
    lines->setContentsMargins(3 * Grid, 3 * Grid, 3 * Grid, 2 * Grid);
    lines->setSpacing(2 * Grid);
    lines->addWidget(CurrentSong());
    lines->addWidget(Make<SignalView>(Parts));
    auto* const songs = Make<QVBoxLayout>();
    songs->setSpacing(Grid / 2);
    songs->addWidget(SongsHead());
    songs->addWidget(Make<SongList>(Parts), 1);
    lines->addLayout(songs, 1);
    lines->addWidget(Options());
    const auto refresh = [kept = QPointer<RecordingView>(this)] {
        if (kept && kept->isVisible()) kept->Refresh();
    };
    Parts.Form.tmr1Second.Timer.Connect(refresh);
    Parts.Form.cmdStartStop.Click.Connect(refresh);
    for (CheckBox& box : Parts.Form.chkStartStop) box.Click.Connect(refresh);
    Parts.Songs.Added.Connect(refresh);
    Parts.Songs.ProgressChanged.Connect([refresh](size_t) { refresh(); });
    Refresh();
}

QWidget* RecordingView::CurrentSong() {
    auto* const head = Make<QWidget>();
    head->setObjectName(QString::fromStdString(Parts.Form.fraCurrentSong.Name()));
    head->setAccessibleName(QString::fromStdString(Parts.Form.fraCurrentSong.Caption()));
    auto* const row = Make<QHBoxLayout>(head);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(3 * Grid);
    Cover = Make<CoverView>(Parts);
    row->addWidget(Cover, 0, Qt::AlignTop);
    auto* const words = Make<QVBoxLayout>();
    words->setSpacing(0);
    State = Make<StateLine>(Parts);
    auto* const top = Make<QHBoxLayout>();
    top->addWidget(State, 1);
    top->addWidget(WhoPlays());
    words->addLayout(top);
    words->addSpacing(Grid / 2);
    words->addWidget(Titles());
    words->addStretch(1);
    words->addWidget(Buttons());
    row->addLayout(words, 1);
    return head;
}

/// The source by its name, or, where that is any media player, the one that plays.
QWidget* RecordingView::WhoPlays() {
    auto* const both = Make<QWidget>();
    auto* const row = Make<QHBoxLayout>(both);
    row->setContentsMargins(0, 0, 0, 0);
    row->addStretch(1);
    Provider = BoundTo(Parts.Form.lblProvider[0]);
    Provider->setProperty("dim", true);
    Player = DimLabel();
    Player->setObjectName("lblPlayer");
    for (QLabel* label : {Provider, Player}) {
        label->setFont(ScaledFont(0.92));
        row->addWidget(label);
    }
    return both;
}

QWidget* RecordingView::Titles() {
    const frmMain& form = Parts.Form;
    auto* const both = Make<QWidget>();
    auto* const lines = Make<QVBoxLayout>(both);
    lines->setContentsMargins(0, 0, 0, 0);
    lines->setSpacing(0);
    Titled = Make<QWidget>();
    auto* const texts = Make<QVBoxLayout>(Titled);
    texts->setContentsMargins(0, 0, 0, 0);
    texts->setSpacing(2);
    texts->addWidget(ShownLine(Parts.Form.txtSong, form.lblMedia[2], ScaledFont(2, QFont::Bold), false));
    texts->addWidget(ShownLine(Parts.Form.txtArtist, form.lblMedia[1], ScaledFont(1.25), false));
    Untitled = DimText(Parts.Say(Key::NoTitle));
    Untitled->setFont(ScaledFont(2, QFont::Bold));
    lines->addWidget(Titled);
    lines->addWidget(Untitled);
    lines->addSpacing(Grid / 2);
    lines->addWidget(Source());
    return both;
}

/// Album, station and age of the song, whatever is known of them.
QWidget* RecordingView::Source() {
    frmMain& form = Parts.Form;
    Details = Make<DottedLine>();
    Album = ShownLine(form.txtAlbum, form.lblMedia[3], ScaledFont(1), true);
    Station = ShownLine(form.txtStation, form.lblMedia[0], ScaledFont(1), true);
    Remaining = ShownLine(form.txtTimeRemaining, form.lblMedia[4], ScaledFont(1), true);
    Hint = DimLabel();
    Hint->setText(Parts.Say(Key::NoTitleHint));
    Age = DimLabel();
    Age->setObjectName("lblSongAge");
    Age->setAccessibleName(Parts.Say(Key::SongAgeName));
    const std::array<QWidget*, 5> inOrder{Hint, Album, Station, Age, Remaining};
    for (QWidget* part : inOrder) Details->Add(part);
    return Details;
}

QWidget* RecordingView::Buttons() {
    auto* const group = Make<QWidget>();
    auto* const row = Make<QHBoxLayout>(group);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Grid);
    StartStop = BoundTo(Parts.Form.cmdStartStop);
    Skip = BoundTo(Parts.Form.cmdSkipThisRecording);
    Quick = BoundTo(Parts.Form.cmdQuickRecord);
    StartStop->setProperty("main", true);
    for (QPushButton* button : {StartStop, Skip, Quick}) {
        button->setIconSize({22, 16});
        row->addWidget(button);
    }
    row->addStretch(1);
    return group;
}

QWidget* RecordingView::SongsHead() {
    auto* const head = Make<QWidget>();
    auto* const row = Make<QHBoxLayout>(head);
    row->setContentsMargins(0, 0, 0, 0);
    auto* const name = Make<QLabel>(Parts.Say(Key::SongsOfRun));
    name->setFont(ScaledFont(1, QFont::DemiBold));
    Summary = DimText({});
    Summary->setWordWrap(false);
    row->addWidget(name);
    row->addStretch(1);
    row->addWidget(Summary);
    return head;
}

QWidget* RecordingView::Options() {
    frmMain& form = Parts.Form;
    auto* const options = Make<QWidget>();
    auto* const grid = Make<QGridLayout>(options);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(Grid);  // half of a wide screen holds the window
    grid->setVerticalSpacing(Grid / 2);
    grid->addWidget(BoundTo(form.chkStartStop[0]), 0, 0);
    grid->addWidget(BoundTo(form.chkStartStop[1]), 1, 0);
    grid->addWidget(BoundTo(form.chkStopRecording[0]), 0, 1);
    auto* const timed = Make<QHBoxLayout>();
    timed->setSpacing(Grid / 2);
    QLineEdit* const minutes = BoundTo(form.txtRecordingPeriod);
    minutes->setFixedWidth(6 * Grid);
    minutes->setAccessibleName(QString::fromStdString(form.chkStopRecording[1].Caption()).trimmed());
    timed->addWidget(BoundTo(form.chkStopRecording[1]));
    timed->addWidget(minutes);
    timed->addWidget(BoundTo(form.lblStopRecording));
    timed->addStretch(1);
    grid->addLayout(timed, 1, 1);
    AddMediaOptions(*grid);
    grid->setColumnStretch(2, 1);
    return options;
}

void RecordingView::AddMediaOptions(QGridLayout& grid) {
    frmMain& form = Parts.Form;
    auto* const media = Make<QHBoxLayout>();
    media->setSpacing(0);
    QCheckBox* const wanted = BoundTo(form.chkStationDataEnable);
    QLabel* const words = BoundTo(form.lblStationDataEnable);
    wanted->setAccessibleName(words->text());
    words->setBuddy(wanted);  // for its key
    Reread = BoundToIcon(form.cmdGetStationID);
    media->addWidget(wanted);
    media->addWidget(words);
    media->addStretch(1);
    media->addWidget(Reread);
    grid.addLayout(media, 0, 2);
    auto* const station = Make<QHBoxLayout>();
    station->setSpacing(Grid);
    QComboBox* const stations = BoundTo(form.cmbURL);
    stations->setMinimumContentsLength(6);
    stations->setPlaceholderText(QString::fromStdString(form.cmbURL.Caption()).remove(':'));
    station->addWidget(stations, 1);
    Launch = BoundToIcon(form.cmdLaunchURL);
    station->addWidget(Launch);
    grid.addLayout(station, 1, 2);
}

/// Symbols and icons are drawn in the colours of the palette.
void RecordingView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && isVisible()) Refresh();
}

/// While it was not seen it followed nothing.
void RecordingView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    Refresh();
}

void RecordingView::Refresh() {
    const bool titled = !Parts.Form.txtSong.Text().empty();
    Titled->setVisible(titled);
    Untitled->setVisible(!titled);
    State->Refresh();
    Cover->Refresh();
    RefreshPlayer();
    RefreshSource();
    RefreshButtons();
    Summary->setText(Parts.Say(
        Key::SongsSummary, {std::to_string(Parts.Songs.KeptSongs()), std::to_string(Parts.Songs.OtherSongs()),
                            LengthText(Parts.Songs.KeptSeconds()).toStdString()}));
}

void RecordingView::RefreshPlayer() {
    const bool byPlayer = Parts.Players != nullptr && Parts.Media.ProviderName == MediaPlayerName;
    const std::string name = byPlayer ? PlayerNameInWords(Parts.Players->Present().Player) : std::string();
    Player->setText(QString::fromStdString(name));
    Player->setVisible(!name.empty());
    const bool known = !Parts.Media.ProviderName.empty() && Parts.Media.ProviderName != NoStationData;
    Provider->setVisible(name.empty() && known);
}

void RecordingView::RefreshSource() {
    const frmMain& form = Parts.Form;
    Age->setText(LengthText(static_cast<uint64_t>(Parts.Heard.Seconds())));
    Details->Show(Hint, form.txtSong.Text().empty());
    Details->Show(Album, !form.txtAlbum.Text().empty());
    Details->Show(Station, !form.txtStation.Text().empty());
    Details->Show(Age, true);
    Details->Show(Remaining, !form.txtTimeRemaining.Text().empty());
}

void RecordingView::RefreshButtons() {
    const Look& look = PresentLook();
    const bool recording = Parts.Form.chkStartStop[0].Value() != 0;
    const QString now = look.Accent.name() + (recording ? "stop" : "record");
    if (now == ButtonsShown) return;
    ButtonsShown = now;
    StartStop->setIcon(DrawnIcon(recording ? "stop" : "record", look.OnAccent));
    Skip->setIcon(DrawnIcon("skip", look.Text));
    Quick->setIcon(DrawnIcon("quick", look.Text));
    Reread->setIcon(DrawnIcon("refresh", look.Text));
    Launch->setIcon(DrawnIcon("launch", look.Text));
}

}  // namespace Corvetape
