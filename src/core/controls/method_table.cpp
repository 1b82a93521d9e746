#include "core/controls/method_table.h"

#include "core/text/numbers.h"
#include "core/text/text.h"

namespace Corvetape {

void MethodTable::AddPlain(std::string_view name, Method method) {
    Table[LowerCase(name)] = std::move(method);
}

bool MethodTable::Has(std::string_view name) const {
    return Table.contains(LowerCase(name));
}

bool MethodTable::Call(std::string_view name, MethodArguments arguments) const {
    const auto found = Table.find(LowerCase(name));
    if (found == Table.end()) return false;
    const Method method = found->second;  // a copy: the method may end what owns the table
    return method(arguments);
}

std::optional<std::string> MethodTable::Read(const MethodArgument& argument,
                                             std::type_identity<std::string> /*wanted*/) {
    if (const auto* const number = std::get_if<int32_t>(&argument)) return std::to_string(*number);
    return std::get<std::string>(argument);
}

std::optional<int32_t> MethodTable::Read(const MethodArgument& argument,
                                         std::type_identity<int32_t> /*wanted*/) {
    if (const auto* const number = std::get_if<int32_t>(&argument)) return *number;
    return WholeNumberFromText(std::get<std::string>(argument));
}

}  // namespace Corvetape
