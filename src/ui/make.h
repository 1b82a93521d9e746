#pragma once

#include <memory>
#include <utility>

namespace Corvetape {

/// A widget, layout or action that its parent owns from the moment it is added to one, as everything of the
/// toolkit is.
template <typename Part, typename... Arguments>
Part* Make(Arguments&&... arguments) {
    return std::make_unique<Part>(std::forward<Arguments>(arguments)...).release();
}

}  // namespace Corvetape
