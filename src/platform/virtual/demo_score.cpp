#include "platform/virtual/demo_score.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <string_view>

#include "platform/virtual/sim_random.h"

namespace Corvetape {

namespace {

/// What makes a style. Patterns have a character for each sixteenth of a bar: 'x' loud, 'o' soft.
struct Style {
    double SlowestBeats;  ///< in a minute
    double FastestBeats;
    int32_t BeatsPerBar;
    bool Minor;
    bool Sevenths;
    float Drive;
    DemoVoice Pad;
    float PadLoudness;
    DemoVoice Bass;
    float BassLoudness;
    std::string_view BassPattern;
    DemoVoice Figure;
    std::string_view FigurePattern;
    DemoVoice Lead;
    float LeadLoudness;
    double LeadDensity;  ///< share of the eighths that begin a note
    std::string_view Kick;
    std::string_view Snare;
    std::string_view Hat;
    std::array<int32_t, 4> Verse;  ///< degrees of the chords, a bar each
    std::array<int32_t, 4> Chorus;
    std::array<std::string_view, 3> Bands;
};

using enum DemoVoice;

// clang-format off
constexpr std::array Styles = std::to_array<Style>({
    // Dreamy
    {.SlowestBeats = 78, .FastestBeats = 90, .BeatsPerBar = 4, .Minor = false,
     .Sevenths = true, .Drive = 1.0F,
     .Pad = Organ, .PadLoudness = 0.085F,
     .Bass = Sine, .BassLoudness = 0.26F, .BassPattern = "x.......x.....o.",
     .Figure = Bell, .FigurePattern = "x.o.o.x.o.o.x.o.",
     .Lead = Triangle, .LeadLoudness = 0.2F, .LeadDensity = 0.35,
     .Kick = "x.........x.....", .Snare = "....x.......x...", .Hat = "o.o.o.o.o.o.o.o.",
     .Verse = {0, 5, 3, 4}, .Chorus = {3, 4, 2, 5},
     .Bands = {"The Paper Lanterns", "Slow Lighthouse", "Marrow & Mint"}},
    // For dancing
    {.SlowestBeats = 122, .FastestBeats = 130, .BeatsPerBar = 4, .Minor = true,
     .Sevenths = false, .Drive = 1.2F,
     .Pad = Saw, .PadLoudness = 0.06F,
     .Bass = Square, .BassLoudness = 0.1F, .BassPattern = "..x...x...x...x.",
     .Figure = Saw, .FigurePattern = "x..x..x...x..x..",
     .Lead = Square, .LeadLoudness = 0.12F, .LeadDensity = 0.4,
     .Kick = "x...x...x...x...", .Snare = "....x.......x...", .Hat = "oox.oox.oox.oox.",
     .Verse = {0, 5, 2, 6}, .Chorus = {5, 6, 0, 0},
     .Bands = {"Nightbus Nine", "Voltage Garden", "Kilo Parade"}},
    // A waltz on strings
    {.SlowestBeats = 96, .FastestBeats = 112, .BeatsPerBar = 3, .Minor = false,
     .Sevenths = false, .Drive = 1.0F,
     .Pad = Triangle, .PadLoudness = 0.12F,
     .Bass = Triangle, .BassLoudness = 0.26F, .BassPattern = "x...........",
     .Figure = Triangle, .FigurePattern = "....x...x...",
     .Lead = Sine, .LeadLoudness = 0.2F, .LeadDensity = 0.45,
     .Kick = "............", .Snare = "............", .Hat = "....o...o...",
     .Verse = {0, 3, 4, 0}, .Chorus = {5, 3, 0, 4},
     .Bands = {"Willow & the Weathercocks", "The Harbour Sisters", "Old Barley Road"}},
    // Loud guitars
    {.SlowestBeats = 136, .FastestBeats = 150, .BeatsPerBar = 4, .Minor = true,
     .Sevenths = false, .Drive = 4.0F,
     .Pad = Saw, .PadLoudness = 0.1F,
     .Bass = Saw, .BassLoudness = 0.1F, .BassPattern = "x.x.x.x.x.x.x.x.",
     .Figure = Saw, .FigurePattern = "x.....x.x.....x.",
     .Lead = Saw, .LeadLoudness = 0.11F, .LeadDensity = 0.3,
     .Kick = "x.....x.x.......", .Snare = "....x.......x...", .Hat = "x.x.x.x.x.x.x.x.",
     .Verse = {0, 0, 5, 6}, .Chorus = {0, 2, 6, 3},
     .Bands = {"Copper Engines", "Static Orchard", "The Late Arrivals"}},
    // Lounge
    {.SlowestBeats = 100, .FastestBeats = 116, .BeatsPerBar = 4, .Minor = false,
     .Sevenths = true, .Drive = 0.9F,
     .Pad = Organ, .PadLoudness = 0.06F,
     .Bass = Sine, .BassLoudness = 0.3F, .BassPattern = "x.....x.x.....x.",
     .Figure = Bell, .FigurePattern = "..x..x....x..x..",
     .Lead = Bell, .LeadLoudness = 0.11F, .LeadDensity = 0.3,
     .Kick = "o.....o.o.....o.", .Snare = "...o..o...o.o...", .Hat = "x.o.x.o.x.o.x.o.",
     .Verse = {1, 4, 0, 5}, .Chorus = {3, 2, 1, 4},
     .Bands = {"Trio Meridian", "Café Parallel", "Dot Valentine"}},
    // Toy computers
    {.SlowestBeats = 144, .FastestBeats = 160, .BeatsPerBar = 4, .Minor = false,
     .Sevenths = false, .Drive = 1.0F,
     .Pad = Square, .PadLoudness = 0.04F,
     .Bass = Square, .BassLoudness = 0.12F, .BassPattern = "x...x...x...x...",
     .Figure = Square, .FigurePattern = "xoxoxoxoxoxoxoxo",
     .Lead = Triangle, .LeadLoudness = 0.2F, .LeadDensity = 0.5,
     .Kick = "x.......x.......", .Snare = "....x.......x..o", .Hat = "o...o...o...o...",
     .Verse = {0, 4, 5, 3}, .Chorus = {3, 4, 0, 5},
     .Bands = {"Pixel Pigeon", "Tiny Continent", "Bits of Biscuit"}},
});
// clang-format on

constexpr std::array TitleFirst =
    std::to_array<std::string_view>({"Blue", "Seven", "Borrowed", "Northbound", "Paper", "Little",
                                     "Unfinished", "Golden", "Distant", "Second", "Salted", "Electric"});
constexpr std::array TitleLast =
    std::to_array<std::string_view>({"Umbrellas", "Harbour", "Postcards", "Signals", "Summer", "Staircase",
                                     "Satellites", "Bicycle", "Windows", "Ferry", "Thunder", "Marmalade"});
constexpr std::array AlbumNames = std::to_array<std::string_view>(
    {"Maps of Nowhere", "The Long Weekend", "Rooms with Rain", "Good Copies", "Tape Weather", "Half a Moon"});

constexpr double LastChordSeconds = 1.8;

SimRandom RandomFor(uint64_t seed, uint64_t number, uint64_t purpose) {
    return SimRandom(MixSeed(MixSeed(seed, number), purpose));
}

/// Six songs in a row have six styles, each six in an order of its own.
size_t StyleOf(uint64_t seed, uint64_t number) {
    std::array<size_t, Styles.size()> order{};
    for (size_t at = 0; at < order.size(); ++at) order[at] = at;
    SimRandom random = RandomFor(seed, number / order.size(), 1);
    for (size_t at = order.size() - 1; at > 0; --at) {
        std::swap(order[at], order[static_cast<size_t>(random.Below(at + 1))]);
    }
    return order[static_cast<size_t>(number % order.size())];
}

enum class Section { Intro, Verse, Chorus, Outro };

/// Puts the notes of a song together, part by part.
class Composer {
 public:
    Composer(const DemoPlan& plan, SimRandom random) : Plan(plan), Look(Styles[plan.Style]), Random(random) {
        Key = static_cast<int32_t>(Random.Between(int64_t{-5}, int64_t{6}));
        VerseTune = MakeTune();
        ChorusTune = MakeTune();
    }

