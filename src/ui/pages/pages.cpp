#include "ui/pages/pages.h"

#include <array>

#include "ui/make.h"
#include "ui/pages/audio_view.h"
#include "ui/pages/list_views.h"
#include "ui/pages/option_views.h"
#include "ui/pages/pause_view.h"
#include "ui/pages/recording_view.h"

namespace Corvetape {

namespace {

constexpr std::array Table = std::to_array<PageRow>({
    {"TAB_RECORDING", [](const UiParts& parts) -> QWidget* { return Make<RecordingView>(parts); }},
    {"TAB_AUDIO", MakeAudioView},
    {"TAB_PAUSE", MakePauseView},
    {"TAB_MP3_WMA", MakeEncoderView},
    {"TAB_OPTIONS1", MakeOptions1View},
    {"TAB_OPTIONS2", MakeOptions2View},
    {"TAB_FOLDERS", MakeFoldersView},
    {"TAB_LOGFILE", MakeLogView},
    {"TAB_INCLUDE", MakeIncludeView},
    {"TAB_EXCLUDE", MakeExcludeView},
    {"TAB_ABOUT", MakeAboutView},
});

}  // namespace

std::span<const PageRow> PageTable() {
    return Table;
}

}  // namespace Corvetape
