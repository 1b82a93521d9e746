#include "platform/virtual/demo_synth.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Corvetape {

namespace {

constexpr double FadeSeconds = 0.6;
constexpr float FullScale = 30000;
constexpr float MasterGain = 1.3F;
constexpr float Audible = 0.0003F;  ///< of a voice's loudness; below it is done

constexpr size_t WavePoints = 1024;
using Wave = std::array<float, WavePoints>;

/// One period from its harmonics' strengths, scaled to a peak of 1.
template <typename Strength>
Wave MakeWave(size_t harmonics, Strength strengthOf) {
    Wave wave{};
    float peak = 0;
    for (size_t at = 0; at < WavePoints; ++at) {
        double sum = 0;
        for (size_t harmonic = 1; harmonic <= harmonics; ++harmonic) {
            sum += strengthOf(harmonic) * std::sin(2 * std::numbers::pi * static_cast<double>(harmonic * at) /
                                                   static_cast<double>(WavePoints));
        }
        wave[at] = static_cast<float>(sum);
        peak = std::max(peak, std::abs(wave[at]));
    }
    for (float& point : wave) point /= peak;
    return wave;
}

/// Few harmonics keep the tones soft and far from the highest frequency that can be represented.
const Wave& WaveOf(DemoVoice voice) {
    static const Wave sine = MakeWave(1, [](size_t) { return 1.0; });
    static const Wave saw = MakeWave(8, [](size_t n) { return 1.0 / static_cast<double>(n); });
    static const Wave square =
        MakeWave(7, [](size_t n) { return n % 2 == 1 ? 1.0 / static_cast<double>(n) : 0.0; });
    static const Wave triangle = MakeWave(7, [](size_t n) {
        return n % 2 == 0 ? 0.0 : (n % 4 == 1 ? 1.0 : -1.0) / static_cast<double>(n * n);
    });
    static const Wave organ = MakeWave(6, [](size_t n) {
        constexpr std::array<double, 6> drawbars = {1, 0.5, 0.35, 0.2, 0, 0.1};
        return drawbars[n - 1];
    });
    switch (voice) {
        case DemoVoice::Saw:
            return saw;
        case DemoVoice::Square:
            return square;
        case DemoVoice::Triangle:
            return triangle;
        case DemoVoice::Organ:
            return organ;
        default:
            return sine;
    }
}

float At(const Wave& wave, uint32_t phase) {
    return wave[phase >> 22U];
}

uint32_t StepOf(double frequency, double rate) {
    return static_cast<uint32_t>(frequency / rate * 4294967296.0);
}

/// Factor per frame that brings a level down to 5 % in `seconds`.
float FallIn(double seconds, double rate) {
    return static_cast<float>(std::exp(-3.0 / std::max(seconds * rate, 1.0)));
}

/// Bends what is too loud instead of cutting it off; never passes 1.
float Soften(float sample) {
    const float limited = std::clamp(sample, -3.0F, 3.0F);
    const float square = limited * limited;
    return limited * (27 + square) / (27 + 9 * square);
}

}  // namespace

/// A note that sounds.
struct DemoSynth::Voice {
    const DemoNote* Note = nullptr;
    const Wave* Shape = nullptr;
    size_t From = 0;          ///< first frame of the present block
    uint64_t Age = 0;         ///< frames since its beginning
    uint64_t HeldFrames = 0;  ///< until it is let go
    uint32_t Phase = 0;
    uint32_t Step = 0;
    uint32_t SidePhase = 0;  ///< of the tone that bends a bell
    float Level = 0;
    float AttackStep = 1;
    float DecayFall = 1;
    float ReleaseFall = 1;
    float SideLevel = 1;
    float SideFall = 1;
    float LastNoise = 0;
    bool Attacking = true;

    bool Done() const { return !Attacking && Level < Audible; }
};

DemoSynth::DemoSynth(DemoScore score, uint32_t framesPerSecond, uint64_t frames)
    : Score(std::move(score)), Rate(framesPerSecond), Length(frames) {
    const auto delay = static_cast<size_t>(Score.Plan.BeatSeconds * 0.75 * Rate);
    for (auto& line : EchoLines) line.assign(delay, 0.0F);
}

DemoSynth::~DemoSynth() = default;

void DemoSynth::Read(std::span<Frame> frames) {
    while (!frames.empty()) {
        if (ReadyAt == BlockFrames) RenderBlock();
        const size_t part = std::min(frames.size(), BlockFrames - ReadyAt);
        std::copy_n(Ready.begin() + static_cast<std::ptrdiff_t>(ReadyAt), part, frames.begin());
        frames = frames.subspan(part);
        ReadyAt += part;
    }
}

void DemoSynth::RenderBlock() {
    Mix = {};
    BeginNotes();
    for (Voice& voice : Voices) Play(voice);
    std::erase_if(Voices, [](const Voice& voice) { return voice.Done(); });
    AddEcho();
    Finish();
    BlockBegin += BlockFrames;
    ReadyAt = 0;
}

