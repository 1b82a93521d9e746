#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <utility>

#include "core/controls/controls.h"
#include "core/controls/form.h"

namespace Corvetape {

namespace Detail {

template <typename ControlType, size_t... Indices, typename... Arguments>
std::array<ControlType, sizeof...(Indices)> MakeControls(std::index_sequence<Indices...>, Form& form,
                                                         const char* name, Arguments&... arguments) {
    return {ControlType(form, name, static_cast<int32_t>(Indices), arguments...)...};
}

}  // namespace Detail

/// A control array: `Count` controls of one name, with the indices 0 to `Count` - 1.
template <typename ControlType, size_t Count>
class ControlArray {
 public:
    /// Further arguments go to the constructor of each control after its index.
    template <typename... Arguments>
    ControlArray(Form& form, const char* name, Arguments... arguments)
        : Members(Detail::MakeControls<ControlType>(std::make_index_sequence<Count>{}, form, name,
                                                    arguments...)) {}

    ControlType& operator[](size_t index) { return Members[index]; }
    const ControlType& operator[](size_t index) const { return Members[index]; }
    auto begin() { return Members.begin(); }
    auto end() { return Members.end(); }
    static constexpr size_t Size() { return Count; }

 private:
    std::array<ControlType, Count> Members;
};

/// A control array whose indices are not 0, 1, 2 and so on.
template <typename ControlType, int32_t... Indices>
class SparseControlArray {
 public:
    SparseControlArray(Form& form, const char* name) : Members{ControlType(form, name, Indices)...} {}

    /// The member of an index, which must be one of `Indices`.
    ControlType& operator[](int32_t index) {
        return *std::ranges::find(Members, index, [](const ControlType& each) { return each.Index(); });
    }
    auto begin() { return Members.begin(); }
    auto end() { return Members.end(); }
    auto begin() const { return Members.begin(); }
    auto end() const { return Members.end(); }

 private:
    std::array<ControlType, sizeof...(Indices)> Members;
};

/// A control array of option buttons, of which one at most is set.
template <size_t Count>
class OptionArray {
 public:
    OptionArray(Form& form, const char* name) : OptionArray(form, name, std::make_index_sequence<Count>{}) {}

    OptionButton& operator[](size_t index) { return Members[index]; }
    const OptionButton& operator[](size_t index) const { return Members[index]; }
    auto begin() { return Members.begin(); }
    auto end() { return Members.end(); }

    /// Index of the set one, -1 for none.
    int32_t Selected() const { return Group.Selected(); }

 private:
    template <size_t... Indices>
    OptionArray(Form& form, const char* name, std::index_sequence<Indices...>)
        : Members{OptionButton(form, Group, name, static_cast<int32_t>(Indices))...} {}

    OptionGroup Group;
    std::array<OptionButton, Count> Members;
};

}  // namespace Corvetape