    std::vector<DemoNote> Compose() {
        for (int32_t bar = 0; bar < Plan.Bars; ++bar) AddBar(bar);
        AddPad(0, Plan.Bars * BarSeconds(), LastChordSeconds);
        AddBassNote(0, Plan.Bars * BarSeconds(), LastChordSeconds, 1);
        std::ranges::stable_sort(Notes, {}, &DemoNote::Second);
        return std::move(Notes);
    }

 private:
    struct TuneNote {
        int32_t Eighth = 0;
        int32_t Eighths = 1;
        int32_t Degree = 0;  ///< above the root of the chord
    };

    double BarSeconds() const { return Plan.BeatSeconds * Plan.BeatsPerBar; }
    int32_t Sixteenths() const { return Plan.BeatsPerBar * 4; }

    Section SectionOf(int32_t bar) const {
        const int32_t intro = Plan.Bars < 20 ? 2 : 4;
        if (bar < intro) return Section::Intro;
        if (bar >= Plan.Bars - 2) return Section::Outro;
        return (bar - intro) / 8 % 2 == 0 ? Section::Verse : Section::Chorus;
    }

    float FrequencyOf(int32_t degree, int32_t octave) const {
        constexpr std::array<int32_t, 7> major = {0, 2, 4, 5, 7, 9, 11};
        constexpr std::array<int32_t, 7> minor = {0, 2, 3, 5, 7, 8, 10};
        const int32_t octaves = degree >= 0 ? degree / 7 : (degree - 6) / 7;
        const auto step = static_cast<size_t>(degree - octaves * 7);
        const int32_t semitones = (Look.Minor ? minor : major)[step] + 12 * (octaves + octave) + Key;
        return static_cast<float>(261.6256 * std::pow(2.0, semitones / 12.0));
    }

