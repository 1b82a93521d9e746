#pragma once

#include <stdlib.h>

#include <filesystem>
#include <string>

namespace Corvetape {

/// A folder of its own for a test, gone with all that is in it at the end.
class TempFolder {
 public:
    TempFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "corvetape-test-XXXXXX").string();
        path = mkdtemp(pattern.data());
    }
    ~TempFolder() {
        std::error_code ignored;  // what a process that was just ended still holds
        std::filesystem::remove_all(path, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::string& Path() const { return path; }
    std::string operator/(const std::string& name) const { return path + "/" + name; }

 private:
    std::string path;
};

}  // namespace Corvetape
