#include "ui/level_text.h"

#include <QLabel>
#include <cmath>
#include <string>

#include "recording/level_display.h"
#include "ui/binding.h"
#include "ui/make.h"

namespace Corvetape {

namespace {

constexpr const char* Minus = "\xE2\x88\x92";
constexpr const char* Infinite = "\xE2\x88\x9E";

QString TextOfNumber(const std::string& number, const Words& say) {
    bool isNumber = false;
    const int level = QString::fromStdString(number).toInt(&isNumber);
    return isNumber ? DecibelText(level, say) : QString();
}

/// Beside the label or field of its control, whose name it may not have.
QLabel* QuietLabel(const Control& control) {
    auto* const label = Make<QLabel>();
    label->setObjectName(WidgetName(control) + "_dB");
    label->setProperty("dim", true);
    return label;
}

}  // namespace

QString DecibelText(int32_t level, const Words& say) {
    if (level < 0) return {};
    if (level == 0) return say(Key::Decibels, {std::string(Minus) + Infinite});
    const long below = std::lround(-20 * std::log10(static_cast<double>(level) / FullScale));
    return say(Key::Decibels, {(below > 0 ? Minus : below < 0 ? "+" : "") + std::to_string(std::abs(below))});
}

QLabel* DecibelsOf(TextBox& control, const Words& say) {
    QLabel* const label = QuietLabel(control);
    Follow(control, label,
           [say](const TextBox& from, QLabel& to) { to.setText(TextOfNumber(from.Text(), say)); });
    return label;
}

QLabel* DecibelsOf(Label& control, const Words& say) {
    QLabel* const label = QuietLabel(control);
    Follow(control, label,
           [say](const Label& from, QLabel& to) { to.setText(TextOfNumber(from.Caption(), say)); });
    return label;
}

}  // namespace Corvetape
