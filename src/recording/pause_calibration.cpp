#include "recording/pause_calibration.h"

#include <cstdint>
#include <string>

#include "core/controls/message_texts.h"
#include "core/text/numbers.h"

namespace Corvetape {

namespace {

constexpr int32_t NothingMeasured = 32768;

/// Above this the quietest moment is no silence at all.
constexpr int32_t HighestSilence = 2000;

/// Up to here a level is taken for noise round zero, above it for a steady hum.
constexpr int32_t HighestNoise = 200;
constexpr int32_t NoiseReserve = 20;
constexpr double HumReserve = 1.1;

}  // namespace

PauseCalibration::PauseCalibration(frmMain& form, PauseSettings& pause, Dialogs& boxes,
                                   const clsLocalizeControls& texts)
    : Form(form), Pause(pause), Boxes(boxes), Texts(texts) {
    Form.cmdAutoPauseParams.Click.Connect([this] { OptimizePauseRecognition(); });
}

void PauseCalibration::OptimizePauseRecognition() {
    const int32_t low = WholeNumberFromText(Form.lblHistogramMin.Caption()).value_or(NothingMeasured);
    if (low > HighestSilence) {
        Boxes.ShowMessage(Texts.FormatMsg(Message::TooLoudForPause.Key), DialogIcon::Exclamation);
        return;
    }
    const bool hum = low > HighestNoise;
    const int32_t silence = hum ? RoundToInt32(low * HumReserve) : low + NoiseReserve;
    Form.txtSilenceAmplitude.Text(std::to_string(silence));
    Form.chkDetectSilenceByPeak.Value(hum ? 1 : 0);
    // Below any lower threshold, so that the upper one is dragged to its place.
    Pause.EndOfSilenceAmplitude = 0;
    Form.txtSilenceAmplitude.RunValidate();

    const std::string measure =
        Texts.FormatMsg(Pause.DetectSilenceByPeak ? Message::ByPeakLevel.Key : Message::ByAverageLevel.Key);
    const std::string text =
        Texts.FormatMsg(Message::PauseMeasured.Key,
                        {Form.txtSilenceAmplitude.Text(), Form.txtEndOfSilenceAmplitude.Text(), measure});
    Boxes.ShowMessage(text, DialogIcon::Exclamation);
}

}  // namespace Corvetape
