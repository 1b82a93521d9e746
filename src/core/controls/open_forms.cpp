#include "core/controls/open_forms.h"

#include <algorithm>

#include "core/controls/form.h"

namespace Corvetape {

Connection OpenForms::Open(Form& form) {
    Forms.push_back(&form);
    return Connection([this, &form] { std::erase(Forms, &form); });
}

Form* OpenForms::Find(std::string_view name) const {
    const auto found = std::ranges::find_if(Forms, [name](const Form* each) { return each->Name() == name; });
    return found == Forms.end() ? nullptr : *found;
}

}  // namespace Corvetape
