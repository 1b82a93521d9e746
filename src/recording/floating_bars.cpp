#include "recording/floating_bars.h"

namespace Corvetape {

namespace {

constexpr const char* Section = "QuickButtons";

/// The bars have no frames of their own.
TwipSize ScaleBar(Form& bar, TwipSize design) {
    bar.Place({0, 0, design.Width, design.Height});
    ScaleFormToDisplay(bar, design, DisplayScaleOf(ScreenTwipsPerPixel, ScreenTwipsPerPixel));
    return {bar.Place().Width, bar.Place().Height};
}

}  // namespace

FloatingBars::FloatingBars(FloatingBarsParts parts) : Parts(parts), InUse(&Parts.Cover) {
    AttachPlain();
    AttachCover();
    Parts.Form.chkQuickButtons.Click.Connect([this] { ShowInUse(); });
    Parts.Form.mnuTaskbarItem[15].Click.Connect([this] { Parts.Form.chkQuickButtons.Press(); });
}

void FloatingBars::AttachPlain() {
    frmQuickButtons& bar = Parts.Plain;
    bar.cmdQuickRecord.Click.Connect([this] { Parts.Form.cmdQuickRecord.Press(); });
    bar.cmdSkipThisRecording.Click.Connect([this] { Parts.Form.cmdSkipThisRecording.Press(); });
    bar.cmdStartStop.Click.Connect([this] { Parts.Form.cmdStartStop.Press(); });
    bar.cmdMinMax.Click.Connect([this] { FlipMainWindow(); });
    bar.cmdSwitchDesign.Click.Connect([this] { SwitchDesign(); });
}

void FloatingBars::AttachCover() {
    frmCoverButtons& bar = Parts.Cover;
    bar.imgStartStop.Click.Connect([this] { Parts.Form.cmdQuickRecord.Press(); });
    for (Picture* picture : {&bar.imgStart, &bar.imgStop}) {
        picture->Click.Connect([this] { Parts.Form.cmdStartStop.Press(); });
    }
    bar.imgSkip[1].Click.Connect([this] { Parts.Form.cmdSkipThisRecording.Press(); });
    bar.mnuContextItem[10].Click.Connect([this] { FlipMainWindow(); });
    bar.mnuContextItem[20].Click.Connect([this] { CloseBox(); });
    bar.mnuContextItem[30].Click.Connect([this] { SwitchDesign(); });
    bar.tmrHide.Timer.Connect([this] { HideTimerFired(); });
    CoversChanged = Parts.Covers.Changed.Listen([this] { CoverChanged(); });
}

void FloatingBars::Put(Form& bar, TwipSize size, const WindowPosition& fallback) {
    const WindowPosition at =
        StoredBarPosition(Parts.Options.QuickButtonsPos, size, AllScreens).value_or(fallback);
    bar.Place({at.Left, at.Top, size.Width, size.Height});
}

WindowPosition FloatingBars::DefaultCoverPlace() const {
    const TwipSize size{Parts.Cover.Place().Width, Parts.Cover.Place().Height};
    const WindowPlace& window = Parts.Form.Place();
    const WindowPosition at = DefaultCoverBarPosition(size, window);
    return Parts.Options.QuickButtonsPos.empty() ? BesideMainWindow(at, size, window, AllScreens) : at;
}

void FloatingBars::MainWindowPlaced() {
    const WindowPosition now{Parts.Cover.Place().Left, Parts.Cover.Place().Top};
    if (!Loaded || now != LoadedAt || !Parts.Options.QuickButtonsPos.empty()) return;
    WindowPlace place = Parts.Cover.Place();
    const WindowPosition at = DefaultCoverPlace();
    place.Left = at.Left;
    place.Top = at.Top;
    Parts.Cover.Place(place);
}

bool FloatingBars::StandsByNobodysChoice() const {
    const WindowPosition now{Parts.Cover.Place().Left, Parts.Cover.Place().Top};
    return InUse == &Parts.Cover && now == LoadedAt && Parts.Options.QuickButtonsPos.empty() &&
           Parts.Form.Place() == WindowPlace{};
}

void FloatingBars::Load(TwipSize screen, TwipSize allScreens) {
    AllScreens = allScreens;
    const TwipSize plain = ScaleBar(Parts.Plain, PlainSize);
    Put(Parts.Plain, plain, DefaultPlainBarPosition(plain, screen));
    frmCoverButtons& bar = Parts.Cover;
    const TwipSize cover = ScaleBar(bar, CoverSize);
    Put(bar, cover, DefaultCoverPlace());
    LoadedAt = {bar.Place().Left, bar.Place().Top};
    bar.CoverBoxWidth = static_cast<float>(cover.Width) / ScreenTwipsPerPixel;
    bar.CoverBoxHeight = static_cast<float>(cover.Height) / ScreenTwipsPerPixel;
    InUse = Parts.Options.OldView ? static_cast<Form*>(&Parts.Plain) : &Parts.Cover;
    Parts.Cover.tmrHide.Attach(Parts.Loop);
    Parts.Cover.tmrHide.Running(true);
    Loaded = true;
    ShowInUse();
}

void FloatingBars::Save() {
    if (!Loaded) return;
    if (!StandsByNobodysChoice()) Parts.Store.WriteSetting(Section, "Pos", PlaceText(InUse->Place()));
    Parts.Store.WriteSetting(Section, "Visible", Parts.Form.chkQuickButtons.Value() == 0 ? 1 : 0);
    Parts.Cover.tmrHide.Detach();
    Parts.Plain.Visible(false);
    Parts.Cover.Visible(false);
    Loaded = false;
}

void FloatingBars::ShowInUse() {
    if (Loaded) InUse->Visible(Parts.Form.chkQuickButtons.Value() == 0);
}

void FloatingBars::SwitchDesign() {
    Form& before = *InUse;
    const bool toPlain = &before == &Parts.Cover;
    InUse = toPlain ? static_cast<Form*>(&Parts.Plain) : &Parts.Cover;
    Parts.Options.OldView = toPlain;
    Parts.Store.WriteSetting(Section, "OldView", toPlain ? 1 : 0);
    WindowPlace place = InUse->Place();
    place.Left = before.Place().Left;
    place.Top = before.Place().Top;
    InUse->Place(place);
    InUse->Visible(true);
    before.Visible(false);
}

void FloatingBars::CloseBox() {
    Parts.Form.chkQuickButtons.Value(1);
    InUse->Visible(false);
    if (!IconThere) Parts.Form.Visible(true);
}

void FloatingBars::IconIsThere(bool there) {
    const bool gone = IconThere && !there;
    IconThere = there;
    if (gone && Loaded && !InUse->Visible()) Parts.Form.Visible(true);
}

void FloatingBars::FlipMainWindow() {
    Parts.Form.Visible(!Parts.Form.Visible());
}

void FloatingBars::PointerMoved() {
    ShowOverlay(true);
    Parts.Cover.tmrHide.Running(true);
}

void FloatingBars::PointerPressed() {
    Parts.Cover.tmrHide.Running(false);
}

void FloatingBars::ShowOverlay(bool shown) {
    frmCoverButtons& bar = Parts.Cover;
    bar.shpTop.Visible(shown);
    bar.lblArtist.Visible(shown);
    bar.lblSong.Visible(shown);
    bar.picButtons.Visible(shown);
}

/// A picture stands alone two seconds after the pointer has left. Without one the title stays, if there is
/// one.
void FloatingBars::HideTimerFired() {
    const bool pictured = !Parts.Covers.Picture().empty();
    const bool show = !pictured && !Parts.Media.CurrentMedia.Song.empty();
    Parts.Cover.tmrHide.Running(show);
    ShowOverlay(show);
}

/// A request that is under way changes nothing; its answer does, and so does an address without a picture.
void FloatingBars::CoverChanged() {
    if (!Parts.Covers.IsUnderWay()) Parts.Cover.tmrHide.Running(true);
}

}  // namespace Corvetape
