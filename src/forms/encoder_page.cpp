#include "forms/encoder_page.h"

namespace Corvetape {

EncoderPage::EncoderPage(Form& form)
    : optEncoder(form, "optEncoder"),
      cmbMP3(form, "cmbMP3"),
      cmbOgg(form, "cmbOgg"),
      cmbWMA44(form, "cmbWMA44"),
      cmbWMA48(form, "cmbWMA48"),
      cmdGetEncoder(form, "cmdGetEncoder") {
    optEncoder[0].Wording("1120", "WAV 44 kHz:");
    optEncoder[1].Wording("1121", "MP3:");
    optEncoder[2].Wording("1122", "Ogg Vorbis:");
    optEncoder[3].Wording("1123", "WMA 44 kHz:");
    optEncoder[4].Wording("1124", "WMA 48 kHz (SPDIF):");
    optEncoder[5].Wording("1125", "WAV 48 kHz (SPDIF):");
    cmbMP3.TextKey("1126");
    cmbOgg.TextKey("1127");
    cmbWMA44.TextKey("1128");
    cmbWMA48.TextKey("1129");
    cmdGetEncoder[0].Wording("1130", "Download WMA encoder");
    cmdGetEncoder[1].Wording("1131", "Download MP3 encoder");
}

}  // namespace Corvetape
