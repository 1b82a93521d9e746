#pragma once

#include <deque>
#include <string>

#include "core/media_state.h"

namespace Corvetape {

/// The name of a sound file or stream from its address: the last part without its extension, with escaped
/// characters as what they stand for. Empty if the address has no such part.
std::string NameOfAddress(const std::string& address);

/// A title that is only the name of its file, or none at all, becomes that name without its extension.
STATIONANDSONGDATA WithNameOfFile(STATIONANDSONGDATA media, const std::string& address);

/// A title that is only the address of what plays, or the name in it, becomes none. Players show that for a
/// stream that has not named a song yet.
STATIONANDSONGDATA WithoutNameOfAddress(STATIONANDSONGDATA media, const std::string& address);

/// Titles of pages often name the station too, "Title | Station". What is after or before a separator
/// and stays the same over several titles is no part of the title.
class TitleParts {
 public:
    /// A source shows this title. Titles of another source are forgotten.
    void Learn(const std::string& source, const std::string& title);

    /// The source names each of its titles rightly: nothing is taken off.
    void Forget() { Titles.clear(); }

    /// The title without what stays the same. A station that is not known yet is what was taken off.
    STATIONANDSONGDATA Clean(STATIONANDSONGDATA media) const;

 private:
    static constexpr size_t MostTitles = 5;

    std::string Source;
    std::deque<std::string> Titles;  ///< each other than the one before
};

}  // namespace Corvetape