    /// Two bars of melody: tones of the chord on the beats, neighbours between them.
    std::vector<TuneNote> MakeTune() {
        constexpr std::array<int32_t, 5> chordTones = {0, 2, 4, 7, 4};
        std::vector<TuneNote> tune;
        int32_t degree = 2;
        for (int32_t eighth = 0; eighth < Plan.BeatsPerBar * 4; ++eighth) {
            const bool onBeat = eighth % 2 == 0;
            if (!Random.Chance(onBeat ? Look.LeadDensity * 1.5 : Look.LeadDensity)) continue;
            degree = onBeat ? Random.Pick(chordTones)
                            : degree + static_cast<int32_t>(Random.Between(int64_t{-1}, int64_t{1}));
            if (!tune.empty()) tune.back().Eighths = std::min(eighth - tune.back().Eighth, 4);
            tune.push_back({eighth, 2, degree});
        }
        return tune;
    }

    void AddBar(int32_t bar) {
        const Section section = SectionOf(bar);
        const auto& chords = section == Section::Chorus ? Look.Chorus : Look.Verse;
        const int32_t chord = chords[static_cast<size_t>(bar % 4)];
        const double begin = bar * BarSeconds();
        const float loudness = section == Section::Chorus ? 1.0F : 0.85F;
        AddPad(chord, begin, BarSeconds());
        AddFigure(chord, begin, loudness);
        if (section == Section::Intro && bar < 2) return;
        AddBass(chord, begin, loudness);
        if (section == Section::Outro) return;
        AddDrums(begin, loudness, bar % 8 == 7);
        if (section != Section::Intro) {
            AddLead(section == Section::Chorus ? ChorusTune : VerseTune, bar, chord, loudness);
        }
    }

    /// The chord holds through the bar and into the next one, so that a song is never silent.
    void AddPad(int32_t chord, double begin, double seconds) {
        const int32_t tones = Look.Sevenths ? 4 : 3;
        for (int32_t tone = 0; tone < tones; ++tone) {
            for (const float side : {-1.0F, 1.0F}) {
                DemoNote note;
                note.Second = begin;
                note.Seconds = seconds;
                note.Voice = Look.Pad;
                note.Frequency = FrequencyOf(chord + tone * 2, tone == 0 ? -1 : 0) * (1 + side * 0.0015F);
                note.Loudness = Look.PadLoudness * 0.7F;
                note.Pan = side * 0.7F;
                note.Attack = 0.03F;
                note.Decay = 0.8F;
                note.Sustain = 0.7F;
                note.Release = 0.15F;
                Notes.push_back(note);
            }
        }
    }

    void AddFigure(int32_t chord, double begin, float loudness) {
        int32_t tone = 0;
        ForHits(Look.FigurePattern, begin, [&](double second, float weight) {
            DemoNote note;
            note.Second = second;
            note.Seconds = Plan.BeatSeconds / 4;
            note.Voice = Look.Figure;
            note.Frequency = FrequencyOf(chord + (tone * 2) % 8, 1);
            note.Loudness = 0.08F * weight * loudness;
            note.Pan = tone % 2 == 0 ? -0.5F : 0.5F;
            note.Decay = 0.25F;
            note.Sustain = 0.2F;
            note.Release = 0.12F;
            note.Echo = 0.4F;
            Notes.push_back(note);
            ++tone;
        });
    }

    void AddBass(int32_t chord, double begin, float loudness) {
        int32_t hit = 0;
        ForHits(Look.BassPattern, begin, [&](double second, float weight) {
            const int32_t degree = hit % 4 == 3 ? chord + 4 : chord;
            AddBassNote(degree, second, Plan.BeatSeconds * 0.45, weight * loudness);
            ++hit;
        });
    }

