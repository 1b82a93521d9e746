#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "live/test_process.h"
#include "support/temp_folder.h"

namespace Corvetape {

enum class ServerKind { PulseAudio, PipeWire };

/// A private sound server with one output at 44.1 kHz that plays to nowhere, named "radio" and told to
/// people as "Radio". It shares nothing with a server that the user may be running.
///
/// Failures to start it fail the test: a machine without the servers cannot say that recording works.
class SoundServer {
 public:
    explicit SoundServer(ServerKind kind);

    void Start();

    /// All its processes end at once, without a chance to say anything.
    void Kill();

    /// To all its processes.
    void Signal(int number) const;

    /// For PulseWaveIn and for PULSE_SERVER.
    std::string Address() const;

    /// Adds another output of the same sort, which every client sees then. Its number is for RemoveSink.
    std::string AddSink(const std::string& name);
    void SetDefaultSink(const std::string& name);
    /// Suspends an output with its monitor, or wakes it up.
    void Suspend(const std::string& sink, bool suspended);
    /// No client sees it any more then.
    void RemoveSink(const std::string& module);

    /// Begins to play a sound file.
    std::unique_ptr<TestProcess> Play(const std::string& file, const std::string& sink = "radio");

    const TempFolder Folder;

    /// How many streams of clients record at present.
    size_t Recordings();

    /// What the control program prints. Nothing if it fails.
    std::optional<std::string> Pactl(const std::vector<std::string>& arguments);

 private:
    void Run(const std::vector<std::string>& command);
    void WriteConfiguration() const;
    void Control(const std::vector<std::string>& arguments);
    void WaitUntil(const std::function<bool()>& condition);
    bool Lists(const std::string& sink);

    const ServerKind kind;
    std::map<std::string, std::string> environment;
    std::map<std::string, std::string> added;  ///< names of outputs by their modules
    std::vector<std::unique_ptr<TestProcess>> processes;
};

}  // namespace Corvetape
