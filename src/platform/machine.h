#pragma once

namespace Corvetape {

class Clock;
class EventLoop;
class WaveIn;
class Mixer;
class Files;
class Processes;
class Folders;
class Dialogs;
class SystemInfo;
class SingleInstance;

/// Everything that the logic asks of the machine. The parts outlive whoever uses them.
struct Machine {
    Corvetape::Clock& Clock;
    Corvetape::EventLoop& Loop;
    Corvetape::WaveIn& WaveIn;
    Corvetape::Mixer& Mixer;
    Corvetape::Files& Files;
    Corvetape::Processes& Processes;
    Corvetape::Folders& Folders;
    Corvetape::Dialogs& Dialogs;
    Corvetape::SystemInfo& System;
    Corvetape::SingleInstance& Instance;
};

}  // namespace Corvetape
