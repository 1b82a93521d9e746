#include "forms/encoder_page.h"

namespace Corvetape {

EncoderPage::EncoderPage(Form& form)
    : optEncoder(form, "optEncoder"),
      cmbMP3(form, "cmbMP3"),
      cmbOgg(form, "cmbOgg"),
      cmbWMA44(form, "cmbWMA44"),
      cmbWMA48(form, "cmbWMA48"),
      cmdGetEncoder(form, "cmdGetEncoder") {
    optEncoder[0].Caption("WAV 44 kHz:");
    optEncoder[1].Caption("MP3:");
    optEncoder[2].Caption("Ogg Vorbis:");
    optEncoder[3].Caption("WMA 44 kHz:");
    optEncoder[4].Caption("WMA 48 kHz (SPDIF):");
    optEncoder[5].Caption("WAV 48 kHz (SPDIF):");
    cmdGetEncoder[0].Caption("Download WMA encoder");
    cmdGetEncoder[1].Caption("Download MP3 encoder");
}

}  // namespace Corvetape
