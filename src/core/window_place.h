#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "core/controls/form.h"

namespace Corvetape {

struct WindowPosition {
    int32_t Left = 0;
    int32_t Top = 0;

    bool operator==(const WindowPosition&) const = default;
};

/// Where a stored "left;top;width;height" moves a window to. Nothing, and the window stays, if there are
/// fewer than four pieces, if left and top have no bit in common (this odd test is kept), or if the window
/// had no width or no height.
std::optional<WindowPosition> StoredPosition(std::string_view pos);

/// The place for a window of this width whose title bar can be taken with the pointer: `at` itself if a
/// screen shows enough of it, else the nearest place on the first screen. All in twips; without screens it is
/// `at`.
WindowPosition WithinReach(WindowPosition at, int32_t width, std::span<const WindowPlace> screens);

/// A place as it is stored: "left;top;width;height".
std::string PlaceText(const WindowPlace& place);

/// Width and height in twips.
struct TwipSize {
    int32_t Width = 0;
    int32_t Height = 0;
};

/// Where a stored "left;top;..." puts a floating bar. Nothing, and the bar takes its default place, if left
/// or top is zero, or if the bar would not be wholly on the screen. So no bar stays exactly in the corner;
/// this rule is another one than that of the main window, and is kept.
std::optional<WindowPosition> StoredBarPosition(std::string_view pos, TwipSize bar, TwipSize screen);

/// The plain bar begins in the top right corner of the screen.
WindowPosition DefaultPlainBarPosition(TwipSize bar, TwipSize screen);

/// The cover bar begins at the width of the main window less half its own. Where the main window stands from
/// the left plays no part in it; this odd rule is kept.
WindowPosition DefaultCoverBarPosition(TwipSize bar, const WindowPlace& mainWindow);

/// Moves a bar that would cover the main window to its right, or to its left where the screen ends
/// there. It stays where there is room on neither side, and where it covers nothing.
WindowPosition BesideMainWindow(WindowPosition at, TwipSize bar, const WindowPlace& mainWindow,
                                TwipSize screen);

/// All windows were laid out at this many twips for each pixel.
inline constexpr int32_t DesignTwipsPerPixel = 12;

/// Twips of a pixel of this program's windows: 96 pixels to the inch. The toolkit scales pixels by itself.
inline constexpr int32_t ScreenTwipsPerPixel = 15;

/// What the layout of a form is multiplied with, so that a pixel of the design is a pixel of the screen.
struct DisplayScale {
    float DisplayScaleX = 1;
    float DisplayScaleY = 1;

    /// The display is that of the design: nothing is scaled.
    bool IsDesign() const { return DisplayScaleX == 1.0F && DisplayScaleY == 1.0F; }
};

/// The scale of a display with so many twips for each of its pixels.
DisplayScale DisplayScaleOf(int32_t twipsPerPixelX, int32_t twipsPerPixelY);

/// A control's left, top, width and height, each with its factor, to the nearest twip.
WindowPlace ScaledPlace(const WindowPlace& place, DisplayScale scale);

/// The size of a form whose inner size is scaled while its frame is not.
TwipSize ScaledFormSize(TwipSize outer, TwipSize inner, DisplayScale scale);

/// Sizes of type follow the height alone.
float ScaledFontSize(float size, DisplayScale scale);

/// Brings a form whose place is that of its design to the display. Its frame, which is what it has around
/// `inner`, is not scaled. Its controls are laid out by the toolkit.
void ScaleFormToDisplay(Form& form, TwipSize inner, DisplayScale scale);

/// What the main window does when the desktop has changed its state.
enum class WindowAnswer {
    Stay,
    HideToTray,    ///< it goes out of sight and is normal when it is shown again
    FlipQuickBar,  ///< it is normal again with the size that it had, and the floating bar comes or goes
};

/// Minimising hides the window where an icon brings it back. The button that maximises is none: it shows and
/// hides the floating bar, unless the user wants the window large.
WindowAnswer AnswerTo(WindowState state, bool iconIsThere, bool maximizeButton);

}  // namespace Corvetape
