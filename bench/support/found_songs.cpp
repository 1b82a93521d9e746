#include "support/found_songs.h"

#include <fstream>
#include <nlohmann/json.hpp>

namespace Corvetape::Bench {

std::vector<FoundSong> SongsIn(const std::string& printed) {
    std::vector<FoundSong> songs;
    std::ifstream lines(printed);
    for (std::string line; std::getline(lines, line);) {
        const auto song = nlohmann::json::parse(line);
        songs.push_back({song["begin"], song["end"]});
    }
    return songs;
}

}  // namespace Corvetape::Bench
