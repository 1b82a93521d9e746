// Runs a target over files, so that what fuzzing has found stays found with every compiler.
//
//   fuzz-TARGET FILE-OR-FOLDER...

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

std::vector<std::filesystem::path> FilesOf(const std::filesystem::path& place) {
    if (!std::filesystem::is_directory(place)) return {place};
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(place)) files.push_back(entry.path());
    std::ranges::sort(files);
    return files;
}

bool Run(const std::filesystem::path& file) {
    std::fprintf(stderr, "%s\n", file.c_str());  // the last one is the one that ended the run
    std::ifstream stream(file, std::ios::binary);
    const std::vector<char> bytes(std::istreambuf_iterator<char>(stream), {});
    if (!stream) return false;
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
    return true;
}

}  // namespace

int main(int count, char** arguments) {
    size_t runs = 0;
    for (int i = 1; i < count; ++i) {
        for (const auto& file : FilesOf(arguments[i])) {
            if (!Run(file)) return 1;
            ++runs;
        }
    }
    return runs > 0 ? 0 : 1;
}
