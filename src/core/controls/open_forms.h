#pragma once

#include <string_view>
#include <vector>

#include "core/controls/event.h"

namespace Corvetape {

class Form;

/// The forms that are loaded, shown or not, in the order of their loading. It must outlive what Open gives.
class OpenForms {
 public:
    /// Puts a form at the end of the list. It stays there for as long as the result lives.
    [[nodiscard]] Connection Open(Form& form);

    const std::vector<Form*>& InOrder() const { return Forms; }

    /// The first form of exactly that name. Null if none is loaded.
    Form* Find(std::string_view name) const;

 private:
    std::vector<Form*> Forms;
};

}  // namespace Corvetape
