#pragma once

#include <stdlib.h>

#include <filesystem>
#include <string>

namespace Corvetape::Bench {

/// A folder on the disk for large files, gone with all that is in it at the end.
class WorkFolder {
 public:
    WorkFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "corvetape-bench-XXXXXX").string();
        Name = mkdtemp(pattern.data());
    }
    ~WorkFolder() {
        std::error_code ignored;  // what a program that was just ended still holds
        std::filesystem::remove_all(Name, ignored);
    }
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;

    const std::string& Path() const { return Name; }
    std::string operator/(const std::string& name) const { return Name + "/" + name; }

 private:
    std::string Name;
};

}  // namespace Corvetape::Bench
