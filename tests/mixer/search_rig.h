#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "audio/analyze.h"
#include "mixer/input_list.h"
#include "mixer/input_search.h"
#include "mixer/mixer_rig.h"
#include "support/noted_reports.h"
#include "support/signal_chain.h"

namespace Corvetape::Test {

/// A steady signal whose every sample has the same magnitude, asked for frame by frame.
class SteadySound : public SoundSource {
 public:
    SteadySound(uint32_t framesPerSecond, std::function<double()> level)
        : Rate(framesPerSecond), Level(std::move(level)) {}

    uint32_t FramesPerSecond() const override { return Rate; }

    size_t Read(std::span<Frame> frames) override {
        const double wanted = std::min(Level(), 32767.0);
        for (size_t i = 0; i < frames.size(); ++i) {
            const auto sample = static_cast<int16_t>(i % 2 == 0 ? wanted : -wanted);
            frames[i] = {sample, sample};
        }
        return frames.size();
    }

 private:
    uint32_t Rate;
    std::function<double()> Level;
};

/// Inputs with made-up cards, recorded and analysed as in the program.
class SearchRig : public MixerRig, private BufferTarget {
 public:
    SearchRig() {
        Options.AudioBuffers = 400;
        Options.InputDevice = 0;
        Media.StationDataEnabled = false;
    }

    /// An input with a volume and a switch for mute, and a signal of this level at full volume.
    SimCard& AddInput(const std::string& id, double level, int32_t volume = 65535, int32_t mute = 0) {
        SimCard& card = Cards.AddInput(id, volume, mute);
        AddSound(id, [level, &card] {
            SimLine& line = card.Destinations[0].Line;
            const bool muted = line.Of(MIXERCONTROL_CONTROLTYPE_MUTE).Value() != 0;
            return muted ? 0 : level * line.Of(MIXERCONTROL_CONTROLTYPE_VOLUME).Value() / 65535.0;
        });
        return card;
    }

    /// An input that gives such a signal. Its card is added by somebody else.
    void AddSound(const std::string& id, std::function<double()> level) {
        Computer.WaveIn.AddDevice({"Input " + id, id, WaveInKind::Input}, [level](uint32_t rate) {
            return std::make_unique<SteadySound>(rate, level);
        });
        Options.InputDeviceNames += "Input " + id + ";";
    }

    void RunFor(double seconds) {
        Computer.Loop.RunFor(std::chrono::nanoseconds(static_cast<int64_t>(seconds * 1e9)));
    }

    std::vector<std::string> Questions() const {
        std::vector<std::string> texts;
        for (const ShownBox& box : Computer.Dialogs.Boxes) texts.push_back(box.Text);
        return texts;
    }

    static int32_t ValueOf(SimCard& card, uint32_t type) {
        return card.Destinations[0].Line.Of(type).Value();
    }
    static int32_t VolumeOf(SimCard& card) { return ValueOf(card, MIXERCONTROL_CONTROLTYPE_VOLUME); }

    frmMain Form;
    SignalState Signal;
    PauseSettings Pause;
    SignalChain Chain{Computer, Computer.WaveIn, Signal, Pause, Media, this};
    Settings& Options = Chain.Options;
    NotedReports Reports{
        Computer, Form, "816=nothing found\n817=found %1\n818=is it %1?\n901=changed\n902=none\n1501=%1 *\n"};
    clsLocalizeControls& Texts = Reports.Texts;
    LifecycleFlags& Lifecycle = Reports.Lifecycle;
    Capture& Input = Chain.Input;
    InputList Inputs{{Form, Computer.WaveIn, Options, Store, Lifecycle}, Chain.Device, Reports.Say};
    MixerWait Wait{Computer.Clock, Computer.Loop};
    std::deque<bool>& Answers = Computer.Dialogs.YesNoAnswers;

 private:
    bool Handle(WaveBuffer& buffer) override {
        AnalyzeBuffer(buffer, {Signal, Pause, Chain.Ring, Computer.Clock});
        return true;
    }
};

}  // namespace Corvetape::Test
