#pragma once

class QWidget;

namespace Corvetape {

struct dlgProvider;

/// Shows the question over a window until it is answered. Everything else goes on meanwhile.
void AskOver(QWidget* window, dlgProvider& dialog);

}  // namespace Corvetape
