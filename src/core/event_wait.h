#pragma once

namespace Corvetape {

class Clock;
class EventLoop;

/// Waits at least `milliseconds` while events are handled every 10 ms. It may re-enter whoever waits.
///
/// The time is the single-precision time of day. One that is not greater than the start counts 84600 seconds
/// more, so that a wait across midnight lasts half an hour longer; the number stays as it is.
void PauseWithEvents(const Clock& clock, EventLoop& loop, float milliseconds);

/// The same, but over as soon as `ended` is true.
void PauseWithEvents(const Clock& clock, EventLoop& loop, float milliseconds, const bool& ended);

}  // namespace Corvetape
