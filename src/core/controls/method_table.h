#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <variant>

namespace Corvetape {

/// What a method that is called by name is given: a whole number or a text.
using MethodArgument = std::variant<int32_t, std::string>;
using MethodArguments = std::span<const MethodArgument>;

/// Public methods by name, ignoring case, for pages that call them.
class MethodTable {
 public:
    /// A method that takes the arguments as they come. It answers false if they do not fit.
    using Method = std::function<bool(MethodArguments)>;

    /// Adds a method, or replaces the one of that name.
    void AddPlain(std::string_view name, Method method);

    /// The same for a method of whole numbers and texts: Add<int32_t, std::string>("Name", body). A number is
    /// given to a text as its digits, a text to a number if it is one.
    template <typename... Parameters>
    void Add(std::string_view name, std::type_identity_t<std::function<void(Parameters...)>> body) {
        AddPlain(name, [body = std::move(body)](MethodArguments given) {
            if (given.size() != sizeof...(Parameters)) return false;
            return Run<Parameters...>(body, given, std::index_sequence_for<Parameters...>{});
        });
    }

    /// Calls a method. False, and nothing is called, if there is none or the arguments do not fit it.
    bool Call(std::string_view name, MethodArguments arguments = {}) const;

    /// Whether there is a method of that name.
    bool Has(std::string_view name) const;

 private:
    static std::optional<std::string> Read(const MethodArgument& argument, std::type_identity<std::string>);
    static std::optional<int32_t> Read(const MethodArgument& argument, std::type_identity<int32_t>);

    template <typename... Parameters, size_t... Places>
    static bool Run(const std::function<void(Parameters...)>& body, [[maybe_unused]] MethodArguments given,
                    std::index_sequence<Places...>) {
        const std::tuple<std::optional<Parameters>...> values{
            Read(given[Places], std::type_identity<Parameters>{})...};
        if (!(std::get<Places>(values).has_value() && ...)) return false;
        body(*std::get<Places>(values)...);
        return true;
    }

    std::map<std::string, Method> Table;  // by name in lower case
};

}  // namespace Corvetape
