#include "media/title_parts.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <optional>
#include <string_view>
#include <utility>

namespace Corvetape {

namespace {

/// A separator, and how many titles must agree. A hyphen is often between artist and title, and two songs
/// of one artist may follow one another: there only what is after the last one counts, and it takes more.
struct Separator {
    std::string_view Text;
    size_t Titles = 2;
    bool BeginToo = true;
};

constexpr std::array<Separator, 6> Separators = {{{" | ", 2, true},
                                                  {" :: ", 2, true},
                                                  {" \xC2\xB7 ", 3, true},
                                                  {" \xE2\x80\x93 ", 3, false},
                                                  {" \xE2\x80\x94 ", 3, false},
                                                  {" - ", 3, false}}};

constexpr std::array<std::string_view, 12> SoundExtensions = {
    ".mp3", ".ogg", ".oga", ".opus", ".flac", ".wav", ".m4a", ".aac", ".wma", ".aif", ".aiff", ".webm"};

int HexDigit(char digit) {
    if (digit >= '0' && digit <= '9') return digit - '0';
    const int letter = std::tolower(static_cast<unsigned char>(digit));
    return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : -1;
}

std::string Unescaped(std::string_view text) {
    std::string plain;
    for (size_t i = 0; i < text.size(); ++i) {
        const bool escape = text[i] == '%' && i + 2 < text.size();
        const int high = escape ? HexDigit(text[i + 1]) : -1;
        const int low = escape ? HexDigit(text[i + 2]) : -1;
        if (high < 0 || low < 0) {
            plain += text[i];
            continue;
        }
        plain += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return plain;
}

std::string WithoutExtension(const std::string& name) {
    const size_t point = name.rfind('.');
    if (point == std::string::npos || point == 0) return name;
    std::string extension = name.substr(point);
    std::ranges::transform(extension, extension.begin(),
                           [](unsigned char each) { return static_cast<char>(std::tolower(each)); });
    const bool sound = std::ranges::find(SoundExtensions, extension) != SoundExtensions.end();
    return sound ? name.substr(0, point) : name;
}

std::string LastPart(const std::string& address) {
    const size_t end = std::min(address.find_first_of("?#"), address.size());
    const std::string path = address.substr(0, end);
    const size_t scheme = path.find("://");
    const size_t slash = path.rfind('/');
    // The name of a computer is no name of a piece.
    const bool hostOnly = scheme != std::string::npos && slash == scheme + 2;
    if (slash == std::string::npos || hostOnly) return {};
    return Unescaped(path.substr(slash + 1));
}

std::string WholeTitle(const STATIONANDSONGDATA& media) {
    return media.Artist.empty() ? media.Song : media.Artist + " - " + media.Song;
}

/// Where the last or first occurrence parts a title, if both parts hold something.
std::optional<std::pair<std::string, std::string>> Parted(const std::string& title,
                                                          const Separator& separator, bool atEnd) {
    const size_t place = atEnd ? title.rfind(separator.Text) : title.find(separator.Text);
    if (place == std::string::npos || place == 0 || place + separator.Text.size() >= title.size()) return {};
    return std::pair(title.substr(0, place), title.substr(place + separator.Text.size()));
}

}  // namespace

std::string NameOfAddress(const std::string& address) {
    return WithoutExtension(LastPart(address));
}

STATIONANDSONGDATA WithNameOfFile(STATIONANDSONGDATA media, const std::string& address) {
    const std::string file = LastPart(address);
    if (file.empty()) return media;
    const std::string whole = WholeTitle(media);
    if (media.Song.empty() && media.Artist.empty()) {
        media.Song = WithoutExtension(file);
    } else if (whole == file) {
        media.Song = WithoutExtension(media.Song);
    }
    return media;
}

STATIONANDSONGDATA WithoutNameOfAddress(STATIONANDSONGDATA media, const std::string& address) {
    const std::string whole = WholeTitle(media);
    if (whole != address && whole != LastPart(address)) return media;
    media.Artist.clear();
    media.Song.clear();
    return media;
}

void TitleParts::Learn(const std::string& source, const std::string& title) {
    if (title.empty()) return;
    if (source != Source) Titles.clear();
    Source = source;
    if (!Titles.empty() && Titles.back() == title) return;
    std::erase(Titles, title);  // what comes again says nothing new
    Titles.push_back(title);
    if (Titles.size() > MostTitles) Titles.pop_front();
}

STATIONANDSONGDATA TitleParts::Clean(STATIONANDSONGDATA media) const {
    for (const Separator& separator : Separators) {
        for (const bool atEnd : {true, false}) {
            if (!atEnd && !separator.BeginToo) continue;
            const auto own = Parted(media.Song, separator, atEnd);
            if (!own) continue;
            const std::string& constant = atEnd ? own->second : own->first;
            const auto agrees = [&](const std::string& title) {
                const auto other = Parted(title, separator, atEnd);
                return other && (atEnd ? other->second : other->first) == constant;
            };
            const auto agreeing = static_cast<size_t>(std::ranges::count_if(Titles, agrees));
            if (agreeing < separator.Titles || agreeing * 2 <= Titles.size()) continue;
            if (media.StationName.empty()) media.StationName = constant;
            media.Song = atEnd ? own->first : own->second;
            return media;
        }
    }
    return media;
}

}  // namespace Corvetape
