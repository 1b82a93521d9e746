#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "scenario/world.h"

namespace Corvetape::Test {

/// Writes down what the program asks of the desktop round it .
class DesktopNotes {
 public:
    std::vector<std::string> Asked;
    std::string ChosenLanguage;
    std::function<void(const std::string& what)> WhileAsked;

    void Note(const std::string& what) {
        Asked.push_back(what);
        if (WhileAsked) WhileAsked(what);
    }
};

/// Makes the world's program anew, on this desktop.
inline void PutOn(World& world, DesktopNotes& desktop) {
    world.Computer.Desktop.OwnLanguage = desktop.ChosenLanguage;
    world.Computer.Desktop.WhileAsked = [&](const std::string& what) { desktop.Note(what); };
    world.Asked = [&](const std::string& what) { desktop.Note(what); };
    world.Made();
    world.Form().objWebBrowser.NavigateAsked.Connect([&] { desktop.Note("BlankBrowser"); });
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
