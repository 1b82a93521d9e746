#pragma once

#include <optional>

namespace Corvetape {

/// The time of a run: that of its input, and the clock's for as long as the input gives nothing. A run that
/// is to end after some time ends also if its input is gone.
class RunTime {
 public:
    /// An input may stand still so long before it counts as one that gives nothing.
    static constexpr double GraceSeconds = 10;

    /// What the clock and the input stand at, in seconds. Called a few times a second.
    void Look(double clock, double input);

    /// The input gives nothing, and has not for longer than the grace.
    bool InputIsGone() const;

    /// Seconds since the first look: those of the input and those without it.
    double Seconds() const;

 private:
    std::optional<double> LastArrival;  ///< by the clock
    double Clock = 0;
    double Input = 0;
    double WithoutInput = 0;  ///< of absences that are over
};

}  // namespace Corvetape
