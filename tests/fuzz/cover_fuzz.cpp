// Pictures of songs: the answers to requests, what is stored of them, and the sizes that they announce.
// Fields: steps of one letter and its text: l address to load, a answer, g answer of 16 times so many bytes
// as its first two tell, f failed answer, s song to save, e end of song by media data.
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/text/text.h"
#include "fuzz/support/fuzz.h"
#include "media/cover_images.h"
#include "media/image_size.h"
#include "sim/sim_files.h"

namespace Corvetape {

namespace {

using Fuzz::Require;

constexpr size_t MostSteps = 32;

class RecordedHttp : public Http {
 public:
    void Get(const std::string& address, size_t limit,
             std::function<void(const HttpAnswer&)> answered) override {
        Require(IsCoverFetched(address), "only pictures are asked for");
        // Of a file one byte more is asked for, which shows that it goes on.
        const bool isUpToItsLimit = limit == MostCoverBytes + (IsWebAddress(address) ? 0 : 1);
        Require(isUpToItsLimit, "a picture is asked for up to its limit");
        Require(!Answered, "one request at a time");
        Answered = std::move(answered);
    }
    void Cancel() override { Answered = nullptr; }

    std::function<void(const HttpAnswer&)> Answered;
};

class Run {
 public:
    void Step(std::string_view text) {
        const char kind = text.empty() ? ' ' : text.front();
        const std::string rest(text.substr(text.empty() ? 0 : 1));
        if (kind == 'l') Covers.LoadImage(rest);
        if (kind == 'a') Answer(false, rest);
        if (kind == 'f') Answer(true, rest);
        if (kind == 'g') Answer(false, Grown(rest));
        if (kind == 's') Save(rest);
        if (kind == 'e') Pause.EndOfSongDetection = EndOfSong::MediaData;
        Require(Covers.Picture().empty() || Delivered(Covers.Picture()), "a picture is what was delivered");
        Require(Covers.PictureToShow().empty() || MayBeDecoded(Covers.PictureToShow()),
                "only what may be decoded is shown");
    }

 private:
    static std::string Grown(const std::string& piece) {
        if (piece.size() < 2) return piece;
        const size_t size =
            16 * (size_t{static_cast<uint8_t>(piece[0])} << 8 | static_cast<uint8_t>(piece[1]));
        std::string text;
        while (text.size() < size) text += piece;
        text.resize(size);
        return text;
    }

    void Answer(bool failed, const std::string& body) {
        if (!Web.Answered) return;
        if (!failed) Bodies.push_back(body);
        const auto answered = std::exchange(Web.Answered, nullptr);
        answered({failed, body});
    }

    bool Delivered(const std::string& picture) const {
        for (const std::string& body : Bodies) {
            if (body.substr(0, MostCoverBytes) == picture) return true;
        }
        return false;
    }

    void Save(const std::string& name) {
        const std::string base = SafeBase(name);
        Covers.SaveImage(base);
        for (const std::string& path : Disk.Tree()) {
            const std::string picture = Disk.Content(path).value_or("");
            Require(path == base + ".jpg", "a picture is beside its song");
            Require(
                picture.size() >= LeastCoverBytes && picture.size() <= MostCoverBytes && Delivered(picture),
                "a stored picture is a delivered one of a size that counts");
            Disk.Delete(path);
        }
        Covers.SaveImage(base);
        Require(Disk.Tree().empty(), "a picture is stored once");
    }

    static std::string SafeBase(const std::string& name) { return Fuzz::IsFileName(name) ? "/" + name : ""; }

    RecordedHttp Web;
    SimFiles Disk;
    PauseSettings Pause;
    std::vector<std::string> Bodies;
    CoverImages Covers{&Web, Disk, Pause};
};

void CheckSize(std::string_view bytes) {
    const std::optional<ImageSize> size = ReadImageSize(bytes);
    Require(!size || (size->Width > 0 && size->Height > 0), "no picture is empty");
    Require(!MayBeDecoded(bytes) || (size && uint64_t{size->Width} * size->Height <= MostCoverPixels),
            "what is too large is not decoded");
    const std::string_view half = bytes.substr(0, bytes.size() / 2);
    const std::optional<ImageSize> early = ReadImageSize(half);
    Require(!early || early == size, "what is known of a picture's beginning holds for the whole");
}

}  // namespace

void FuzzOne(Fuzz::Input input) {
    Run run;
    for (size_t step = 0; step < MostSteps && !input.Empty(); ++step) {
        const std::string_view text = input.Field();
        if (!text.empty()) CheckSize(text.substr(1));
        run.Step(text);
    }
    CheckSize(input.Rest());
}

}  // namespace Corvetape
