#pragma once

#include <string>

#include "core/controls/event.h"

namespace Corvetape {

/// What any part may ask of the whole program: news that travels up.
struct ProgramRequests {
    /// The program is to end as soon as what happens now is done. Asked for during the start, it ends after
    /// it.
    Event<> End;

    /// The assistant is to open the page of this name.
    Event<const std::string&> Assistant;
};

}  // namespace Corvetape