void DemoSynth::BeginNotes() {
    for (; NextNote < Score.Notes.size(); ++NextNote) {
        const DemoNote& note = Score.Notes[NextNote];
        const auto begin = static_cast<uint64_t>(note.Second * Rate);
        if (begin >= BlockBegin + BlockFrames) return;

        Voice voice;
        voice.Note = &note;
        voice.Shape = &WaveOf(note.Voice);
        voice.From = static_cast<size_t>(begin - BlockBegin);
        voice.HeldFrames = static_cast<uint64_t>(note.Seconds * Rate);
        voice.Step = StepOf(note.Frequency, Rate);
        voice.AttackStep = static_cast<float>(1 / std::max(note.Attack * Rate, 1.0));
        voice.DecayFall = FallIn(note.Decay, Rate);
        voice.ReleaseFall = FallIn(note.Release, Rate);
        voice.SideFall = FallIn(0.4, Rate);
        switch (note.Voice) {
            case DemoVoice::Kick:
                voice.Step = StepOf(46, Rate);
                voice.ReleaseFall = FallIn(0.28, Rate);
                voice.SideFall = FallIn(0.07, Rate);
                break;
            case DemoVoice::Snare:
                voice.Step = StepOf(185, Rate);
                voice.ReleaseFall = FallIn(0.17, Rate);
                break;
            case DemoVoice::Hat:
                voice.ReleaseFall = FallIn(0.06, Rate);
                break;
            default:
                break;
        }
        Voices.push_back(voice);
    }
}

float DemoSynth::Noise() {
    NoiseState ^= NoiseState << 13U;
    NoiseState ^= NoiseState >> 17U;
    NoiseState ^= NoiseState << 5U;
    return static_cast<float>(static_cast<int32_t>(NoiseState)) * 0x1p-31F;
}

void DemoSynth::Play(Voice& voice) {
    const DemoNote& note = *voice.Note;
    const float gainLeft = note.Loudness * std::sqrt((1 - note.Pan) / 2) * std::numbers::sqrt2_v<float>;
    const float gainRight = note.Loudness * std::sqrt((1 + note.Pan) / 2) * std::numbers::sqrt2_v<float>;
    const bool isDrum = note.Voice >= DemoVoice::Kick;
    const Wave& sine = WaveOf(DemoVoice::Sine);
    for (size_t at = voice.From; at < BlockFrames; ++at) {
        if (voice.Attacking) {
            voice.Level = std::min(voice.Level + voice.AttackStep, 1.0F);
            voice.Attacking = voice.Level < 1;
        } else if (isDrum || voice.Age >= voice.HeldFrames) {
            voice.Level *= voice.ReleaseFall;
        } else {
            voice.Level = note.Sustain + (voice.Level - note.Sustain) * voice.DecayFall;
        }
        ++voice.Age;
        voice.SideLevel *= voice.SideFall;

        float sample = 0;
        if (note.Voice == DemoVoice::Bell) {
            voice.SidePhase += voice.Step * 3;
            const float bend = At(sine, voice.SidePhase) * voice.SideLevel * 0.2F;
            voice.Phase += voice.Step;
            sample = At(sine, voice.Phase + static_cast<uint32_t>(static_cast<int64_t>(bend * 0x1p31F) * 2));
        } else if (note.Voice == DemoVoice::Kick) {
            voice.Phase +=
                voice.Step + static_cast<uint32_t>(static_cast<float>(voice.Step) * 3 * voice.SideLevel);
            sample = At(sine, voice.Phase);
        } else if (note.Voice == DemoVoice::Snare) {
            voice.Phase += voice.Step;
            sample = Noise() * 0.7F + At(sine, voice.Phase) * 0.5F;
        } else if (note.Voice == DemoVoice::Hat) {
            const float noise = Noise();
            sample = noise - voice.LastNoise;
            voice.LastNoise = noise;
        } else {
            voice.Phase += voice.Step;
            sample = At(*voice.Shape, voice.Phase);
        }
        sample *= voice.Level;
        Mix.Left[at] += sample * gainLeft;
        Mix.Right[at] += sample * gainRight;
        Mix.Echo[at] += sample * note.Loudness * note.Echo;
    }
    voice.From = 0;
}

/// The echo goes from side to side.
void DemoSynth::AddEcho() {
    for (size_t at = 0; at < BlockFrames; ++at) {
        const float left = EchoLines[0][EchoAt];
        const float right = EchoLines[1][EchoAt];
        EchoLines[0][EchoAt] = Mix.Echo[at] + right * 0.35F;
        EchoLines[1][EchoAt] = left * 0.7F;
        EchoAt = (EchoAt + 1) % EchoLines[0].size();
        Mix.Left[at] += left * 0.5F;
        Mix.Right[at] += right * 0.5F;
    }
}

void DemoSynth::Finish() {
    const float drive = MasterGain * Score.Drive;
    const float loudness = FullScale / std::sqrt(std::max(Score.Drive, 1.0F));
    const auto fadeFrames = static_cast<uint64_t>(FadeSeconds * Rate);
    for (size_t at = 0; at < BlockFrames; ++at) {
        const uint64_t frame = BlockBegin + at;
        const uint64_t left = frame < Length ? Length - frame : 0;
        float gain = loudness;
        if (left < fadeFrames) gain *= static_cast<float>(left) / static_cast<float>(fadeFrames);
        Ready[at].Left = static_cast<int16_t>(std::lround(Soften(Mix.Left[at] * drive) * gain));
        Ready[at].Right = static_cast<int16_t>(std::lround(Soften(Mix.Right[at] * drive) * gain));
    }
}

}  // namespace Corvetape
