#include "media/cover_images.h"

#include "core/text/text.h"
#include "media/image_size.h"

namespace Corvetape {

bool IsCoverFetched(const std::string& address) {
    constexpr size_t extension = 3;
    if (address.empty()) return false;
    return address.size() < extension ||
           !EqualIgnoringCase(address.substr(address.size() - extension), "gif");
}

bool IsWebAddress(std::string_view address) {
    const auto begins = [address](std::string_view with) {
        return EqualIgnoringCase(address.substr(0, with.size()), with);
    };
    return begins("http://") || begins("https://");
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
    LastCoverUrl = address;
    Changed.Raise();
    Web.Cancel();
    if (!IsCoverFetched(address)) return;
    const bool fromWeb = IsWebAddress(address);
    // One byte more shows that a file goes on.
    const size_t limit = fromWeb ? MostCoverBytes : MostCoverBytes + 1;
    Web.Get(address, limit, [this, fromWeb, alive = std::weak_ptr<bool>(Alive)](const HttpAnswer& answer) {
        if (!alive.expired()) Answered(answer, fromWeb);
    });
}

void CoverImages::Answered(const HttpAnswer& answer, bool fromWeb) {
    if (answer.Failed) return;
    if (!fromWeb && (answer.Body.size() > MostCoverBytes || !ReadImageSize(answer.Body))) return;
    CoverBytes = answer.Body.substr(0, MostCoverBytes);
    // Without cuts by media data the new picture belongs to the running song at once.
    if (Pause.EndOfSongDetection != EndOfSong::MediaData) SongCoverBytes = CoverBytes;
    Changed.Raise();
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