    void AddBassNote(int32_t degree, double second, double seconds, float loudness) {
        DemoNote note;
        note.Second = second;
        note.Seconds = seconds;
        note.Voice = Look.Bass;
        note.Frequency = FrequencyOf(degree, -2);
        note.Loudness = Look.BassLoudness * loudness;
        note.Decay = 0.5F;
        note.Sustain = 0.6F;
        note.Release = 0.06F;
        Notes.push_back(note);
    }

    void AddLead(const std::vector<TuneNote>& tune, int32_t bar, int32_t chord, float loudness) {
        const double eighth = Plan.BeatSeconds / 2;
        const int32_t first = bar % 2 * Plan.BeatsPerBar * 2;
        for (const TuneNote& tone : tune) {
            if (tone.Eighth < first || tone.Eighth >= first + Plan.BeatsPerBar * 2) continue;
            DemoNote note;
            note.Second = bar * BarSeconds() + (tone.Eighth - first) * eighth;
            note.Seconds = tone.Eighths * eighth * 0.9;
            note.Voice = Look.Lead;
            note.Frequency = FrequencyOf(chord % 7 + tone.Degree, 1);
            note.Loudness = Look.LeadLoudness * loudness;
            note.Pan = 0.1F;
            note.Attack = 0.015F;
            note.Decay = 0.6F;
            note.Sustain = 0.55F;
            note.Release = 0.1F;
            note.Echo = 0.5F;
            Notes.push_back(note);
        }
    }

    void AddDrums(double begin, float loudness, bool fill) {
        const auto add = [&](DemoVoice voice, float full, float pan) {
            return [this, voice, full, pan, loudness](double second, float weight) {
                DemoNote note;
                note.Second = second;
                note.Voice = voice;
                note.Loudness = full * weight * loudness;
                note.Pan = pan;
                Notes.push_back(note);
            };
        };
        ForHits(Look.Kick, begin, add(Kick, 0.5F, 0));
        const std::string_view snare = fill && Look.BeatsPerBar == 4 ? "....x.......x.xx" : Look.Snare;
        ForHits(snare, begin, add(Snare, 0.22F, 0.1F));
        ForHits(Look.Hat, begin, add(Hat, 0.09F, -0.3F));
    }

    template <typename Action>
    void ForHits(std::string_view pattern, double begin, Action action) const {
        for (int32_t step = 0; step < Sixteenths() && step < static_cast<int32_t>(pattern.size()); ++step) {
            const char hit = pattern[static_cast<size_t>(step)];
            if (hit != '.') action(begin + step * Plan.BeatSeconds / 4, hit == 'x' ? 1.0F : 0.55F);
        }
    }

    const DemoPlan& Plan;
    const Style& Look;
    SimRandom Random;
    int32_t Key = 0;
    std::vector<TuneNote> VerseTune;
    std::vector<TuneNote> ChorusTune;
    std::vector<DemoNote> Notes;
};

}  // namespace

DemoPlan PlanDemoSong(uint64_t seed, uint64_t number) {
    SimRandom random = RandomFor(seed, number, 2);
    DemoPlan plan;
    plan.Style = StyleOf(seed, number);
    const Style& style = Styles[plan.Style];
    plan.BeatSeconds = 60 / random.Between(style.SlowestBeats, style.FastestBeats);
    plan.BeatsPerBar = style.BeatsPerBar;
    const double barSeconds = plan.BeatSeconds * plan.BeatsPerBar;
    const double wanted = random.Between(42.0, 69.0) - LastChordSeconds;
    plan.Bars = static_cast<int32_t>(wanted / barSeconds);
    if (plan.Bars * barSeconds + LastChordSeconds < 40) ++plan.Bars;
    plan.Seconds = plan.Bars * barSeconds + LastChordSeconds;
    return plan;
}

DemoScore ComposeDemoSong(uint64_t seed, uint64_t number) {
    DemoScore score;
    score.Plan = PlanDemoSong(seed, number);
    score.Drive = Styles[score.Plan.Style].Drive;
    score.Notes = Composer(score.Plan, RandomFor(seed, number, 3)).Compose();
    return score;
}

SourceMedia NameDemoSong(uint64_t seed, uint64_t number) {
    SimRandom random = RandomFor(seed, number, 4);
    SourceMedia media;
    media.StationName = "Radio Moonpier";
    media.Artist = random.Pick(Styles[StyleOf(seed, number)].Bands);
    media.Song = std::string(random.Pick(TitleFirst)) + " " + std::string(random.Pick(TitleLast));
    media.Album = random.Pick(AlbumNames);
    return media;
}

double DemoPauseBefore(uint64_t seed, uint64_t number) {
    return RandomFor(seed, number, 5).Between(1.0, 2.5);
}

}  // namespace Corvetape
