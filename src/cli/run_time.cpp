#include "cli/run_time.h"

#include <utility>

namespace Corvetape {

void RunTime::Look(double clock, double input) {
    Clock = clock;
    if (!LastArrival) LastArrival = clock;
    if (input == Input) return;
    if (InputIsGone()) WithoutInput += Clock - *LastArrival;
    // An input that was opened again counts from 0.
    if (input < Input) WithoutInput += Input;
    Input = input;
    LastArrival = clock;
}

bool RunTime::InputIsGone() const {
    return LastArrival && Clock - *LastArrival > GraceSeconds;
}

double RunTime::Seconds() const {
    return Input + WithoutInput + (InputIsGone() ? Clock - *LastArrival : 0);
}

}  // namespace Corvetape
