#include "core/window_place.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/text/numbers.h"
#include "core/text/text.h"

namespace Corvetape {

namespace {

int32_t Scaled(int32_t twips, float factor) {
    return static_cast<int32_t>(std::lround(static_cast<float>(twips) * factor));
}

}  // namespace

std::optional<WindowPosition> StoredBarPosition(std::string_view pos, TwipSize bar, TwipSize screen) {
    const size_t semicolon = pos.find(';');
    if (semicolon == std::string_view::npos) return std::nullopt;
    const auto left = RoundToInt32(LeadingNumber(pos.substr(0, semicolon)));
    const auto top = RoundToInt32(LeadingNumber(pos.substr(semicolon + 1)));
    const bool fits = left > 0 && static_cast<int64_t>(left) + bar.Width <= screen.Width && top > 0 &&
                      static_cast<int64_t>(top) + bar.Height <= screen.Height;
    return fits ? std::optional(WindowPosition{left, top}) : std::nullopt;
}

WindowPosition DefaultPlainBarPosition(TwipSize bar, TwipSize screen) {
    return {screen.Width - bar.Width, 0};
}

WindowPosition DefaultCoverBarPosition(TwipSize bar, const WindowPlace& mainWindow) {
    return {mainWindow.Width - bar.Width / 2, mainWindow.Top + bar.Height};
}

WindowPosition BesideMainWindow(WindowPosition at, TwipSize bar, const WindowPlace& mainWindow,
                                TwipSize screen) {
    constexpr int32_t gap = 16 * ScreenTwipsPerPixel;  // also room for the frame of the window
    const int32_t right = mainWindow.Left + mainWindow.Width;
    const bool covers = at.Left < right && at.Left + bar.Width > mainWindow.Left &&
                        at.Top < mainWindow.Top + mainWindow.Height && at.Top + bar.Height > mainWindow.Top;
    if (!covers) return at;
    if (right + gap + bar.Width <= screen.Width) return {right + gap, at.Top};
    if (mainWindow.Left - gap - bar.Width >= 0) return {mainWindow.Left - gap - bar.Width, at.Top};
    return at;
}

DisplayScale DisplayScaleOf(int32_t twipsPerPixelX, int32_t twipsPerPixelY) {
    constexpr auto design = static_cast<float>(DesignTwipsPerPixel);
    return {static_cast<float>(twipsPerPixelX) / design, static_cast<float>(twipsPerPixelY) / design};
}

WindowPlace ScaledPlace(const WindowPlace& place, DisplayScale scale) {
    if (scale.IsDesign()) return place;
    return {Scaled(place.Left, scale.DisplayScaleX), Scaled(place.Top, scale.DisplayScaleY),
            Scaled(place.Width, scale.DisplayScaleX), Scaled(place.Height, scale.DisplayScaleY)};
}

TwipSize ScaledFormSize(TwipSize outer, TwipSize inner, DisplayScale scale) {
    if (scale.IsDesign()) return outer;
    return {outer.Width - inner.Width + Scaled(inner.Width, scale.DisplayScaleX),
            outer.Height - inner.Height + Scaled(inner.Height, scale.DisplayScaleY)};
}

void ScaleFormToDisplay(Form& form, TwipSize inner, DisplayScale scale) {
    WindowPlace place = form.Place();
    const TwipSize size = ScaledFormSize({place.Width, place.Height}, inner, scale);
    place.Width = size.Width;
    place.Height = size.Height;
    form.Place(place);
}

float ScaledFontSize(float size, DisplayScale scale) {
    return scale.IsDesign() ? size : size * scale.DisplayScaleY;
}

WindowAnswer AnswerTo(WindowState state, bool iconIsThere, bool maximizeButton) {
    if (state == WindowState::Minimised && iconIsThere) return WindowAnswer::HideToTray;
    if (state == WindowState::Maximised && !maximizeButton) return WindowAnswer::FlipQuickBar;
    return WindowAnswer::Stay;
}

std::optional<WindowPosition> StoredPosition(std::string_view pos) {
    const std::vector<std::string> pieces = Split(pos, ';');
    if (pieces.size() < 4) return std::nullopt;
    const auto number = [&pieces](size_t i) { return RoundToInt32(LeadingNumber(pieces[i])); };
    const WindowPosition position{number(0), number(1)};
    if ((position.Left & position.Top) == 0) return std::nullopt;
    if (number(2) == 0 || number(3) == 0) return std::nullopt;
    return position;
}

WindowPosition WithinReach(WindowPosition at, int32_t width, std::span<const WindowPlace> screens) {
    constexpr int32_t titleHeight = 32 * ScreenTwipsPerPixel;
    constexpr int32_t leastWidth = 96 * ScreenTwipsPerPixel;
    const auto reaches = [&](const WindowPlace& screen) {
        const int64_t shown = std::min(int64_t{at.Left} + width, int64_t{screen.Left} + screen.Width) -
                              std::max(at.Left, screen.Left);
        return at.Top >= screen.Top && int64_t{at.Top} + titleHeight <= int64_t{screen.Top} + screen.Height &&
               shown >= std::min(leastWidth, width);
    };
    if (screens.empty() || std::ranges::any_of(screens, reaches)) return at;
    const WindowPlace& first = screens.front();
    const auto within = [](int32_t value, int32_t low, int32_t room) {
        return std::max(low, std::min(value, low + room));
    };
    return {within(at.Left, first.Left, first.Width - width),
            within(at.Top, first.Top, first.Height - titleHeight)};
}

std::string PlaceText(const WindowPlace& place) {
    std::string text;
    for (const int32_t number : {place.Left, place.Top, place.Width, place.Height}) {
        text += (text.empty() ? "" : ";") + std::to_string(number);
    }
    return text;
}

}  // namespace Corvetape
