#include "live/tone_edges.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>

#include "live/live_recording.h"

namespace Corvetape {

namespace {

constexpr size_t HeaderBytes = 44;
constexpr double LeastPower = 1e9;  ///< less is silence or noise

int ToneOf(const Frame* window) {
    int loudest = 0;
    double most = LeastPower;
    for (int tone = 1; tone <= TalkTone; ++tone) {
        const double power = PowerOf(window, TonePeriods * tone);
        if (power <= most) continue;
        most = power;
        loudest = tone;
    }
    return loudest;
}

}  // namespace

std::vector<Frame> FramesOfWave(const std::string& waveFile) {
    const std::string bytes = Content(waveFile);
    if (bytes.size() <= HeaderBytes) return {};
    uint32_t length = 0;
    std::memcpy(&length, &bytes[HeaderBytes - sizeof(length)], sizeof(length));
    std::vector<Frame> frames(std::min<size_t>(length, bytes.size() - HeaderBytes) / sizeof(Frame));
    if (!frames.empty()) std::memcpy(frames.data(), &bytes[HeaderBytes], frames.size() * sizeof(Frame));
    return frames;
}

double PowerOf(const Frame* window, int periodsPerSecond) {
    const double turn = 2 * std::cos(2 * std::numbers::pi * periodsPerSecond / 44100);
    double before = 0;
    double last = 0;
    for (size_t i = 0; i < WindowFrames; ++i) {
        const double next = window[i].Left + turn * last - before;
        before = last;
        last = next;
    }
    return last * last + before * before - turn * last * before;
}

std::vector<int> TonesOf(const std::vector<Frame>& frames) {
    std::vector<int> tones;
    for (size_t begin = 0; begin + WindowFrames <= frames.size(); begin += WindowFrames) {
        tones.push_back(ToneOf(&frames[begin]));
    }
    return tones;
}

ToneEdges EdgesOf(const std::vector<int>& tones, int tone) {
    const auto secondsOf = [](auto count) { return WindowSeconds * static_cast<double>(count); };
    const auto isOwn = [tone](int each) { return each == tone; };
    const auto isForeign = [](int each) { return each != 0; };
    const auto first = std::ranges::find_if(tones, isOwn);
    const auto last = std::find_if(tones.rbegin(), tones.rend(), isOwn);
    return {secondsOf(std::ranges::count(tones, tone)),
            secondsOf(std::count_if(tones.begin(), first, isForeign)),
            secondsOf(std::count_if(tones.rbegin(), last, isForeign))};
}

}  // namespace Corvetape
