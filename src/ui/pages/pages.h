#pragma once

#include <span>

#include "ui/ui_parts.h"

class QWidget;

namespace Corvetape {

/// The page of a tab. Whoever calls Make owns the widget; the parts outlive it.
struct PageRow {
    const char* Tab;
    QWidget* (*Make)(const UiParts& parts);
};

/// The pages in the order of their tabs.
std::span<const PageRow> PageTable();

}  // namespace Corvetape
