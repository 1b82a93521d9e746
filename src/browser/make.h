#pragma once

#include <memory>
#include <utility>

namespace Corvetape {

/// A part of the window that its parent owns from the moment it is given one.
template <typename Part, typename... Arguments>
Part* MakeFor(Arguments&&... arguments) {
    return std::make_unique<Part>(std::forward<Arguments>(arguments)...).release();
}

}  // namespace Corvetape
