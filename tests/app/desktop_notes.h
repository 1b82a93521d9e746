#pragma once

#include <string>
#include <vector>

#include "scenario/world.h"

namespace Corvetape::Test {

/// A desktop that writes down what it is asked for.
class DesktopNotes {
 public:
    DesktopSteps Steps() {
        DesktopSteps steps;
        AddStart(steps);
        AddStop(steps);
        return steps;
    }

    std::vector<std::string> Asked;
    std::string ChosenLanguage;
    std::function<void(const std::string& what)> WhileAsked;

 private:
    void Note(std::string what) {
        Asked.push_back(what);
        if (WhileAsked) WhileAsked(what);
    }

    void AddStart(DesktopSteps& steps) {
        steps.BusyPointer = [this](bool busy) { Note(busy ? "BusyPointer" : "normal pointer"); };
        steps.BlankBrowser = [this] { Note("BlankBrowser"); };
        steps.LayOutPages = [this] { Note("LayOutPages"); };
        steps.ChooseLanguage = [this] { return Note("ChooseLanguage"), ChosenLanguage; };
        steps.SizeStatusLine = [this] { Note("SizeStatusLine"); };
        steps.MoveWindow = [this](int32_t left, int32_t top) {
            Note("MoveWindow " + std::to_string(left) + " " + std::to_string(top));
        };
        steps.MinimizeWindow = [this] { Note("MinimizeWindow"); };
        steps.AddTrayIcon = [this] { Note("AddTrayIcon"); };
        steps.HookWindow = [this] { Note("HookWindow"); };
        steps.ShowWindow = [this] { Note("ShowWindow"); };
        steps.LoadBars = [this] { Note("LoadBars"); };
        steps.CheckUpdate = [this] { Note("CheckUpdate"); };
        steps.OpenAssistant = [this](const std::string& page) { Note("OpenAssistant " + page); };
    }

    void AddStop(DesktopSteps& steps) {
        steps.SaveWindowPlace = [this] { Note("SaveWindowPlace"); };
        steps.RemoveTrayIcon = [this] { Note("RemoveTrayIcon"); };
        steps.UnloadAssistant = [this] { Note("UnloadAssistant"); };
        steps.SaveBars = [this] { Note("SaveBars"); };
    }
};

/// Makes the world's program anew, on this desktop.
inline void PutOn(World& world, DesktopNotes& desktop) {
    world.Desktop = desktop.Steps();
    world.Made();
}

/// A world whose program has this command line and these settings.
inline WorldOptions Starting(std::string commandLine, std::vector<IniLine> settings = {}) {
    WorldOptions options;
    options.CommandLine = std::move(commandLine);
    options.Settings = std::move(settings);
    return options;
}

/// The kinds of all log lines, in their order.
inline std::vector<std::string> LoggedKinds(const World& world) {
    std::vector<std::string> kinds;
    for (const LogLine& line : world.Log) kinds.push_back(line.Kind);
    return kinds;
}

}  // namespace Corvetape::Test
