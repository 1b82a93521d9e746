#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace Corvetape {

/// What stands for %N in the commands that ScanTemplate makes.
struct TemplateText {
    std::string Options;            ///< put in as it stands, if IsOptions
    std::string Variable;           ///< shell variable that holds the value
    std::string WordStartVariable;  ///< the one to take where the value would begin a word
    bool IsOptions = false;
    bool IsFilled = false;  ///< the value is not empty
};

/// Translates a command template for /bin/sh: %N becomes a reference to its variable, quoted as the place
/// asks for it, and each command separator outside quotations becomes a line end, the call of the shell
/// function `endOfCommand`, and a line end; inside it becomes a line end alone. One such call stands after
/// the last command too. Nothing if a quotation, a substitution or a parenthesis is left open.
std::optional<std::string> ScanTemplate(std::string_view text, std::span<const TemplateText> parameters,
                                        std::string_view endOfCommand);

}  // namespace Corvetape
