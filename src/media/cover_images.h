#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "audio/pause_settings.h"
#include "core/controls/event.h"
#include "platform/files.h"
#include "platform/http.h"

namespace Corvetape {

/// A picture is cut off after so many bytes.
inline constexpr size_t MostCoverBytes = 1'000'000;

/// Answers of fewer bytes are error pages or placeholders.
inline constexpr size_t LeastCoverBytes = 1025;

/// True for the address of a picture that is fetched: not an empty one, and no GIF.
bool IsCoverFetched(const std::string& address);

/// True for an address in the web, by http or https.
bool IsWebAddress(std::string_view address);

/// Fetches the pictures whose addresses the providers give, and stores that of a song beside it.
///
/// Of two pictures in a row the older one stays at hand: with the end of song by media data, or by
/// everything that is known, the address of the next picture comes while the song is still being finished. A
/// song whose picture cannot be had has none, and never that of the song before.
///
/// A file of this machine counts only if it is a picture and not longer than MostCoverBytes: what stands
/// beside the songs is never a copy of another file, or a part of one.
class CoverImages {
 public:
    /// All of them outlive it. Without `http` there are no pictures.
    CoverImages(Http* http, Files& files, const PauseSettings& pause);
    ~CoverImages();
    CoverImages(const CoverImages&) = delete;
    CoverImages& operator=(const CoverImages&) = delete;

    /// Asks for the picture at an address, once for each address in a row. A failed request is not repeated
    /// until another address comes in between.
    void LoadImage(const std::string& address);

    /// Writes the picture of the song in the file as `basePath` + ".jpg", whatever its format, if it came
    /// from `address`; without an address the one that the song before the present one has left. It takes the
    /// place of what has that name; a link is replaced, never written through. Nothing happens without a
    /// picture; a disk that refuses is passed over.
    void SaveImage(const std::string& basePath, std::string_view address = {});

    /// The newest picture as it was delivered; empty if there is none that counts as one.
    const std::string& Picture() const;

    /// The same for whoever shows it: empty also if no decoder may see it (see MayBeDecoded). It is stored
    /// with its song all the same.
    const std::string& PictureToShow() const;

    /// The address that was asked for last.
    const std::string& Address() const { return LastCoverUrl; }

    /// That address was asked for, and nothing has come yet.
    bool IsUnderWay() const { return UnderWay; }

    /// A picture has come, or the present one has to go.
    Event<> Changed;

 private:
    void Answered(const HttpAnswer& answer, bool fromWeb);

    /// A song may be finished after the title and the picture of the next one have come.
    bool EndsAtTitles() const;

    /// The picture of the present address cannot be had.
    void Refuse();

    Http* Web;
    Files& Disk;
    const PauseSettings& Pause;
    std::shared_ptr<bool> Alive;
    const std::string None;
    std::string CoverBytes;
    std::string SongCoverBytes;
    std::string SongCoverUrl;  ///< where SongCoverBytes came from
    std::string LastCoverUrl;
    bool UnderWay = false;
    bool Refused = false;  ///< the picture of LastCoverUrl cannot be had
};

}  // namespace Corvetape
