#include "core/controls/validate_number.h"

#include <cmath>
#include <optional>
#include <string>

#include "core/controls/controls.h"
#include "core/controls/message_texts.h"
#include "core/controls/messages.h"
#include "core/text/numbers.h"
#include "platform/dialogs.h"

namespace Corvetape {

bool ValidateNumber(TextBox& box, int32_t minimum, int32_t maximum, int32_t step, Dialogs& dialogs,
                    const clsLocalizeControls& messages) {
    const auto refuse = [&](const std::string& text) {
        dialogs.ShowMessage(text, DialogIcon::Exclamation);
        return true;
    };
    const std::optional<double> number = NumberFromText(box.Text());
    if (!number) return refuse(messages.FormatMsg(Message::NoNumber.Key));
    if (std::trunc(*number) != *number) return refuse(messages.FormatMsg(Message::NoWholeNumber.Key));
    if (*number < minimum || *number > maximum) {
        return refuse(
            messages.FormatMsg(Message::OutOfRange.Key, {std::to_string(minimum), std::to_string(maximum)}));
    }
    if (step != 0 && static_cast<int64_t>(*number) % step != 0) {
        return refuse(messages.FormatMsg(Message::NoMultiple.Key, {std::to_string(step)}));
    }
    return false;
}

}  // namespace Corvetape
