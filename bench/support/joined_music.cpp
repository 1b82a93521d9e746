#include "support/joined_music.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "support/measured_process.h"

namespace Corvetape::Bench {

namespace {

constexpr int Audible = 600;  ///< peak from which on a song has begun

bool IsAudible(const Frame& frame) {
    return std::abs(frame.Left) > Audible || std::abs(frame.Right) > Audible;
}

/// Decodes the part of a song that `seek` says in ffmpeg's words. True if it is long enough.
bool Decode(const std::string& song, const std::vector<std::string>& seek, const std::string& path,
            const WorkFolder& work) {
    MeasuredCommand command{{"ffmpeg", "-nostdin", "-v", "quiet", "-y"}, work.Path(), {}};
    command.Words.insert(command.Words.end(), seek.begin(), seek.end());
    command.Words.insert(command.Words.end(),
                         {"-i", song, "-f", "s16le", "-ac", "2", "-ar", std::to_string(JoinedRate), path});
    if (Measure(command).ExitCode != 0) return false;
    std::error_code error;
    return std::filesystem::file_size(path, error) >= 39 * JoinedRate * sizeof(Frame) && !error;
}

}  // namespace

std::vector<Frame> ReadFrames(const std::string& path) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    std::vector<Frame> frames(static_cast<size_t>(std::max<std::streamoff>(file.tellg(), 0)) / sizeof(Frame));
    file.seekg(0);
    file.read(reinterpret_cast<char*>(frames.data()),
              static_cast<std::streamsize>(frames.size() * sizeof(Frame)));
    return frames;
}

MusicShelf::MusicShelf(const std::string& folders, const WorkFolder& work) {
    std::vector<std::string> files;
    std::istringstream list(folders);
    for (std::string folder; std::getline(list, folder, ':');) {
        std::error_code error;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder, error)) {
            const std::string extension = entry.path().extension().string();
            if (extension == ".ogg" || extension == ".opus" || extension == ".mp3")
                files.push_back(entry.path().string());
        }
    }
    std::ranges::sort(files);
    for (const std::string& file : files) {
        const std::string name = work / std::to_string(Songs.size());
        const Song song = {name + ".begin", name + ".end"};
        const bool decoded =
            Decode(file, {"-t", "45"}, song.Begin, work) && Decode(file, {"-sseof", "-45"}, song.End, work);
        if (decoded) Songs.push_back(song);
    }
}

std::vector<Frame> MusicShelf::Beginning(size_t song) const {
    std::vector<Frame> frames = ReadFrames(Songs[song].Begin);
    frames.erase(frames.begin(), std::ranges::find_if(frames, IsAudible));
    return frames;
}

std::vector<Frame> MusicShelf::Ending(size_t song) const {
    std::vector<Frame> frames = ReadFrames(Songs[song].End);
    const auto last = std::find_if(frames.rbegin(), frames.rend(), IsAudible);
    frames.erase(last.base(), frames.end());
    return frames;
}

}  // namespace Corvetape::Bench
