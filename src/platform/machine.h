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
class Desktop;
class Documents;
class Http;
class Players;
class WebView;
class Windows;

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
    Corvetape::Desktop& Desktop;

    // What not every run asks; null where it is not asked.
    Corvetape::Documents* Documents = nullptr;  ///< the pages of browsers
    Corvetape::Windows* Windows = nullptr;      ///< the windows of all programs
    Corvetape::Players* Players = nullptr;      ///< media players, or an input that knows what it plays
    Http* Web = nullptr;
    WebView* Browser = nullptr;  ///< shows the pages of stations
};

}  // namespace Corvetape
