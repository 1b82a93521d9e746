#pragma once

#include <QString>
#include <initializer_list>
#include <string>

#include "core/controls/messages.h"

namespace Corvetape {

/// The texts that the window has beside those of its controls, in the language of the user.
class Words {
 public:
    /// `texts` outlives it.
    explicit Words(const clsLocalizeControls& texts) : Texts(texts) {}

    /// The text of a key, with %1, %2, ... replaced. Empty if the language has none.
    QString operator()(const char* key, std::initializer_list<std::string> arguments = {}) const {
        return QString::fromStdString(Texts.FormatMsg(key, arguments));
    }

 private:
    const clsLocalizeControls& Texts;
};

/// A tip that shows a text as it is, also one of strangers that looks like markup.
QString TipOf(const QString& text);

/// A title that a window shows as it is; "[*]" would be the place of a mark.
QString TitleOf(QString text);

}  // namespace Corvetape
