#pragma once

#include <memory>

namespace Corvetape {

class EventLoop;

/// A view of a loop whose timers fire also while their own handler waits, in a loop that the handler has
/// opened: a box that stands open does not stop them. Everything else is that of `below`, which outlives the
/// timers; the timers may outlive the view.
///
/// The handler runs as posted work right after its timer. A timer that fires again before that work has run
/// calls its handler once for both, and one that was stopped meanwhile does not call it at all.
std::unique_ptr<EventLoop> NestingView(EventLoop& below);

}  // namespace Corvetape
