#pragma once

namespace Corvetape {

/// Closes every box and menu that stands open as if the user had closed it, also one that asks for an answer.
/// Whoever waits for one goes on: a program that has ended must not stay for a box that nobody answers.
void CloseBoxes();

}  // namespace Corvetape
