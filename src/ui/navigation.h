#pragma once

#include <QFrame>
#include <map>
#include <string>

#include "core/controls/controls.h"

class QToolButton;

namespace Corvetape {

/// The tabs of a strip as a list at the left, an icon and a name each; the last one stands at the bottom.
class Navigation : public QFrame {
 public:
    /// The strip outlives it.
    explicit Navigation(TabStrip& tabs);

    /// Shows the texts, the icons in their present colours, and which tab is selected.
    void Refresh();

 private:
    TabStrip& Tabs;
    std::map<std::string, QToolButton*> Buttons;
};

/// Selects the tab `step` places on; after the last one comes the first.
void SelectNeighbour(TabStrip& tabs, int step);

}  // namespace Corvetape
