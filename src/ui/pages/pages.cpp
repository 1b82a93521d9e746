#include "ui/pages/pages.h"

#include <array>

#include "ui/make.h"
#include "ui/pages/recording_view.h"

namespace Corvetape {

namespace {

constexpr std::array Table = std::to_array<PageRow>({
    {"TAB_RECORDING", [](const UiParts& parts) -> QWidget* { return Make<RecordingView>(parts); }},
});

}  // namespace

std::span<const PageRow> PageTable() {
    return Table;
}

}  // namespace Corvetape
