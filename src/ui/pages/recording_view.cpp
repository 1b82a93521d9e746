#include "ui/pages/recording_view.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

#include "ui/binders.h"
#include "ui/binding.h"
#include "ui/cover_view.h"
#include "ui/form_page.h"
#include "ui/icons.h"
#include "ui/look.h"
#include "ui/make.h"
#include "ui/signal_view.h"
#include "ui/song_list.h"
#include "ui/state_line.h"
#include "ui/text_keys.h"

namespace Corvetape {

namespace {

QLineEdit* ShownLine(TextBox& control, const QFont& font, bool dim) {
    QLineEdit* const line = BoundToShown(control);
    line->setFont(font);
    line->setProperty("dim", dim);
    return line;
}

}  // namespace

RecordingView::RecordingView(const UiParts& parts) : Parts(parts) {
    setObjectName("page");
    auto* const lines = Make<QVBoxLayout>(this);
    lines->setContentsMargins(3 * Grid, 3 * Grid, 3 * Grid, 2 * Grid);
    lines->setSpacing(2 * Grid);
    lines->addWidget(Head());
    lines->addWidget(Make<SignalView>(Parts));
    auto* const songs = Make<QVBoxLayout>();
    songs->setSpacing(Grid);
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
    Refresh();
}

QWidget* RecordingView::Head() {
    auto* const head = Make<QWidget>();
    auto* const row = Make<QHBoxLayout>(head);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(3 * Grid);
    Cover = Make<CoverView>(Parts);
    row->addWidget(Cover, 0, Qt::AlignTop);
    auto* const words = Make<QVBoxLayout>();
    words->setSpacing(0);
    State = Make<StateLine>(Parts);
    words->addWidget(State);
    words->addSpacing(Grid / 2);
    words->addWidget(Titles());
    words->addStretch(1);
    words->addWidget(Buttons());
    row->addLayout(words, 1);
    return head;
}

QWidget* RecordingView::Titles() {
    auto* const both = Make<QWidget>();
    auto* const lines = Make<QVBoxLayout>(both);
    lines->setContentsMargins(0, 0, 0, 0);
    lines->setSpacing(0);
    Titled = Make<QWidget>();
    auto* const texts = Make<QVBoxLayout>(Titled);
    texts->setContentsMargins(0, 0, 0, 0);
    texts->setSpacing(2);
    texts->addWidget(ShownLine(Parts.Form.txtSong, ScaledFont(2, QFont::Bold), false));
    texts->addWidget(ShownLine(Parts.Form.txtArtist, ScaledFont(1.25), false));
    Untitled = DimText(Parts.Say(Key::NoTitle));
    Untitled->setFont(ScaledFont(2, QFont::Bold));
    lines->addWidget(Titled);
    lines->addWidget(Untitled);
    Source = DimText({});
    Source->setTextFormat(Qt::PlainText);
    Source->setWordWrap(false);
    Source->setObjectName("lblSource");
    Source->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    lines->addSpacing(Grid / 2);
    lines->addWidget(Source);
    return both;
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
    for (QPushButton* button : {StartStop, Skip, Quick}) row->addWidget(button);
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
    grid->setHorizontalSpacing(3 * Grid);
    grid->setVerticalSpacing(Grid);
    grid->addWidget(BoundTo(form.chkStartStop[0]), 0, 0);
    grid->addWidget(BoundTo(form.chkStartStop[1]), 1, 0);
    grid->addWidget(BoundTo(form.chkStopRecording[0]), 0, 1);
    auto* const timed = Make<QHBoxLayout>();
    timed->setSpacing(Grid / 2);
    QLineEdit* const minutes = BoundTo(form.txtRecordingPeriod);
    minutes->setFixedWidth(7 * Grid);
    timed->addWidget(BoundTo(form.chkStopRecording[1]));
    timed->addWidget(minutes);
    timed->addWidget(BoundTo(form.lblStopRecording));
    timed->addStretch(1);
    grid->addLayout(timed, 1, 1);
    auto* const media = Make<QHBoxLayout>();
    media->setSpacing(Grid / 2);
    media->addWidget(BoundTo(form.chkStationDataEnable));
    media->addWidget(BoundTo(form.lblStationDataEnable), 1);
    media->addWidget(BoundTo(form.cmdGetStationID));
    grid->addLayout(media, 0, 2);
    auto* const station = Make<QHBoxLayout>();
    station->setSpacing(Grid);
    station->addWidget(BoundTo(form.cmbURL), 1);
    station->addWidget(NotBuilt(BoundTo(form.cmdLaunchURL), Parts.Say));
    grid->addLayout(station, 1, 2);
    grid->setColumnStretch(2, 1);
    return options;
}

void RecordingView::Refresh() {
    const bool titled = !Parts.Form.txtSong.Text().empty();
    Titled->setVisible(titled);
    Untitled->setVisible(!titled);
    State->Refresh();
    Cover->Refresh();
    RefreshSource();
    RefreshButtons();
    Summary->setText(Parts.Say(
        Key::SongsSummary, {std::to_string(Parts.Songs.KeptSongs()), std::to_string(Parts.Songs.OtherSongs()),
                            LengthText(Parts.Songs.KeptSeconds()).toStdString()}));
}

/// Album, station and age of the song, whatever is known of them.
void RecordingView::RefreshSource() {
    QStringList texts;
    for (const TextBox* box : {&Parts.Form.txtAlbum, &Parts.Form.txtStation}) {
        if (!box->Text().empty()) texts << QString::fromStdString(box->Text());
    }
    if (Parts.Form.txtSong.Text().empty()) texts << Parts.Say(Key::NoTitleHint);
    texts << LengthText(Parts.SongAgeSeconds());
    Source->setText(texts.join(QString::fromUtf8("  ·  ")));
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
}

}  // namespace Corvetape
