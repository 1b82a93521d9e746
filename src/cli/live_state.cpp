#include "cli/live_state.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "cli/song_report.h"

namespace Corvetape {

namespace {

constexpr int MeterWidth = 20;
constexpr int ProgressWidth = 40;

/// A bar for a peak, in steps of 3 dB down to -60 dBFS.
std::string Meter(int32_t peak) {
    const double decibels = peak > 0 ? 20 * std::log10(peak / 32768.0) : -100;
    const int full = std::clamp(static_cast<int>(std::lround((decibels + 60) / 3)), 0, MeterWidth);
    return fmt::format("{:#<{}}{:.<{}}", "", full, "", MeterWidth - full);
}

const char* WishText(const RecordingFlags& flags) {
    const bool wanted = flags.RecordCurrentSong || flags.RecordNextSong;
    if (wanted && !flags.RecordingEnabled) return "stopped";
    if (flags.RecordCurrentSong) return flags.StopAtEndOfSong ? "last song" : "recording";
    return flags.RecordNextSong ? "waiting" : "watching";
}

}  // namespace

std::string LiveStateText(const Program& program, int32_t keptSongs) {
    const State& state = program.Values();
    const LevelHistory& history = state.Signal.History;
    const int32_t peak = history.Size() > 0 ? std::abs(history[history.Size() - 1]) : 0;
    std::string text = fmt::format("[{}] {:>7}  {:<9} {} kept", Meter(peak),
                                   LengthText(program.SongAgeSeconds()), WishText(state.Flags), keptSongs);
    if (state.Signal.SilenceSeconds > 1) text += fmt::format("  silent {} s", state.Signal.SilenceSeconds);
    return text;
}

std::string ProgressText(double part) {
    const double shown = std::clamp(part, 0.0, 1.0);
    const int full = static_cast<int>(std::lround(shown * ProgressWidth));
    return fmt::format("[{:#<{}}{:-<{}}] {:3.0f} %", "", full, "", ProgressWidth - full, shown * 100);
}

}  // namespace Corvetape
