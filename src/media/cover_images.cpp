#include "media/cover_images.h"

#include <span>

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

CoverImages::CoverImages(Http* http, Files& files, const PauseSettings& pause)
    : Web(http), Disk(files), Pause(pause), Alive(std::make_shared<bool>(true)) {}

CoverImages::~CoverImages() {
    if (Web != nullptr) Web->Cancel();
}

void CoverImages::LoadImage(const std::string& address) {
    if (Web == nullptr || address == LastCoverUrl) return;
    if (CoverBytes.size() > 1 || Refused) {
        SongCoverBytes = CoverBytes;
        SongCoverUrl = LastCoverUrl;
    }
    CoverBytes.clear();
    Refused = false;
    LastCoverUrl = address;
    UnderWay = IsCoverFetched(address);
    Changed.Raise();
    Web->Cancel();
    if (!UnderWay) {
        if (!address.empty()) Refuse();
        return;
    }
    const bool fromWeb = IsWebAddress(address);
    // One byte more shows that a file goes on.
    const size_t limit = fromWeb ? MostCoverBytes : MostCoverBytes + 1;
    Web->Get(address, limit, [this, fromWeb, alive = std::weak_ptr<bool>(Alive)](const HttpAnswer& answer) {
        if (!alive.expired()) Answered(answer, fromWeb);
    });
}

void CoverImages::Answered(const HttpAnswer& answer, bool fromWeb) {
    UnderWay = false;
    const bool whole =
        fromWeb || (answer.Body.size() <= MostCoverBytes && ReadImageSize(answer.Body).has_value());
    if (answer.Failed || !whole) {
        Refuse();
        return;
    }
    CoverBytes = answer.Body.substr(0, MostCoverBytes);
    // Without cuts at titles the new picture belongs to the running song at once.
    if (!EndsAtTitles()) {
        SongCoverBytes = CoverBytes;
        SongCoverUrl = LastCoverUrl;
    }
    Changed.Raise();
}

void CoverImages::Refuse() {
    Refused = true;
    // Cuts at titles may still owe the song before its picture; else there is only the running song.
    if (!EndsAtTitles()) SongCoverBytes.clear();
}

bool CoverImages::EndsAtTitles() const {
    return Pause.EndOfSongDetection == EndOfSong::MediaData ||
           Pause.EndOfSongDetection == EndOfSong::Automatic;
}

const std::string& CoverImages::Picture() const {
    return CoverBytes.size() >= LeastCoverBytes ? CoverBytes : None;
}

const std::string& CoverImages::PictureToShow() const {
    return MayBeDecoded(Picture()) ? CoverBytes : None;
}

void CoverImages::SaveImage(const std::string& basePath, std::string_view address) {
    const bool isLeft = address.empty() || address == SongCoverUrl;
    // The last song of a program has nobody after it who would leave its picture.
    const std::string& picture = isLeft ? SongCoverBytes : address == LastCoverUrl ? CoverBytes : None;
    if (!basePath.empty() && picture.size() >= LeastCoverBytes) {
        const std::string path = basePath + ".jpg";
        Disk.Delete(path);  // none there, most of the time
        const Opened<File> file = Disk.CreateNew(path);
        // A song without its cover is still a song; half a picture would be none.
        if (file && !(file->Write(std::as_bytes(std::span(picture))) && file->Close())) {
            Disk.Delete(path);
        }
    }
    SongCoverBytes.clear();
}

}  // namespace Corvetape
