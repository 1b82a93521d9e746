#pragma once

namespace Corvetape {

/// True if a program on the X display of this session puts the windows together, so that they may be
/// translucent and of any shape. False without such a display.
bool CompositorRuns();

}  // namespace Corvetape
