#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "audio/pause_settings.h"
#include "audio/signal_state.h"
#include "core/controls/event.h"
#include "forms/frm_main.h"

namespace Corvetape {

/// Highest level there is.
inline constexpr int32_t FullScale = 32768;

struct Colour {
    uint8_t Red = 0;
    uint8_t Green = 0;
    uint8_t Blue = 0;

    bool operator==(const Colour&) const = default;
};

/// The colours of the level display.
namespace LevelColour {
inline constexpr Colour Yellow{255, 255, 0};
inline constexpr Colour Green{0, 255, 0};
inline constexpr Colour Red{255, 0, 0};
inline constexpr Colour White{255, 255, 255};
inline constexpr Colour Blue{0, 0, 255};
inline constexpr Colour LightGrey{224, 224, 224};
inline constexpr Colour MidGrey{128, 128, 128};
inline constexpr Colour Black{0, 0, 0};
}  // namespace LevelColour

/// A vertical stretch of one colour, from a level up to a higher one. A picture has full scale at its top:
/// level `v` is at the height FullScale - v, counted from there.
struct LevelLine {
    double From = 0;
    double To = 0;
    Colour Ink;

    bool operator==(const LevelLine&) const = default;
};

/// The lines of one bar or column, from the bottom to the top without a gap. Empty stretches are left out.
using LevelLines = std::vector<LevelLine>;

/// What a bar of the meter looks like for a peak of 0 to FullScale: green in the range to aim at, red near
/// clipping, white above the peak.
LevelLines MeterLines(int32_t peak);

/// What a column of the statistic looks like for an entry of the level history.
LevelLines HistogramLines(int32_t entry, int32_t silenceAmplitude);

/// A bar of the meter between two places of its horizontal scale, which runs from 0 to 19.
struct MeterBar {
    int32_t Left = 0;
    int32_t Right = 0;
    LevelLines Lines;
    int32_t Held = 0;  ///< the highest peak of the last two seconds, long enough for the eye to read
};

/// Keeps a peak for as long as it takes to read it.
class HeldPeak {
 public:
    /// Pictures that show a peak, those of two seconds; a higher one takes its place at once.
    static constexpr int32_t Pictures = 10;

    /// The peak to be shown with the next picture, whose own peak is `peak`.
    int32_t Follow(int32_t peak);

    void Clear() { Level = Shown = 0; }

 private:
    int32_t Level = 0;
    int32_t Shown = 0;  ///< pictures that have shown it
};

/// The statistic of the last ten seconds: one column a buffer, of one unit width, the first one leftmost.
struct HistogramPicture {
    static constexpr size_t Width = LevelHistory::Capacity;

    std::array<LevelLines, Width> Columns;
    bool Scrolled = false;  ///< the last tick moved the picture to the left by ScrollStep columns
    size_t FirstDrawn = 0;  ///< first column that the last tick drew, counted from 0
    size_t DrawnEnd = 0;    ///< one after the last one; equal to FirstDrawn if it drew none
};

/// The level meter and the level statistic of the tab "TAB_AUDIO", as data. It moves while that tab is
/// selected; the screen draws what stands here whenever Drawn is raised.
class LevelDisplay {
 public:
    /// Columns that a picture of full width is moved by in a tick: the buffers between two ticks.
    static constexpr size_t ScrollStep = 4;

    /// Attaches itself to tmrVU and to the tabs. All of them outlive it.
    LevelDisplay(frmMain& form, SignalState& signal, const PauseSettings& pause);

    /// Left channel, right channel.
    const std::array<MeterBar, 2>& Meter() const { return Bars; }
    const HistogramPicture& Histogram() const { return Picture; }

    /// Lowest and highest level of the last ten seconds, as of the last tick that was not frozen. A mark of
    /// a change of the media data counts as a level of 2.
    int32_t HistogramMin() const { return Lowest; }
    int32_t HistogramMax() const { return Highest; }

    /// While frozen the statistic stands still and shows its levels at the mouse; the meter goes on.
    bool HistogramFrozen() const { return Frozen; }

    /// A click on the statistic: freezes it or lets it go on.
    void HistogramClicked();

    /// The mouse has moved over a column, counted from 0. Nothing happens unless it is frozen.
    void HistogramMouseMove(size_t column);

    /// What was shown at the mouse last; empty while nothing is frozen.
    const std::string& HistogramToolTip() const { return ToolTip; }

    /// The meter, and unless it is frozen the statistic, has a new picture.
    Event<> Drawn;

 private:
    void TabChanged();
    void Tick();
    void DrawMeter();
    void DrawHistogram();
    void MeasureHistory();

    frmMain& Form;
    SignalState& Signal;
    const PauseSettings& Pause;
    std::array<MeterBar, 2> Bars;
    std::array<HeldPeak, 2> HeldPeaks;
    HistogramPicture Picture;
    int32_t Lowest = FullScale;
    int32_t Highest = 0;
    bool Frozen = false;
    std::array<int32_t, LevelHistory::Capacity> FrozenHistory{};
    std::string ToolTip;
};

}  // namespace Corvetape
