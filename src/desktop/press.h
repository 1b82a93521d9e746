#pragma once

#include <string>

namespace Corvetape {

/// A button of the program that runs, as another start of it may press it.
enum class RemoteButton { Record, Quit };

/// Presses it through the session bus. False if no program of this user is there.
bool PressRemotely(RemoteButton button, const std::string& bus);

/// The folder in which the running program holds its place: a run with a `home` of its own disturbs no other.
std::string InstanceFolder(const std::string& home);

/// True if a program runs all the same, which a press that failed did not reach.
bool RunsUnreached(const std::string& home);

}  // namespace Corvetape
