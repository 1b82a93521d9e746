#pragma once

#include <QDialog>

#include "post/options/language_choice.h"

namespace Corvetape {

/// Shows the question for the language until it may end.
void AskForLanguage(dlgLanguage& form, LanguageChoice& choice);

}  // namespace Corvetape
