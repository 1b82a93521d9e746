#include "recording/level_display.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace Corvetape {

namespace {

constexpr int32_t GoodLevel = 16384;      // half of full scale: from here on the meter is green
constexpr double TooLoudLevel = 27852.8;  // 85 % of full scale: from here on it is red

void AddLine(LevelLines& lines, double from, double to, const Colour& ink) {
    if (from < to) lines.push_back({from, to, ink});
}

}  // namespace

LevelLines MeterLines(int32_t peak) {
    LevelLines lines;
    AddLine(lines, 0, std::min(peak, GoodLevel), LevelColour::Yellow);
    AddLine(lines, GoodLevel, std::min<double>(peak, TooLoudLevel), LevelColour::Green);
    AddLine(lines, TooLoudLevel, peak, LevelColour::Red);
    AddLine(lines, peak, FullScale, LevelColour::White);  // wipes the last value off
    return lines;
}

LevelLines HistogramLines(int32_t entry, int32_t silenceAmplitude) {
    LevelLines lines;
    if (entry == MarkSongEnd) {
        AddLine(lines, 0, FullScale, LevelColour::Black);
    } else if (entry >= 0) {
        AddLine(lines, 0, entry, LevelColour::Blue);
        // Silent stretches show at a glance by what is above them.
        const bool silent = entry <= silenceAmplitude;
        AddLine(lines, entry, FullScale, silent ? LevelColour::LightGrey : LevelColour::White);
    } else {
        const int32_t level = std::abs(entry);
        AddLine(lines, 0, level, LevelColour::MidGrey);
        AddLine(lines, level, FullScale, LevelColour::Red);
    }
    return lines;
}

LevelDisplay::LevelDisplay(frmMain& form, SignalState& signal, const PauseSettings& pause)
    : Form(form), Signal(signal), Pause(pause), Bars{{{0, 8, {}}, {10, 19, {}}}} {
    Form.tbsMain.Click.Connect([this] { TabChanged(); });
    Form.tmrVU.Timer.Connect([this] { Tick(); });
    Form.picHistogram.Click.Connect([this] { HistogramClicked(); });
    Form.picHistogram.MouseMove.Connect([this](int32_t column) {
        if (column >= 0) HistogramMouseMove(static_cast<size_t>(column));
    });
}

void LevelDisplay::TabChanged() {
    const bool seen = Form.tbsMain.SelectedKey() == "TAB_AUDIO";
    if (seen) {
        Signal.PeakLeft = 0;
        Signal.PeakRight = 0;
        for (HeldPeak& peak : HeldPeaks) peak.Clear();
        Signal.History.HistogramRedraw = true;
    }
    Form.tmrVU.Running(seen);
}

void LevelDisplay::Tick() {
    DrawMeter();
    if (!Frozen) {
        DrawHistogram();
        MeasureHistory();
    }
    Drawn.Raise();
}

int32_t HeldPeak::Follow(int32_t peak) {
    if (peak >= Level || Shown >= Pictures) {
        Level = peak;
        Shown = 0;
    }
    ++Shown;
    return Level;
}

void LevelDisplay::DrawMeter() {
    const std::array<int32_t, 2> peaks{Signal.PeakLeft, Signal.PeakRight};
    for (size_t side = 0; side < Bars.size(); ++side) {
        Bars[side].Lines = MeterLines(peaks[side]);
        Bars[side].Held = HeldPeaks[side].Follow(peaks[side]);
    }
    Signal.PeakLeft = 0;
    Signal.PeakRight = 0;
}

void LevelDisplay::DrawHistogram() {
    LevelHistory& history = Signal.History;
    Picture.Scrolled = false;
    Picture.FirstDrawn = 0;
    if (history.Size() == LevelHistory::Capacity && !std::exchange(history.HistogramRedraw, false)) {
        // Only what is new is drawn; the rest moves. The column before the new ones is drawn again, so that
        // a fifth buffer between two ticks leaves no hole.
        std::move(Picture.Columns.begin() + ScrollStep, Picture.Columns.end(), Picture.Columns.begin());
        Picture.Scrolled = true;
        Picture.FirstDrawn = HistogramPicture::Width - ScrollStep - 1;
    }
    for (size_t column = Picture.FirstDrawn; column < history.Size(); ++column) {
        Picture.Columns[column] = HistogramLines(history[column], Pause.SilenceAmplitude);
    }
    Picture.DrawnEnd = history.Size();
}

void LevelDisplay::MeasureHistory() {
    Lowest = FullScale;
    Highest = 0;
    for (size_t i = 0; i < Signal.History.Size(); ++i) {
        const int32_t entry = Signal.History[i];
        if (entry == MarkSongEnd) continue;
        Lowest = std::min(Lowest, std::abs(entry));
        Highest = std::max(Highest, std::abs(entry));
    }
    Form.lblHistogramMax.Caption(std::to_string(Highest));
    Form.lblHistogramMin.Caption(std::to_string(Lowest));
}

void LevelDisplay::HistogramClicked() {
    Frozen = !Frozen;
    Signal.History.HistogramRedraw = !Frozen;
    if (!Frozen) {
        ToolTip.clear();
        Form.picHistogram.ToolTip("");
        return;
    }
    for (size_t i = 0; i < Signal.History.Size(); ++i) FrozenHistory[i] = Signal.History[i];
}

void LevelDisplay::HistogramMouseMove(size_t column) {
    if (!Frozen || column >= FrozenHistory.size()) return;
    ToolTip = std::to_string(std::max(std::abs(FrozenHistory[column]), Lowest));
    Form.picHistogram.ToolTip(ToolTip);
}

}  // namespace Corvetape
