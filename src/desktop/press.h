#pragma once

#include <string>

namespace Corvetape {

/// A button of the program that runs, as another start of it may press it.
enum class RemoteButton { Record, Quit };

/// Presses it through the session bus. False if no program of this user is there.
bool PressRemotely(RemoteButton button, const std::string& bus);

}  // namespace Corvetape
