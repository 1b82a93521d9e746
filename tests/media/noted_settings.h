#pragma once

#include <functional>
#include <string>
#include <vector>

#include "media/provider.h"
#include "media/provider_adoption.h"
#include "sim/sim_machine.h"

namespace Corvetape::Test {

/// The settings and the mixer of sources, with notes of what was asked of them. Nobody knows any source.
class NotedSettings : public SourceSettings, public SourceMixer {
 public:
    void LoadProviderSettings(const std::string& name) override {
        Asked.push_back("load " + name);
        Loaded.push_back(name);
        if (WhileLoading) WhileLoading();
    }
    void StoreProviderSettings() override { Asked.emplace_back("store"); }
    void UpdateMixer() override { Asked.emplace_back("mixer"); }
    void ApplyMixer() override { Asked.emplace_back("apply mixer"); }
    void StoreMixer() override { Asked.emplace_back("store mixer"); }

    std::vector<std::string> Asked;
    std::vector<std::string> Loaded;  ///< names of sources
    std::function<void()> WhileLoading;
};

/// What every provider needs, on a machine of its own.
struct ProviderBench {
    SimMachine Computer;
    clsLocalizeControls Texts{Computer.Files, Computer.Folders.Program, Computer.Dialogs};
    NotedSettings Settings;
    MediaState Media;
    SignalState Signal;
    RecordingFlags Flags;
    ProviderAdoption Adoption{Media, Settings, Settings, Texts, nullptr};
    ProviderHost Host{Media, Signal, Flags, Adoption};
};

}  // namespace Corvetape::Test
