#include "media/cover_images.h"

#include "core/text.h"
#include "media/image_size.h"

namespace Corvetape {

bool IsCoverFetched(const std::string& address) {
    constexpr size_t extension = 3;
    if (address.empty()) return false;
    return address.size() < extension ||
           !EqualIgnoringCase(address.substr(address.size() - extension), "gif");
}

CoverImages::CoverImages(Http& http, Files& files, const PauseSettings& pause)
    : Web(http), Disk(files), Pause(pause), Alive(std::make_shared<bool>(true)) {}

CoverImages::~CoverImages() {
    Web.Cancel();
}

void CoverImages::LoadImage(const std::string& address) {
    if (address == LastCoverUrl) return;
    if (CoverBytes.size() > 1) SongCoverBytes = CoverBytes;
    CoverBytes.clear();
    if (Changed) Changed();
    LastCoverUrl = address;
    Web.Cancel();
    if (!IsCoverFetched(address)) return;
    Web.Get(address, MostCoverBytes, [this, alive = std::weak_ptr<bool>(Alive)](const HttpAnswer& answer) {
        if (!alive.expired()) Answered(answer);
    });
}

void CoverImages::Answered(const HttpAnswer& answer) {
    if (answer.Failed) return;
    CoverBytes = answer.Body.substr(0, MostCoverBytes);
    // Without cuts by media data the new picture belongs to the running song at once.
    if (Pause.EndOfSongDetection != EndOfSong::MediaData) SongCoverBytes = CoverBytes;
    if (Changed) Changed();
}

const std::string& CoverImages::Picture() const {
    return CoverBytes.size() >= LeastCoverBytes ? CoverBytes : None;
}

const std::string& CoverImages::PictureToShow() const {
    return MayBeDecoded(Picture()) ? CoverBytes : None;
}

void CoverImages::SaveImage(const std::string& basePath) {
    if (!basePath.empty() && SongCoverBytes.size() >= LeastCoverBytes) {
        Disk.ReplaceQuickly(basePath + ".jpg", SongCoverBytes);  // a song without its cover is still a song
    }
    SongCoverBytes.clear();
}

}  // namespace Corvetape
