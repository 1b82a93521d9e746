#pragma once

#include <string>
#include <vector>

namespace Corvetape::Bench {

/// A song as corvetape-cli tells it, in seconds of the input.
struct FoundSong {
    double Begin = 0;
    double End = 0;
};

/// The songs that a run with `--json` has printed into a file, in order.
std::vector<FoundSong> SongsIn(const std::string& printed);

}  // namespace Corvetape::Bench
