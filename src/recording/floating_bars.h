#pragma once

#include <string>

#include "core/media_state.h"
#include "core/settings/settings_store.h"
#include "core/window_place.h"
#include "forms/frm_cover_buttons.h"
#include "forms/frm_main.h"
#include "forms/frm_quick_buttons.h"
#include "media/cover_images.h"
#include "platform/event_loop.h"

namespace Corvetape {

/// What the bars work on. All of it outlives them.
struct FloatingBarsParts {
    frmMain& Form;
    frmQuickButtons& Plain;
    frmCoverButtons& Cover;
    const MediaState& Media;
    Settings& Options;
    SettingsStore& Store;
    EventLoop& Loop;
    CoverImages& Covers;
};

/// The two floating bars: which of them is in use, where it stands, when it is seen, and what its buttons do.
/// Exactly one is in use; the other one is never on the screen.
class FloatingBars {
 public:
    /// Attaches itself to the bars and to chkQuickButtons.
    explicit FloatingBars(FloatingBarsParts parts);
    FloatingBars(const FloatingBars&) = delete;
    FloatingBars& operator=(const FloatingBars&) = delete;

    /// Sizes of the bars in twips of the design: the whole window of each.
    static constexpr TwipSize PlainSize{520 * DesignTwipsPerPixel, 48 * DesignTwipsPerPixel};
    static constexpr TwipSize CoverSize{106 * DesignTwipsPerPixel, 107 * DesignTwipsPerPixel};

    /// Places both, and shows the one in use if the user wants one. Sizes in twips: of the main screen, where
    /// the plain bar has its default place, and of all screens together, on which a stored place must be.
    void Load(TwipSize screen, TwipSize allScreens);

    /// The desktop has put the main window to its place, which may be another one than at Load. A cover bar
    /// that stands at its default place, because none was ever stored, leaves the window free.
    void MainWindowPlaced();

    /// Writes place and visibility of the one in use. Nothing before Load. The place of a cover bar that is
    /// at its default one, beside a main window that was never placed, is not written: it would be one over
    /// it.
    void Save();

    /// The one in use.
    Form& QuickBar() { return *InUse; }

    /// The other design comes to the place of the present one.
    void SwitchDesign();

    /// The user closes a bar: it is hidden and stays loaded. A main window that could not be found any more
    /// comes back.
    void CloseBox();

    /// Whether there is an icon that brings a hidden main window back. When it goes, and no bar is seen
    /// either, the window comes back by itself.
    void IconIsThere(bool there);

    /// The pointer moves over the cover bar, or presses it.
    void PointerMoved();
    void PointerPressed();

    /// The main window comes, or goes.
    void FlipMainWindow();

 private:
    void AttachPlain();
    void AttachCover();
    void ShowInUse();
    void ShowOverlay(bool shown);
    void HideTimerFired();
    void CoverChanged();
    WindowPosition DefaultCoverPlace() const;
    bool StandsByNobodysChoice() const;
    void Put(Form& bar, TwipSize size, const WindowPosition& fallback);

    FloatingBarsParts Parts;
    Form* InUse;
    Connection CoversChanged;
    TwipSize AllScreens;
    WindowPosition LoadedAt;  ///< the cover bar
    bool Loaded = false;
    bool IconThere = false;
};

}  // namespace Corvetape
