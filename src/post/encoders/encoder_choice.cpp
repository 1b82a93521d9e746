#include "post/encoders/encoder_choice.h"

#include "core/lifecycle_flags.h"
#include "core/settings/settings_store.h"
#include "forms/encoder_page.h"

namespace Corvetape {

EncoderChoice::EncoderChoice(EncoderPage& page, Settings& settings, SettingsStore& store,
                             LifecycleFlags& flags, ProgramRequests& requests)
    : Page(page), Options(settings), Store(store), Flags(flags), Requests(requests) {
    for (size_t i = 0; i < EncoderTable.size(); ++i) {
        Page.optEncoder[i].Click.Connect([this, i] { ChooseEncoder(i); });
        if (EncoderTable[i].QualityControl == nullptr) continue;
        (Page.*EncoderTable[i].QualityControl).Click.Connect([this, i] { ChooseQuality(i); });
    }
    for (size_t i = 0; i < Page.cmdGetEncoder.Size(); ++i) {
        Page.cmdGetEncoder[i].Click.Connect([this, i] { GetEncoder(i); });
    }
}

void EncoderChoice::EnableFound(const FoundTools& found) {
    for (size_t i = 0; i < EncoderTable.size(); ++i) {
        const bool canBeMade = HasTool(found, EncoderTable[i].Needs);
        Page.optEncoder[i].Enabled(canBeMade);
        if (EncoderTable[i].QualityControl == nullptr) continue;
        (Page.*EncoderTable[i].QualityControl).Enabled(canBeMade);
    }
}

void EncoderChoice::ChooseEncoder(size_t encoder) {
    Options.Encoder = static_cast<int32_t>(encoder);
    Store.WriteSetting("Options", "Encoder", Options.Encoder);
}

void EncoderChoice::ChooseQuality(size_t encoder) {
    const EncoderRow& row = EncoderTable[encoder];
    const int32_t index = (Page.*row.QualityControl).ListIndex();
    Options.*row.QualityIndex = index;
    Store.WriteSetting("Options", row.QualityKey, index);
    Page.optEncoder[encoder].Value(true);
}

void EncoderChoice::GetEncoder(size_t index) {
    Flags.WizardRequested = true;
    Requests.Assistant.Raise(index == 0 ? "wiz_wma.htm" : "wiz_lame.htm");
}

}  // namespace Corvetape
