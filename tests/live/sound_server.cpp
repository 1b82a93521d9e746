#include "live/sound_server.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <thread>

namespace Corvetape {
namespace {

constexpr auto StartLimit = std::chrono::seconds(60);
constexpr auto AnswerLimit = std::chrono::seconds(20);

std::string Content(const std::string& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

SoundServer::SoundServer(ServerKind serverKind) : kind(serverKind) {
    const std::string runtime = Folder / "run";
    std::filesystem::create_directories(runtime);
    chmod(runtime.c_str(), 0700);
    std::filesystem::create_directories(Folder / "home");
    environment = {{"XDG_RUNTIME_DIR", runtime},
                   {"HOME", Folder / "home"},
                   {"XDG_CONFIG_HOME", Folder / "home/.config"},
                   {"XDG_STATE_HOME", Folder / "home/.state"},
                   {"XDG_CACHE_HOME", Folder / "home/.cache"},
                   {"DBUS_SESSION_BUS_ADDRESS", "unix:path=" + runtime + "/bus"},
                   {"PULSE_SERVER", Address()},
                   {"DISPLAY", ""}};
    if (kind == ServerKind::PipeWire) WriteConfiguration();
}

std::string SoundServer::Address() const {
    return "unix:" + (Folder / "run/pulse/native");
}

void SoundServer::WriteConfiguration() const {
    const std::string folder = Folder / "home/.config/pipewire/pipewire.conf.d";
    std::filesystem::create_directories(folder);
    std::ofstream(folder + "/test.conf") << R"(
context.properties = { default.clock.rate = 44100 default.clock.allowed-rates = [ 44100 ] }
context.objects = [ { factory = adapter args = {
    factory.name = support.null-audio-sink
    node.name = radio
    node.description = "Radio"
    media.class = Audio/Sink
    audio.rate = 44100
    audio.position = [ FL FR ]
    object.linger = true
} } ]
)";
}

void SoundServer::Run(const std::vector<std::string>& command) {
    processes.push_back(std::make_unique<TestProcess>(
        TestProcess::Start{command, environment, Folder / (command.front() + ".log")}));
}

void SoundServer::Start() {
    const std::string socket = Folder / "run/pulse/native";
    std::filesystem::create_directories(Folder / "run/pulse");
    for (const char* left : {"run/pulse/native", "run/bus", "run/pipewire-0"}) {
        std::filesystem::remove(Folder / left);  // of a server that was killed
    }
    if (kind == ServerKind::PulseAudio) {
        Run({"pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--disallow-exit",
             "--use-pid-file=no", "--realtime=no", "--high-priority=no",
             "--load=module-native-protocol-unix auth-anonymous=1 socket=" + socket,
             "--load=module-null-sink sink_name=radio rate=44100 channels=2 format=s16le norewinds=1 "
             "sink_properties=device.description=Radio"});
        WaitUntil([&] { return std::filesystem::exists(socket); });
    } else {
        const std::string bus = Folder / "run/bus";
        Run({"dbus-daemon", "--session", "--nofork", "--nopidfile", "--address=unix:path=" + bus});
        Run({"pipewire"});
        WaitUntil([&] {
            return std::filesystem::exists(bus) && std::filesystem::exists(Folder / "run/pipewire-0");
        });
        Run({"wireplumber"});
        Run({"pipewire-pulse"});
        WaitUntil([&] { return std::filesystem::exists(socket); });
    }
    // Before this, the part of the server that connects streams is not at work yet.
    WaitUntil([&] { return Pactl({"get-default-sink"}) == "radio"; });
}

void SoundServer::WaitUntil(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + StartLimit;
    while (std::chrono::steady_clock::now() < end) {
        if (condition()) return;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));  // between two looks
    }
    std::string logs;
    for (const auto& entry : std::filesystem::directory_iterator(Folder.Path())) {
        if (entry.path().extension() == ".log") logs += Content(entry.path());
    }
    ADD_FAILURE() << "the sound server does not come up, or not to this state:\n" << logs;
}

void SoundServer::Signal(int number) const {
    for (const auto& process : processes) process->Signal(number);
}

void SoundServer::Kill() {
    for (const auto& process : processes) process->Signal(SIGKILL);
    for (const auto& process : processes) process->Kill();
    processes.clear();
}

void SoundServer::Control(const std::vector<std::string>& arguments) {
    EXPECT_TRUE(Pactl(arguments).has_value());
}

std::optional<std::string> SoundServer::Pactl(const std::vector<std::string>& arguments) {
    const std::string output = Folder / "pactl.out";
    std::filesystem::remove(output);
    std::vector<std::string> command = {"pactl"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    TestProcess process({command, environment, output});
    if (process.Wait(AnswerLimit) != 0) return std::nullopt;
    std::string text = Content(output);
    while (text.ends_with('\n')) text.pop_back();
    return text;
}

std::string SoundServer::AddSink(const std::string& name) {
    const std::string onlyPulse = kind == ServerKind::PulseAudio ? "norewinds=1" : "";
    const std::optional<std::string> module =
        Pactl({"load-module", "module-null-sink", "sink_name=" + name, "rate=44100", "channels=2",
               "format=s16le", "sink_properties=device.description=" + name, onlyPulse});
    EXPECT_TRUE(module.has_value());
    if (!module) return {};
    added[*module] = name;
    WaitUntil([&] { return Lists(name); });
    return *module;
}

bool SoundServer::Lists(const std::string& sink) {
    const std::string sources = Pactl({"list", "short", "sources"}).value_or("");
    return sources.find("\t" + sink + ".monitor\t") != std::string::npos;
}

size_t SoundServer::Recordings() {
    const std::string list = Pactl({"list", "short", "source-outputs"}).value_or("");
    return list.empty() ? 0 : static_cast<size_t>(std::ranges::count(list, '\n')) + 1;
}

void SoundServer::SetDefaultSink(const std::string& name) {
    Control({"set-default-sink", name});
}

void SoundServer::Suspend(const std::string& sink, bool suspended) {
    Control({"suspend-sink", sink, suspended ? "1" : "0"});
}

void SoundServer::RemoveSink(const std::string& module) {
    Control({"unload-module", module});
    WaitUntil([&] { return !Lists(added[module]); });
}

std::unique_ptr<TestProcess> SoundServer::Play(const std::string& file, const std::string& sink) {
    return std::make_unique<TestProcess>(
        TestProcess::Start{{"paplay", "-d", sink, file}, environment, Folder / "paplay.log"});
}

}  // namespace Corvetape
